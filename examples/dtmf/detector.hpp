// Finds dialled digits (dual-tone multi-frequency) in a recording.
#pragma once

#include "signal.hpp"

struct Digit {
    char key;
    double begin; // seconds
    double end;
};

// The keys' frequencies in Hz: one of the four rows' sounds together with one of the four columns'.
inline constexpr double kRows[4] = {697, 770, 852, 941};
inline constexpr double kColumns[4] = {1209, 1336, 1477, 1633};
inline constexpr char kKeys[4][5] = {"123A", "456B", "789C", "*0#D"};

std::vector<Digit> detectDigits(const Signal& signal);
