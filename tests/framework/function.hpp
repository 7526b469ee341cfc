// Descriptions of the exported functions, deduced from their prototypes, so that one test drives them all.
#pragma once

#include "zvps.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zvps::test {

// ---- Elements ----

struct ElementType {
    const char* code;
    size_t partBytes;
    size_t parts; // 2 for complex elements
    bool isFloat;
    bool isSigned;

    size_t bytes() const { return partBytes * parts; }
};

// Null for a type that is no element.
template <class T>
inline constexpr const ElementType* kElementType = nullptr;

// X(code, part's code)
#define ZVPS_TEST_ELEMENTS(X)                                                                                          \
    X(8u, 8u)                                                                                                          \
    X(8s, 8s)                                                                                                          \
    X(16u, 16u) X(16s, 16s) X(32u, 32u) X(32s, 32s) X(64u, 64u) X(64s, 64s) X(32f, 32f) X(64f, 64f) X(8sc, 8s)         \
        X(16sc, 16s) X(32sc, 32s) X(64sc, 64s) X(32fc, 32f) X(64fc, 64f)
#define ZVPS_TEST_ELEMENT(TYPE, PART)                                                                                  \
    inline constexpr ElementType kElement##TYPE = {#TYPE, sizeof(Zvp##PART), sizeof(Zvp##TYPE) / sizeof(Zvp##PART),    \
                                                   std::is_floating_point_v<Zvp##PART>, std::is_signed_v<Zvp##PART>};  \
    template <>                                                                                                        \
    inline constexpr const ElementType* kElementType<Zvp##TYPE> = &kElement##TYPE;
ZVPS_TEST_ELEMENTS(ZVPS_TEST_ELEMENT)
#undef ZVPS_TEST_ELEMENT

// Three bytes, which pass as its parts.
inline constexpr ElementType kElement24 = {"24", 1, 3, false, false};

// action(T{}) for the type T of the element's parts.
template <class Action>
decltype(auto) withPartType(const ElementType& type, Action action) {
    if (type.isFloat) return type.partBytes == 4 ? action(float{}) : action(double{});
    switch (type.partBytes * 2 + type.isSigned) {
    case 2:
        return action(uint8_t{});
    case 3:
        return action(int8_t{});
    case 4:
        return action(uint16_t{});
    case 5:
        return action(int16_t{});
    case 8:
        return action(uint32_t{});
    case 9:
        return action(int32_t{});
    case 16:
        return action(uint64_t{});
    default:
        return action(int64_t{});
    }
}

// ---- Functions ----

// `result`: a pointer to a single element that the function writes.
enum class Role { source, destination, inOut, result, constant, length, scaleFactor, roundMode, other };

struct Argument {
    Role role = Role::other;
    const ElementType* type = nullptr; // of the vector's elements, or of the constant
    std::string name;

    bool isVector() const { return role == Role::source || isOutput(); }
    bool isOutput() const { return role == Role::destination || role == Role::inOut || role == Role::result; }
    // Of a vector in a call on `count` elements.
    size_t elements(size_t count) const { return role == Role::result ? 1 : count; }
};

// An argument of a call: a pointer or a constant.
struct Value {
    alignas(16) std::array<unsigned char, 16> bytes{};

    template <class T>
    void set(T value) {
        static_assert(sizeof(T) <= sizeof(bytes));
        std::memcpy(bytes.data(), &value, sizeof(T));
    }
    template <class T>
    T get() const {
        static_assert(sizeof(T) <= sizeof(bytes));
        T value;
        std::memcpy(&value, bytes.data(), sizeof(T));
        return value;
    }
};

inline constexpr size_t kMostArguments = 8;
using Values = std::array<Value, kMostArguments>;

struct Function {
    std::string family; // the header's name
    std::string name;
    std::vector<Argument> arguments;
    void (*address)();
    ZvpStatus (*call)(void (*address)(), const Values& values); // null for functions of other shapes

    // The parts of zvps<base>_<types>_<descriptors>.
    std::string base() const;

    bool hasRole(Role role) const { return indexOf(role) < arguments.size(); }
    size_t indexOf(Role role) const; // of the first; arguments.size() if there is none

    // Vectors of one length and constants; each output element is a function of the input elements beside it.
    bool isElementwise() const;
    // A few results from vectors of one length.
    bool isReduction() const;
    // Exceptions among them.
    bool isUnchecked() const;
    bool isOptional(const Argument& argument) const; // may be null
    int leastLength() const;
    bool rejectsZeroConstant() const;
    bool rejectsNegativeLevel() const;
    bool rejectsRoundMode(int mode) const;
    bool acceptsNegativeLength() const;
};

// All functions that the public headers declare, those not built aside.
const std::vector<Function>& functions();

// ---- Deduction ----

template <class T>
constexpr Role roleByType() {
    if constexpr (std::is_pointer_v<T>) {
        using Element = std::remove_pointer_t<T>;
        if (kElementType<std::remove_const_t<Element>> == nullptr) return Role::other;
        return std::is_const_v<Element> ? Role::source : Role::destination;
    } else {
        return kElementType<T> == nullptr ? Role::other : Role::constant;
    }
}

template <class... Args, size_t... index>
ZvpStatus callWith(void (*address)(), const Values& values, std::index_sequence<index...>) {
    return reinterpret_cast<ZvpStatus (*)(Args...)>(address)(values[index].template get<Args>()...);
}
template <class... Args>
ZvpStatus callWith(void (*address)(), const Values& values) {
    return callWith<Args...>(address, values, std::index_sequence_for<Args...>());
}

// The argument's role by its type, then by the name that it has in the header.
Argument describeArgument(Role byType, const ElementType* type, std::string_view name);
std::vector<std::string> parameterNames(std::string_view parameters);

template <class Result, class... Args>
Function describe(const char* family, const char* name, const char* parameters, Result (*function)(Args...)) {
    Function result{family, name, {}, reinterpret_cast<void (*)()>(function), nullptr};
    if constexpr (std::is_same_v<Result, ZvpStatus> && sizeof...(Args) > 0 && sizeof...(Args) <= kMostArguments) {
        size_t i = 0;
        const std::vector<std::string> names = parameterNames(parameters);
        (result.arguments.push_back(describeArgument(
             roleByType<Args>(), kElementType<std::remove_const_t<std::remove_pointer_t<Args>>>, names.at(i++))),
         ...);
        result.call = callWith<Args...>;
    }
    return result;
}

} // namespace zvps::test
