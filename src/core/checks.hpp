// The argument checks that all entries share, in the order in which they are documented.
#pragma once

#include "zvps/status.h"

namespace zvps {

// Null pointers first, then the length.
template <class... Pointers>
inline ZvpStatus checkVectors(int len, Pointers... pointers) {
    if (((pointers == nullptr) || ...)) return zvpStsNullPtr;
    if (len < 1) return zvpStsBadSize;
    return zvpStsOk;
}

} // namespace zvps
