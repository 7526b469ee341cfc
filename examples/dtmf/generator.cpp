#include "generator.hpp"

#include "detector.hpp"

#include <algorithm>
#include <cmath>
#include <random>

namespace {
constexpr double kPi = 3.14159265358979323846;
constexpr double kToneSeconds = 0.07;
constexpr double kPauseSeconds = 0.08;
constexpr double kNoise = 0.002;

void addTone(std::vector<Zvp32f>& samples, size_t length, int rate, double frequency, double amplitude) {
    for (size_t i = 0; i < length; ++i)
        samples[samples.size() - length + i] +=
            static_cast<Zvp32f>(amplitude * std::sin(2 * kPi * frequency / rate * static_cast<double>(i)));
}

// A quarter of a second of the speech, from ever later places.
void appendSpeech(std::vector<Zvp32f>& samples, int rate, const Signal& speech, size_t turn) {
    const double step = static_cast<double>(speech.rate) / rate;
    const auto length = static_cast<size_t>(rate / 4);
    for (size_t i = 0; i < length; ++i) {
        const double place = static_cast<double>(turn * length + i) * step;
        samples.push_back(0.5f * speech.samples[static_cast<size_t>(place) % speech.samples.size()]);
    }
}
} // namespace

Signal generateDigits(const std::string& digits, int rate, const Signal& speech) {
    Signal result{rate, {}};
    const auto pause = static_cast<size_t>(kPauseSeconds * rate), tone = static_cast<size_t>(kToneSeconds * rate);
    std::vector<Zvp32f>& samples = result.samples;
    samples.resize(pause);
    for (size_t d = 0; d < digits.size(); ++d) {
        size_t row = 0, column = std::string::npos;
        while (row < 4 && (column = std::string(kKeys[row]).find(digits[d])) == std::string::npos)
            ++row;
        if (row == 4) throw std::runtime_error(std::string("there is no key '") + digits[d] + "'");
        // From -8 to -26 dB, the column's tone 3 dB above to 3 dB below the row's.
        const double level = 0.4 * std::pow(10, -0.3 * static_cast<double>(d % 4));
        const double twist = std::pow(10, 0.15 * (1 - static_cast<double>(d % 3)));
        samples.resize(samples.size() + tone);
        addTone(samples, tone, rate, kRows[row], level);
        addTone(samples, tone, rate, kColumns[column], level * twist);
        samples.resize(samples.size() + pause);
        if (!speech.samples.empty()) {
            appendSpeech(samples, rate, speech, d);
            samples.resize(samples.size() + pause);
        }
    }
    std::mt19937 generator(1);
    std::vector<Zvp32f> noise(samples.size());
    for (Zvp32f& sample : noise)
        sample = static_cast<Zvp32f>(kNoise * (static_cast<double>(generator()) * 0x1p-31 - 1));
    check(zvpsAdd_32f_I(noise.data(), samples.data(), result.length()));
    return result;
}
