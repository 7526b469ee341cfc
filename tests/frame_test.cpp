// Status codes and their texts, the version record, the number of threads, the core library's memory.
#include "zvpcore.h"
#include "zvps.h"

#include <gtest/gtest.h>
#include <omp.h>

#include <map>
#include <set>
#include <string>

namespace {

// The values are part of the binary interface.
TEST(Status, ValuesAndTexts) {
    const std::map<int, int> values = {{0, zvpStsOk},
                                       {3, zvpStsSqrtNegArg},
                                       {6, zvpStsDivByZero},
                                       {7, zvpStsLnZeroArg},
                                       {8, zvpStsLnNegArg},
                                       {-5, zvpStsBadArg},
                                       {-6, zvpStsBadSize},
                                       {-7, zvpStsBadZeroCrossType},
                                       {-8, zvpStsNullPtr},
                                       {-9, zvpStsNoMemory},
                                       {-10, zvpStsDivByZeroErr},
                                       {-11, zvpStsBadCauchyParam},
                                       {-13, zvpStsBadTapsScale},
                                       {-15, zvpStsBadFftOrder},
                                       {-16, zvpStsBadFftFlag},
                                       {-17, zvpStsContextMismatch},
                                       {-18, zvpStsBadThresholdOrder},
                                       {-19, zvpStsBadThresholdLevel},
                                       {-24, zvpStsBadDelayIndex},
                                       {-25, zvpStsBadIirOrder},
                                       {-26, zvpStsBadFirLength},
                                       {-27, zvpStsBadRelFreq},
                                       {-28, zvpStsBadMrPhase},
                                       {-29, zvpStsBadMrFactor},
                                       {-30, zvpStsBadSamplePhase},
                                       {-31, zvpStsBadSampleFactor},
                                       {-32, zvpStsBadShift},
                                       {-33, zvpStsBadWindowLength},
                                       {-35, zvpStsBadWtOffset},
                                       {-38, zvpStsBadJaehneMagn},
                                       {-39, zvpStsBadKaiserAlpha},
                                       {-40, zvpStsBadTriAsym},
                                       {-41, zvpStsBadTriPhase},
                                       {-42, zvpStsBadTriFreq},
                                       {-43, zvpStsBadTriMagn},
                                       {-44, zvpStsBadTonePhase},
                                       {-45, zvpStsBadToneFreq},
                                       {-46, zvpStsBadToneMagn},
                                       {-53, zvpStsBadIirParam},
                                       {-182, zvpStsBadBlockSize},
                                       {-194, zvpStsBadSparsePos},
                                       {-195, zvpStsSingular},
                                       {-213, zvpStsBadRoundMode}};
    const std::string unknown = zvpsStatusText(1);
    std::set<std::string> texts;
    for (int status = -300; status <= 100; ++status) {
        const std::string text = zvpsStatusText(status);
        const auto known = values.find(status);
        EXPECT_EQ(text != unknown, known != values.end()) << status;
        if (known == values.end()) continue;
        EXPECT_EQ(known->second, status);
        EXPECT_TRUE(texts.insert(text).second) << text << ", twice";
        EXPECT_EQ(text.find("warning") == 0, status > 0) << text;
    }
}

TEST(Version, Record) {
    const ZvpLibraryVersion* const version = zvpsGetLibVersion();
    ASSERT_NE(version, nullptr);
    EXPECT_EQ(version, zvpsGetLibVersion());
    EXPECT_EQ(version->major, 6);
    EXPECT_EQ(version->minor, 1);
    EXPECT_EQ(version->majorBuild, 137);
    EXPECT_EQ(version->build, 837);
    EXPECT_EQ(std::string(version->targetCpu, 4), std::string("n8\0\0", 4));
    EXPECT_STREQ(version->name, "zvpsn8-6.1.dll");
    EXPECT_STREQ(version->version, "6.1 build 137.46");
    EXPECT_STREQ(version->buildDate, "Nov 27 2009");
}

TEST(Threads, LimitedByRuntimeAndCaller) {
    omp_set_num_threads(3);
    const int runtime = ownGetNumThreads();
    EXPECT_EQ(runtime, std::min(3, omp_get_thread_limit()));
    zvpSetNumThreads(2);
    EXPECT_EQ(ownGetNumThreads(), std::min(2, runtime));
    zvpSetNumThreads(100);
    EXPECT_EQ(ownGetNumThreads(), runtime);
    omp_set_num_threads(1);
    EXPECT_EQ(ownGetNumThreads(), 1);
    omp_set_num_threads(3);
    for (const int none : {0, -1, INT32_MIN}) {
        zvpSetNumThreads(1);
        EXPECT_EQ(ownGetNumThreads(), 1);
        zvpSetNumThreads(none);
        EXPECT_EQ(ownGetNumThreads(), runtime);
    }
}

TEST(CoreMemory, AlignedBlocks) {
    for (int64_t size = 1; size < 300; ++size) {
        auto* const block = static_cast<unsigned char*>(zvpMalloc(size));
        ASSERT_NE(block, nullptr);
        EXPECT_EQ(reinterpret_cast<uintptr_t>(block) % 32, 0u) << size;
        block[0] = block[size - 1] = 1;
        zvpFree(block);
    }
    for (const int64_t size : {int64_t{0}, int64_t{-1}, INT64_MIN})
        EXPECT_EQ(zvpMalloc(size), nullptr);
    EXPECT_EQ(zvpMalloc(INT64_MAX), nullptr);
    zvpFree(nullptr);
}

} // namespace
