// phone_line: what a telephone line does to a speech recording.
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <optional>
#include <string>

#include "band.hpp"
#include "command_line.hpp"
#include "line.hpp"
#include "measure.hpp"
#include "output_file.hpp"
#include "picture.hpp"
#include "recording.hpp"
#include "spectrum.hpp"

namespace {
constexpr char kHelp[] = "usage: phone_line [OPTION...] RECORDING.wav\n"
                         "  --channel N      take channel N, the first is 1 (all channels mixed)\n"
                         "  --band           pass only 300 to 3400 Hz, at the network's 8000 Hz where the rate allows\n"
                         "  --gain DB        amplification at the receiver, -60 to 60 (10)\n"
                         "  --echo DB        level of the line's echo, -60 to 0 (-14)\n"
                         "  --output NAME    write NAME.wav and NAME.png (phone_line)\n";

struct Options {
    std::string input;
    std::string output = "phone_line";
    int channel = 0; // mixed
    bool band = false;
    LineSettings line;
    bool help = false;
};

Options parse(int argc, char** argv) {
    Options options;
    CommandLine line(argc, argv);
    while (line.next()) {
        if (line.is("--help"))
            options.help = true;
        else if (line.is("--channel"))
            options.channel = static_cast<int>(line.number(1, 1024));
        else if (line.is("--band"))
            options.band = true;
        else if (line.is("--gain"))
            options.line.gain = line.number(-60, 60);
        else if (line.is("--echo"))
            options.line.echo = line.number(-60, 0);
        else if (line.is("--output"))
            options.output = line.value();
        else
            line.refuse();
    }
    options.input = line.recording();
    if (options.input.empty() && !options.help) throw UsageError("no recording given; --help lists the options");
    return options;
}

std::string codingText(const Line& line, const Law& law, int rate) {
    const Signal decoded = toSignal(companded(line.digital(), law), rate);
    const Noise noise = measureNoise(decoded, toSignal(line.digital(), rate), {});
    return std::string(law.name) + " " + powerDecibels(noise.ratio) + " dB";
}

std::string bandText(const TelephoneBand& band, int rate) {
    std::string text = "band       300 to 3400 Hz by " + std::to_string(band.taps()) + " taps, one sample in " +
                       std::to_string(band.every()) + " kept: " + std::to_string(rate) + " Hz\n";
    const char* before = "           response";
    for (const int frequency : {100, 300, 500, 1000, 3000, 3400, 3800}) {
        text += before + (" " + amplitudeDecibels(band.response(frequency))) + " dB at " + std::to_string(frequency);
        before = ",";
    }
    return text + " Hz\n";
}

std::string strongestText(const Spectrum& spectrum) {
    const size_t band = spectrum.strongest();
    return std::to_string(std::lround(spectrum.centre(band))) + " Hz (" + powerDecibels(spectrum.power[band]) +
           " dBFS)";
}

std::string levelText(const Level& level) {
    char mean[32];
    std::snprintf(mean, sizeof mean, "%.4f", std::round(level.mean * 1e4) / 1e4 + 0.0); // + 0.0: no -0.0
    return "peak " + amplitudeDecibels(level.peak) + " dBFS, level " + amplitudeDecibels(level.rms) +
           " dBFS, crest factor " + amplitudeDecibels(level.crestFactor()) + " dB, mean " + mean;
}

void run(const Options& options) {
    const std::string wavName = options.output + ".wav", pngName = options.output + ".png";
    const Recording recording = readRecording(options.input, options.channel);
    std::error_code missing;
    if (std::filesystem::equivalent(options.input, wavName, missing))
        throw std::runtime_error(wavName + ": would replace the recording; choose another --output");

    std::optional<TelephoneBand> band;
    if (options.band) band.emplace(recording.signal.rate);
    const Signal sent = band ? band->pass(recording.signal) : recording.signal;
    Line line(sent, options.line);
    const double seconds = timeBestRun([&] { line.run(); });

    const Signal received = toSignal(line.received(), sent.rate);
    const Signal reference = line.reference();
    const std::vector<bool> clipped = line.clipped();
    const auto clippedCount = std::count(clipped.begin(), clipped.end(), true);
    const Level before = measureLevel(sent), after = measureLevel(received);
    const Noise noise = measureNoise(received, reference, clipped);
    const Spectrum spectrumBefore = measureSpectrum(sent), spectrumAfter = measureSpectrum(received);
    const std::string clippedText =
        std::to_string(clippedCount) + (clippedCount == 1 ? " sample" : " samples") + " clipped";

    OutputFile wav(wavName), png(pngName);
    writeRecording(wav.temporary(), sent.rate, line.received());
    drawPicture(png.temporary(), "phone_line: " + std::filesystem::path(options.input).filename().string(),
                {{"before", "peak " + amplitudeDecibels(before.peak) + " dBFS", sent, {}},
                 {"after", "peak " + amplitudeDecibels(after.peak) + " dBFS, " + clippedText, received, clipped}},
                spectrumBefore, spectrumAfter);
    wav.commit();
    png.commit();

    std::printf("recording  %s\n", options.input.c_str());
    std::printf("           %s\n", describe(recording, options.channel).c_str());
    if (band) std::fputs(bandText(*band, sent.rate).c_str(), stdout);
    std::printf("before     %s\n", levelText(before).c_str());
    std::printf("line       echo %.1f dB after %.0f ms (x %d / 2^%d), then gain %.1f dB (x %d / 2^%d), in 16 bits\n",
                options.line.echo, options.line.echoDelay * 1000, line.echo().mantissa, line.echo().scale,
                options.line.gain, line.gain().mantissa, line.gain().scale);
    std::printf("after      %s,\n           %s (%.2f %%)\n", levelText(after).c_str(), clippedText.c_str(),
                100.0 * static_cast<double>(clippedCount) / sent.length());
    std::printf("accuracy   16 bits against floating point: signal to noise %s dB where nothing is clipped,\n"
                "           largest error %.2f of a 16-bit step\n",
                powerDecibels(noise.ratio).c_str(), noise.largestError * 32768);
    std::printf("coding     in 8 bits, signal to noise: %s, %s\n", codingText(line, kMuLaw, sent.rate).c_str(),
                codingText(line, kALaw, sent.rate).c_str());
    std::printf("spectrum   strongest at %s before, %s after\n", strongestText(spectrumBefore).c_str(),
                strongestText(spectrumAfter).c_str());
    std::printf("speed      %.3f ms, %.0f million samples a second (the best of several runs)\n", seconds * 1e3,
                sent.length() / seconds / 1e6);
    std::printf("written    %s\n           %s\n", wavName.c_str(), pngName.c_str());
}
} // namespace

int main(int argc, char** argv) {
    return runProgram("phone_line", [&] {
        const Options options = parse(argc, argv);
        if (options.help)
            std::fputs(kHelp, stdout);
        else
            run(options);
    });
}
