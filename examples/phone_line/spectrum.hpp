// How the power of a signal spreads over the band of a telephone.
#pragma once

#include "signal.hpp"

struct Spectrum {
    static constexpr int kBands = 32;

    double width = 0;          // of a band, in hertz; the first begins at 0
    std::vector<double> power; // of each band: 1 for a sine of full scale in its middle

    double centre(size_t band) const { return (static_cast<double>(band) + 0.5) * width; }
    double top() const { return kBands * width; }
    size_t strongest() const;
};

// From 0 to 4 kHz or half the rate, whichever is less. Averages over blocks with a Hann window that overlap by half; a
// shorter signal stands in the middle of one.
Spectrum measureSpectrum(const Signal& signal);
