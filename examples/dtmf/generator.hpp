// Makes a recording of dialled digits.
#pragma once

#include "signal.hpp"

#include <string>

// The digits at varying levels, with noise over everything and, where given, `speech` between the digits.
Signal generateDigits(const std::string& digits, int rate, const Signal& speech);
