// Command lines with options by name and one recording, and how programs end.
#pragma once

#include <functional>
#include <stdexcept>
#include <string>

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

class CommandLine {
  public:
    CommandLine(int argc, char** argv) : argc_(argc), argv_(argv) {}

    // Goes on to the next option, false at the end. What is no option is the recording.
    bool next();
    bool is(const char* option) const { return option_ == option; }

    // What follows the option.
    std::string value();
    double number(double lowest, double highest);
    [[noreturn]] void refuse() const;

    // Empty: none was given.
    const std::string& recording() const { return recording_; }

  private:
    int argc_;
    char** argv_;
    int position_ = 0;
    std::string option_;
    std::string recording_;
};

// The exit status: that of success, 2 for a wrong command line, 1 for any other failure, told in one line.
int runProgram(const char* name, const std::function<void()>& program);
