#include "zvps/initialisation.h"

#include "bench.hpp"

#include <algorithm>
#include <cstring>

namespace bench {
namespace {

#define COPY_SET_ZERO(TYPE)                                                                                            \
    Row<Zvp##TYPE>("Copy_" #TYPE, 2, kInCacheAndLarge)                                                                 \
        .with("ours", BENCH_CALL(zvpsCopy_##TYPE(v.a, v.dst, v.n)))                                                    \
        .with("std", BENCH_CALL(std::memcpy(v.dst, v.a, bytes(v))));                                                   \
    Row<Zvp##TYPE>("Set_" #TYPE, 1, kInCacheAndLarge)                                                                  \
        .with("ours", BENCH_CALL(zvpsSet_##TYPE(v.val, v.dst, v.n)))                                                   \
        .with("std", BENCH_CALL(std::fill(v.dst, v.dst + v.n, v.val)));                                                \
    Row<Zvp##TYPE>("Zero_" #TYPE, 1, kInCacheAndLarge)                                                                 \
        .with("ours", BENCH_CALL(zvpsZero_##TYPE(v.dst, v.n)))                                                         \
        .with("std", BENCH_CALL(std::memset(v.dst, 0, bytes(v))))

template <class T>
size_t bytes(const Vectors<T>& v) {
    return sizeof(T) * static_cast<size_t>(v.n);
}

} // namespace

void registerInitialisation() {
    COPY_SET_ZERO(16s);
    COPY_SET_ZERO(32f);
}

} // namespace bench
