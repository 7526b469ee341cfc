// Figures of a signal and of the difference between two.
#pragma once

#include <functional>
#include <string>

#include "signal.hpp"

struct Level {
    double peak; // largest magnitude, full scale is 1
    double rms;
    double mean;

    double crestFactor() const { return rms > 0 ? peak / rms : 1; }
};
Level measureLevel(const Signal& signal);

struct Noise {
    double ratio;        // signal to noise, as a quotient of powers; infinite without noise
    double largestError; // full scale is 1
};
// What `signal` adds to `reference`, over the samples that are not `excluded`; if that is empty, over all.
Noise measureNoise(const Signal& signal, const Signal& reference, const std::vector<bool>& excluded);

// The shortest of several runs, in seconds.
double timeBestRun(const std::function<void()>& run);

std::string amplitudeDecibels(double amplitude);
std::string powerDecibels(double ratio);
