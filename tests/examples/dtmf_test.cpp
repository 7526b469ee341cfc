// Runs the example dtmf: what it generates, it detects; speech and wrong files give no digits.
#include "example_test.hpp"

namespace {
class Dtmf : public Example {};

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
    for (const auto& [name, message] : makeBadFiles())
        expectRefusal(name, 1, message);
    expectRefusal("--generate x.wav --digits 12X", 1, "");
    expectRefusal("--unknown", 2, "no option --unknown");
    expectRefusal("", 2, "give a recording or --generate");
    expectRefusal("good.wav --generate", 2, "--generate lacks its value");
}
} // namespace
