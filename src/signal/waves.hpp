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
    const auto store = [&](P* to) HWY_ATTR {
        repeat<kWaveBlock / N>([&](size_t i) HWY_ATTR {
            const auto values = several<R>([&](size_t r) HWY_ATTR { return wave.values(i * R + r); });
            hn::StoreU(elements<P, Wave::kValues, W>(values), d, to + i * N);
        });
    };
    const auto storeSome = [&](T* to, size_t begin, size_t count) HWY_ATTR {
        P block[kWaveBlock];
        store(block);
        __builtin_memcpy(to, reinterpret_cast<const T*>(block) + begin, count * sizeof(T));
    };
    size_t i = 0;
    if (const size_t begin = first % kSamples; begin != 0) {
        i = n < kSamples - begin ? n : kSamples - begin;
        wave.next();
        storeSome(dst, begin, i);
    }
    for (; n - i >= kSamples; i += kSamples) {
        wave.next();
        store(parts(dst + i));
    }
    if (i < n) {
        wave.next();
        storeSome(dst + i, 0, n - i);
    }
}

// ---- Tones ----

template <class T>
void prepareTone(const Oscillation& oscillation, double magnitude, size_t samples, ToneTables<ToneValue<T>>* tables) {
    using W = ToneValue<T>;
    constexpr size_t kSamples = kBlockSamples<T>;
    constexpr bool kComplex = sizeof(T) != sizeof(Part<T>);
    const DoubleLanes d;
    const Lanes<uint64_t, kDoubles> bits;
    const TurnsInteger frequency = integer(oscillation.frequency);
    uint64_t phases[kSamples];
    TurnsInteger phase = 0;
    for (uint64_t& p : phases) {
        p = static_cast<uint64_t>(phase >> 64);
        phase += frequency;
    }
    const size_t count = samples < kSamples ? samples : kSamples;
    for (size_t j = 0; j < count; j += kDoubles) {
        const auto rotation = rotations(d, hn::LoadU(bits, phases + j));
        const auto c = hn::Mul(hn::Set(d, magnitude), rotation.cosine);
        const auto s = hn::Mul(hn::Set(d, magnitude), rotation.sine);
        double a[2 * kDoubles], b[2 * kDoubles];
        if constexpr (kComplex) {
            hn::StoreInterleaved2(c, s, d, a);
            hn::StoreInterleaved2(hn::Neg(s), c, d, b);
        } else {
            hn::StoreU(c, d, a);
            hn::StoreU(hn::Neg(s), d, b);
        }
        constexpr size_t kParts = kComplex ? 2 : 1;
        for (size_t i = 0; i < kParts * kDoubles; ++i) {
            tables->a[kParts * j + i] = static_cast<W>(a[i]);
            tables->b[kParts * j + i] = static_cast<W>(b[i]);
        }
    }
    phase = 0;
    for (uint64_t& p : tables->blocks) {
        p = static_cast<uint64_t>(phase >> 64);
        phase += frequency * kSamples;
    }
    if (samples > kToneGroup * kSamples) {
        const auto rotation = rotations(d, hn::Set(bits, static_cast<uint64_t>(phase >> 64)));
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
        const uint64_t begun = (block_ % (kToneGroup * kToneGroups) + kToneGroup - 1) / kToneGroup;
        if (begun == 0) return;
        restart();
        for (uint64_t group = 1; group < begun; ++group)
            rotate();
        keep();
    }

    HWY_INLINE void next() {
        const size_t i = block_ % kToneGroup;
        if (HWY_UNLIKELY(i == 0)) {
            if (block_ / kToneGroup % kToneGroups == 0) {
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
    static constexpr size_t kVectors = kWaveBlock / N;
    static constexpr size_t kGroupVectors = kToneGroup / kDoubles;
    static constexpr Lanes<Value, N> d_{};

    HWY_INLINE void restart() {
        constexpr size_t kPeriod = kToneGroup * kToneGroups;
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
        start_ = static_cast<double>(static_cast<int64_t>(static_cast<uint64_t>(phase_ >> 64) >> 1)) * 0x1p-63;
        phase_ += step_;
    }
    HWY_INLINE Doubles values(size_t i) const {
        const DoubleLanes d;
        const auto one = hn::Set(d, 1.0);
        const auto sum = hn::Add(hn::Set(d, start_), hn::LoadU(d, triangle_.offsets + i * kDoubles));
        const auto p = hn::Sub(sum, hn::Floor(sum));
        const auto rising = hn::Mul(p, hn::Set(d, triangle_.up));
        const auto falling = hn::Mul(hn::Sub(one, p), hn::Set(d, triangle_.down));
        const auto height = hn::Min(hn::Min(rising, falling), hn::Set(d, 2.0));
        return hn::Mul(hn::Sub(height, one), hn::Set(d, triangle_.magnitude));
    }

  private:
    const Triangle& triangle_;
    TurnsInteger step_;
    TurnsInteger phase_; // of the next block
    double start_ = 0;
};

template <class T>
ZvpStatus triangle(T* dst, size_t n, uint64_t first, const Oscillation& oscillation, const Triangle& parameters) {
    TriangleWave wave(first, kBlockSamples<T>, oscillation, parameters);
    generate(dst, n, first, wave);
    return zvpStsOk;
}

} // namespace zvps::ZVPS_LEVEL
