// Runs the example dtmf: what it generates, it detects; speech and wrong files give no digits.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace {
namespace fs = std::filesystem;

class Dtmf : public testing::Test {
  protected:
    void SetUp() override {
        char name[] = "/tmp/dtmf_test.XXXXXX";
        ASSERT_NE(mkdtemp(name), nullptr);
        directory_ = name;
    }
    void TearDown() override { fs::remove_all(directory_); }

    // Exit status; `out_` and `err_` keep what was printed.
    int run(const std::string& arguments) {
        const int status =
            std::system(("cd " + directory_.string() + " && " DTMF " " + arguments + " >out.txt 2>err.txt").c_str());
        out_ = read("out.txt");
        err_ = read("err.txt");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    std::string read(const std::string& name) const {
        std::ifstream file(directory_ / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    void write(const std::string& name, const std::string& content) const {
        std::ofstream(directory_ / name, std::ios::binary) << content;
    }

    fs::path directory_;
    std::string out_, err_;
};

TEST_F(Dtmf, detectsWhatItGenerates) {
    for (const std::string digits : {"0123456789*#ABCD", "7", "555", "D*0#A1"}) {
        ASSERT_EQ(run("--generate d.wav --digits '" + digits + "'"), 0) << err_;
        EXPECT_EQ(run("d.wav"), 0) << err_;
        EXPECT_NE(out_.find("dialled: " + digits + "\n"), std::string::npos) << out_;
    }
    // The first tone lasts from 0.08 s to 0.15 s.
    EXPECT_EQ(out_.rfind("D  0.0", 0), 0u) << out_;
}

TEST_F(Dtmf, isNotMisledBySpeech) {
    const fs::path sounds = "/usr/share/sounds/alsa";
    if (!fs::exists(sounds / "Front_Center.wav")) GTEST_SKIP() << "no recordings of speech here";
    for (const std::string name : {"Front_Center", "Front_Left", "Rear_Right", "Side_Left", "Noise"}) {
        const std::string speech = (sounds / (name + ".wav")).string();
        EXPECT_EQ(run(speech), 0) << err_;
        EXPECT_EQ(out_, "dialled: nothing\n");
        ASSERT_EQ(run("--generate d.wav --speech " + speech), 0) << err_;
        EXPECT_EQ(run("d.wav"), 0) << err_;
        EXPECT_NE(out_.find("dialled: 0123456789*#ABCD\n"), std::string::npos) << name << ": " << out_;
    }
}

TEST_F(Dtmf, refusesWrongFilesInOneLine) {
    ASSERT_EQ(run("--generate good.wav"), 0) << err_;
    const std::string good = read("good.wav");
    write("empty.wav", "");
    write("text.wav", "no audio at all, but some text instead\n");
    write("truncated.wav", good.substr(0, good.size() / 2));
    for (const std::string arguments : {"missing.wav", "empty.wav", "text.wav", "truncated.wav", ".",
                                        "--generate x.wav --digits 12X", "--unknown", "", "good.wav --generate"}) {
        EXPECT_GT(run(arguments), 0) << arguments;
        EXPECT_EQ(out_, "") << arguments;
        EXPECT_EQ(err_.rfind("dtmf: ", 0), 0u) << arguments << ": " << err_;
        EXPECT_EQ(err_.find('\n'), err_.size() - 1) << arguments << ": " << err_;
    }
    EXPECT_FALSE(fs::exists(directory_ / "x.wav"));
}
} // namespace
