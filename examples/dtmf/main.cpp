// dtmf: which digits were dialled in a recording.
#include "command_line.hpp"
#include "detector.hpp"
#include "generator.hpp"
#include "recording.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace {
constexpr char kHelp[] = "usage: dtmf RECORDING.wav\n"
                         "       dtmf --generate OUT.wav [--digits DIGITS] [--speech SPEECH.wav]\n"
                         "Prints the digits dialled in a recording, or makes a recording of digits with noise and,\n"
                         "if given, speech between them. Digits are 0 to 9, *, # and A to D.\n";

struct Options {
    std::string input;
    std::string generate;
    std::string digits = "0123456789*#ABCD";
    std::string speech;
    bool help = false;
};

Options parse(int argc, char** argv) {
    Options options;
    CommandLine line(argc, argv);
    while (line.next()) {
        if (line.is("--help"))
            options.help = true;
        else if (line.is("--generate"))
            options.generate = line.value();
        else if (line.is("--digits"))
            options.digits = line.value();
        else if (line.is("--speech"))
            options.speech = line.value();
        else
            line.refuse();
    }
    options.input = line.recording();
    if (options.input.empty() == options.generate.empty() && !options.help)
        throw UsageError("give a recording or --generate; --help tells more");
    return options;
}

void generate(const Options& options) {
    const Signal speech = options.speech.empty() ? Signal{} : readRecording(options.speech, 0).signal;
    const Signal signal = generateDigits(options.digits, 8000, speech);
    std::vector<Zvp16s> samples;
    for (const Zvp32f sample : signal.samples)
        samples.push_back(static_cast<Zvp16s>(std::lround(std::clamp(sample, -1.0f, 0.9999f) * 32768)));
    writeRecording(options.generate, signal.rate, samples);
}

void detect(const std::string& path) {
    std::string number;
    for (const Digit& digit : detectDigits(readRecording(path, 0).signal)) {
        std::printf("%c  %.2f s to %.2f s\n", digit.key, digit.begin, digit.end);
        number += digit.key;
    }
    std::printf("dialled: %s\n", number.empty() ? "nothing" : number.c_str());
}
} // namespace

int main(int argc, char** argv) {
    return runProgram("dtmf", [&] {
        const Options options = parse(argc, argv);
        if (options.help)
            std::fputs(kHelp, stdout);
        else if (options.generate.empty())
            detect(options.input);
        else
            generate(options);
    });
}
