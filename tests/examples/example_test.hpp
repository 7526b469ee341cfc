// Runs an example program, whose path is EXAMPLE, in a directory of its own.
#pragma once

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

namespace fs = std::filesystem;

class Example : public testing::Test {
  protected:
    static constexpr int kRate = 16000;

    void SetUp() override {
        char name[] = "/tmp/example_test.XXXXXX";
        ASSERT_NE(mkdtemp(name), nullptr);
        directory_ = name;
    }
    void TearDown() override { fs::remove_all(directory_); }

    fs::path path(const std::string& name) const { return directory_ / name; }

    std::string read(const std::string& name) const {
        std::ifstream file(path(name), std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void write(const std::string& name, const std::string& content) const {
        std::ofstream(path(name), std::ios::binary) << content;
    }

    void record(const std::string& name, int format, int channels, const std::vector<double>& samples) const {
        SF_INFO info{};
        info.samplerate = kRate;
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

    // Recordings that no program can use: their names and what is said of them.
    struct BadFile {
        const char* name;
        const char* message;
    };
    std::vector<BadFile> makeBadFiles() const {
        record("none.wav", SF_FORMAT_PCM_16, 1, {});
        record("nan.wav", SF_FORMAT_FLOAT, 1, {0, std::numeric_limits<double>::quiet_NaN(), 0});
        record("half.wav", SF_FORMAT_PCM_16, 1, std::vector<double>(4000));
        const std::string whole = read("half.wav");
        write("empty.wav", "");
        write("text.wav", "This is a letter, not a recording.\n" + std::string(2000, 'x'));
        write("header.wav", whole.substr(0, 30));
        write("half.wav", whole.substr(0, whole.size() / 2));
        write("short.wav", whole.substr(0, whole.size() - 1));
        fs::create_directory(path("folder.wav"));
        return {{"missing.wav", "missing.wav: no such file"},
                {"folder.wav", "folder.wav: not a regular file"},
                {"empty.wav", "empty.wav: the file is empty"},
                {"text.wav", "text.wav: "},
                {"header.wav", "header.wav: "},
                {"half.wav", "half.wav: the file is truncated"},
                {"short.wav", "short.wav: the file is truncated"},
                {"none.wav", "none.wav: holds no samples"},
                {"nan.wav", "nan.wav: holds samples that are no numbers"}};
    }

    // The exit status; `out_` and `err_` keep what was printed.
    int run(const std::string& arguments) {
        const std::string command =
            "cd " + directory_.string() + " && " EXAMPLE " " + arguments + " >out.txt 2>err.txt";
        const int status = std::system(command.c_str());
        out_ = read("out.txt");
        err_ = read("err.txt");
        fs::remove(path("out.txt"));
        fs::remove(path("err.txt"));
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }

    // Refused in one line that begins with the program's name; nothing printed, no file left behind.
    void expectRefusal(const std::string& arguments, int status, const std::string& message) {
        SCOPED_TRACE(arguments);
        const auto before = files();
        EXPECT_EQ(run(arguments), status);
        EXPECT_EQ(out_, "");
        EXPECT_NE(err_.find(message), std::string::npos) << err_;
        EXPECT_EQ(err_.find(fs::path(EXAMPLE).filename().string() + ": "), 0u) << err_;
        EXPECT_EQ(err_.find('\n'), err_.size() - 1) << err_;
        EXPECT_EQ(files(), before);
    }

    std::set<std::string> files() const {
        std::set<std::string> names;
        for (const auto& entry : fs::directory_iterator(directory_))
            names.insert(entry.path().filename().string());
        return names;
    }

    // The number that follows the text in what was printed.
    double numberAfter(const std::string& text) const {
        const size_t found = out_.find(text);
        return found == std::string::npos ? NAN : std::strtod(out_.c_str() + found + text.size(), nullptr);
    }

    struct Image {
        size_t width = 0, height = 0;
        std::vector<png_byte> pixels;

        // The sum of a pixel's colours.
        int brightness(size_t x, size_t y) const {
            const size_t at = 3 * (y * width + x);
            return pixels[at] + pixels[at + 1] + pixels[at + 2];
        }
    };
    Image readImage(const std::string& name) const {
        png_image image{};
        image.version = PNG_IMAGE_VERSION;
        EXPECT_TRUE(png_image_begin_read_from_file(&image, path(name).c_str())) << image.message;
        image.format = PNG_FORMAT_RGB;
        Image result{image.width, image.height, std::vector<png_byte>(PNG_IMAGE_SIZE(image))};
        EXPECT_TRUE(png_image_finish_read(&image, nullptr, result.pixels.data(), 0, nullptr)) << image.message;
        return result;
    }

    fs::path directory_;
    std::string out_, err_;
};
