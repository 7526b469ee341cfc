// How the spectrum of a signal changes.
#pragma once

#include "short_spectrum.hpp"

#include <functional>

class Spectrogram {
  public:
    // Cuts the signal into `columns` equal stretches of time. Pieces of 2^order samples in the middle of a stretch, or
    // if it is long, several of them that overlap by half, make a column. `progress` is told the share that is done.
    Spectrogram(const Signal& signal, int order, const Window& window, int columns,
                const std::function<void(double)>& progress);

    int columns() const { return static_cast<int>(power_.size() / bins_); }
    int bins() const { return static_cast<int>(bins_); }
    long transforms() const { return transforms_; }

    // Of a sine of full scale: 1.
    Zvp32f power(int column, int bin) const {
        return power_[static_cast<size_t>(column) * bins_ + static_cast<size_t>(bin)];
    }

    struct Peak {
        double time;      // seconds
        double frequency; // hertz
        double power;
    };
    Peak strongest() const { return strongest_; }

  private:
    size_t bins_;
    std::vector<Zvp32f> power_;
    long transforms_ = 0;
    Peak strongest_{};
};
