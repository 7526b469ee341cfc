#include "spectrogram.hpp"

#include <algorithm>
#include <cmath>

Spectrogram::Spectrogram(const Signal& signal, int order, const Window& window, int columns,
                         const std::function<void(double)>& progress)
    : bins_((size_t{1} << order) / 2 + 1), power_(bins_ * static_cast<size_t>(columns)) {
    ShortSpectrum piece(order, window);
    const int length = piece.length(), half = length / 2;
    const double stretch = static_cast<double>(signal.length()) / columns;
    const int pieces = std::max(1, static_cast<int>(std::ceil(stretch / half)));
    const Zvp32f share = 1.0f / static_cast<Zvp32f>(pieces);
    size_t strongest = 0;
    for (int column = 0; column < columns; ++column) {
        Zvp32f* const mean = power_.data() + static_cast<size_t>(column) * bins_;
        for (int i = 0; i < pieces; ++i) {
            const double middle = (column + (i + 0.5) / pieces) * stretch;
            const std::vector<Zvp32f>& power = piece.measure(signal, static_cast<int>(middle) - half);
            check(zvpsAddProductC_32f(power.data(), share, mean, static_cast<int>(bins_)));
        }
        const auto peak = static_cast<size_t>(std::max_element(mean, mean + bins_) - power_.data());
        if (power_[peak] > power_[strongest]) strongest = peak;
        progress((column + 1.0) / columns);
    }
    transforms_ = static_cast<long>(pieces) * columns;
    const size_t column = strongest / bins_;
    strongest_ = {(static_cast<double>(column) + 0.5) * stretch / signal.rate,
                  static_cast<double>(strongest % bins_) * signal.rate / length, power_[strongest]};
}
