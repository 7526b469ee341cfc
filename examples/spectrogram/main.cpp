// spectrogram: how the spectrum of a recording changes, as a picture.
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>

#include "command_line.hpp"
#include "output_file.hpp"
#include "picture.hpp"
#include "recording.hpp"

namespace {
constexpr char kHelp[] = "usage: spectrogram [OPTION...] RECORDING.wav\n"
                         "  --channel N      take channel N, the first is 1 (all channels mixed)\n"
                         "  --size N         samples a spectrum, a power of two from 64 to 65536 (1024)\n"
                         "  --window NAME    hann, hamming, blackman, bartlett, kaiser or none (hann)\n"
                         "  --range DB       decibels from the darkest to the lightest colour, 10 to 200 (90)\n"
                         "  --output NAME    write NAME.png (spectrogram)\n";

struct Options {
    std::string input;
    std::string output = "spectrogram";
    const Window* window = &kWindows.front();
    int channel = 0; // mixed
    int order = 10;
    double range = 90; // decibels
    bool help = false;
};

int orderOf(double size) {
    const double order = std::log2(size);
    if (order != std::floor(order)) throw UsageError("--size takes a power of two");
    return static_cast<int>(order);
}

Options parse(int argc, char** argv) {
    Options options;
    CommandLine line(argc, argv);
    while (line.next()) {
        if (line.is("--help")) {
            options.help = true;
        } else if (line.is("--channel")) {
            options.channel = static_cast<int>(line.number(1, 1024));
        } else if (line.is("--size")) {
            options.order = orderOf(line.number(64, 65536));
        } else if (line.is("--window")) {
            const std::string name = line.value();
            options.window = findWindow(name);
            if (options.window == nullptr) throw UsageError("there is no window '" + name + "'; --help lists them");
        } else if (line.is("--range")) {
            options.range = line.number(10, 200);
        } else if (line.is("--output")) {
            options.output = line.value();
        } else {
            line.refuse();
        }
    }
    options.input = line.recording();
    if (options.input.empty() && !options.help) throw UsageError("no recording given; --help lists the options");
    return options;
}

// A line on the terminal that is renewed now and then once the work has taken a while, and gone in the end.
class ProgressLine {
  public:
    ~ProgressLine() {
        if (isShown_) std::fputs("\r\033[K", stderr);
    }
    void operator()(double share) {
        using namespace std::chrono_literals;
        const auto now = std::chrono::steady_clock::now();
        if (!isTerminal_ || now < next_) return;
        next_ = now + 100ms;
        isShown_ = true;
        std::fprintf(stderr, "\rspectrogram: %3.0f %%", 100 * share);
    }

  private:
    bool isTerminal_ = isatty(STDERR_FILENO) == 1;
    bool isShown_ = false;
    std::chrono::steady_clock::time_point next_ = std::chrono::steady_clock::now() + std::chrono::milliseconds(500);
};

void run(const Options& options) {
    const std::string pngName = options.output + ".png";
    const Recording recording = readRecording(options.input, options.channel);
    const Signal& signal = recording.signal;

    const auto start = std::chrono::steady_clock::now();
    const Spectrogram spectrogram = [&] {
        ProgressLine progress;
        return Spectrogram(signal, options.order, *options.window, kPictureColumns, std::ref(progress));
    }();
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;

    const Spectrogram::Peak peak = spectrogram.strongest();
    const double level = 10 * std::log10(peak.power);
    // The lightest colour at the next ten decibels above the strongest tone; silence as full scale.
    const double top = peak.power > 0 ? 10 * std::ceil(level / 10) : 0;
    const int size = 1 << options.order;
    OutputFile png(pngName);
    drawPicture(png.temporary(), "spectrogram: " + std::filesystem::path(options.input).filename().string(),
                std::to_string(size) + " samples, window " + options.window->name, spectrogram, signal, top,
                options.range);
    png.commit();

    std::printf("recording  %s\n", options.input.c_str());
    std::printf("           %s\n", describe(recording, options.channel).c_str());
    std::printf("spectra    of %d samples (%.1f ms, %.1f Hz a bin), window %s\n", size, 1e3 * size / signal.rate,
                static_cast<double>(signal.rate) / size, options.window->name);
    if (peak.power > 0)
        std::printf("strongest  %.1f dBFS at %.0f Hz, after %.2f s\n", level, peak.frequency, peak.time);
    else
        std::printf("strongest  silence throughout\n");
    std::printf("speed      %.1f ms for %ld spectra\n", taken.count() * 1e3, spectrogram.transforms());
    std::printf("written    %s\n", pngName.c_str());
}
} // namespace

int main(int argc, char** argv) {
    return runProgram("spectrogram", [&] {
        const Options options = parse(argc, argv);
        if (options.help)
            std::fputs(kHelp, stdout);
        else
            run(options);
    });
}
