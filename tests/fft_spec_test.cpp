// FFT objects: sizes, what Init builds inside them, checks in their order, memory that runs out.
#include "framework/arena.hpp"
#include "framework/call.hpp"
#include "framework/fft.hpp"
#include "framework/memory.hpp"

#include <gtest/gtest.h>

#include <cmath>

namespace zvps::test {
namespace {

constexpr int kFlags[] = {zvpFftScaleFwd, zvpFftScaleInv, zvpFftScaleSqrt, zvpFftScaleNone};

struct Sizes {
    int spec = -1;
    int init = -1;
    int work = -1;

    bool operator==(const Sizes& other) const { return spec == other.spec && init == other.init && work == other.work; }
};
std::ostream& operator<<(std::ostream& out, const Sizes& sizes) {
    return out << sizes.spec << ", " << sizes.init << ", " << sizes.work;
}

Sizes sizesOf(const SpecType& type, int order, int flag, int hint) {
    Sizes sizes;
    EXPECT_EQ(type.getSize(order, flag, hint, &sizes.spec, &sizes.init, &sizes.work), zvpStsOk) << type.name << order;
    return sizes;
}

template <class T>
T fieldAt(const void* spec, size_t offset) {
    T field;
    std::memcpy(&field, static_cast<const char*>(spec) + offset, sizeof(T));
    return field;
}

// ---- Sizes ----

TEST(FftSpec, SizesAreThoseOfTheInterface) {
    struct Expected {
        int order;
        Sizes sizes;
    };
    struct Table {
        std::vector<const SpecType*> types;
        int hint;
        std::vector<Expected> rows;
    };
    const Table tables[] = {
        {{&kSpecType<ZvpsFFTSpec_C_32fc>, &kSpecType<ZvpsFFTSpec_C_32f>},
         0,
         {{0, {168, 0, 0}},
          {5, {168, 0, 0}},
          {6, {832, 0, 544}},
          {10, {9472, 0, 8224}},
          {11, {18688, 2112, 16416}},
          {17, {1179904, 131136, 1048608}},
          {18, {2490624, 262208, 131104}},
          {19, {4980992, 524352, 262176}},
          {20, {9961728, 1048640, 524320}},
          {21, {19398912, 2097216, 524320}},
          {22, {37880064, 4194368, 262176}}}},
        {{&kSpecType<ZvpsFFTSpec_R_32f>},
         0,
         {{0, {168, 0, 0}},
          {4, {168, 0, 0}},
          {5, {320, 0, 0}},
          {6, {448, 0, 0}},
          {7, {1344, 0, 544}},
          {10, {8960, 0, 4128}},
          {11, {17664, 2112, 8224}},
          {18, {2228480, 262208, 1048608}},
          {19, {4587776, 524352, 131104}},
          {20, {9175296, 1048640, 262176}}}},
        {{&kSpecType<ZvpsFFTSpec_C_64fc>, &kSpecType<ZvpsFFTSpec_C_64f>},
         0,
         {{0, {168, 0, 0}},
          {5, {168, 0, 0}},
          {6, {1344, 0, 0}},
          {10, {17664, 0, 0}},
          {11, {35072, 4160, 0}},
          {12, {69888, 8256, 0}}}},
        {{&kSpecType<ZvpsFFTSpec_R_64f>},
         0,
         {{0, {168, 0, 0}},
          {5, {168, 0, 0}},
          {6, {704, 0, 0}},
          {7, {2368, 0, 0}},
          {11, {34048, 4160, 0}},
          {13, {135424, 16448, 0}}}},
        {{&kSpecType<ZvpsFFTSpec_C_32s>, &kSpecType<ZvpsFFTSpec_C_32sc>},
         0,
         {{0, {232, 0, 48}},
          {5, {232, 0, 544}},
          {10, {17728, 0, 16416}},
          {11, {35136, 4192, 32800}},
          {12, {69952, 8288, 65568}}}},
        {{&kSpecType<ZvpsFFTSpec_R_32s>},
         0,
         {{0, {232, 0, 56}}, {6, {768, 0, 560}}, {11, {34112, 4192, 16432}}, {13, {135488, 16480, 65584}}}},
        {{&kSpecType<ZvpsFFTSpec_C_16s>, &kSpecType<ZvpsFFTSpec_C_16sc>},
         1,
         {{0, {104, 0, 0}},
          {1, {192, 64, 56}},
          {2, {192, 64, 80}},
          {3, {224, 64, 128}},
          {4, {296, 32, 160}},
          {6, {960, 32, 1088}},
          {11, {18816, 2144, 32832}}}},
        {{&kSpecType<ZvpsFFTSpec_C_16s>, &kSpecType<ZvpsFFTSpec_C_16sc>},
         2,
         {{0, {104, 0, 0}}, {1, {296, 32, 48}}, {3, {296, 32, 96}}}},
    };
    for (const Table& table : tables) {
        for (const SpecType* type : table.types) {
            for (const Expected& row : table.rows) {
                for (const int flag : kFlags)
                    EXPECT_EQ(sizesOf(*type, row.order, flag, table.hint), row.sizes) << type->name << " " << row.order;
            }
        }
    }
    // In the highest orders every size still fits its type.
    for (const SpecType* type : kSpecTypes) {
        const Sizes below = sizesOf(*type, type->lastOrder - 1, zvpFftScaleNone, 0);
        const Sizes last = sizesOf(*type, type->lastOrder, zvpFftScaleNone, 0);
        EXPECT_TRUE(last.spec > below.spec && last.init > below.init && last.work >= 0) << type->name << ": " << last;
    }
}

// ---- Building ----

// Where the fields lie that a caller may look at; 0 for those that a transform object lacks.
struct Offsets {
    size_t factor, hint, workSize, isAllocated;
    bool isDouble;
};
Offsets offsetsOf(const SpecType& type) {
    const std::string name = type.name;
    if (name.find("64f") != std::string::npos) return {16, 24, 28, 32, true};
    if (name.find("32f") != std::string::npos) return {16, 20, 24, 28, false};
    if (name.find("32s") != std::string::npos) return {0, 8, 12, 16, false};
    return {0, 16, 20, 24, false};
}

void expectFields(const SpecType& type, const void* spec, int order, int flag, int hint, const Sizes& sizes) {
    const std::string name = std::string(type.name) + " " + std::to_string(order);
    const Offsets offsets = offsetsOf(type);
    EXPECT_EQ(fieldAt<int32_t>(spec, 4), order) << name;
    EXPECT_EQ(fieldAt<int32_t>(spec, offsets.hint), hint) << name;
    EXPECT_EQ(fieldAt<int32_t>(spec, offsets.workSize), sizes.work > 0 ? sizes.work - 32 : 0) << name;
    int work = -1;
    EXPECT_EQ(type.getBufSize(spec, &work), zvpStsOk) << name;
    EXPECT_EQ(work, sizes.work) << name;
    if (offsets.factor == 0) return;
    EXPECT_EQ(fieldAt<int32_t>(spec, 8), flag == zvpFftScaleFwd || flag == zvpFftScaleSqrt) << name;
    EXPECT_EQ(fieldAt<int32_t>(spec, 12), flag == zvpFftScaleInv || flag == zvpFftScaleSqrt) << name;
    const double factor = flag == zvpFftScaleNone   ? 0
                          : flag == zvpFftScaleSqrt ? 1 / std::sqrt(std::exp2(order))
                                                    : std::exp2(-order);
    if (offsets.isDouble) {
        EXPECT_EQ(fieldAt<double>(spec, offsets.factor), factor) << name;
    } else {
        EXPECT_EQ(fieldAt<float>(spec, offsets.factor), static_cast<float>(factor)) << name;
    }
}

// Init at several addresses, in exactly the sizes that GetSize tells; Free afterwards.
TEST(FftSpec, InitKeepsInsideItsSizes) {
    allocationsLeft = 0;
    for (const SpecType* type : kSpecTypes) {
        for (int order = 0; order <= 19; ++order) {
            const int flag = kFlags[order % 4];
            const int hint = order / 2 % 3;
            const Sizes sizes = sizesOf(*type, order, flag, hint);
            Arena specMem(static_cast<size_t>(sizes.spec) + 64);
            Arena initBuf(static_cast<size_t>(sizes.init) + 64);
            for (const size_t gap : {0, 1, 13, 31, 32}) {
                const std::string name = std::string(type->name) + " " + std::to_string(order);
                Zvp8u* const memory = specMem.atEnd(static_cast<size_t>(sizes.spec), gap);
                Zvp8u* const scratch = initBuf.atEnd(static_cast<size_t>(sizes.init), gap);
                void* spec = nullptr;
                ASSERT_EQ(type->init(&spec, order, flag, hint, memory, sizes.init > 0 ? scratch : nullptr), zvpStsOk)
                    << name;
                EXPECT_TRUE(specMem.isIntact() && initBuf.isIntact()) << name;
                EXPECT_EQ(reinterpret_cast<uintptr_t>(spec), (reinterpret_cast<uintptr_t>(memory) + 31) / 32 * 32);
                expectFields(*type, spec, order, flag, hint, sizes);
                EXPECT_EQ(fieldAt<int32_t>(spec, offsetsOf(*type).isAllocated), 0) << name;

                EXPECT_EQ(type->free(spec), zvpStsOk) << name;
                EXPECT_EQ(fieldAt<uint32_t>(spec, 0), 0U) << name;
                EXPECT_EQ(type->free(spec), zvpStsContextMismatch) << name;
                int work = -1;
                EXPECT_EQ(type->getBufSize(spec, &work), zvpStsContextMismatch) << name;
                EXPECT_EQ(work, -1) << name;
            }
        }
    }
}

TEST(FftSpec, TagsTellTypesApart) {
    const uint32_t tags[] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 0x434D414C, 0x434D414D, 0x434D414E, 0x434D414F};
    allocationsLeft = -1;
    size_t i = 0;
    for (const SpecType* type : kSpecTypes) {
        void* spec = nullptr;
        ASSERT_EQ(type->initAlloc(&spec, 6, zvpFftScaleFwd, 0), zvpStsOk);
        EXPECT_EQ(fieldAt<uint32_t>(spec, 0), tags[i++]) << type->name;
        EXPECT_EQ(fieldAt<int32_t>(spec, offsetsOf(*type).isAllocated), 1) << type->name;
        for (const SpecType* other : kSpecTypes) {
            if (other == type) continue;
            int work = -1;
            EXPECT_EQ(other->getBufSize(spec, &work), zvpStsContextMismatch) << other->name;
            EXPECT_EQ(other->free(spec), zvpStsContextMismatch) << other->name;
        }
        for (const Transform& transform : kTransforms) {
            if (transform.spec == type) continue;
            const TransformCall nulls = {{}, {}, spec, 0, nullptr};
            EXPECT_EQ(transform.call(nulls), zvpStsContextMismatch) << transform.name;
        }
        EXPECT_EQ(type->free(spec), zvpStsOk);
        EXPECT_TRUE(blocks.empty()) << type->name;
    }
}

// ---- Failures ----

TEST(FftSpec, ChecksInOrder) {
    allocationsLeft = -1;
    for (const SpecType* type : kSpecTypes) {
        SCOPED_TRACE(type->name);
        const bool isWideInteger = offsetsOf(*type).hint == 8;
        int a = -1;
        int b = -1;
        int c = -1;
        const int beyond = type->lastOrder + 1;
        EXPECT_EQ(type->getSize(31, 0, 0, nullptr, &b, &c), zvpStsBadFftOrder);
        EXPECT_EQ(type->getSize(-1, 0, 0, nullptr, &b, &c), zvpStsBadFftOrder);
        EXPECT_EQ(type->getSize(beyond, 0, 0, nullptr, &b, &c), zvpStsNullPtr);
        EXPECT_EQ(type->getSize(beyond, 0, 0, &a, nullptr, &c), zvpStsNullPtr);
        EXPECT_EQ(type->getSize(beyond, 0, 0, &a, &b, nullptr), zvpStsNullPtr);
        EXPECT_EQ(type->getSize(beyond, 3, 0, &a, &b, &c), zvpStsBadFftFlag);
        EXPECT_EQ(type->getSize(beyond, 1, 0, &a, &b, &c), zvpStsBadFftOrder);
        EXPECT_EQ(type->getSize(30, 8, 0, &a, &b, &c), zvpStsBadFftOrder);
        EXPECT_TRUE(a == -1 && b == -1 && c == -1);

        void* const untouched = &a;
        void* spec = untouched;
        const Sizes sizes = sizesOf(*type, 11, 1, 0);
        std::vector<Zvp8u> memory(static_cast<size_t>(sizes.spec));
        std::vector<Zvp8u> scratch(static_cast<size_t>(sizes.init));
        const auto* const header = memory.data() + (0 - reinterpret_cast<uintptr_t>(memory.data())) % 32;
        EXPECT_EQ(type->init(nullptr, 31, 0, 0, nullptr, nullptr), zvpStsNullPtr);
        EXPECT_EQ(type->init(&spec, 31, 0, 0, nullptr, nullptr), zvpStsBadFftOrder);
        EXPECT_EQ(type->init(&spec, -1, 0, 0, nullptr, nullptr), zvpStsBadFftOrder);
        EXPECT_EQ(type->init(&spec, beyond, 0, 0, nullptr, nullptr), isWideInteger ? zvpStsNullPtr : zvpStsBadFftOrder);
        EXPECT_EQ(type->init(&spec, beyond, 0, 0, memory.data(), nullptr), zvpStsBadFftOrder);
        EXPECT_EQ(type->init(&spec, 11, 0, 0, nullptr, nullptr), zvpStsNullPtr);
        EXPECT_EQ(type->init(&spec, 11, 5, 0, memory.data(), nullptr), zvpStsBadFftFlag);
        EXPECT_EQ(fieldAt<uint32_t>(header, 0), 0U);
        EXPECT_EQ(type->init(&spec, 11, 1, 0, memory.data(), nullptr), zvpStsNullPtr);
        // The floating-point types have written their tag by then.
        EXPECT_EQ(fieldAt<uint32_t>(header, 0) != 0, offsetsOf(*type).factor != 0);
        EXPECT_EQ(type->init(&spec, 10, 1, 0, memory.data(), nullptr), zvpStsOk);

        spec = untouched;
        EXPECT_EQ(type->initAlloc(nullptr, 31, 0, 0), zvpStsNullPtr);
        EXPECT_EQ(type->initAlloc(&spec, 31, 0, 0), zvpStsBadFftOrder);
        EXPECT_EQ(type->initAlloc(&spec, beyond, 0, 0), zvpStsBadFftFlag);
        EXPECT_EQ(type->initAlloc(&spec, beyond, 1, 0), zvpStsBadFftOrder);
        EXPECT_EQ(type->free(nullptr), zvpStsNullPtr);
        EXPECT_EQ(type->getBufSize(nullptr, &a), zvpStsNullPtr);
        EXPECT_EQ(type->getBufSize(header, nullptr), zvpStsNullPtr);
        EXPECT_EQ(spec, untouched);
        EXPECT_TRUE(blocks.empty());
    }
}

// Whichever allocation fails, nothing is kept and nothing written.
TEST(FftSpec, MemoryRunsOut) {
    for (const SpecType* type : kSpecTypes) {
        for (const int order : {3, 11}) {
            void* spec = nullptr;
            ZvpStatus status = zvpStsNoMemory;
            int needed = -1;
            while (status != zvpStsOk) {
                allocationsLeft = ++needed;
                status = type->initAlloc(&spec, order, zvpFftScaleInv, 0);
                EXPECT_EQ(status == zvpStsOk, spec != nullptr) << type->name;
                ASSERT_TRUE(status == zvpStsOk || status == zvpStsNoMemory) << type->name;
                EXPECT_EQ(blocks.size(), status == zvpStsOk ? 1U : 0U) << type->name;
            }
            EXPECT_EQ(needed, sizesOf(*type, order, zvpFftScaleInv, 0).init > 0 ? 2 : 1) << type->name;
            EXPECT_EQ(type->free(spec), zvpStsOk);
            EXPECT_TRUE(blocks.empty()) << type->name;
        }
    }
}

TEST(FftSpec, TransformsAllocateWhatTheyLack) {
    for (const Transform& transform : kTransforms) {
        for (const int order : {2, 11}) {
            allocationsLeft = -1;
            void* spec = nullptr;
            ASSERT_EQ(transform.spec->initAlloc(&spec, order, zvpFftScaleFwd, 2), zvpStsOk);
            int work = -1;
            ASSERT_EQ(transform.spec->getBufSize(spec, &work), zvpStsOk);
            std::vector<Zvp8u> src(size_t{16} << order, 1);
            const std::vector<Zvp8u> untouched((size_t{16} << order) + 64, 7);
            std::vector<Zvp8u> dst = untouched;
            std::vector<Zvp8u> buffer(static_cast<size_t>(work) + 1);
            const size_t half = src.size() / 2;
            TransformCall call = {{src.data(), src.data() + half}, {dst.data(), dst.data() + half}, spec, 0, nullptr};
            allocationsLeft = 0;
            EXPECT_EQ(transform.call(call), work > 0 ? zvpStsNoMemory : zvpStsOk) << transform.name;
            EXPECT_EQ(dst == untouched, work > 0) << transform.name;
            call.buffer = buffer.data() + 1;
            EXPECT_EQ(transform.call(call), zvpStsOk) << transform.name;
            allocationsLeft = 1;
            call.buffer = nullptr;
            EXPECT_EQ(transform.call(call), zvpStsOk) << transform.name;
            EXPECT_EQ(blocks.size(), 1U) << transform.name;

            TransformCall lacking = call;
            lacking.spec = nullptr;
            EXPECT_EQ(transform.call(lacking), zvpStsNullPtr) << transform.name;
            for (const size_t i : {0, 1}) {
                if (i == 1 && !transform.isSplit()) continue;
                lacking = call;
                lacking.src[i] = nullptr;
                EXPECT_EQ(transform.call(lacking), zvpStsNullPtr) << transform.name;
                lacking = call;
                lacking.dst[i] = nullptr;
                EXPECT_EQ(transform.call(lacking), zvpStsNullPtr) << transform.name;
                if (transform.callInPlace) {
                    EXPECT_EQ(transform.callInPlace(lacking), zvpStsNullPtr) << transform.name;
                }
            }
            EXPECT_EQ(transform.spec->free(spec), zvpStsOk);
        }
    }
}

} // namespace
} // namespace zvps::test
