// Random numbers. The lagged words are computed one by one: each waits for the borrow of the one before, two cycles at
// least. All else is computed in vectors beside it.
#pragma once

#include "core/logarithm.hpp"
#include "signal/generated.hpp"
#include "signal/random.table.hpp"

namespace zvps::ZVPS_LEVEL {

inline constexpr size_t kWords = kVectorBytes / sizeof(uint32_t);
using WordLanes = Lanes<uint32_t, kWords>;

// The congruential words ahead: after i + 1 steps, word factor[i] + term[i].
struct Leaps {
    uint32_t factor[kWords]{};
    uint32_t term[kWords]{};
};
constexpr Leaps leaps() {
    Leaps result;
    uint32_t factor = 1, term = 0;
    for (size_t i = 0; i < kWords; ++i) {
        factor *= kCongruentialFactor;
        term = nextCongruential(term);
        result.factor[i] = factor;
        result.term[i] = term;
    }
    return result;
}

// The next n lagged words. What is known of a word two steps ahead is summed up early: then it is the borrow alone that
// each waits for.
HWY_INLINE void laggedWords(RandomWords& words, size_t n, uint32_t* to) {
    uint32_t last = words.lagged[0];
    uint32_t borrow = words.borrow;
    uint32_t next = words.lagged[1] - words.lagged[2];
    uint32_t afterNext = last - words.lagged[1];
    for (size_t i = 0; i < n; ++i) {
        const uint32_t difference = next + borrow;
        borrow = static_cast<uint32_t>(static_cast<int32_t>(difference) >> 31);
        const uint32_t correction = borrow & static_cast<uint32_t>(-18);
        next = afterNext;
        afterNext = difference - last + correction;
        last = difference + correction;
        to[i] = last;
    }
    // From the differences, which may go back beyond `to`.
    words.borrow = borrow;
    words.lagged[0] = last;
    words.lagged[1] = last - afterNext;
    words.lagged[2] = words.lagged[1] - next;
}

// The next n raw numbers; behind them, up to a full vector, numbers without meaning.
HWY_INLINE void rawNumbers(RandomWords& words, size_t n, int32_t* raw) {
    static constexpr Leaps kLeaps = leaps();
    const WordLanes d;
    uint32_t* const to = reinterpret_cast<uint32_t*>(raw);
    laggedWords(words, n, to);
    uint32_t congruential[kWords];
    auto v = hn::Set(d, words.congruential);
    v = hn::Add(hn::Mul(v, hn::LoadU(d, kLeaps.factor)), hn::LoadU(d, kLeaps.term));
    for (size_t i = 0;; i += kWords) {
        hn::StoreU(hn::Add(v, hn::LoadU(d, to + i)), d, to + i);
        if (i + kWords >= n) break;
        v = hn::Add(hn::Mul(v, hn::Set(d, kLeaps.factor[kWords - 1])), hn::Set(d, kLeaps.term[kWords - 1]));
    }
    hn::StoreU(v, d, congruential);
    words.congruential = congruential[(n - 1) % kWords];
}

// count elements from the values that function(i) gives by vectors from the i-th on.
template <Values values, class T, class Function>
HWY_INLINE void storeElements(T* dst, size_t count, const Function& function) {
    constexpr size_t N = kVectorBytes / sizeof(T);
    const Lanes<T, N> d;
    const auto vector = [&](size_t i) HWY_ATTR {
        return elements<T, values, double>(
            several<kValueVectors<T, double>>([&](size_t r) HWY_ATTR { return function(i + r * kDoubles); }));
    };
    size_t i = 0;
    for (; i + N <= count; i += N)
        hn::StoreU(vector(i), d, dst + i);
    if (i < count) storeFirst(d, vector(i), dst + i, count - i);
}

inline constexpr size_t kRandomBlock = 64;
static_assert(kRandomBlock % kVectorBytes == 0);

template <class T>
ZvpStatus uniform(T* dst, size_t n, RandomWords* words, double scale, double middle) {
    constexpr Values kValues = std::is_floating_point_v<T> ? Values::any : Values::representable;
    const DoubleLanes d;
    RandomWords local = *words;
    for (size_t i = 0; i < n; i += kRandomBlock) {
        const size_t count = n - i < kRandomBlock ? n - i : kRandomBlock;
        int32_t raw[kRandomBlock];
        rawNumbers(local, count, raw);
        storeElements<kValues>(dst + i, count, [&](size_t k) HWY_ATTR {
            const auto number = hn::PromoteTo(d, hn::LoadU(Lanes<int32_t, kDoubles>(), raw + k));
            return hn::Add(hn::Mul(number, hn::Set(d, scale)), hn::Set(d, middle));
        });
    }
    *words = local;
    return zvpStsOk;
}

// ---- Normal deviates ----

// Pairs tried at once; no more than are needed, so that no raw number is lost.
inline constexpr size_t kPairs = 32;

// The lanes of the mask moved to the front. Highway would copy a table of permutations onto the stack.
template <class Mask>
HWY_INLINE Doubles compressed(Doubles v, Mask mask) {
#if HWY_TARGET <= HWY_AVX3
    return Doubles{_mm512_maskz_compress_pd(mask.raw, v.raw)};
#else
    double from[kDoubles], to[kDoubles] = {};
    const DoubleLanes d;
    hn::StoreU(v, d, from);
    uint8_t bits[8] = {};
    hn::StoreMaskBits(d, mask, bits);
    size_t count = 0;
    for (size_t i = 0; i < kDoubles; ++i) {
        to[count] = from[i];
        count += bits[0] >> i & 1;
    }
    return hn::LoadU(d, to);
#endif
}

// Deviates of up to n pairs, one after the other; returns how many pairs gave some.
HWY_INLINE size_t deviatePairs(RandomWords& words, size_t n, double* deviates) {
    const DoubleLanes d;
    const Lanes<int32_t, kDoubles> half;
    int32_t raw[2 * kPairs + kWords];
    rawNumbers(words, 2 * n, raw);
    // Pairs of zeros are refused.
    for (size_t i = 2 * n; i % (2 * kDoubles) != 0; ++i)
        raw[i] = 0;
    double first[kPairs + kDoubles], second[kPairs + kDoubles], squares[kPairs + kDoubles];
    size_t count = 0;
    for (size_t i = 0; i < n; i += kDoubles) {
        Vec<int32_t, kDoubles> even, odd;
        hn::LoadInterleaved2(half, raw + 2 * i, even, odd);
        const auto unit = hn::Set(d, 0x1p-31);
        const auto u = hn::Mul(hn::PromoteTo(d, even), unit);
        const auto v = hn::Mul(hn::PromoteTo(d, odd), unit);
        const auto s = hn::Add(hn::Mul(u, u), hn::Mul(v, v));
        const auto isTaken = hn::And(hn::Lt(s, hn::Set(d, 1.0)), hn::Gt(s, hn::Zero(d)));
        hn::StoreU(compressed(u, isTaken), d, first + count);
        hn::StoreU(compressed(v, isTaken), d, second + count);
        hn::StoreU(compressed(s, isTaken), d, squares + count);
        count += hn::CountTrue(d, isTaken);
    }
    for (size_t i = 0; i < count; i += kDoubles) {
        const auto s = hn::LoadU(d, squares + i);
        const auto factor = hn::Sqrt(hn::Div(hn::Mul(logarithm(d, s), hn::Set(d, -2.0)), s));
        hn::StoreInterleaved2(hn::Mul(hn::LoadU(d, first + i), factor), hn::Mul(hn::LoadU(d, second + i), factor), d,
                              deviates + 2 * i);
    }
    return count;
}

template <class T>
ZvpStatus gauss(T* dst, size_t n, GaussWords* state, double mean, double deviation) {
    const DoubleLanes d;
    double deviates[2 * (kPairs + kDoubles) + kVectorBytes];
    const auto store = [&](T* to, size_t count) HWY_ATTR {
        storeElements<Values::any>(to, count, [&](size_t k) HWY_ATTR {
            return hn::Add(hn::Set(d, mean), hn::Mul(hn::Set(d, deviation), hn::LoadU(d, deviates + k)));
        });
    };
    RandomWords words = state->words;
    size_t i = 0;
    if (state->hasSecond != 0) {
        deviates[0] = state->second;
        store(dst, 1);
        state->hasSecond = 0;
        i = 1;
    }
    while (i < n) {
        const size_t missing = (n - i + 1) / 2;
        const size_t count = deviatePairs(words, missing < kPairs ? missing : kPairs, deviates);
        if (2 * count > n - i) {
            state->hasSecond = 1;
            state->second = deviates[2 * count - 1];
        }
        const size_t stored = 2 * count < n - i ? 2 * count : n - i;
        store(dst + i, stored);
        i += stored;
    }
    state->words = words;
    return zvpStsOk;
}

} // namespace zvps::ZVPS_LEVEL
