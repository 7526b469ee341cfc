// Tones and triangle waves, by blocks.
#pragma once

#include "core/elements.hpp"
#include "core/sine.hpp"
#include "signal/generated.hpp"
#include "signal/waves.table.hpp"

namespace zvps::ZVPS_LEVEL {

template <class T>
inline constexpr size_t kBlockSamples = kWaveBlock * sizeof(Part<T>) / sizeof(T);

// n samples of a wave from `first` on. A wave gives its blocks one after the other, and vectors of the last one given.
template <class T, class Wave>
HWY_INLINE void generate(T* dst, size_t n, uint64_t first, Wave& wave) {
    using P = Part<T>;
    using W = typename Wave::Value;
    constexpr size_t N = kVectorBytes / sizeof(P);
    constexpr size_t R = kValueVectors<P, W>;
    constexpr size_t kSamples = kBlockSamples<T>;
    const Lanes<P, N> d;
    const auto vector = [&](size_t v) HWY_ATTR {
        return elements<P, Wave::kValues, W>(several<R>([&](size_t r) HWY_ATTR { return wave.values(v * R + r); }));
    };
    const auto store = [&](P* to) HWY_ATTR {
        repeat<kWaveBlock / N>([&](size_t v) HWY_ATTR { hn::StoreU(vector(v), d, to + v * N); });
    };
    size_t i = 0;
    if (const size_t begin = first % kSamples; begin != 0) {
        i = n < kSamples - begin ? n : kSamples - begin;
        P block[kWaveBlock];
        wave.next();
        store(block);
        __builtin_memcpy(dst, reinterpret_cast<const T*>(block) + begin, i * sizeof(T));
    }
    for (; n - i >= kSamples; i += kSamples) {
        wave.next();
        store(parts(dst + i));
    }
    if (i < n) {
        wave.next();
        P* const to = parts(dst + i);
        const size_t left = (n - i) * (sizeof(T) / sizeof(P));
        repeat<kWaveBlock / N>([&](size_t v) HWY_ATTR {
            if (v * N + N <= left) {
                hn::StoreU(vector(v), d, to + v * N);
            } else if (v * N < left) {
                storeFirst(d, vector(v), to + v * N, left - v * N);
            }
        });
    }
}

// ---- Tones ----

// Phases of multiples up to a few hundred: the lower half of the frequency does not count.
template <class T>
void prepareTone(const Oscillation& oscillation, double magnitude, size_t samples, ToneTables<ToneValue<T>>* tables) {
    using W = ToneValue<T>;
    constexpr size_t kSamples = kBlockSamples<T>;
    constexpr bool kComplex = sizeof(T) != sizeof(Part<T>);
    const DoubleLanes d;
    const Lanes<W, kDoubles> dw;
    const Lanes<uint64_t, kDoubles> bits;
    const uint64_t frequency = oscillation.frequency.high;
    uint64_t multiples[kDoubles];
    for (size_t i = 0; i < kDoubles; ++i)
        multiples[i] = i * frequency;
    const auto first = hn::LoadU(bits, multiples);
    // Whole vectors of elements.
    constexpr size_t kUnit = kVectorBytes / sizeof(T) < kSamples ? kVectorBytes / sizeof(T) : kSamples;
    const size_t count = samples < kSamples ? (samples + kUnit - 1) / kUnit * kUnit : kSamples;
    const auto converted = [&](Doubles v) HWY_ATTR {
        const auto scaled = hn::Mul(v, hn::Set(d, magnitude));
        if constexpr (std::is_same_v<W, double>) {
            return scaled;
        } else {
            return hn::DemoteTo(dw, scaled);
        }
    };
    for (size_t j = 0; j < count; j += kDoubles) {
        const auto rotation = rotations(d, hn::Add(first, hn::Set(bits, j * frequency)));
        const auto c = converted(rotation.cosine);
        const auto s = converted(rotation.sine);
        if constexpr (kComplex) {
            hn::StoreInterleaved2(c, s, dw, tables->a + 2 * j);
            hn::StoreInterleaved2(hn::Neg(s), c, dw, tables->b + 2 * j);
        } else {
            hn::StoreU(c, dw, tables->a + j);
            hn::StoreU(hn::Neg(s), dw, tables->b + j);
        }
    }
    for (size_t i = 0; i < kToneGroup; ++i)
        tables->blocks[i] = i * kSamples * frequency;
    if (samples > kToneGroup * kSamples) {
        const auto rotation = rotations(d, hn::Set(bits, kToneGroup * kSamples * frequency));
        tables->rotation[0] = hn::GetLane(rotation.cosine);
        tables->rotation[1] = hn::GetLane(rotation.sine);
    }
}

template <class T>
class Tone {
  public:
    using Value = ToneValue<T>;
    static constexpr Values kValues = Values::representable;
    static constexpr size_t N = kVectorBytes / sizeof(Value);

    Tone(uint64_t first, const Oscillation& oscillation, const ToneTables<Value>& tables)
        : oscillation_(oscillation), tables_(tables), block_(first / kBlockSamples<T>) {
        repeat<kVectors>([&](size_t i) HWY_ATTR {
            a_[i] = hn::LoadU(d_, tables.a + i * N);
            b_[i] = hn::LoadU(d_, tables.b + i * N);
        });
        // The groups that have begun before the first block.
        const uint64_t begun = (block_ % (kToneGroup * kGroups) + kToneGroup - 1) / kToneGroup;
        if (begun == 0) return;
        restart();
        for (uint64_t group = 1; group < begun; ++group)
            rotate();
        keep();
    }

