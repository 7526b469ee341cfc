#include "canvas.hpp"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <stdexcept>

#include "font.hpp"

Canvas::Canvas(int width, int height)
    : width_(width), height_(height), pixels_(static_cast<size_t>(width) * static_cast<size_t>(height), kPaper) {}

void Canvas::fill(int left, int top, int right, int bottom, Colour colour) {
    for (int y = top; y < bottom; ++y)
        for (int x = left; x < right; ++x)
            at(x, y) = colour;
}

void Canvas::column(int x, double top, double bottom, Colour colour) {
    for (int y = static_cast<int>(std::floor(top)); y < bottom; ++y) {
        const double cover = std::min(bottom, y + 1.0) - std::max(top, static_cast<double>(y));
        const auto blend = [cover](uint8_t below, uint8_t above) {
            return static_cast<uint8_t>(std::lround(below + cover * (above - below)));
        };
        Colour& pixel = at(x, y);
        pixel = {blend(pixel.red, colour.red), blend(pixel.green, colour.green), blend(pixel.blue, colour.blue)};
    }
}

int Canvas::textWidth(const std::string& text, int scale) {
    return static_cast<int>(text.size()) * (kGlyphWidth + 1) * scale - scale;
}

void Canvas::text(int x, int y, const std::string& text, Colour colour, int scale) {
    for (const char character : text) {
        const bool printable = character >= ' ' && character <= '~';
        const auto& glyph = kGlyphs[static_cast<size_t>((printable ? character : '?') - ' ')];
        for (int column = 0; column < kGlyphWidth; ++column)
            for (int row = 0; row < kGlyphHeight; ++row)
                if (glyph[static_cast<size_t>(column)] >> row & 1)
                    fill(x + column * scale, y + row * scale, x + (column + 1) * scale, y + (row + 1) * scale, colour);
        x += (kGlyphWidth + 1) * scale;
    }
}

void Canvas::write(const std::filesystem::path& path) const {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width_);
    image.height = static_cast<png_uint_32>(height_);
    image.format = PNG_FORMAT_RGB;
    if (!png_image_write_to_file(&image, path.c_str(), 0, pixels_.data(), 0, nullptr))
        throw std::runtime_error(path.string() + ": cannot be written: " + image.message);
}

Colour& Canvas::at(int x, int y) {
    static Colour outside;
    if (x < 0 || x >= width_ || y < 0 || y >= height_) return outside;
    return pixels_[static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x)];
}

std::string number(double value, int decimals) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

AxisMarks::AxisMarks(double span) {
    const double rough = span / 10, power = std::pow(10, std::floor(std::log10(rough)));
    step = 10 * power;
    for (const double factor : {5.0, 2.0, 1.0})
        if (factor * power >= rough) step = factor * power;
    decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
}

double Axes::inside(double y) const {
    return std::clamp<double>(y, top_, bottom_);
}

void Axes::background() {
    canvas_.fill(left_, top_, right_, bottom_, kFrame);
}

void Axes::level(double y, const std::string& label) {
    const int line = static_cast<int>(std::lround(y));
    canvas_.fill(left_, line, right_, line + 1, kGrid);
    canvas_.text(left_ - 10 - Canvas::textWidth(label), line - 7, label, kFaint);
}

void Axes::scale(double span, const std::string& unit, bool isAcross) {
    const AxisMarks marks(span);
    for (int i = 0; i * marks.step <= span; ++i) {
        const int x = left_ + static_cast<int>(i * marks.step / span * (columns() - 1));
        canvas_.fill(x, isAcross ? top_ : bottom_, x + 1, bottom_ + 6, kGrid);
        const std::string label = number(i * marks.step, marks.decimals);
        // The last label of a full axis stays inside the picture.
        const int width = Canvas::textWidth(label);
        canvas_.text(std::min(x - width / 2, canvas_.width() - width - 4), bottom_ + 12, label, kFaint);
    }
    canvas_.text(left_ + (columns() - Canvas::textWidth(unit)) / 2, bottom_ + 34, unit, kFaint);
}

void Axes::title(const std::string& text) {
    canvas_.text(left_, top_ - 26, text, kInk);
}

int Axes::note(const std::string& text, int right, Colour colour) {
    const int x = right - Canvas::textWidth(text);
    canvas_.text(x, top_ - 26, text, colour);
    return x;
}
