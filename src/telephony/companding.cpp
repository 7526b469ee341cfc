#include "zvps/companding.h"

#include "core/checks.hpp"
#include "core/level.hpp"
#include "telephony/companding.table.hpp"

namespace zvps {
namespace {

template <class S, class D>
ZvpStatus compand(void (*kernel)(const S*, D*, size_t), const S* src, D* dst, int len) {
    if (const ZvpStatus status = checkVectors(len, src, dst)) return status;
    kernel(src, dst, static_cast<size_t>(len));
    return zvpStsOk;
}

} // namespace
} // namespace zvps

#define ZVPS_COMPANDING(NAME, slot, source, destination)                                                               \
    ZvpStatus zvps##NAME(const Zvp##source* pSrc, Zvp##destination* pDst, int len) {                                   \
        return zvps::compand(zvps::kernels().companding->slot, pSrc, pDst, len);                                       \
    }

ZVPS_COMPANDING(ALawToLin_8u16s, aLawToLin_8u16s, 8u, 16s)
ZVPS_COMPANDING(ALawToLin_8u32f, aLawToLin_8u32f, 8u, 32f)
ZVPS_COMPANDING(MuLawToLin_8u16s, muLawToLin_8u16s, 8u, 16s)
ZVPS_COMPANDING(MuLawToLin_8u32f, muLawToLin_8u32f, 8u, 32f)
ZVPS_COMPANDING(LinToALaw_16s8u, linToALaw_16s8u, 16s, 8u)
ZVPS_COMPANDING(LinToALaw_32f8u, linToALaw_32f8u, 32f, 8u)
ZVPS_COMPANDING(LinToMuLaw_16s8u, linToMuLaw_16s8u, 16s, 8u)
ZVPS_COMPANDING(LinToMuLaw_32f8u, linToMuLaw_32f8u, 32f, 8u)
ZVPS_COMPANDING(ALawToMuLaw_8u, aLawToMuLaw_8u, 8u, 8u)
ZVPS_COMPANDING(MuLawToALaw_8u, muLawToALaw_8u, 8u, 8u)
