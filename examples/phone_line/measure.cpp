#include "measure.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <limits>

namespace {
std::string decibels(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.1f", std::round(value * 10) / 10 + 0.0); // + 0.0: no -0.0
    return text;
}
} // namespace

Level measureLevel(const Signal& signal) {
    Zvp32f peak, norm, mean;
    check(zvpsNorm_Inf_32f(signal.samples.data(), signal.length(), &peak));
    check(zvpsNorm_L2_32f(signal.samples.data(), signal.length(), &norm));
    check(zvpsMean_32f(signal.samples.data(), signal.length(), &mean, 0));
    return {peak, norm / std::sqrt(signal.length()), mean};
}

Noise measureNoise(const Signal& signal, const Signal& reference, const std::vector<bool>& excluded) {
    std::vector<Zvp32f> error(signal.samples.size());
    check(zvpsSub_32f(reference.samples.data(), signal.samples.data(), error.data(), signal.length()));
    double signalPower = 0, noisePower = 0, largest = 0;
    for (size_t i = 0; i < error.size(); ++i) {
        if (!excluded.empty() && excluded[i]) continue;
        const double wanted = reference.samples[i], unwanted = error[i];
        signalPower += wanted * wanted;
        noisePower += unwanted * unwanted;
        largest = std::max(largest, std::abs(unwanted));
    }
    return {noisePower > 0 ? signalPower / noisePower : std::numeric_limits<double>::infinity(), largest};
}

double timeBestRun(const std::function<void()>& run) {
    double best = std::numeric_limits<double>::infinity();
    for (int i = 0; i < 9; ++i) {
        const auto start = std::chrono::steady_clock::now();
        run();
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        best = std::min(best, taken.count());
    }
    return best;
}

std::string amplitudeDecibels(double amplitude) {
    return decibels(20 * std::log10(amplitude));
}

std::string powerDecibels(double ratio) {
    return decibels(10 * std::log10(ratio));
}
