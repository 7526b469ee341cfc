// What the parts of the example hand to each other.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

#include "zvps.h"

// One channel of sound; full scale is 1.
struct Signal {
    int rate = 0; // samples per second
    std::vector<Zvp32f> samples;

    int length() const { return static_cast<int>(samples.size()); }
    double seconds() const { return static_cast<double>(samples.size()) / rate; }
};

// Every call of the library goes through here: none is expected to fail or to warn.
inline void check(ZvpStatus status) {
    if (status != zvpStsOk) throw std::runtime_error(std::string("zvps: ") + zvpsStatusText(status));
}