    HWY_INLINE void next() {
        const size_t i = block_ % kToneGroup;
        if (HWY_UNLIKELY(i == 0)) {
            if (block_ / kToneGroup % kGroups == 0) {
                restart();
            } else {
                rotate();
            }
            keep();
        }
        ++block_;
        cosine_ = hn::Set(d_, cosines_[i]);
        sine_ = hn::Set(d_, sines_[i]);
    }
    HWY_INLINE Vec<Value, N> values(size_t i) const { return hn::Add(hn::Mul(a_[i], cosine_), hn::Mul(b_[i], sine_)); }

  private:
    static constexpr size_t kGroups = kToneGroups<Part<T>>;
    static constexpr size_t kVectors = kWaveBlock / N;
    static constexpr size_t kGroupVectors = kToneGroup / kDoubles;
    static constexpr Lanes<Value, N> d_{};

    HWY_INLINE void restart() {
        constexpr size_t kPeriod = kToneGroup * kGroups;
        const Lanes<uint64_t, kDoubles> bits;
        const uint64_t phase = oscillation_.phaseAt(block_ / kPeriod * kPeriod * kBlockSamples<T>);
        repeat<kGroupVectors>([&](size_t i) HWY_ATTR {
            group_[i] =
                rotations(DoubleLanes(), hn::Add(hn::Set(bits, phase), hn::LoadU(bits, tables_.blocks + i * kDoubles)));
        });
    }
    HWY_INLINE void rotate() {
        const auto c = hn::Set(DoubleLanes(), tables_.rotation[0]);
        const auto s = hn::Set(DoubleLanes(), tables_.rotation[1]);
        repeat<kGroupVectors>([&](size_t i) HWY_ATTR {
            const auto before = group_[i];
            group_[i].cosine = hn::Sub(hn::Mul(before.cosine, c), hn::Mul(before.sine, s));
            group_[i].sine = hn::Add(hn::Mul(before.cosine, s), hn::Mul(before.sine, c));
        });
    }
    HWY_INLINE void keep() {
        const Lanes<Value, kDoubles> d;
        repeat<kGroupVectors>([&](size_t i) HWY_ATTR {
            if constexpr (std::is_same_v<Value, double>) {
                hn::StoreU(group_[i].cosine, d, cosines_ + i * kDoubles);
                hn::StoreU(group_[i].sine, d, sines_ + i * kDoubles);
            } else {
                hn::StoreU(hn::DemoteTo(d, group_[i].cosine), d, cosines_ + i * kDoubles);
                hn::StoreU(hn::DemoteTo(d, group_[i].sine), d, sines_ + i * kDoubles);
            }
        });
    }

    const Oscillation& oscillation_;
    const ToneTables<Value>& tables_;
    uint64_t block_; // the next
    Rotations<kDoubles> group_[kGroupVectors];
    Value cosines_[kToneGroup];
    Value sines_[kToneGroup];
    Vec<Value, N> a_[kVectors];
    Vec<Value, N> b_[kVectors];
    Vec<Value, N> cosine_;
    Vec<Value, N> sine_;
};

template <class T>
ZvpStatus tone(T* dst, size_t n, uint64_t first, const Oscillation& oscillation,
               const ToneTables<ToneValue<T>>& tables) {
    Tone<T> wave(first, oscillation, tables);
    generate(dst, n, first, wave);
    return zvpStsOk;
}

// ---- Triangle waves ----

class TriangleWave {
  public:
    using Value = double;
    static constexpr Values kValues = Values::representable;

    TriangleWave(uint64_t first, size_t samples, const Oscillation& oscillation, const Triangle& triangle)
        : triangle_(triangle), step_(integer(oscillation.frequency) * samples),
          phase_((TurnsInteger{oscillation.phase} << 64) + step_ * (first / samples)) {}

    HWY_INLINE void next() {
        start_ = static_cast<uint64_t>(phase_ >> 64);
        phase_ += step_;
    }
    HWY_INLINE Doubles values(size_t i) const {
        const DoubleLanes d;
        const Lanes<uint64_t, kDoubles> bits;
        const auto one = hn::Set(d, 1.0);
        // The upper bits of the phase as those of a number from 1 to 2.
        const auto turns = hn::Add(hn::Set(bits, start_), hn::LoadU(bits, triangle_.offsets + i * kDoubles));
        const auto p = hn::Sub(hn::Or(hn::BitCast(d, hn::ShiftRight<12>(turns)), one), one);
        const auto down = hn::Set(d, triangle_.down);
        const auto height = hn::Min(hn::Mul(p, hn::Set(d, triangle_.up)), hn::Sub(down, hn::Mul(p, down)));
        return hn::Sub(height, hn::Set(d, triangle_.magnitude));
    }

  private:
    const Triangle& triangle_;
    TurnsInteger step_;
    TurnsInteger phase_; // of the next block
    uint64_t start_ = 0;
};

template <class T>
ZvpStatus triangle(T* dst, size_t n, uint64_t first, const Oscillation& oscillation, const Triangle& parameters) {
    TriangleWave wave(first, kBlockSamples<T>, oscillation, parameters);
    generate(dst, n, first, wave);
    return zvpStsOk;
}

} // namespace zvps::ZVPS_LEVEL
