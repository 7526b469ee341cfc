#include "line.hpp"

#include <cmath>
#include <limits>

namespace {
constexpr int kFullScaleBits = 15; // full scale is 2^15 in 16 bits
}

Gain Gain::fromDecibels(double decibels) {
    int exponent;
    const double fraction = std::frexp(std::pow(10.0, decibels / 20), &exponent); // 0.5 <= fraction < 1
    const long mantissa = std::lround(std::ldexp(fraction, 15));
    if (mantissa > 32767) return {16384, 14 - exponent}; // rounded up to the next power of two
    return {static_cast<Zvp16s>(mantissa), 15 - exponent};
}

double Gain::value() const {
    return std::ldexp(mantissa, -scale);
}

Line::Line(const Signal& sent, const LineSettings& settings)
    : sent_(sent), gain_(Gain::fromDecibels(settings.gain)), echo_(Gain::fromDecibels(settings.echo)),
      delay_(static_cast<int>(std::lround(settings.echoDelay * sent.rate))), digital_(sent.samples.size()),
      late_(static_cast<size_t>(echoLength())), mixed_(sent.samples.size()), received_(sent.samples.size()) {}

void Line::run() {
    const int length = sent_.length();
    // To 16 bits: rounded, and clipped beyond full scale.
    check(zvpsConvert_32f16s_Sfs(sent_.samples.data(), digital_.data(), length, zvpRndNear, -kFullScaleBits));
    // The echo: a late and quieter copy, mixed in with saturation.
    check(zvpsCopy_16s(digital_.data(), mixed_.data(), length));
    if (echoLength() > 0) {
        check(zvpsMulC_16s_Sfs(digital_.data(), echo_.mantissa, late_.data(), echoLength(), echo_.scale));
        check(zvpsAdd_16s_I(late_.data(), mixed_.data() + delay_, echoLength()));
    }
    // The amplifier: the product with an integer, scaled down again and saturated.
    check(zvpsMulC_16s_Sfs(mixed_.data(), gain_.mantissa, received_.data(), length, gain_.scale));
}

std::vector<bool> Line::clipped() const {
    using Limits = std::numeric_limits<Zvp16s>;
    std::vector<Zvp16s> lowest = digital_, highest = digital_;
    for (const auto* stage : {&mixed_, &received_}) {
        check(zvpsMinEvery_16s_I(stage->data(), lowest.data(), static_cast<Zvp32u>(lowest.size())));
        check(zvpsMaxEvery_16s_I(stage->data(), highest.data(), static_cast<Zvp32u>(highest.size())));
    }
    std::vector<bool> clipped(received_.size());
    for (size_t i = 0; i < clipped.size(); ++i)
        clipped[i] = lowest[i] == Limits::min() || highest[i] == Limits::max();
    return clipped;
}

Signal Line::reference() const {
    Signal result = sent_;
    if (echoLength() > 0)
        check(zvpsAddProductC_32f(sent_.samples.data(), static_cast<Zvp32f>(echo_.value()),
                                  result.samples.data() + delay_, echoLength()));
    check(zvpsMulC_32f_I(static_cast<Zvp32f>(gain_.value()), result.samples.data(), result.length()));
    return result;
}

std::vector<Zvp16s> companded(const std::vector<Zvp16s>& samples, const Law& law) {
    const int length = static_cast<int>(samples.size());
    std::vector<Zvp8u> codes(samples.size());
    std::vector<Zvp16s> result(samples.size());
    check(law.compress(samples.data(), codes.data(), length));
    check(law.expand(codes.data(), result.data(), length));
    return result;
}

Signal toSignal(const std::vector<Zvp16s>& samples, int rate) {
    Signal signal{rate, std::vector<Zvp32f>(samples.size())};
    check(zvpsConvert_16s32f_Sfs(samples.data(), signal.samples.data(), signal.length(), kFullScaleBits));
    return signal;
}
