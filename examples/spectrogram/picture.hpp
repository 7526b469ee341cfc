// A spectrogram as a PNG.
#pragma once

#include <filesystem>

#include "spectrogram.hpp"

// The number of columns that a picture shows.
extern const int kPictureColumns;

// Frequency upwards from 0 to half the rate, time to the right. Colours span `range` decibels below `top`.
void drawPicture(const std::filesystem::path& path, const std::string& heading, const std::string& note,
                 const Spectrogram& spectrogram, const Signal& signal, double top, double range);
