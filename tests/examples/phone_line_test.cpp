// Runs the example phone_line on recordings made here, good and bad.
#include <gtest/gtest.h>
#include <png.h>
#include <sndfile.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <limits>
#include <set>
#include <string>
#include <vector>

namespace {
namespace fs = std::filesystem;

std::string readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void writeFile(const fs::path& path, const std::string& content) {
    std::ofstream(path, std::ios::binary) << content;
}

class PhoneLine : public testing::Test {
  protected:
    void SetUp() override {
        char name[] = "/tmp/phone_line_test.XXXXXX";
        ASSERT_NE(mkdtemp(name), nullptr);
        directory_ = name;
    }
    void TearDown() override { fs::remove_all(directory_); }

    fs::path path(const std::string& name) const { return directory_ / name; }

    void record(const std::string& name, int format, int channels, const std::vector<double>& samples) {
        SF_INFO info{};
        info.samplerate = 16000;
        info.channels = channels;
        info.format = SF_FORMAT_WAV | format;
        SNDFILE* file = sf_open(path(name).c_str(), SFM_WRITE, &info);
        ASSERT_NE(file, nullptr);
        const auto count = static_cast<sf_count_t>(samples.size());
        if (format == SF_FORMAT_FLOAT) {
            ASSERT_EQ(sf_write_double(file, samples.data(), count), count);
        } else { // libsndfile would scale floating point by 32767 and the like; integers it only shifts
            std::vector<int> integers;
            for (const double sample : samples)
                integers.push_back(static_cast<int>(std::ldexp(sample, 31)));
            ASSERT_EQ(sf_write_int(file, integers.data(), count), count);
        }
        ASSERT_EQ(sf_close(file), 0);
    }

    // Exit status of a run inside the directory; `out` and `err` keep what it printed.
    int run(const std::string& arguments) {
        const std::string command =
            "cd " + directory_.string() + " && " PHONE_LINE " " + arguments + " >out.txt 2>err.txt";
        const int status = std::system(command.c_str());
        out_ = readFile(path("out.txt"));
        err_ = readFile(path("err.txt"));
        fs::remove(path("out.txt"));
        fs::remove(path("err.txt"));
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(directory_))
            names.insert(entry.path().filename().string());
        return names;
    }

    std::vector<short> received(const std::string& name = "phone_line.wav", int rate = 16000) const {
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

    fs::path directory_;
    std::string out_, err_;
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

    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    ASSERT_TRUE(png_image_begin_read_from_file(&image, path("loud.png").c_str())) << image.message;
    image.format = PNG_FORMAT_RGB;
    std::vector<png_byte> pixels(PNG_IMAGE_SIZE(image));
    ASSERT_TRUE(png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr)) << image.message;
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
        const auto after = [&](const std::string& text) {
            const size_t found = out_.find(text);
            return found == std::string::npos ? NAN : std::strtod(out_.c_str() + found + text.size(), nullptr);
        };
        EXPECT_NEAR(after("mu-law "), muLaw, 1) << out_;
        EXPECT_NEAR(after(" A-law "), aLaw, 1) << out_;
        EXPECT_NEAR(after("strongest at "), 1062.5, 0.6) << out_;
        EXPECT_NEAR(after(" Hz ("), level, 0.11) << out_;
        EXPECT_NEAR(after("before, "), 1062.5, 0.6) << out_;
        EXPECT_NEAR(after("before, 1063 Hz ("), level - 20, 1) << out_; // where a sample is a few steps high
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
    record("none.wav", SF_FORMAT_PCM_16, 1, {});
    record("nan.wav", SF_FORMAT_FLOAT, 1, {0, std::numeric_limits<double>::quiet_NaN(), 0});
    const std::string good = readFile(path("good.wav"));
    writeFile(path("empty.wav"), "");
    writeFile(path("text.wav"), "This is a letter, not a recording.\n" + std::string(2000, 'x'));
    writeFile(path("header.wav"), good.substr(0, 30));
    writeFile(path("half.wav"), good.substr(0, good.size() / 2));
    writeFile(path("short.wav"), good.substr(0, good.size() - 1));
    fs::create_directory(path("folder.wav"));
    const auto before = files();

    const struct {
        const char* arguments;
        int status;
        const char* message;
    } cases[] = {
        {"missing.wav", 1, "missing.wav: no such file"},
        {"folder.wav", 1, "folder.wav: not a regular file"},
        {"empty.wav", 1, "empty.wav: the file is empty"},
        {"text.wav", 1, "text.wav: "},
        {"header.wav", 1, "header.wav: "},
        {"half.wav", 1, "half.wav: the file is truncated"},
        {"short.wav", 1, "short.wav: the file is truncated"},
        {"none.wav", 1, "none.wav: holds no samples"},
        {"nan.wav", 1, "nan.wav: holds samples that are no numbers"},
        {"good.wav --channel 2", 1, "good.wav: no channel 2"},
        {"good.wav --output good", 1, "would replace the recording"},
        {"good.wav --output no/such/folder", 1, "no/such/folder.wav"},
        {"good.wav --gain loud", 2, "--gain takes a number"},
        {"good.wav --gain", 2, "--gain lacks its value"},
        {"good.wav --gian 3", 2, "no option --gian"},
        {"", 2, "no recording given"},
    };
    for (const auto& [arguments, status, message] : cases) {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(run(arguments), status);
        EXPECT_EQ(out_, "");
        EXPECT_NE(err_.find(message), std::string::npos) << err_;
        EXPECT_EQ(err_.find("phone_line: "), 0u) << err_;
        EXPECT_EQ(err_.find('\n'), err_.size() - 1) << err_;
        EXPECT_EQ(files(), before);
    }
    EXPECT_EQ(readFile(path("good.wav")), good);
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
