#include "zvps/arithmetic.h"

#include "bench.hpp"
#include "peers.hpp"
#include "volk.hpp"

namespace bench {
namespace {

// ---- Floating point: our function and the peers' operation ---------------------------------------------------------

#define PEERS(ours, operation, ...)                                                                                    \
    with("ours", BENCH_CALL(ours(__VA_ARGS__)))                                                                        \
        .with("plain", BENCH_CALL(plain::operation(__VA_ARGS__)))                                                      \
        .with("eigen", BENCH_CALL(eigen::operation(__VA_ARGS__)))
#define ROW(NAME, TYPE, traffic) Row<Zvp##TYPE>(#NAME "_" #TYPE, traffic, lengths)
#define VECTORS(NAME, TYPE, operation) ROW(NAME, TYPE, 3).PEERS(zvps##NAME##_##TYPE, operation, v.a, v.b, v.dst, v.n)
#define CONSTANT(NAME, TYPE, operation) ROW(NAME, TYPE, 2).PEERS(zvps##NAME##_##TYPE, operation, v.a, v.val, v.dst, v.n)
#define ACCUMULATE(NAME, TYPE, operation) ROW(NAME, TYPE, 4).PEERS(zvps##NAME##_##TYPE, operation, v.a, v.b, v.dst, v.n)
#define VECTOR(NAME, TYPE, operation) ROW(NAME, TYPE, 2).PEERS(zvps##NAME##_##TYPE, operation, v.a, v.dst, v.n)

// VOLK's left operand comes first.
#define VOLK_VECTORS(function) with("volk", BENCH_CALL(function(raw(v.dst), raw(v.a), raw(v.b), count(v))))
#define VOLK_REVERSED(function) with("volk", BENCH_CALL(function(raw(v.dst), raw(v.b), raw(v.a), count(v))))
#define VOLK_CONSTANT(function) with("volk", BENCH_CALL(function(raw(v.dst), raw(v.a), raw(v.val), count(v))))

void floatingPoint() {
    const Lengths& lengths = kInCacheAndLarge;
    VECTORS(Add, 32f, add).VOLK_VECTORS(volk_32f_x2_add_32f);
    VECTORS(Add, 64f, add).VOLK_VECTORS(volk_64f_x2_add_64f);
    VECTORS(Add, 32fc, add).VOLK_VECTORS(volk_32fc_x2_add_32fc);
    VECTORS(Sub, 32f, subtract).VOLK_REVERSED(volk_32f_x2_subtract_32f);
    VECTORS(Sub, 64f, subtract);
    VECTORS(Sub, 32fc, subtract);
    VECTORS(Mul, 32f, multiply).VOLK_VECTORS(volk_32f_x2_multiply_32f);
    VECTORS(Mul, 64f, multiply).VOLK_VECTORS(volk_64f_x2_multiply_64f);
    VECTORS(Mul, 32fc, multiply).VOLK_VECTORS(volk_32fc_x2_multiply_32fc);
    CONSTANT(AddC, 32f, addConstant).VOLK_CONSTANT(volk_32f_s32f_add_32f);
    CONSTANT(AddC, 64f, addConstant);
    CONSTANT(AddC, 32fc, addConstant);
    CONSTANT(MulC, 32f, multiplyConstant).VOLK_CONSTANT(volk_32f_s32f_multiply_32f);
    CONSTANT(MulC, 64f, multiplyConstant);
    CONSTANT(MulC, 32fc, multiplyConstant).VOLK_CONSTANT(volk_32fc_s32fc_multiply_32fc);
    VECTOR(Abs, 32f, absolute);
    VECTOR(Abs, 64f, absolute);
    ACCUMULATE(AddProduct, 32f, addProduct);
    ACCUMULATE(AddProduct, 64f, addProduct);
    ACCUMULATE(AddProduct, 32fc, addProduct);
    VECTORS(Div, 32f, divide).VOLK_REVERSED(volk_32f_x2_divide_32f);
    VECTORS(Div, 64f, divide);
    VECTORS(Div, 32fc, divide).VOLK_REVERSED(volk_32fc_x2_divide_32fc);
}

void shortFloatingPoint() {
    const Lengths lengths = shortLengths();
    VECTORS(Add, 32f, add).VOLK_VECTORS(volk_32f_x2_add_32f);
    VECTORS(Add, 64f, add).VOLK_VECTORS(volk_64f_x2_add_64f);
    CONSTANT(MulC, 32f, multiplyConstant).VOLK_CONSTANT(volk_32f_s32f_multiply_32f);
    VECTORS(Mul, 32fc, multiply).VOLK_VECTORS(volk_32fc_x2_multiply_32fc);
}

// ---- Integers with scale factors -----------------------------------------------------------------------------------

#define SCALED_ROW(NAME, TYPE, suffix, traffic, operation, options, ...)                                               \
    Row<Zvp##TYPE>(#NAME "_" #TYPE "_" #suffix ":" + std::to_string((options).scaleFactor) + offsets(options),         \
                   traffic, lengths, options)                                                                          \
        .with("ours", BENCH_CALL(zvps##NAME##_##TYPE##_##suffix(__VA_ARGS__, v.scaleFactor)))                          \
        .with("plain", BENCH_CALL(plain::operation(__VA_ARGS__, v.scaleFactor)))
#define SCALED_VECTORS(NAME, TYPE, operation, options)                                                                 \
    SCALED_ROW(NAME, TYPE, Sfs, 3, operation, options, v.a, v.b, v.dst, v.n)
#define SCALED_TYPES(NAME, operation, options)                                                                         \
    SCALED_VECTORS(NAME, 8u, operation, options);                                                                      \
    SCALED_VECTORS(NAME, 16s, operation, options);                                                                     \
    SCALED_VECTORS(NAME, 16u, operation, options);                                                                     \
    SCALED_VECTORS(NAME, 32s, operation, options)

std::string offsets(const RowOptions& options) {
    if (options.sourceOffset != 0) return options.destinationOffset != 0 ? "@all" : "@src";
    return options.destinationOffset != 0 ? "@dst" : "";
}

void scaledIntegers() {
    const Lengths& lengths = kInCache;
    for (const int scaleFactor : {0, 1, 15}) {
        const RowOptions options{scaleFactor};
        SCALED_TYPES(Add, addScaled, options);
        SCALED_TYPES(Sub, subtractScaled, options);
        SCALED_TYPES(Mul, multiplyScaled, options);
    }
}

void largeIntegers() {
    const Lengths lengths = {kLarge};
    SCALED_VECTORS(Add, 16s, addScaled, RowOptions{});
}

void shortIntegers() {
    const Lengths lengths = shortLengths();
    SCALED_VECTORS(Add, 16s, addScaled, RowOptions{});
    SCALED_VECTORS(Add, 8u, addScaled, RowOptions{});
    SCALED_ROW(AddC, 16s, ISfs, 2, addConstantScaledInPlace, RowOptions{}, v.val, v.dst, v.n);
}

void divisions() {
    const Lengths lengths = {1024};
    for (const int scaleFactor : {0, 1}) {
        const RowOptions options{scaleFactor};
        SCALED_TYPES(Div, divideScaled, options);
        SCALED_ROW(DivC, 16s, Sfs, 2, divideConstantScaled, options, v.a, v.val, v.dst, v.n);
    }
}

// ---- Vectors off alignment -----------------------------------------------------------------------------------------

void misaligned() {
    const Lengths lengths = {4096};
    for (const RowOptions& options : {RowOptions{0, 0, 1}, RowOptions{0, 1, 0}, RowOptions{0, 1, 1}}) {
        Row<Zvp32f>("Add_32f" + offsets(options), 3, lengths, options)
            .PEERS(zvpsAdd_32f, add, v.a, v.b, v.dst, v.n)
            .VOLK_VECTORS(volk_32f_x2_add_32f);
        SCALED_VECTORS(Add, 16s, addScaled, options);
    }
}

} // namespace

void registerArithmetic() {
    floatingPoint();
    shortFloatingPoint();
    scaledIntegers();
    largeIntegers();
    shortIntegers();
    divisions();
    misaligned();
}

} // namespace bench
