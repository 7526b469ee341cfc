#include "command_line.hpp"

#include <cstdio>
#include <cstdlib>
#include <exception>

bool CommandLine::next() {
    while (++position_ < argc_) {
        const std::string argument = argv_[position_];
        if (argument.rfind("--", 0) == 0) {
            option_ = argument;
            return true;
        }
        if (!recording_.empty()) throw UsageError("only one recording can be given");
        recording_ = argument;
    }
    return false;
}

std::string CommandLine::value() {
    if (++position_ >= argc_) throw UsageError(option_ + " lacks its value");
    return argv_[position_];
}

double CommandLine::number(double lowest, double highest) {
    const std::string text = value();
    char* end;
    const double value = std::strtod(text.c_str(), &end);
    if (text.empty() || *end != '\0' || !(value >= lowest && value <= highest))
        throw UsageError(option_ + " takes a number from " + std::to_string(static_cast<int>(lowest)) + " to " +
                         std::to_string(static_cast<int>(highest)) + ", not '" + text + "'");
    return value;
}

void CommandLine::refuse() const {
    throw UsageError("there is no option " + option_);
}

int runProgram(const char* name, const std::function<void()>& program) {
    try {
        program();
        return EXIT_SUCCESS;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "%s: %s\n", name, error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s: %s\n", name, error.what());
        return EXIT_FAILURE;
    }
}
