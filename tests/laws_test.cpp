// What holds for every element-wise function and every reduction, whatever it computes: the checks of its arguments,
// where it reads and writes, and that neither address nor overlap or level changes a result, nor the length that of an
// element.
#include "framework/call.hpp"

#include <gtest/gtest.h>

#include <climits>
#include <set>

namespace zvps::test {
namespace {

std::set<std::string> bases(bool (Function::*isMember)() const) {
    std::set<std::string> result;
    for (const Function& f : functions()) {
        if ((f.*isMember)()) result.insert(f.base());
    }
    return result;
}

constexpr size_t kMost = 4200;

// By base name.
class Shape : public ::testing::TestWithParam<std::string> {
  protected:
    explicit Shape(bool (Function::*isMember)() const) : isMember_(isMember) {}
    ~Shape() override { useLevel(levels().back()); }

    // Once for each function of the base name and each way to scale (exact, by one place, by several, up, beyond all).
    template <class Law>
    void forEach(Law law) {
        const std::string_view name = ::testing::UnitTest::GetInstance()->current_test_info()->name();
        for (const Function& f : functions()) {
            if (!(f.*isMember_)() || f.base() != GetParam()) continue;
            Random random(std::string(name) + f.name);
            Operands operands = randomOperands(f, kMost, random);
            for (const int scaleFactor : {0, 1, 3, -2, 100, -100}) {
                operands.setScaleFactor(f, scaleFactor);
                law(f, operands, random);
                if (HasFailure() || !f.hasRole(Role::scaleFactor)) break;
            }
        }
    }

    // The outputs and the status of the call on `count` elements, by the first level, on vectors of their own.
    ZvpStatus reference(const Function& f, const Operands& operands, std::vector<Bytes>& outputs, size_t first,
                        size_t count, Level level = Level::v2) {
        useLevel(level);
        const ZvpStatus status = stage.call(f, operands, first, count, {});
        outputs.assign(f.arguments.size(), {});
        for (size_t i = 0; i < f.arguments.size(); ++i) {
            if (f.arguments[i].isOutput()) {
                outputs[i].assign(stage.vector(i), stage.vector(i) + operands.vectors[i].size());
            }
        }
        return status;
    }

    // False after a failure.
    bool isSame(const Function& f, const Operands& operands, const std::vector<Bytes>& outputs, size_t first,
                size_t count, const How& how, const std::vector<Level>& among = levels()) {
        ZvpStatus status = 0;
        for (const Level level : among) {
            useLevel(level);
            const ZvpStatus now = stage.call(f, operands, first, count, how);
            if (level == among.front()) status = now;
            const std::string text = differences(f, stage, outputs, first, count);
            if (text.empty() && now == status && now >= 0) continue;
            ADD_FAILURE() << f.name << " by " << levelName(level) << ", elements from " << first << ", len " << count
                          << ", " << how.text() << ": status " << now << ", " << text;
            return false;
        }
        return true;
    }

    // The call fails with that status and writes nothing.
    void expectError(const Function& f, const Operands& operands, ZvpStatus expected, const How& how) {
        const ZvpStatus status = stage.call(f, operands, 0, 40, how);
        const std::string text = differences(f, stage, operands.vectors, 0, 40);
        EXPECT_TRUE(text.empty() && status == expected)
            << f.name << ", " << how.text() << ": status " << status << " for " << expected << ", " << text;
    }

    // Null pointers come before bad lengths, these before bad parameters.
    void expectErrors(const Function& f, const Operands& operands) {
        if (f.isUnchecked()) {
            How how;
            how.length = 0;
            how.nulls = 3;
            expectError(f, operands, zvpStsOk, how);
            return;
        }
        std::vector<std::pair<ZvpStatus, Operands>> badParameters;
        if (f.hasRole(Role::roundMode)) {
            for (const int mode : {-1, 2, 3, INT_MAX, INT_MIN}) {
                if (!f.rejectsRoundMode(mode)) continue;
                Operands& bad = badParameters.emplace_back(zvpStsBadRoundMode, operands).second;
                bad.values[f.indexOf(Role::roundMode)].set(mode);
            }
        }
        if (f.rejectsZeroConstant()) {
            Operands& bad = badParameters.emplace_back(zvpStsDivByZeroErr, operands).second;
            bad.values[f.indexOf(Role::constant)] = {};
            if (f.arguments[f.indexOf(Role::constant)].type->isFloat) {
                Operands& negative = badParameters.emplace_back(zvpStsDivByZeroErr, operands).second;
                withPartType(*f.arguments[f.indexOf(Role::constant)].type, [&](auto part) {
                    negative.values[f.indexOf(Role::constant)] = {};
                    negative.values[f.indexOf(Role::constant)].set(static_cast<decltype(part)>(-0.0));
                });
            }
        }
        std::vector<Operands> all = {operands};
        for (const auto& [status, bad] : badParameters) {
            expectError(f, bad, status, {});
            all.push_back(bad);
        }
        std::vector<std::optional<int>> badLengths = {f.leastLength() - 1};
        if (!f.acceptsNegativeLength()) badLengths.insert(badLengths.end(), {-1, INT_MIN});
        for (const Operands& any : all) {
            for (const auto& length : badLengths) {
                How how;
                how.length = length;
                expectError(f, any, zvpStsBadSize, how);
            }
            badLengths.push_back(std::nullopt);
            for (unsigned nulls = 1; nulls < 1u << f.arguments.size(); ++nulls) {
                bool onlyVectors = true;
                bool onlyOptional = true;
                for (size_t i = 0; i < f.arguments.size(); ++i) {
                    if ((nulls >> i & 1) == 0) continue;
                    onlyVectors &= f.arguments[i].isVector();
                    onlyOptional &= f.isOptional(f.arguments[i]);
                }
                for (const auto& length : badLengths) {
                    How how;
                    how.nulls = nulls;
                    how.length = length;
                    if (onlyVectors && !(onlyOptional && !length)) {
                        expectError(f, any, onlyOptional ? zvpStsBadSize : zvpStsNullPtr, how);
                    }
                }
            }
            badLengths.pop_back();
        }
    }

