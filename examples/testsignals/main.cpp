// testsignals: a recording of tones, a sweep and noise, for trying out filters, lines and loudspeakers.
#include "command_line.hpp"
#include "recording.hpp"
#include "signals.hpp"

#include <cmath>
#include <cstdio>

namespace {
constexpr char kHelp[] = "usage: testsignals OUT.wav [options]\n"
                         "Writes the sum of the signals that the options name, by default a tone of 1000 Hz.\n"
                         "  --level DB     of the signals named behind it, below full scale; -12 at first\n"
                         "  --tone HZ      a sine; may be given several times\n"
                         "  --sweep        a sine that rises from 0 to half the rate\n"
                         "  --noise        Gaussian noise; its level is the root mean square\n"
                         "  --uniform      the same, evenly distributed\n"
                         "  --seed N       of the noise named behind it; 1 at first\n"
                         "  --seconds S    how long; 1 at first\n"
                         "  --rate HZ      samples per second; 48000 at first\n"
                         "The length and the rate go before the signals.\n";

struct Request {
    bool isHelp = false;
    std::string output;
    Signal signal;
};

Request parse(int argc, char** argv) {
    Request request;
    double level = -12, seconds = 1;
    Zvp32u seed = 1;
    Signal& signal = request.signal;
    signal.rate = 48000;
    // The samples, once the length is known.
    const auto begun = [&]() -> Signal& {
        if (signal.samples.empty()) signal.samples.resize(static_cast<size_t>(std::lround(seconds * signal.rate)));
        if (signal.samples.empty()) throw UsageError("that is shorter than a sample");
        return signal;
    };
    CommandLine line(argc, argv);
    const auto beforeSignals = [&] {
        if (!signal.samples.empty()) throw UsageError("the length and the rate go before the signals");
    };
    while (line.next()) {
        if (line.is("--help")) {
            request.isHelp = true;
        } else if (line.is("--level")) {
            level = line.number(-120, 0);
        } else if (line.is("--seed")) {
            seed = static_cast<Zvp32u>(line.number(0, 1e9));
        } else if (line.is("--seconds")) {
            beforeSignals();
            seconds = line.number(0, 3600);
        } else if (line.is("--rate")) {
            beforeSignals();
            signal.rate = static_cast<int>(line.number(1000, 192000));
        } else if (line.is("--tone")) {
            // Below half the rate.
            addTone(begun(), {line.number(0, signal.rate / 2 - 1), level});
        } else if (line.is("--sweep")) {
            addSweep(begun(), {level});
        } else if (line.is("--noise") || line.is("--uniform")) {
            addNoise(begun(), {line.is("--noise"), level, seed});
        } else {
            line.refuse();
        }
    }
    request.output = line.recording();
    if (request.isHelp) return request;
    if (request.output.empty()) throw UsageError("give a file to write; --help tells more");
    if (signal.samples.empty()) addTone(begun(), {1000, level});
    return request;
}
} // namespace

int main(int argc, char** argv) {
    return runProgram("testsignals", [&] {
        const Request request = parse(argc, argv);
        if (request.isHelp) {
            std::fputs(kHelp, stdout);
            return;
        }
        // Full scale is 2^15; what exceeds it is clipped.
        std::vector<Zvp16s> samples(request.signal.samples.size());
        check(zvpsConvert_32f16s_Sfs(request.signal.samples.data(), samples.data(), request.signal.length(), zvpRndNear,
                                     -15));
        writeRecording(request.output, request.signal.rate, samples);
    });
}
