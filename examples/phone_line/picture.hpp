// The signal before and after, and both spectra, as a PNG.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "signal.hpp"
#include "spectrum.hpp"

struct Panel {
    std::string title;
    std::string note; // at the right of the title
    const Signal& signal;
    std::vector<bool> clipped; // marked in the picture; empty: nothing is
};

// Draws the panels one below the other, each with its own axes, and the spectra, of the same bands, below them.
void drawPicture(const std::filesystem::path& path, const std::string& heading, const std::vector<Panel>& panels,
                 const Spectrum& before, const Spectrum& after);
