#include "picture.hpp"

#include <algorithm>
#include <cmath>

#include "canvas.hpp"

namespace {
constexpr int kWidth = 1400, kHeight = 760;
constexpr int kLeft = 110, kTop = 90, kRight = 130, kBottom = 62; // margins of the axes
constexpr int kBarGap = 24, kBarWidth = 22;

// From silence to full strength: lightness rises all the way, so that the picture reads in grey too.
constexpr Colour kHeat[] = {{8, 8, 20},    {40, 18, 84},   {96, 22, 110},  {152, 38, 100},
                            {204, 64, 72}, {237, 112, 42}, {250, 178, 52}, {252, 250, 190}};

// share: 0 to 1.
Colour heat(double share) {
    constexpr int kLast = static_cast<int>(std::size(kHeat)) - 1;
    const double place = std::clamp(share, 0.0, 1.0) * kLast;
    const int index = std::min(static_cast<int>(place), kLast - 1);
    const auto mix = [&](uint8_t low, uint8_t high) {
        return static_cast<uint8_t>(std::lround(low + (place - index) * (high - low)));
    };
    const Colour &low = kHeat[index], &high = kHeat[index + 1];
    return {mix(low.red, high.red), mix(low.green, high.green), mix(low.blue, high.blue)};
}

class Diagram : Axes {
  public:
    Diagram(Canvas& canvas, const Spectrogram& spectrogram, double top, double range)
        : Axes(canvas, kLeft, kTop, kWidth - kRight, kHeight - kBottom), spectrogram_(spectrogram), topDecibels_(top),
          range_(range) {}

    void draw(const Signal& signal, const std::string& above, const std::string& note) {
        title("hertz");
        this->note(note, right_, kFaint);
        canvas_.text(right_ + kBarGap, top_ - 26, above, kInk);
        frequencies(signal.rate / 2.0);
        scale(signal.seconds(), "seconds", false);
        cells();
        bar();
    }

  private:
    int rows() const { return bottom_ - top_; }

    double decibels(double power) const { return 10 * std::log10(power + 1e-30); }
    Colour colour(double decibels) const { return heat(1 + (decibels - topDecibels_) / range_); }

    void frequencies(double span) {
        const AxisMarks marks(span);
        for (int i = 0; i * marks.step <= span; ++i)
            mark(bottom_ - 1 - i * marks.step / span * (rows() - 1), number(i * marks.step, marks.decimals));
    }
    void mark(double y, const std::string& label) {
        const int line = static_cast<int>(std::lround(y));
        canvas_.fill(left_ - 6, line, left_, line + 1, kGrid);
        canvas_.text(left_ - 12 - Canvas::textWidth(label), line - 7, label, kFaint);
    }

    // Of all bins that a row covers the strongest; between two bins, what lies between them.
    double rowDecibels(int column, int row) const {
        const double perRow = static_cast<double>(spectrogram_.bins() - 1) / rows();
        const double low = row * perRow, high = low + perRow;
        if (perRow < 1) {
            const double place = low + perRow / 2;
            const int bin = static_cast<int>(place);
            const double below = decibels(spectrogram_.power(column, bin));
            return below + (place - bin) * (decibels(spectrogram_.power(column, bin + 1)) - below);
        }
        Zvp32f strongest = 0;
        for (int bin = static_cast<int>(low); bin <= static_cast<int>(high); ++bin)
            strongest = std::max(strongest, spectrogram_.power(column, bin));
        return decibels(strongest);
    }

    void cells() {
        for (int column = 0; column < columns(); ++column) {
            for (int row = 0; row < rows(); ++row) {
                const int x = left_ + column, y = bottom_ - 1 - row;
                canvas_.fill(x, y, x + 1, y + 1, colour(rowDecibels(column, row)));
            }
        }
    }

    // What the colours mean.
    void bar() {
        const int left = right_ + kBarGap;
        for (int y = top_; y < bottom_; ++y)
            canvas_.fill(left, y, left + kBarWidth, y + 1, colour(topDecibels_ - (y - top_) * range_ / (rows() - 1)));
        const AxisMarks marks(range_);
        const int last = static_cast<int>(std::floor(topDecibels_ / marks.step));
        for (int i = static_cast<int>(std::ceil((topDecibels_ - range_) / marks.step)); i <= last; ++i) {
            const double value = i * marks.step;
            const int y = top_ + static_cast<int>(std::lround((topDecibels_ - value) / range_ * (rows() - 1)));
            canvas_.fill(left + kBarWidth, y, left + kBarWidth + 6, y + 1, kGrid);
            canvas_.text(left + kBarWidth + 10, y - 7, number(value, marks.decimals), kFaint);
        }
    }

    const Spectrogram& spectrogram_;
    double topDecibels_, range_;
};
} // namespace

const int kPictureColumns = kWidth - kLeft - kRight;

void drawPicture(const std::filesystem::path& path, const std::string& heading, const std::string& note,
                 const Spectrogram& spectrogram, const Signal& signal, double top, double range) {
    Canvas canvas(kWidth, kHeight);
    canvas.text(kLeft, 18, heading, kInk, 3);
    Diagram(canvas, spectrogram, top, range).draw(signal, "dBFS", note);
    canvas.write(path);
}
