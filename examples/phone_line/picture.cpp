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
    kFaint{101, 109, 118}, kWave{31, 111, 180}, kBefore{168, 178, 189}, kClipped{215, 58, 47};

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

// The step of an axis: 1, 2 or 5 times a power of ten, so that about ten marks stand on it.
double axisStep(double span) {
    const double rough = span / 10, power = std::pow(10, std::floor(std::log10(rough)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * power >= rough) return factor * power;
    return 10 * power;
}

// The frame of a panel, its grid and what is written around it.
class Axes {
  protected:
    Axes(Canvas& canvas, int top) : canvas_(canvas), top_(top + kAbove), bottom_(top + kPanelHeight - kBelow) {}

    int columns() const { return kWidth - kRight - kLeft; }
    double inside(double y) const { return std::clamp<double>(y, top_, bottom_); }

    void background() { canvas_.fill(kLeft, top_, kWidth - kRight, bottom_, kFrame); }

    void level(double y, const std::string& label) {
        const int line = static_cast<int>(std::lround(y));
        canvas_.fill(kLeft, line, kWidth - kRight, line + 1, kGrid);
        canvas_.text(kLeft - 10 - Canvas::textWidth(label, 2), line - 7, label, kFaint);
    }

    // Marks from 0 at the left to `span` at the right.
    void scale(double span, const std::string& unit) {
        const double step = axisStep(span);
        const int decimals = std::max(0, static_cast<int>(-std::floor(std::log10(step) + 1e-9)));
        for (int i = 0; i * step <= span; ++i) {
            const int x = kLeft + static_cast<int>(i * step / span * (columns() - 1));
            canvas_.fill(x, top_, x + 1, bottom_ + 6, kGrid);
            const std::string label = number(i * step, decimals);
            // The last label of a full axis stays inside the picture.
            const int width = Canvas::textWidth(label, 2);
            canvas_.text(std::min(x - width / 2, kWidth - width - 4), bottom_ + 12, label, kFaint);
        }
        canvas_.text(kLeft + (columns() - Canvas::textWidth(unit, 2)) / 2, bottom_ + 34, unit, kFaint);
    }

    void title(const std::string& text) { canvas_.text(kLeft, top_ - 26, text, kInk); }

    // Right-aligned in the title's line; the position where it begins.
    int note(const std::string& text, int right, Colour colour) {
        const int x = right - Canvas::textWidth(text, 2);
        canvas_.text(x, top_ - 26, text, colour);
        return x;
    }

    Canvas& canvas_;
    int top_, bottom_;
};

class Waveform : Axes {
  public:
    Waveform(Canvas& canvas, int top, const Panel& panel) : Axes(canvas, top), panel_(panel) {}

    void draw() {
        background();
        for (const double value : {-1.0, -0.5, 0.0, 0.5, 1.0})
            level(y(value), (value > 0 ? "+" : "") + number(value, 1));
        scale(panel_.signal.seconds(), "seconds; full scale is 1");
        wave();
        marks();
        title(panel_.title);
        note(panel_.note, kWidth - kRight, marked() ? kClipped : kFaint);
    }

  private:
    // Full scale lies a little inside the frame.
    double y(double value) const { return (top_ + bottom_) / 2.0 - value * (bottom_ - top_) / 2.0 / 1.08; }
    bool marked() const { return std::count(panel_.clipped.begin(), panel_.clipped.end(), true) > 0; }

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

    const Panel& panel_;
};

// Two spectra as bars, side by side in each band.
class Bands : Axes {
  public:
    Bands(Canvas& canvas, int top, const Spectrum& before, const Spectrum& after)
        : Axes(canvas, top), before_(before), after_(after) {}

    void draw() {
        background();
        for (int decibels = 0; decibels >= -80; decibels -= 20)
            level(y(decibels), number(decibels, 0));
        scale(before_.top(), "hertz; decibels of a full-scale sine");
        bars(before_, 0.12, kBefore);
        bars(after_, 0.5, kWave);
        title("spectrum");
        const int x = key("after", kWidth - kRight, kWave);
        key("before", x - 30, kBefore);
    }

  private:
    double y(double decibels) const { return top_ + (kHighest - decibels) / (kHighest - kLowest) * (bottom_ - top_); }

    // Bars that begin at a share of their band's width and take 0.38 of it.
    void bars(const Spectrum& spectrum, double share, Colour colour) {
        const double width = static_cast<double>(columns()) / Spectrum::kBands;
        for (size_t band = 0; band < spectrum.power.size(); ++band) {
            const int left = kLeft + static_cast<int>((static_cast<double>(band) + share) * width);
            const double top = inside(y(10 * std::log10(spectrum.power[band])));
            for (int x = left; x < left + static_cast<int>(0.38 * width); ++x)
                canvas_.column(x, top, bottom_, colour);
        }
    }

    // A square of the colour and its meaning; the position where it begins.
    int key(const std::string& meaning, int right, Colour colour) {
        const int x = note(meaning, right, kFaint) - 24;
        canvas_.fill(x, top_ - 26, x + 14, top_ - 12, colour);
        return x;
    }

    static constexpr double kHighest = 6, kLowest = -90; // dB
    const Spectrum& before_;
    const Spectrum& after_;
};
} // namespace

void drawPicture(const std::filesystem::path& path, const std::string& heading, const std::vector<Panel>& panels,
                 const Spectrum& before, const Spectrum& after) {
    Canvas canvas(kWidth, kHeadingHeight + static_cast<int>(panels.size() + 1) * kPanelHeight);
    canvas.text(kLeft, 18, heading, kInk, 3);
    int top = kHeadingHeight;
    for (const Panel& panel : panels) {
        Waveform(canvas, top, panel).draw();
        top += kPanelHeight;
    }
    Bands(canvas, top, before, after).draw();
    canvas.write(path);
}
