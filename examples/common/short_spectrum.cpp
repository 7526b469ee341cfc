#include "short_spectrum.hpp"

#include <algorithm>

const std::vector<Window> kWindows = {
    {"hann", [](Zvp32f* samples, int length) { check(zvpsWinHann_32f_I(samples, length)); }},
    {"hamming", [](Zvp32f* samples, int length) { check(zvpsWinHamming_32f_I(samples, length)); }},
    {"blackman", [](Zvp32f* samples, int length) { check(zvpsWinBlackmanStd_32f_I(samples, length)); }},
    {"bartlett", [](Zvp32f* samples, int length) { check(zvpsWinBartlett_32f_I(samples, length)); }},
    {"kaiser",
     [](Zvp32f* samples, int length) {
         constexpr float kBeta = 10; // side lobes below -100 dB
         check(zvpsWinKaiser_32f_I(samples, length, 2 * kBeta / static_cast<float>(length - 1)));
     }},
    {"none", [](Zvp32f*, int) {}},
};

const Window* findWindow(const std::string& name) {
    const auto found =
        std::find_if(kWindows.begin(), kWindows.end(), [&](const Window& window) { return window.name == name; });
    return found == kWindows.end() ? nullptr : &*found;
}

ShortSpectrum::ShortSpectrum(int order, const Window& window)
    : window_(window), piece_(size_t{1} << order), power_(piece_.size() / 2 + 1) {
    std::fill(piece_.begin(), piece_.end(), 1.0f);
    window.apply(piece_.data(), length());
    double sum = 0, squares = 0;
    for (const double w : piece_) {
        sum += w;
        squares += w * w;
    }
    noiseBandwidth_ = squares * length() / (sum * sum);
    scale_ = static_cast<Zvp32f>(4 / (sum * sum)); // a sine's power is shared by two frequencies

    int size = 0;
    check(zvpsFFTInitAlloc_R_32f(&spec_, order, zvpFftScaleNone, 0));
    check(zvpsFFTGetBufSize_R_32f(spec_, &size));
    buffer_.resize(static_cast<size_t>(size));
}

ShortSpectrum::~ShortSpectrum() {
    zvpsFFTFree_R_32f(spec_);
}

const std::vector<Zvp32f>& ShortSpectrum::measure(const Signal& signal, int begin) {
    const int first = std::max(begin, 0), last = std::min(begin + length(), signal.length());
    std::fill(piece_.begin(), piece_.end(), 0.0f);
    if (first < last) check(zvpsCopy_32f(signal.samples.data() + first, piece_.data() + (first - begin), last - first));
    window_.apply(piece_.data(), length());
    check(zvpsFFTFwd_RToPack_32f_I(piece_.data(), spec_, buffer_.data()));
    // Times its own conjugate: the power in the real parts.
    check(zvpsMulPackConj_32f_I(piece_.data(), piece_.data(), length()));
    check(zvpsMulC_32f_I(scale_, piece_.data(), length()));
    power_.front() = piece_.front() / 2;
    power_.back() = piece_.back() / 2;
    for (size_t k = 1; k + 1 < power_.size(); ++k)
        power_[k] = piece_[2 * k - 1];
    return power_;
}
