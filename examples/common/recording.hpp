// Recordings in, recordings out, through libsndfile.
#pragma once

#include <filesystem>
#include <string>

#include "signal.hpp"

struct Recording {
    int channels = 0;
    std::string encoding; // for example "Signed 16 bit PCM"
    Signal signal;        // one channel, or all of them mixed
};

// Reads a whole WAV file. `channel` counts from 1; 0 mixes all channels. Throws when the file is missing, empty,
// truncated, not a WAV or holds samples that are no numbers.
Recording readRecording(const std::filesystem::path& path, int channel);

// The recording in words: encoding, rate, channels and which of them was taken, duration.
std::string describe(const Recording& recording, int channel);

// Writes 16-bit samples as a WAV with one channel.
void writeRecording(const std::filesystem::path& path, int rate, const std::vector<Zvp16s>& samples);
