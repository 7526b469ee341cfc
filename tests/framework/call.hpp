// Calls of described functions: operands, guarded memory for the vectors, comparison of results.
#pragma once

#include "core/level.hpp"
#include "framework/function.hpp"

#include <optional>

namespace zvps::test {

// The same numbers at every run; --gtest_random_seed picks others.
class Random {
  public:
    // One sequence for each purpose, whatever else has run before.
    explicit Random(std::string_view purpose);

    uint64_t operator()() {
        uint64_t z = state_ += 0x9e3779b97f4a7c15;
        z = (z ^ (z >> 30)) * 0xbf58476d1ce4e5b9;
        z = (z ^ (z >> 27)) * 0x94d049bb133111eb;
        return z ^ (z >> 31);
    }
    size_t below(size_t bound) { return static_cast<size_t>((*this)() % bound); }

  private:
    uint64_t state_;
};

// ---- Operands ----

using Bytes = std::vector<unsigned char>;

// What a call works on: an entry for each argument, the vectors' contents or the constants.
struct Operands {
    size_t count;
    std::vector<Bytes> vectors;
    Values values;

    void setScaleFactor(const Function& f, int scaleFactor);
};

// Full-range values with many extremes; only constants and parameters that the function accepts.
Operands randomOperands(const Function& f, size_t count, Random& random);
void fillRandom(const ElementType& type, unsigned char* elements, size_t count, Random& random);
bool isZero(const ElementType& type, const unsigned char* element);
// Ones in the place of the zeros among the vectors' elements.
void replaceZeros(const Function& f, Operands& operands);

// ---- Calls ----

// Where a call's vectors lie, and what is wrong with its arguments.
struct How {
    bool atEnd = false; // before the protected page behind the vector, or else behind the one before it
    std::array<size_t, kMostArguments> offset{};                               // bytes away from that page
    std::array<int, kMostArguments> sameAs = {-1, -1, -1, -1, -1, -1, -1, -1}; // lies on that other argument
    unsigned nulls = 0;                                                        // a bit for each argument
    std::optional<int> length;                                                 // instead of the true one

    std::string text() const;
};

// Memory for the vectors of one call, each between protected pages.
class Stage {
  public:
    explicit Stage(size_t vectorBytes);
    ~Stage();
    Stage(const Stage&) = delete;
    Stage& operator=(const Stage&) = delete;

    // Calls f on the elements first..first+count-1 of the operands.
    ZvpStatus call(const Function& f, const Operands& operands, size_t first, size_t count, const How& how);

    // The argument's vector after the call.
    const unsigned char* vector(size_t argument) const { return vectors_[argument]; }

    // What the last call changed without being allowed to: something beside a vector, or a source. Empty if nothing.
    std::string damage() const;

  private:
    size_t capacity_;
    std::array<unsigned char*, kMostArguments> arenas_{};
    std::array<unsigned char*, kMostArguments> vectors_{};
    const Function* function_ = nullptr;
    const Operands* operands_ = nullptr;
    size_t first_ = 0;
    size_t count_ = 0;
    How how_;
};

// The first element that differs, as text; empty if none does. A NaN equals any other.
std::string difference(const ElementType& type, const unsigned char* expected, const unsigned char* actual,
                       size_t count);

// The same for all outputs of the last call, against the contents that they should have; and the damage.
std::string differences(const Function& f, const Stage& stage, const std::vector<Bytes>& expected, size_t first,
                        size_t count);

// ---- Levels ----

// The levels that this processor can run.
const std::vector<Level>& levels();
std::string levelName(Level level);

} // namespace zvps::test
