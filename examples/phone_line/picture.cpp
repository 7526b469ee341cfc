#include "picture.hpp"

#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "font.hpp"

namespace {
struct Colour {
    uint8_t red, green, blue;
};
constexpr Colour kPaper{255, 255, 255}, kFrame{246, 248, 250}, kGrid{218, 224, 230}, kInk{36, 41, 47},
    kFaint{101, 109, 118}, kWave{31, 111, 180}, kClipped{215, 58, 47};

constexpr int kWidth = 1400, kPanelHeight = 360, kHeadingHeight = 50;
constexpr int kLeft = 90, kRight = 24, kAbove = 40, kBelow = 62; // margins of a panel's axes

class Canvas {
  public:
    Canvas(int width, int height)
        : width_(width), height_(height), pixels_(static_cast<size_t>(width) * static_cast<size_t>(height), kPaper) {}

    void fill(int left, int top, int right, int bottom, Colour colour) {
        for (int y = top; y < bottom; ++y)
            for (int x = left; x < right; ++x)
                at(x, y) = colour;
    }

    // One pixel wide, from `top` to `bottom`; pixels that are partly covered take part of the colour.
    void column(int x, double top, double bottom, Colour colour) {
        for (int y = static_cast<int>(std::floor(top)); y < bottom; ++y) {
            const double cover = std::min(bottom, y + 1.0) - std::max(top, static_cast<double>(y));
            const auto blend = [cover](uint8_t below, uint8_t above) {
                return static_cast<uint8_t>(std::lround(below + cover * (above - below)));
            };
            Colour& pixel = at(x, y);
            pixel = {blend(pixel.red, colour.red), blend(pixel.green, colour.green), blend(pixel.blue, colour.blue)};
        }
    }

    static int textWidth(const std::string& text, int scale) {
        return static_cast<int>(text.size()) * (kGlyphWidth + 1) * scale - scale;
    }

    void text(int x, int y, const std::string& text, Colour colour, int scale = 2) {
        for (const char character : text) {
            const bool printable = character >= ' ' && character <= '~';
            const auto& glyph = kGlyphs[static_cast<size_t>((printable ? character : '?') - ' ')];
            for (int column = 0; column < kGlyphWidth; ++column)
                for (int row = 0; row < kGlyphHeight; ++row)
                    if (glyph[static_cast<size_t>(column)] >> row & 1)
                        fill(x + column * scale, y + row * scale, x + (column + 1) * scale, y + (row + 1) * scale,
                             colour);
            x += (kGlyphWidth + 1) * scale;
        }
    }

    void write(const std::filesystem::path& path) const {
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        image.width = static_cast<png_uint_32>(width_);
        image.height = static_cast<png_uint_32>(height_);
        image.format = PNG_FORMAT_RGB;
        if (!png_image_write_to_file(&image, path.c_str(), 0, pixels_.data(), 0, nullptr))
            throw std::runtime_error(path.string() + ": cannot be written: " + image.message);
    }

  private:
    Colour& at(int x, int y) {
        static Colour outside;
        if (x < 0 || x >= width_ || y < 0 || y >= height_) return outside;
        return pixels_[static_cast<size_t>(y) * static_cast<size_t>(width_) + static_cast<size_t>(x)];
    }

