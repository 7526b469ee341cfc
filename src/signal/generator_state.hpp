// What the states of all generators share: sizes, building in the caller's memory or the library's, release.
#pragma once

#include "zvps/memory.h"
#include "zvps/status.h"

#include <cstdint>
#include <type_traits>

namespace zvps {

// The state behind an opaque type.
template <class Opaque>
struct StateOf;
template <class Opaque>
typename StateOf<Opaque>::Type* header(Opaque* state) {
    return reinterpret_cast<typename StateOf<Opaque>::Type*>(state);
}

template <class Opaque>
ZvpStatus stateSize(int* size) {
    if (size == nullptr) return zvpStsNullPtr;
    *size = static_cast<int>(sizeof(typename StateOf<Opaque>::Type));
    return zvpStsOk;
}

// build(state) fills a state but its last field, `isAllocated`.
template <class Opaque, class Build>
void initState(Opaque* state, Build build) {
    build(header(state));
    header(state)->isAllocated = 0;
}
template <class Opaque, class Build>
ZvpStatus allocState(Opaque** result, Build build) {
    Zvp8u* const memory = zvpsMalloc_8u(static_cast<int>(sizeof(typename StateOf<Opaque>::Type)));
    if (memory == nullptr) return zvpStsNoMemory;
    auto* const state = reinterpret_cast<Opaque*>(memory);
    build(header(state));
    header(state)->isAllocated = 1;
    *result = state;
    return zvpStsOk;
}

template <class Opaque>
ZvpStatus freeState(Opaque* state) {
    if (state == nullptr) return zvpStsNullPtr;
    if (header(state)->tag != StateOf<Opaque>::kTag) return zvpStsContextMismatch;
    header(state)->tag = 0;
    if (header(state)->isAllocated != 0) zvpsFree(state);
    return zvpStsOk;
}

// The checks of a call that generates.
template <class T, class Opaque>
ZvpStatus checkRun(const T* dst, int len, Opaque* state) {
    if (dst == nullptr || state == nullptr) return zvpStsNullPtr;
    if (len < 1) return zvpStsBadSize;
    return header(state)->tag == StateOf<Opaque>::kTag ? zvpStsOk : zvpStsContextMismatch;
}

} // namespace zvps
