// dtmf: which digits were dialled in a recording.
#include "../phone_line/recording.hpp"
#include "detector.hpp"
#include "generator.hpp"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace {
constexpr char kHelp[] = "usage: dtmf RECORDING.wav\n"
                         "       dtmf --generate OUT.wav [--digits DIGITS] [--speech SPEECH.wav]\n"
                         "Prints the digits dialled in a recording, or makes a recording of digits with noise and,\n"
                         "if given, speech between them. Digits are 0 to 9, *, # and A to D.\n";

struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct Options {
    std::string input;
    std::string generate;
    std::string digits = "0123456789*#ABCD";
    std::string speech;
    bool help = false;
};

Options parse(int argc, char** argv) {
    Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        const auto value = [&]() -> std::string {
            if (++i == argc) throw UsageError(argument + " lacks its value");
            return argv[i];
        };
        if (argument == "--help")
            options.help = true;
        else if (argument == "--generate")
            options.generate = value();
        else if (argument == "--digits")
            options.digits = value();
        else if (argument == "--speech")
            options.speech = value();
        else if (argument.rfind("--", 0) == 0)
            throw UsageError("there is no option " + argument);
        else if (options.input.empty())
            options.input = argument;
        else
            throw UsageError("only one recording can be given");
    }
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
    try {
        const Options options = parse(argc, argv);
        if (options.help)
            std::fputs(kHelp, stdout);
        else if (options.generate.empty())
            detect(options.input);
        else
            generate(options);
        return EXIT_SUCCESS;
    } catch (const UsageError& error) {
        std::fprintf(stderr, "dtmf: %s\n", error.what());
        return 2;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "dtmf: %s\n", error.what());
        return EXIT_FAILURE;
    }
}
