// Elements as kernels take them: complex ones as pairs of their parts.
#pragma once

#include "core/scaled.hpp"

#include <cstddef>
#include <type_traits>

namespace zvps {

template <class T, class = void>
struct PartOf {
    using Type = T;
};
template <class T>
struct PartOf<T, std::void_t<decltype(T::re)>> {
    using Type = decltype(T::re);
};
template <class T>
using Part = typename PartOf<T>::Type;

template <class T>
const Part<T>* parts(const T* p) {
    return reinterpret_cast<const Part<T>*>(p);
}
template <class T>
Part<T>* parts(T* p) {
    return reinterpret_cast<Part<T>*>(p);
}
template <class T>
size_t partCount(int len) {
    return static_cast<size_t>(len) * (sizeof(T) / sizeof(Part<T>));
}

template <class T>
Pair<Part<T>> pairOf(T val) {
    if constexpr (std::is_same_v<T, Part<T>>) {
        return makePair(val, val);
    } else {
        return makePair(val.re, val.im);
    }
}

} // namespace zvps