    Stage stage{kMost * 16};

  private:
    bool (Function::*isMember_)() const;
};

class Laws : public Shape {
  protected:
    Laws() : Shape(&Function::isElementwise) {}
};

TEST_P(Laws, Errors) {
    forEach([&](const Function& f, const Operands& operands, Random&) { expectErrors(f, operands); });
}

// Any piece of the vectors, between protected pages, gives what the whole gives there.
TEST_P(Laws, Lengths) {
    forEach([&](const Function& f, const Operands& operands, Random& random) {
        std::vector<Bytes> outputs;
        reference(f, operands, outputs, 0, operands.count);
        std::vector<size_t> lengths = {255, 256, 257, 511, 513, 1022, 1023, 1024, 1025, 1026, 2049, 4095, 4096, 4097};
        for (size_t length = 1; length <= 130; ++length)
            lengths.push_back(length);
        for (const size_t length : lengths) {
            const size_t first = random.below(kMost - length);
            How how;
            if (!isSame(f, operands, outputs, first, length, how)) return;
            how.atEnd = true;
            if (!isSame(f, operands, outputs, first, length, how)) return;
        }
    });
}

// Each vector at its own distance from a vector's boundary, down to what the elements' parts allow.
TEST_P(Laws, Alignment) {
    forEach([&](const Function& f, const Operands& operands, Random& random) {
        std::vector<Bytes> outputs;
        reference(f, operands, outputs, 0, operands.count);
        for (const size_t length : {67, 600, 1100}) {
            for (size_t bytes = 1; bytes < 64; ++bytes) {
                How how;
                for (size_t i = 0; i < f.arguments.size(); ++i) {
                    if (!f.arguments[i].isVector()) continue;
                    const size_t part = f.arguments[i].type->partBytes;
                    how.offset[i] = (f.arguments[i].isOutput() ? bytes : random.below(64)) / part * part;
                }
                if (!isSame(f, operands, outputs, random.below(kMost - length), length, how)) return;
            }
        }
    });
}

// Vectors may lie on each other.
TEST_P(Laws, InPlace) {
    forEach([&](const Function& f, const Operands& operands, Random& random) {
        for (size_t i = 0; i < f.arguments.size(); ++i) {
            for (size_t k = 0; k < i; ++k) {
                if (!f.arguments[i].isVector() || !f.arguments[k].isVector()) continue;
                if (f.arguments[i].type->bytes() != f.arguments[k].type->bytes()) continue;
                How how;
                how.sameAs[i] = static_cast<int>(k);
                // In a function of three vectors, the remaining one too, in half the cases.
                Operands copies = operands;
                copies.vectors[i] = copies.vectors[k];
                for (size_t other = i + 1; other < f.arguments.size(); ++other) {
                    if (f.arguments[other].isVector() && random.below(2) == 0 &&
                        f.arguments[other].type->bytes() == f.arguments[k].type->bytes()) {
                        how.sameAs[other] = static_cast<int>(k);
                        copies.vectors[other] = copies.vectors[k];
                    }
                }
                std::vector<Bytes> outputs;
                reference(f, copies, outputs, 0, copies.count);
                for (const size_t length : {1, 2, 3, 7, 8, 15, 16, 17, 31, 33, 63, 65, 127, 130, 1023, 1025, 4097}) {
                    for (const size_t offset : {0, 16, 24}) {
                        how.offset.fill(offset);
                        how.atEnd = random.below(2) == 0;
                        const size_t first = random.below(kMost - length);
                        if (!isSame(f, copies, outputs, first, length, how)) return;
                    }
                }
            }
        }
    });
}

INSTANTIATE_TEST_SUITE_P(, Laws, ::testing::ValuesIn(bases(&Function::isElementwise)),
                         [](const auto& info) { return info.param; });

class Reductions : public Shape {
  protected:
    Reductions() : Shape(&Function::isReduction) {}

