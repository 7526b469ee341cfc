// Runs the example phone_line on recordings made here, good and bad.
#include "example_test.hpp"

namespace {
class PhoneLine : public Example {
  protected:
    std::vector<short> received(const std::string& name = "phone_line.wav", int rate = kRate) const {
        SF_INFO info{};
        SNDFILE* file = sf_open(path(name).c_str(), SFM_READ, &info);
        if (!file) return {};
        EXPECT_EQ(info.channels, 1);
        EXPECT_EQ(info.samplerate, rate);
        std::vector<short> samples(static_cast<size_t>(info.frames * info.channels));
        EXPECT_EQ(sf_read_short(file, samples.data(), info.frames), info.frames);
        sf_close(file);
        return samples;
    }
};

// At 0 dB the line hands 16 bits through, until the echo comes.
constexpr char kPlain[] = " --gain 0 --echo -60";

// Whole steps of 8 bits: exact in every encoding.
std::vector<double> tone(int length) {
    std::vector<double> samples;
    for (int i = 0; i < length; ++i)
        samples.push_back(std::floor(40 * std::sin(i * 0.37)) / 128);
    return samples;
}

TEST_F(PhoneLine, readsEveryEncodingAndMixesOrPicksChannels) {
    struct Encoding {
        const char* name;
        int format;
    };
    const Encoding encodings[] = {{"pcm8", SF_FORMAT_PCM_U8},
                                  {"pcm16", SF_FORMAT_PCM_16},
                                  {"pcm24", SF_FORMAT_PCM_24},
                                  {"float", SF_FORMAT_FLOAT}};
    // Twice as loud in the second channel. Short enough to end before the echo.
    const std::vector<double> mono = tone(300);
    std::vector<double> stereo;
    for (const double sample : mono)
        stereo.insert(stereo.end(), {sample, 2 * sample});
    for (const auto& [name, format] : encodings) {
        SCOPED_TRACE(name);
        record("mono.wav", format, 1, mono);
        record("stereo.wav", format, 2, stereo);
        const struct {
            std::string arguments;
            double factor;
        } cases[] = {{"mono.wav", 1},
                     {"mono.wav --channel 1", 1},
                     {"stereo.wav", 1.5},
                     {"stereo.wav --channel 1", 1},
                     {"stereo.wav --channel 2", 2}};
        for (const auto& [arguments, factor] : cases) {
            SCOPED_TRACE(arguments);
            ASSERT_EQ(run(arguments + kPlain), 0) << err_;
            EXPECT_EQ(err_, "");
            std::vector<short> expected;
            for (const double sample : mono)
                expected.push_back(static_cast<short>(sample * factor * 32768));
            EXPECT_EQ(received(), expected);
        }
        EXPECT_EQ(files(), (std::set<std::string>{"mono.wav", "stereo.wav", "phone_line.wav", "phone_line.png"}));
    }
}

TEST_F(PhoneLine, clipsCountsAndEchoes) {
    // One click, its echo 25 ms later, and a sample beyond full scale.
    std::vector<double> click(1000);
    click[10] = 0.25;
    click[500] = 1.5;
    record("click.wav", SF_FORMAT_FLOAT, 1, click);
    ASSERT_EQ(run("click.wav --gain 6.0206 --echo -12.0412 --output loud"), 0) << err_;
    const std::vector<short> loud = received("loud.wav");
    ASSERT_EQ(loud.size(), click.size());
    EXPECT_NEAR(loud[10], 16384, 1);
    EXPECT_NEAR(loud[10 + 400], 4096, 1);
    EXPECT_EQ(loud[500], 32767);
    EXPECT_NEAR(loud[500 + 400], 16384, 2); // of the sample as it was clipped on the way in
    EXPECT_NE(out_.find(" 1 sample clipped"), std::string::npos) << out_;
    EXPECT_NE(out_.find("before     peak 3.5 dBFS"), std::string::npos) << out_;

    const Image image = readImage("loud.png");
    EXPECT_GE(image.width, 800u);
    EXPECT_GE(image.height, 400u);
}

TEST_F(PhoneLine, reportsLevels) {
    // A square wave around an offset: half the samples at 0.75, half at -0.25.
    std::vector<double> square;
    for (int i = 0; i < 2000; ++i)
        square.push_back(i % 2 == 0 ? 0.75 : -0.25);
    record("square.wav", SF_FORMAT_FLOAT, 1, square);
    ASSERT_EQ(run("square.wav --gain 0 --echo -60"), 0) << err_;
    // The root of (0.75^2 + 0.25^2) / 2 is 0.559.
    EXPECT_NE(out_.find("before     peak -2.5 dBFS, level -5.1 dBFS, crest factor 2.6 dB, mean 0.2500"),
              std::string::npos)
        << out_;
}

// A sine in the middle of a band, at full scale and so weak that the laws' smallest steps count: A-law's is twice
// mu-law's.
TEST_F(PhoneLine, reportsTheNoiseOfCodingAndTheSpectrum) {
    const struct {
        double level, muLaw, aLaw; // dB
    } cases[] = {{0, 38.5, 38.5}, {-60, 20.5, 13.5}};
    for (const auto& [level, muLaw, aLaw] : cases) {
        SCOPED_TRACE(level);
        std::vector<double> sine;
        for (int i = 0; i < 16000; ++i)
            sine.push_back(std::pow(10, level / 20) * 0.9999 * std::sin(2 * M_PI * 1062.5 * i / 16000));
        record("sine.wav", SF_FORMAT_FLOAT, 1, sine);
        ASSERT_EQ(run("sine.wav --gain -20 --echo -60"), 0) << err_;
        EXPECT_NEAR(numberAfter("mu-law "), muLaw, 1) << out_;
        EXPECT_NEAR(numberAfter(" A-law "), aLaw, 1) << out_;
        EXPECT_NEAR(numberAfter("strongest at "), 1062.5, 0.6) << out_;
        EXPECT_NEAR(numberAfter(" Hz ("), level, 0.11) << out_;
        EXPECT_NEAR(numberAfter("before, "), 1062.5, 0.6) << out_;
        EXPECT_NEAR(numberAfter("before, 1063 Hz ("), level - 20, 1) << out_; // where a sample is a few steps high
    }
}

// Half of the samples, where they were, without the tone below the band.
TEST_F(PhoneLine, passesTheTelephoneBand) {
    std::vector<double> sum;
    const auto tone = [](double frequency, int i) { return 0.25 * std::sin(2 * M_PI * frequency * i / 16000); };
    for (int i = 0; i < 8001; ++i)
        sum.push_back(tone(1000, i) + tone(60, i));
    record("tones.wav", SF_FORMAT_FLOAT, 1, sum);
    ASSERT_EQ(run(std::string("tones.wav --band") + kPlain), 0) << err_;
    const std::vector<short> samples = received("phone_line.wav", 8000);
    ASSERT_EQ(samples.size(), 4001U);
    for (int i = 400; i < 3600; ++i)
        ASSERT_NEAR(samples[static_cast<size_t>(i)], 32768 * tone(1000, 2 * i), 60) << i;
    EXPECT_NE(out_.find("one sample in 2 kept: 8000 Hz"), std::string::npos) << out_;
    const auto response = [&](const std::string& at) { // the number before
        const size_t end = out_.find(" dB at " + at);
        return end == std::string::npos ? NAN : std::stod(out_.substr(out_.rfind(' ', end - 1)));
    };
    EXPECT_LT(response("100,"), -40) << out_;
    EXPECT_NEAR(response("300,"), -6, 0.2) << out_;
    EXPECT_NEAR(response("1000,"), 0, 0.1) << out_;
    EXPECT_NEAR(response("3400,"), -6, 0.2) << out_;
    EXPECT_LT(response("3800 "), -40) << out_;
}

TEST_F(PhoneLine, refusesBadInputWithOneLineAndLeavesNothingBehind) {
    record("good.wav", SF_FORMAT_PCM_16, 1, tone(4000));
    const std::string good = read("good.wav");
    for (const auto& [name, message] : makeBadFiles())
        expectRefusal(name, 1, message);
    expectRefusal("good.wav --channel 2", 1, "good.wav: no channel 2");
    expectRefusal("good.wav --output good", 1, "would replace the recording");
    expectRefusal("good.wav --output no/such/folder", 1, "no/such/folder.wav");
    expectRefusal("good.wav --gain loud", 2, "--gain takes a number");
    expectRefusal("good.wav --gain", 2, "--gain lacks its value");
    expectRefusal("good.wav --gian 3", 2, "no option --gian");
    expectRefusal("good.wav good.wav", 2, "only one recording");
    expectRefusal("", 2, "no recording given");
    EXPECT_EQ(read("good.wav"), good);
}

TEST_F(PhoneLine, handlesTheShortestAndTheSilentRecording) {
    record("one.wav", SF_FORMAT_PCM_16, 1, {0.5});
    record("silent.wav", SF_FORMAT_PCM_16, 1, std::vector<double>(5000));
    for (const char* name : {"one.wav", "silent.wav"}) {
        EXPECT_EQ(run(name), 0) << err_;
        EXPECT_EQ(out_.find("nan"), std::string::npos) << out_;
    }
}
} // namespace
