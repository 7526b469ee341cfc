// Runs the example spectrogram: tones stand where they belong, wrong input is refused.
#include "example_test.hpp"

namespace {
class SpectrogramTest : public Example {
  protected:
    // Where the axes lie in the picture.
    static constexpr size_t kLeft = 110, kTop = 90, kRight = 1270, kBottom = 698;

    // The row that is brightest in the middle of a stretch of time, as a frequency; the share of the stretch is 0 to 1.
    double brightest(const Image& image, double share) const {
        const auto x = kLeft + static_cast<size_t>(share * (kRight - kLeft));
        size_t best = kTop;
        for (size_t y = kTop; y < kBottom; ++y)
            if (image.brightness(x, y) > image.brightness(x, best)) best = y;
        return (static_cast<double>(kBottom - best) - 0.5) / (kBottom - kTop) * kRate / 2;
    }

    // A tone of half scale, then one of a hundredth an octave higher, then silence.
    static std::vector<double> tones(int length) {
        std::vector<double> samples(static_cast<size_t>(length));
        for (int i = 0; i < 2 * length / 3; ++i) {
            const bool isFirst = i < length / 3;
            samples[static_cast<size_t>(i)] =
                (isFirst ? 0.5 : 0.01) * std::sin(2 * M_PI * (isFirst ? 1500 : 3000) * i / kRate);
        }
        return samples;
    }
};

// Shorter than a spectrum for each column of the picture, and so long that many make one.
TEST_F(SpectrogramTest, showsTonesWhereTheyAre) {
    for (const int seconds : {2, 90}) {
        record("tones.wav", SF_FORMAT_FLOAT, 1, tones(seconds * kRate));
        for (const std::string options : {"", " --size 64 --window none", " --size 4096 --window kaiser --range 120"}) {
            SCOPED_TRACE(options);
            ASSERT_EQ(run("tones.wav --output picture" + options), 0) << err_;
            EXPECT_EQ(err_, "");
            EXPECT_EQ(files(), (std::set<std::string>{"tones.wav", "picture.png"}));
            EXPECT_NEAR(numberAfter("strongest  "), -6, 0.1) << out_;
            EXPECT_NEAR(numberAfter("dBFS at "), 1500, 1) << out_;
            const Image image = readImage("picture.png");
            ASSERT_GT(image.width, kRight);
            ASSERT_GT(image.height, kBottom);
            const double precision = options.find("64 ") == std::string::npos ? 20 : 130;
            EXPECT_NEAR(brightest(image, 0.2), 1500, precision);
            EXPECT_NEAR(brightest(image, 0.5), 3000, precision);
            // Silence is as dark as can be.
            const size_t silent = kLeft + (kRight - kLeft) * 9 / 10;
            for (size_t y = kTop; y < kBottom; y += 10)
                ASSERT_LT(image.brightness(silent, y), 50) << y;
        }
    }
}

TEST_F(SpectrogramTest, handlesTheShortestAndTheSilentRecording) {
    record("one.wav", SF_FORMAT_PCM_16, 1, {0.5});
    record("silent.wav", SF_FORMAT_PCM_16, 1, std::vector<double>(5000));
    for (const char* name : {"one.wav", "silent.wav"}) {
        EXPECT_EQ(run(name), 0) << err_;
        EXPECT_EQ(out_.find("nan"), std::string::npos) << out_;
        EXPECT_EQ(out_.find("inf"), std::string::npos) << out_;
    }
}

TEST_F(SpectrogramTest, refusesBadInputWithOneLineAndLeavesNothingBehind) {
    record("good.wav", SF_FORMAT_PCM_16, 1, tones(4000));
    for (const auto& [name, message] : makeBadFiles())
        expectRefusal(name, 1, message);
    expectRefusal("good.wav --output no/such/folder", 1, "no/such/folder.png");
    expectRefusal("good.wav --size 1000", 2, "--size takes a power of two");
    expectRefusal("good.wav --size 32", 2, "--size takes a number from 64 to 65536");
    expectRefusal("good.wav --window hat", 2, "no window 'hat'");
    expectRefusal("good.wav --range", 2, "--range lacks its value");
    expectRefusal("", 2, "no recording given");
}
} // namespace
