// Runs the example testsignals: the levels, frequencies and lengths of what it writes, by means of its own.
#include "example_test.hpp"

namespace {
class TestSignals : public Example {
  protected:
    // What was written, full scale 1.
    std::vector<double> written(int rate) const {
        SF_INFO info{};
        SNDFILE* const file = sf_open(path("x.wav").c_str(), SFM_READ, &info);
        EXPECT_NE(file, nullptr);
        EXPECT_EQ(info.samplerate, rate);
        std::vector<double> samples(static_cast<size_t>(info.frames));
        sf_readf_double(file, samples.data(), info.frames);
        sf_close(file);
        return samples;
    }
    // Of the part at a frequency, in cycles a sample.
    static double amplitude(const std::vector<double>& samples, double frequency) {
        double re = 0, im = 0;
        for (size_t i = 0; i < samples.size(); ++i) {
            re += samples[i] * std::cos(2 * M_PI * frequency * static_cast<double>(i));
            im += samples[i] * std::sin(2 * M_PI * frequency * static_cast<double>(i));
        }
        return 2 * std::hypot(re, im) / static_cast<double>(samples.size());
    }
    static double power(const std::vector<double>& samples, size_t begin, size_t end) {
        double sum = 0;
        for (size_t i = begin; i < end; ++i)
            sum += samples[i] * samples[i];
        return sum / static_cast<double>(end - begin);
    }
};

TEST_F(TestSignals, tonesHaveTheirLevels) {
    ASSERT_EQ(run("x.wav --rate 8000 --seconds 0.5 --level -6 --tone 440 --level -26 --tone 1000"), 0) << err_;
    const std::vector<double> samples = written(8000);
    ASSERT_EQ(samples.size(), 4000u);
    EXPECT_NEAR(amplitude(samples, 440.0 / 8000), 0.5012, 0.0002);
    EXPECT_NEAR(amplitude(samples, 0.125), 0.0501, 0.0002);
    EXPECT_NEAR(samples[0], 0, 1e-4);
    ASSERT_EQ(run("x.wav"), 0) << err_;
    EXPECT_NEAR(amplitude(written(48000), 1.0 / 48), 0.2512, 0.0002);
}

TEST_F(TestSignals, noiseAndSweepHaveTheirPower) {
    for (const std::string kind : {"--noise", "--uniform", "--seed 5 --noise"}) {
        ASSERT_EQ(run("x.wav --level -20 " + kind), 0) << err_;
        EXPECT_NEAR(std::sqrt(power(written(48000), 0, 48000)), 0.1, 0.001);
    }
    ASSERT_EQ(run("x.wav --level 0 --sweep"), 0) << err_;
    const std::vector<double> sweep = written(48000);
    EXPECT_NEAR(power(sweep, 1000, 24000), 0.5, 0.01);
    EXPECT_NEAR(power(sweep, 24000, 47000), 0.5, 0.01);
}

TEST_F(TestSignals, refusesInOneLine) {
    expectRefusal("", 2, "give a file to write");
    expectRefusal("x.wav --tone 24000", 2, "--tone takes a number from 0 to 23999");
    expectRefusal("x.wav --sweep --rate 8000", 2, "before the signals");
    expectRefusal("x.wav --seconds 0", 2, "shorter than a sample");
    expectRefusal("no/such/folder.wav", 1, "cannot be written");
}
} // namespace
