// The signal before and after as a PNG.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "signal.hpp"

struct Panel {
    std::string title;
    std::string note; // at the right of the title
    const Signal& signal;
    std::vector<bool> clipped; // marked in the picture; empty: nothing is
};

// Draws the panels one below the other, each with its own axes.
void drawPicture(const std::filesystem::path& path, const std::string& heading, const std::vector<Panel>& panels);
