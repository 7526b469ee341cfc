#include "framework/call.hpp"

#include <gtest/gtest.h>
#include <sys/mman.h>
#include <unistd.h>

#include <cmath>
#include <csignal>
#include <cstdio>
#include <limits>
#include <new>
#include <sstream>

namespace zvps::test {
namespace {

constexpr uint64_t kSeed = 20091127;

uint64_t seed() {
    return kSeed + static_cast<uint64_t>(GTEST_FLAG_GET(random_seed));
}

class PrintSeed : public ::testing::Environment {
    void SetUp() override { std::printf("seed %llu\n", static_cast<unsigned long long>(seed())); }
};
[[maybe_unused]] const auto* const printSeed = ::testing::AddGlobalTestEnvironment(new PrintSeed);

// A touch of a protected page ends the program: tells in which call, then leaves the signal to whom it belonged.
std::string callUnderWay;
struct sigaction formerAction;

void tellCall(int signal) {
    [[maybe_unused]] const ssize_t written = write(STDERR_FILENO, callUnderWay.data(), callUnderWay.size());
    sigaction(signal, &formerAction, nullptr);
}
[[maybe_unused]] const int installed = [] {
    struct sigaction action {};
    action.sa_handler = tellCall;
    return sigaction(SIGSEGV, &action, &formerAction);
}();

} // namespace

Random::Random(std::string_view purpose) : state_(seed()) {
    for (const char c : purpose)
        state_ = state_ * 1099511628211u + static_cast<unsigned char>(c);
}

// ---- Operands ----

namespace {

template <class T>
T randomPart(Random& random) {
    using Limits = std::numeric_limits<T>;
    const uint64_t bits = random();
    const uint64_t choice = random();
    if constexpr (std::is_floating_point_v<T>) {
        static constexpr T kSpecial[] = {0,
                                         -T{0},
                                         1,
                                         -1,
                                         Limits::infinity(),
                                         -Limits::infinity(),
                                         Limits::quiet_NaN(),
                                         Limits::max(),
                                         Limits::lowest(),
                                         Limits::min(),
                                         Limits::denorm_min(),
                                         -Limits::denorm_min(),
                                         Limits::epsilon()};
        const T fraction = static_cast<T>(static_cast<int64_t>(bits)) * T{0x1p-63};
        switch (choice % 8) {
        case 0: {
            T value;
            std::memcpy(&value, &bits, sizeof(T));
            return value;
        }
        case 1:
            return kSpecial[bits % std::size(kSpecial)];
        case 2:
            return std::ldexp(fraction, static_cast<int>((choice >> 8) % 140) - 70);
        case 3:
            return static_cast<T>(static_cast<int>(bits % 2001) - 1000);
        case 4:
            return static_cast<T>(static_cast<int>(bits % 2001) - 1000) / 2;
        default:
            return fraction * 1000;
        }
    } else {
        const unsigned places = static_cast<unsigned>(choice >> 8) % (8 * sizeof(T));
        const uint64_t nearby = bits % 5 - 2;
        switch (choice % 8) {
        case 0:
            return static_cast<T>(static_cast<uint64_t>(Limits::max()) - bits % 3);
        case 1:
            return static_cast<T>(static_cast<uint64_t>(Limits::min()) + bits % 3);
        case 2:
            return static_cast<T>((uint64_t{1} << places) + nearby);
        case 3:
            return static_cast<T>(-(uint64_t{1} << places) + nearby);
        case 4:
            return static_cast<T>(nearby);
        case 5:
            return static_cast<T>(static_cast<T>(bits) >> places);
        default:
            return static_cast<T>(bits);
        }
    }
}

} // namespace

void Operands::setScaleFactor(const Function& f, int scaleFactor) {
    if (f.hasRole(Role::scaleFactor)) values[f.indexOf(Role::scaleFactor)].set(scaleFactor);
}

void fillRandom(const ElementType& type, unsigned char* elements, size_t count, Random& random) {
    withPartType(type, [&](auto part) {
        for (size_t i = 0; i < count * type.parts; ++i) {
            part = randomPart<decltype(part)>(random);
            std::memcpy(elements + i * sizeof(part), &part, sizeof(part));
        }
    });
}

Operands randomOperands(const Function& f, size_t count, Random& random) {
    Operands result{count, std::vector<Bytes>(f.arguments.size()), {}};
    for (size_t i = 0; i < f.arguments.size(); ++i) {
        const Argument& argument = f.arguments[i];
        if (argument.isVector()) {
            result.vectors[i].resize(argument.elements(count) * argument.type->bytes());
            fillRandom(*argument.type, result.vectors[i].data(), argument.elements(count), random);
        } else if (argument.role == Role::constant) {
            do {
                fillRandom(*argument.type, result.values[i].bytes.data(), 1, random);
            } while (f.rejectsZeroConstant() && isZero(*argument.type, result.values[i].bytes.data()));
        } else if (argument.role == Role::roundMode) {
            int mode = 0;
            do
                mode = static_cast<int>(random.below(4));
            while (f.rejectsRoundMode(mode));
            result.values[i].set(mode);
        }
        if (argument.name == "relOp") result.values[i].set(random.below(2) == 0 ? 0 : 4);
        if (argument.name == "level" && f.rejectsNegativeLevel()) {
            withPartType(*argument.type, [&](auto level) {
                level = result.values[i].get<decltype(level)>();
                using Limits = std::numeric_limits<decltype(level)>;
                if (level < 0) level = level < -Limits::max() ? Limits::max() : static_cast<decltype(level)>(-level);
                result.values[i].set(level);
            });
        }
        if (argument.name == "levelGT") {
            withPartType(*argument.type, [&](auto level) {
                const auto levelLT = result.values[i - 2].get<decltype(level)>();
                level = result.values[i].get<decltype(level)>();
                if (level < levelLT) std::swap(result.values[i - 2], result.values[i]);
            });
        }
    }
    return result;
}

bool isZero(const ElementType& type, const unsigned char* element) {
    return withPartType(type, [&](auto part) {
        bool result = true;
        for (size_t p = 0; p < type.parts; ++p) {
            std::memcpy(&part, element + p * sizeof(part), sizeof(part));
            result &= part == 0;
        }
        return result;
    });
}

void replaceZeros(const Function& f, Operands& operands) {
    for (size_t i = 0; i < f.arguments.size(); ++i) {
        if (!f.arguments[i].isVector()) continue;
        const ElementType& type = *f.arguments[i].type;
        for (size_t k = 0; k < f.arguments[i].elements(operands.count); ++k) {
            unsigned char* element = &operands.vectors[i][k * type.bytes()];
            if (!isZero(type, element)) continue;
            withPartType(type, [&](auto part) {
                part = 1;
                std::memcpy(element, &part, sizeof(part));
            });
        }
    }
}

// ---- Calls ----

namespace {

constexpr size_t kMargin = 64; // watched on either side of a vector, where its page goes on
constexpr unsigned char kUntouched = 0xA5;

size_t pageBytes() {
    static const size_t bytes = static_cast<size_t>(sysconf(_SC_PAGESIZE));
    return bytes;
}

} // namespace

std::string How::text() const {
    std::ostringstream out;
    out << (atEnd ? "at the end of a page" : "at the start of a page");
    for (size_t i = 0; i < kMostArguments; ++i) {
        if (offset[i] != 0) out << ", argument " << i << " " << offset[i] << " bytes off";
        if (sameAs[i] >= 0) out << ", argument " << i << " on argument " << sameAs[i];
        if (nulls >> i & 1) out << ", argument " << i << " null";
    }
    if (length) out << ", len " << *length;
    return out.str();
}

Stage::Stage(size_t vectorBytes)
    : capacity_((vectorBytes + 4 * kMargin + pageBytes() - 1) / pageBytes() * pageBytes()) {
    for (unsigned char*& arena : arenas_) {
        void* block = mmap(nullptr, capacity_ + 2 * pageBytes(), PROT_NONE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        if (block == MAP_FAILED) throw std::bad_alloc();
        arena = static_cast<unsigned char*>(block) + pageBytes();
        if (mprotect(arena, capacity_, PROT_READ | PROT_WRITE) != 0) throw std::bad_alloc();
    }
}

Stage::~Stage() {
    for (unsigned char* arena : arenas_)
        munmap(arena - pageBytes(), capacity_ + 2 * pageBytes());
}

ZvpStatus Stage::call(const Function& f, const Operands& operands, size_t first, size_t count, const How& how) {
    function_ = &f;
    operands_ = &operands;
    first_ = first;
    count_ = count;
    how_ = how;
    Values values = operands.values;
    for (size_t i = 0; i < f.arguments.size(); ++i) {
        const Argument& argument = f.arguments[i];
        if (argument.role == Role::length) values[i].set(how.length.value_or(static_cast<int>(count)));
        if (!argument.isVector()) continue;
        const size_t bytes = argument.elements(count) * argument.type->bytes();
        const size_t begin = argument.role == Role::result ? 0 : first * argument.type->bytes();
        unsigned char* p = how.atEnd ? arenas_[i] + capacity_ - bytes - how.offset[i] : arenas_[i] + how.offset[i];
        vectors_[i] = p;
        std::memset(std::max(arenas_[i], p - kMargin), kUntouched,
                    std::min(kMargin, static_cast<size_t>(p - arenas_[i])));
        std::memset(p + bytes, kUntouched, std::min(kMargin, static_cast<size_t>(arenas_[i] + capacity_ - p) - bytes));
        std::memcpy(p, &operands.vectors[i][begin], bytes);
    }
    for (size_t i = 0; i < f.arguments.size(); ++i) {
        if (!f.arguments[i].isVector()) continue;
        if (how.sameAs[i] >= 0) vectors_[i] = vectors_[static_cast<size_t>(how.sameAs[i])];
        values[i].set(how.nulls >> i & 1 ? nullptr : vectors_[i]);
    }
    callUnderWay = f.name + " on " + std::to_string(count) + " elements broke off\n";
    return f.call(f.address, values);
}

std::string Stage::damage() const {
    for (size_t i = 0; i < function_->arguments.size(); ++i) {
        const Argument& argument = function_->arguments[i];
        if (!argument.isVector() || how_.sameAs[i] >= 0) continue;
        const size_t bytes = argument.elements(count_) * argument.type->bytes();
        const unsigned char* arena = arenas_[i];
        const unsigned char* const p = vectors_[i];
        for (size_t k = 1; k <= std::min(kMargin, static_cast<size_t>(p - arena)); ++k) {
            if (*(p - k) != kUntouched) return argument.name + ": byte written " + std::to_string(k) + " before it";
        }
        for (size_t k = 0; k < std::min(kMargin, static_cast<size_t>(arena + capacity_ - p) - bytes); ++k) {
            if (p[bytes + k] != kUntouched) return argument.name + ": byte written " + std::to_string(k) + " behind it";
        }
        bool shared = false;
        for (const int other : how_.sameAs)
            shared |= other == static_cast<int>(i);
        if (argument.role == Role::source && !shared &&
            std::memcmp(p, &operands_->vectors[i][first_ * argument.type->bytes()], bytes) != 0) {
            return argument.name + ": a source was written";
        }
    }
    return {};
}

std::string difference(const ElementType& type, const unsigned char* expected, const unsigned char* actual,
                       size_t count) {
    if (std::memcmp(expected, actual, count * type.bytes()) == 0) return {};
    return withPartType(type, [&](auto part) -> std::string {
        for (size_t i = 0; i < count * type.parts; ++i) {
            auto other = part;
            std::memcpy(&part, expected + i * sizeof(part), sizeof(part));
            std::memcpy(&other, actual + i * sizeof(part), sizeof(part));
            if (std::memcmp(&part, &other, sizeof(part)) == 0 || (part != part && other != other)) continue;
            std::ostringstream out;
            out.precision(std::numeric_limits<decltype(part)>::max_digits10);
            out << "element " << i / type.parts
                << (type.parts == 1 ? ""
                    : i % 2 == 0    ? " re"
                                    : " im")
                << ": expected " << +part << ", got " << +other;
            return out.str();
        }
        return {};
    });
}

std::string differences(const Function& f, const Stage& stage, const std::vector<Bytes>& expected, size_t first,
                        size_t count) {
    for (size_t i = 0; i < f.arguments.size(); ++i) {
        if (!f.arguments[i].isOutput()) continue;
        const ElementType& type = *f.arguments[i].type;
        const size_t begin = f.arguments[i].role == Role::result ? 0 : first * type.bytes();
        const std::string text = difference(type, &expected[i][begin], stage.vector(i), f.arguments[i].elements(count));
        if (!text.empty()) return f.arguments[i].name + " " + text;
    }
    return stage.damage();
}

// ---- Levels ----

const std::vector<Level>& levels() {
    static const std::vector<Level> supported = [] {
        std::vector<Level> result;
        for (const Level level : {Level::v2, Level::v3, Level::v4}) {
            if (isSupported(level)) result.push_back(level);
        }
        return result;
    }();
    return supported;
}

std::string levelName(Level level) {
    return "v" + std::to_string(static_cast<int>(level) + 2);
}

} // namespace zvps::test
