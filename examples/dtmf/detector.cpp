#include "detector.hpp"

#include <algorithm>
#include <array>

namespace {
// A frame tells the rows' frequencies, 73 Hz apart, from each other; frames follow at a quarter of its length.
constexpr double kFrameSeconds = 0.0256;
constexpr int kHopsPerFrame = 4;

constexpr double kLowestLevel = 1e-5;  // of a frame's mean square: -50 dB
constexpr double kLeastShare = 0.75;   // of a frame's energy that the two tones hold: speech spreads it wider
constexpr double kLeastLead = 6;       // of a tone over the others of its group, in energy
constexpr double kMostRowTwist = 6.3;  // of the row's energy over the column's: 8 dB
constexpr double kMostColumnTwist = 4; // the other way round: 6 dB
constexpr int kLeastFrames = 4;        // with hops of 6.4 ms: 40 ms of tone hold so many whole frames with one to spare

// The part of the frame's energy at each frequency, two to a call.
std::array<double, 4> shares(const Zvp32f* frame, int length, int rate, const double (&frequencies)[4], double energy) {
    std::array<double, 4> result;
    for (size_t i = 0; i < 4; i += 2) {
        const Zvp32f relative[2] = {static_cast<Zvp32f>(frequencies[i] / rate),
                                    static_cast<Zvp32f>(frequencies[i + 1] / rate)};
        Zvp32fc value[2];
        check(zvpsGoertzTwo_32f(frame, length, value, relative));
        for (size_t k = 0; k < 2; ++k) {
            const double re = value[k].re, im = value[k].im;
            result[i + k] = 2 * (re * re + im * im) / length / energy;
        }
    }
    return result;
}

size_t strongest(const std::array<double, 4>& group) {
    return static_cast<size_t>(std::max_element(group.begin(), group.end()) - group.begin());
}

bool leads(const std::array<double, 4>& group, size_t best) {
    for (size_t i = 0; i < group.size(); ++i)
        if (i != best && group[i] * kLeastLead > group[best]) return false;
    return true;
}

// The key that sounds in a frame, 0 for none.
char keyOf(const Zvp32f* frame, int length, int rate) {
    std::vector<Zvp32f> squares(static_cast<size_t>(length));
    check(zvpsMul_32f(frame, frame, squares.data(), length));
    double energy = 0;
    for (const Zvp32f square : squares)
        energy += static_cast<double>(square);
    if (energy < kLowestLevel * length) return 0;

    const auto rows = shares(frame, length, rate, kRows, energy);
    const auto columns = shares(frame, length, rate, kColumns, energy);
    const size_t row = strongest(rows), column = strongest(columns);
    const bool isPair = rows[row] + columns[column] >= kLeastShare && leads(rows, row) && leads(columns, column);
    const bool isLevel =
        rows[row] <= kMostRowTwist * columns[column] && columns[column] <= kMostColumnTwist * rows[row];
    return isPair && isLevel ? kKeys[row][column] : '\0';
}
} // namespace

std::vector<Digit> detectDigits(const Signal& signal) {
    if (signal.rate < 4000) throw std::runtime_error("the tones need at least 4000 samples a second");
    const int length = static_cast<int>(kFrameSeconds * signal.rate);
    const int hop = length / kHopsPerFrame;
    std::vector<Digit> digits;
    char last = 0;
    int first = 0, frames = 0;
    const auto finish = [&] {
        if (last != 0 && frames >= kLeastFrames)
            digits.push_back({last, static_cast<double>(first) / signal.rate,
                              static_cast<double>(first + (frames - 1) * hop + length) / signal.rate});
    };
    for (int begin = 0; begin <= signal.length() - length; begin += hop) {
        const char key = keyOf(signal.samples.data() + begin, length, signal.rate);
        if (key != last) {
            finish();
            last = key;
            first = begin;
            frames = 0;
        }
        ++frames;
    }
    finish();
    return digits;
}
