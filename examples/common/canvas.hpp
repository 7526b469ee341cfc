// A picture in memory, its text and the axes of diagrams in it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

struct Colour {
    uint8_t red, green, blue;
};
constexpr Colour kPaper{255, 255, 255}, kFrame{246, 248, 250}, kGrid{218, 224, 230}, kInk{36, 41, 47},
    kFaint{101, 109, 118}, kWave{31, 111, 180};

class Canvas {
  public:
    Canvas(int width, int height);

    void fill(int left, int top, int right, int bottom, Colour colour);

    // One pixel wide, from `top` to `bottom`; pixels that are partly covered take part of the colour.
    void column(int x, double top, double bottom, Colour colour);

    static int textWidth(const std::string& text, int scale = 2);
    void text(int x, int y, const std::string& text, Colour colour, int scale = 2);

    int width() const { return width_; }
    void write(const std::filesystem::path& path) const;

  private:
    Colour& at(int x, int y);

    int width_, height_;
    std::vector<Colour> pixels_;
};

std::string number(double value, int decimals);

// Marks at multiples of a step of 1, 2 or 5 times a power of ten, about ten of them over a span.
struct AxisMarks {
    explicit AxisMarks(double span);

    double step;
    int decimals; // that tell them apart
};

// The frame of a diagram, its grid and what is written around it.
class Axes {
  public:
    Axes(Canvas& canvas, int left, int top, int right, int bottom)
        : canvas_(canvas), left_(left), top_(top), right_(right), bottom_(bottom) {}

  protected:
    int columns() const { return right_ - left_; }
    double inside(double y) const;

    void background();
    void level(double y, const std::string& label);
    // Marks from 0 at the left to `span` at the right; lines across the frame or below it only.
    void scale(double span, const std::string& unit, bool isAcross = true);

    void title(const std::string& text);
    // Right-aligned in the title's line; the position where it begins.
    int note(const std::string& text, int right, Colour colour);

    Canvas& canvas_;
    int left_, top_, right_, bottom_;
};
