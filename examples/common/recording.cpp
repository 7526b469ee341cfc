#include "recording.hpp"

#include <sndfile.h>

#include <array>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <memory>

namespace {
namespace fs = std::filesystem;

using SoundFile = std::unique_ptr<SNDFILE, int (*)(SNDFILE*)>;

[[noreturn]] void refuse(const fs::path& path, const std::string& why) {
    throw std::runtime_error(path.string() + ": " + why);
}

uint32_t littleEndian32(const char* bytes) {
    uint32_t value = 0;
    for (int i = 3; i >= 0; --i)
        value = value << 8 | static_cast<unsigned char>(bytes[i]);
    return value;
}

// libsndfile reads what is left of a truncated file without a word, so compare the data's announced size with the
// file's.
bool isTruncated(const fs::path& path) {
    const uint64_t fileSize = fs::file_size(path);
    std::ifstream file(path, std::ios::binary);
    std::array<char, 12> header;
    if (!file.read(header.data(), 12) || std::string(header.data(), 4) != "RIFF") return false;
    uint64_t position = 12;
    while (file.seekg(static_cast<std::streamoff>(position)) && file.read(header.data(), 8)) {
        const uint32_t size = littleEndian32(header.data() + 4);
        position += 8;
        if (std::string(header.data(), 4) == "data") {
            const bool unknown = size == UINT32_MAX; // written to a pipe
            return !unknown && position + size > fileSize;
        }
        position += size + size % 2;
    }
    return false;
}

Signal mix(const std::vector<Signal>& channels) {
    Signal sum = channels.front();
    for (size_t c = 1; c < channels.size(); ++c)
        check(zvpsAdd_32f_I(channels[c].samples.data(), sum.samples.data(), sum.length()));
    check(zvpsMulC_32f_I(1.0f / static_cast<float>(channels.size()), sum.samples.data(), sum.length()));
    return sum;
}
} // namespace

Recording readRecording(const fs::path& path, int channel) {
    if (!fs::exists(path)) refuse(path, "no such file");
    if (!fs::is_regular_file(path)) refuse(path, "not a regular file");
    if (fs::file_size(path) == 0) refuse(path, "the file is empty");

    SF_INFO info{};
    const SoundFile file(sf_open(path.c_str(), SFM_READ, &info), sf_close);
    if (!file) refuse(path, std::string("cannot be read as a WAV: ") + sf_strerror(nullptr));
    const int container = info.format & SF_FORMAT_TYPEMASK;
    if (container != SF_FORMAT_WAV && container != SF_FORMAT_WAVEX) refuse(path, "not a WAV file");
    if (isTruncated(path)) refuse(path, "the file is truncated");
    if (info.frames < 1) refuse(path, "holds no samples");
    if (info.frames > INT_MAX / info.channels) refuse(path, "the recording is too long");
    if (channel > info.channels)
        refuse(path, "no channel " + std::to_string(channel) + ", the last is " + std::to_string(info.channels));

    const int length = static_cast<int>(info.frames);
    std::vector<float> frames(static_cast<size_t>(length) * static_cast<size_t>(info.channels));
    if (sf_readf_float(file.get(), frames.data(), length) != length) refuse(path, "the file is truncated");
    for (const float sample : frames)
        if (!std::isfinite(sample)) refuse(path, "holds samples that are no numbers");

    std::vector<Signal> channels(static_cast<size_t>(info.channels));
    for (size_t c = 0; c < channels.size(); ++c) {
        channels[c].rate = info.samplerate;
        channels[c].samples.reserve(static_cast<size_t>(length));
        for (size_t i = c; i < frames.size(); i += channels.size())
            channels[c].samples.push_back(frames[i]);
    }

    SF_FORMAT_INFO encoding{info.format & SF_FORMAT_SUBMASK, nullptr, nullptr};
    sf_command(nullptr, SFC_GET_FORMAT_INFO, &encoding, sizeof encoding);
    return {info.channels, encoding.name ? encoding.name : "unknown encoding",
            channel > 0 ? channels[static_cast<size_t>(channel - 1)] : mix(channels)};
}

std::string describe(const Recording& recording, int channel) {
    const Signal& signal = recording.signal;
    const char* const channels = recording.channels == 1 ? " channel" : " channels";
    const std::string taken = recording.channels == 1 ? ""
                              : channel > 0           ? ", number " + std::to_string(channel) + " taken"
                                                      : ", mixed";
    char duration[32];
    std::snprintf(duration, sizeof duration, "%.2f", signal.seconds());
    return recording.encoding + ", " + std::to_string(signal.rate) + " Hz, " + std::to_string(recording.channels) +
           channels + taken + ", " + duration + " s, " + std::to_string(signal.length()) + " samples";
}

void writeRecording(const fs::path& path, int rate, const std::vector<Zvp16s>& samples) {
    SF_INFO info{};
    info.samplerate = rate;
    info.channels = 1;
    info.format = SF_FORMAT_WAV | SF_FORMAT_PCM_16;
    SoundFile file(sf_open(path.c_str(), SFM_WRITE, &info), sf_close);
    if (!file) refuse(path, std::string("cannot be written: ") + sf_strerror(nullptr));
    const auto length = static_cast<sf_count_t>(samples.size());
    const bool complete = sf_writef_short(file.get(), samples.data(), length) == length;
    if (sf_close(file.release()) != 0 || !complete) refuse(path, "cannot be written in full");
}
