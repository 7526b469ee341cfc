#include "zvps/iir.h"

#include "bench.hpp"
#include "peers.hpp"

#include <liquid/liquid.h>

#include <memory>

// Rows IIR_<type>:biquads<sections> and IIR_<type>:order<order>: blocks of LENGTH samples. Taps are normalised.
namespace bench {
namespace {

const Lengths kBlocks = {1, 64, 250, 256, 1024, 4096};

template <class T>
std::vector<T> sectionTaps(int sections) {
    std::vector<T> taps;
    for (int s = 0; s < sections; ++s) {
        const double radius = 0.8 + 0.01 * s;
        for (const double tap : {0.2, 0.3, 0.2, 1.0, -1.2 * radius, radius * radius})
            taps.push_back(static_cast<T>(tap));
    }
    return taps;
}
template <class T>
std::vector<T> orderTaps(int order) {
    std::vector<T> taps;
    for (int k = 0; k <= order; ++k)
        taps.push_back(static_cast<T>(0.5 / (k + 1)));
    taps.push_back(1);
    for (int k = 1; k <= order; ++k)
        taps.push_back(static_cast<T>((k % 2 == 0 ? 0.8 : -0.8) / order));
    return taps;
}

// States live as long as the program.
#define OURS(TYPE)                                                                                                     \
    ZvpsIIRState_##TYPE* state(bool isOrder, const std::vector<Zvp##TYPE>& taps, int n) {                              \
        ZvpsIIRState_##TYPE* result = nullptr;                                                                         \
        const ZvpStatus status = isOrder ? zvpsIIRInitAlloc_##TYPE(&result, taps.data(), n, nullptr)                   \
                                         : zvpsIIRInitAlloc_BiQuad_##TYPE(&result, taps.data(), n, nullptr);           \
        if (status != zvpStsOk) throw std::bad_alloc();                                                                \
        return result;                                                                                                 \
    }                                                                                                                  \
    void filter(const Vectors<Zvp##TYPE>& v, ZvpsIIRState_##TYPE* s) {                                                 \
        zvpsIIR_##TYPE(v.a, v.dst, v.n, s);                                                                            \
    }
OURS(32f)
OURS(64f)
#undef OURS

iirfilt_rrrf liquidFilter(bool isOrder, const std::vector<float>& taps, int n) {
    const auto count = static_cast<unsigned>(n);
    std::vector<float> b, a;
    const size_t group = isOrder ? count + 1 : 3;
    for (size_t i = 0; i < taps.size(); ++i)
        (i / group % 2 == 0 ? b : a).push_back(taps[i]);
    return isOrder ? iirfilt_rrrf_create(b.data(), count + 1, a.data(), count + 1)
                   : iirfilt_rrrf_create_sos(b.data(), a.data(), count);
}

template <class T>
void row(const char* type, bool isOrder, int n) {
    const auto taps = isOrder ? orderTaps<T>(n) : sectionTaps<T>(n);
    Row<T> row(std::string("IIR_") + type + (isOrder ? ":order" : ":biquads") + std::to_string(n), 2, kBlocks);
    auto* const ours = state(isOrder, taps, n);
    row.with("ours", [ours](const auto& v) { filter(v, ours); });
    const auto delay = std::make_shared<std::vector<T>>(2 * static_cast<size_t>(n) + 1);
    row.with("plain", [=](const auto& v) {
        if (isOrder) {
            plain::recursive(v.a, v.dst, v.n, taps.data(), n, delay->data());
        } else if (n == 1) {
            plain::biquad(v.a, v.dst, v.n, taps.data(), delay->data());
        } else {
            plain::biquads(v.a, v.dst, v.n, taps.data(), n, delay->data());
        }
    });
    if constexpr (std::is_same_v<T, Zvp32f>) {
        iirfilt_rrrf const liquid = liquidFilter(isOrder, taps, n);
        row.with("liquid", [liquid](const auto& v) {
            iirfilt_rrrf_execute_block(liquid, const_cast<float*>(v.a), count(v), v.dst);
        });
    }
}

} // namespace

void registerIir() {
    for (const int sections : {1, 2, 4, 8, 16}) {
        row<Zvp32f>("32f", false, sections);
        row<Zvp64f>("64f", false, sections);
    }
    for (const int order : {1, 2, 4, 8, 16, 32, 64}) {
        row<Zvp32f>("32f", true, order);
        row<Zvp64f>("64f", true, order);
    }
}

} // namespace bench