    // Of the elements between protected pages and of a copy at that offset from each vector's start, by each level.
    bool isSameEverywhere(const Function& f, const Operands& operands, size_t first, size_t count,
                          const std::array<size_t, kMostArguments>& offset) {
        const std::string base = f.base();
        bool isExact = base.substr(0, 3) == "Min" || base.substr(0, 3) == "Max";
        for (const Argument& argument : f.arguments)
            isExact |= argument.role == Role::result && !argument.type->isFloat;
        // Floating-point sums have an order that v2 does not share.
        std::vector<std::vector<Level>> alike = {levels()};
        if (!isExact) alike = {{levels().front()}, {levels().begin() + 1, levels().end()}};
        for (const auto& some : alike) {
            if (some.empty()) continue;
            std::vector<Bytes> outputs;
            reference(f, operands, outputs, first, count, some.front());
            How how;
            how.atEnd = true;
            if (!isSame(f, operands, outputs, first, count, how, some)) return false;
            how.atEnd = false;
            how.offset = offset;
            if (!isSame(f, operands, outputs, first, count, how, some)) return false;
        }
        return true;
    }
};

// Floating-point numbers of similar magnitudes; integers stay.
void fillTame(const ElementType& type, Bytes& elements, bool isPositive, Random& random) {
    if (!type.isFloat) return;
    withPartType(type, [&](auto part) {
        for (size_t k = 0; k < elements.size(); k += sizeof(part)) {
            part = static_cast<decltype(part)>(static_cast<int64_t>(random())) * static_cast<decltype(part)>(0x1p-60);
            if (isPositive && part <= 0) part = 1 - part;
            std::memcpy(&elements[k], &part, sizeof(part));
        }
    });
}

TEST_P(Reductions, Errors) {
    forEach([&](const Function& f, const Operands& operands, Random&) { expectErrors(f, operands); });
}

TEST_P(Reductions, Addresses) {
    forEach([&](const Function& f, const Operands& operands, Random& random) {
        // Without infinities and NaNs, which hide the rest.
        Operands tame = operands;
        for (size_t i = 0; i < f.arguments.size(); ++i) {
            const Argument& argument = f.arguments[i];
            if (argument.role == Role::source) fillTame(*argument.type, tame.vectors[i], f.base() == "SumLn", random);
        }
        std::vector<size_t> lengths = {255, 511, 512, 513, 1000, 1023, 1024, 1025, 2047, 2049, 4095, 4096, 4097};
        for (size_t length = static_cast<size_t>(f.leastLength()); length <= 140; ++length)
            lengths.push_back(length);
        for (const size_t length : lengths) {
            std::array<size_t, kMostArguments> offset{};
            for (size_t i = 0; i < f.arguments.size(); ++i) {
                if (!f.arguments[i].isVector()) continue;
                offset[i] = random.below(64) / f.arguments[i].type->partBytes * f.arguments[i].type->partBytes;
            }
            const size_t first = random.below(kMost - length);
            if (!isSameEverywhere(f, random.below(2) == 0 ? operands : tame, first, length, offset)) return;
        }
    });
}

INSTANTIATE_TEST_SUITE_P(, Reductions, ::testing::ValuesIn(bases(&Function::isReduction)),
                         [](const auto& info) { return info.param; });

// Vectors whose results are written past the caches.
TEST(LongVectors, Pieces) {
    constexpr size_t kBytes = (size_t{25} << 20) + 48;
    Stage stage(2 * kBytes);
    for (const char* name :
         {"zvpsAdd_8u_Sfs", "zvpsAdd_16s32f", "zvpsMul_32fc", "zvpsDiv_32fc", "zvpsSet_64f", "zvpsAddC_16sc_ISfs",
          "zvpsConvert_32f16s_Sfs", "zvpsConvert_32f24u_Sfs", "zvpsConvert_8s32f"}) {
        for (const Function& f : functions()) {
            if (f.name != name) continue;
            Random random(f.name);
            const Argument& output = f.arguments[f.indexOf(f.hasRole(Role::inOut) ? Role::inOut : Role::destination)];
            Operands operands = randomOperands(f, kBytes / output.type->bytes(), random);
            operands.setScaleFactor(f, 1);
            std::vector<Bytes> outputs(operands.vectors);
            useLevel(Level::v2);
            for (size_t first = 0; first < operands.count; first += 10000) {
                const size_t count = std::min<size_t>(10000, operands.count - first);
                stage.call(f, operands, first, count, {});
                for (size_t i = 0; i < f.arguments.size(); ++i) {
                    if (!f.arguments[i].isOutput()) continue;
                    const size_t bytes = f.arguments[i].type->bytes();
                    std::memcpy(&outputs[i][first * bytes], stage.vector(i), count * bytes);
                }
            }
            for (const Level level : levels()) {
                useLevel(level);
                for (const size_t offset : {0, 24}) {
                    How how;
                    how.offset.fill(offset);
                    EXPECT_GE(stage.call(f, operands, 0, operands.count, how), 0);
                    EXPECT_EQ(differences(f, stage, outputs, 0, operands.count), "")
                        << f.name << " by " << levelName(level) << " " << how.text();
                }
            }
        }
    }
    useLevel(levels().back());
}

} // namespace
} // namespace zvps::test
