#include "picture.hpp"

#include <algorithm>
#include <cmath>

#include "canvas.hpp"

namespace {
constexpr Colour kBefore{168, 178, 189}, kClipped{215, 58, 47};

constexpr int kWidth = 1400, kPanelHeight = 360, kHeadingHeight = 50;
constexpr int kLeft = 90, kRight = 24, kAbove = 40, kBelow = 62; // margins of a panel's axes

// Panels lie one below the other.
class PanelAxes : protected Axes {
  protected:
    PanelAxes(Canvas& canvas, int top)
        : Axes(canvas, kLeft, top + kAbove, kWidth - kRight, top + kPanelHeight - kBelow) {}
};

class Waveform : PanelAxes {
  public:
    Waveform(Canvas& canvas, int top, const Panel& panel) : PanelAxes(canvas, top), panel_(panel) {}

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
class Bands : PanelAxes {
  public:
    Bands(Canvas& canvas, int top, const Spectrum& before, const Spectrum& after)
        : PanelAxes(canvas, top), before_(before), after_(after) {}

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
