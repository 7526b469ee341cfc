#include "zvps/windows.h"

#include "bench.hpp"
#include "peers.hpp"

namespace bench {
namespace {

#define WINDOW(NAME, TYPE, operation, ...)                                                                             \
    Row<Zvp##TYPE>("Win" #NAME "_" #TYPE, 2, lengths)                                                                  \
        .with("ours", BENCH_CALL(zvpsWin##NAME##_##TYPE(__VA_ARGS__)))                                                 \
        .with("plain", BENCH_CALL(plain::operation(__VA_ARGS__)))
// Kaiser's beta is 8.
#define WINDOWS(TYPE)                                                                                                  \
    WINDOW(Hann, TYPE, hann, v.a, v.dst, v.n);                                                                         \
    WINDOW(Hamming, TYPE, hamming, v.a, v.dst, v.n);                                                                   \
    WINDOW(BlackmanStd, TYPE, blackman, v.a, v.dst, v.n);                                                              \
    WINDOW(Kaiser, TYPE, kaiser, v.a, v.dst, v.n, 16.0F / static_cast<float>(v.n))

} // namespace

void registerWindows() {
    const Lengths lengths = {64, 256, 1024, 65536};
    WINDOWS(16s);
    WINDOWS(32f);
    WINDOWS(64f);
}

} // namespace bench