    int width_, height_;
    std::vector<Colour> pixels_;
};

std::string number(double value, int decimals) {
    char text[32];
    std::snprintf(text, sizeof text, "%.*f", decimals, value);
    return text;
}

// The step of a time axis: 1, 2 or 5 times a power of ten, so that about ten marks stand on it.
double axisStep(double seconds) {
    const double rough = seconds / 10, power = std::pow(10, std::floor(std::log10(rough)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= rough) return factor * power;
    return 10 * power;
}

class Axes {
  public:
    Axes(Canvas& canvas, int top, const Panel& panel)
        : canvas_(canvas), panel_(panel), top_(top + kAbove), bottom_(top + kPanelHeight - kBelow) {}

    void draw() {
        grid();
        wave();
        marks();
        canvas_.text(kLeft, top_ - 26, panel_.title, kInk);
        canvas_.text(kWidth - kRight - Canvas::textWidth(panel_.note, 2), top_ - 26, panel_.note,
                     marked() ? kClipped : kFaint);
    }

  private:
    // Full scale lies a little inside the frame.
    double y(double value) const { return (top_ + bottom_) / 2.0 - value * (bottom_ - top_) / 2.0 / 1.08; }
    double inside(double y) const { return std::clamp<double>(y, top_, bottom_); }
    int columns() const { return kWidth - kRight - kLeft; }
    bool marked() const { return std::count(panel_.clipped.begin(), panel_.clipped.end(), true) > 0; }

    void grid() {
        canvas_.fill(kLeft, top_, kWidth - kRight, bottom_, kFrame);
        for (const double value : {-1.0, -0.5, 0.0, 0.5, 1.0}) {
            const int line = static_cast<int>(std::lround(y(value)));
            canvas_.fill(kLeft, line, kWidth - kRight, line + 1, kGrid);
            const std::string label = (value > 0 ? "+" : "") + number(value, 1);
            canvas_.text(kLeft - 10 - Canvas::textWidth(label, 2), line - 7, label, kFaint);
        }
        const double seconds = panel_.signal.seconds(), step = axisStep(seconds);
        const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
        for (int i = 0; i * step <= seconds; ++i) {
            const int x = kLeft + static_cast<int>(i * step / seconds * (columns() - 1));
            canvas_.fill(x, top_, x + 1, bottom_ + 6, kGrid);
            const std::string label = number(i * step, decimals);
            canvas_.text(x - Canvas::textWidth(label, 2) / 2, bottom_ + 12, label, kFaint);
        }
        const std::string unit = "seconds; full scale is 1";
        canvas_.text(kLeft + (columns() - Canvas::textWidth(unit, 2)) / 2, bottom_ + 34, unit, kFaint);
    }

    // Where column x begins, in samples.
    double position(int x) const { return static_cast<double>(panel_.signal.length() - 1) * x / columns(); }

    double interpolated(double position) const {
        const auto& samples = panel_.signal.samples;
        const auto left = static_cast<size_t>(position);
        const auto right = std::min(left + 1, samples.size() - 1);
        return samples[left] + (position - static_cast<double>(left)) * (samples[right] - samples[left]);
    }

    // Each column covers the range of the signal inside it, its interpolated ends included.
    void wave() {
        const auto& samples = panel_.signal.samples;
        for (int x = 0; x < columns(); ++x) {
            const double begin = position(x), end = position(x + 1);
            auto [lowest, highest] = std::minmax({interpolated(begin), interpolated(end)});
            for (auto i = static_cast<size_t>(std::ceil(begin)); static_cast<double>(i) <= end; ++i) {
                lowest = std::min<double>(lowest, samples[i]);
                highest = std::max<double>(highest, samples[i]);
            }
            canvas_.column(kLeft + x, inside(y(highest) - 0.75), inside(y(lowest) + 0.75), kWave);
        }
    }

    // A red mark at the upper or lower edge wherever samples were clipped.
    void marks() {
        for (size_t i = 0; i < panel_.clipped.size(); ++i) {
            if (!panel_.clipped[i]) continue;
            const double share = static_cast<double>(i) / static_cast<double>(panel_.clipped.size());
            const int x = kLeft + static_cast<int>(share * columns());
            const int edge = panel_.signal.samples[i] > 0 ? top_ : bottom_ - 10;
            canvas_.fill(x, edge, x + 2, edge + 10, kClipped);
        }
    }

    Canvas& canvas_;
    const Panel& panel_;
    int top_, bottom_;
};
} // namespace

void drawPicture(const std::filesystem::path& path, const std::string& heading, const std::vector<Panel>& panels) {
    Canvas canvas(kWidth, kHeadingHeight + static_cast<int>(panels.size()) * kPanelHeight);
    canvas.text(kLeft, 18, heading, kInk, 3);
    int top = kHeadingHeight;
    for (const Panel& panel : panels) {
        Axes(canvas, top, panel).draw();
        top += kPanelHeight;
    }
    canvas.write(path);
}
