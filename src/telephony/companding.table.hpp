// Companding: the bridge between entries and kernels.
#pragma once

#include "zvps/types.h"

#include <cstddef>

// X(slot, operation, source's type, destination's type)
#define ZVPS_COMPANDINGS(X)                                                                                            \
    X(aLawToLin_8u16s, Expand<ALaw>, Zvp8u, Zvp16s)                                                                    \
    X(aLawToLin_8u32f, Expand<ALaw>, Zvp8u, Zvp32f)                                                                    \
    X(muLawToLin_8u16s, Expand<MuLaw>, Zvp8u, Zvp16s)                                                                  \
    X(muLawToLin_8u32f, Expand<MuLaw>, Zvp8u, Zvp32f)                                                                  \
    X(linToALaw_16s8u, Compress<ALaw>, Zvp16s, Zvp8u)                                                                  \
    X(linToALaw_32f8u, Compress<ALaw>, Zvp32f, Zvp8u)                                                                  \
    X(linToMuLaw_16s8u, Compress<MuLaw>, Zvp16s, Zvp8u)                                                                \
    X(linToMuLaw_32f8u, Compress<MuLaw>, Zvp32f, Zvp8u)                                                                \
    X(aLawToMuLaw_8u, Recode<kMuLawOfALaw>, Zvp8u, Zvp8u)                                                              \
    X(muLawToALaw_8u, Recode<kALawOfMuLaw>, Zvp8u, Zvp8u)

namespace zvps {

struct CompandingKernels {
#define ZVPS_SLOT(slot, op, source, destination) void (*slot)(const source* src, destination* dst, size_t n);
    ZVPS_COMPANDINGS(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps
