#include "filters/iir_state.hpp"

#include "filters/carver.hpp"

#include <algorithm>
#include <cmath>
#include <type_traits>

namespace zvps {
namespace {

template <class Element>
inline constexpr bool kIsComplex = !std::is_same_v<Element, Part<Element>>;

template <class Element>
bool isZero(Element v) {
    if constexpr (kIsComplex<Element>) {
        return v.re == 0 && v.im == 0;
    } else {
        return v == 0;
    }
}

// A tap in the type the filter computes in.
template <class Element, class Tap>
Element converted(Tap v) {
    using T = Part<Element>;
    if constexpr (kIsComplex<Element>) {
        return {static_cast<T>(v.re), static_cast<T>(v.im)};
    } else {
        return static_cast<T>(v);
    }
}

template <class Element>
Element reciprocal(Element v) {
    using T = Part<Element>;
    if constexpr (kIsComplex<Element>) {
        // By the larger part first, so that no square overflows.
        if (std::abs(v.re) >= std::abs(v.im)) {
            const T ratio = v.im / v.re;
            const T divisor = v.re + v.im * ratio;
            return {1 / divisor, -ratio / divisor};
        }
        const T ratio = v.re / v.im;
        const T divisor = v.im + v.re * ratio;
        return {ratio / divisor, -1 / divisor};
    } else {
        return 1 / v;
    }
}

template <class Element>
Element product(Element a, Element b) {
    if constexpr (kIsComplex<Element>) {
        return {a.re * b.re - a.im * b.im, a.re * b.im + a.im * b.re};
    } else {
        return a * b;
    }
}

// A tap among IirFilter's vectors.
template <class Element>
void setVectorTap(Part<Element>* const* vectors, int k, Element tap) {
    if constexpr (kIsComplex<Element>) {
        vectors[0][2 * k] = vectors[0][2 * k + 1] = tap.re;
        vectors[1][2 * k] = -tap.im;
        vectors[1][2 * k + 1] = tap.im;
    } else {
        vectors[0][k] = tap;
    }
}
template <class Element>
Element negative(Element v) {
    if constexpr (kIsComplex<Element>) {
        return {-v.re, -v.im};
    } else {
        return -v;
    }
}

// What joins the runs of a section; false if they cannot be joined. The state's response to itself, of a stable filter
// no larger than k + 1 after k samples, may grow: then rounding errors would grow with it.
template <class T>
bool setRun(BiquadRun<T>& run, const T* taps) {
    constexpr size_t n = kRun<T>;
    const long double a1 = taps[3];
    const long double a2 = taps[4];
    long double h[n + 1] = {1, -a1};
    for (size_t k = 2; k <= n; ++k)
        h[k] = -a1 * h[k - 1] - a2 * h[k - 2];
    for (size_t k = 0; k <= n; ++k) {
        if (!(std::abs(h[k]) <= 4 * (n + 1))) return false;
        run.h[k] = static_cast<T>(h[k]);
    }
    run.power[0][0] = static_cast<T>(h[n]);
    run.power[0][1] = static_cast<T>(h[n - 1]);
    run.power[1][0] = static_cast<T>(-a2 * h[n - 1]);
    run.power[1][1] = static_cast<T>(-a2 * h[n - 2]);
    return true;
}

// A section's delay line after the samples of a run that are done.
template <class T>
void joinedDelay(const IirState<T>& state, int section, T* delay) {
    const BiquadRun<T>& run = state.biquads.runs[section];
    const T* const before = state.delay + 2 * int64_t{section};
    const T a2 = state.taps[static_cast<int64_t>(kBiquadTaps) * section + 4];
    const auto j = static_cast<int>(state.biquads.cascade.phase);
    const T h1 = j < 1 ? 0 : run.h[j - 1];
    const T h2 = j < 2 ? 0 : run.h[j - 2];
    const T d0 = run.rest[0] + run.h[j] * before[0] + h1 * before[1];
    const T d1 = run.rest[1] - a2 * (h1 * before[0] + h2 * before[1]);
    delay[0] = d0;
    delay[1] = d1;
}

} // namespace

template <class Element>
IirState<Element>* buildIirState(IirKind kind, uint32_t tag, int n, int scratch, Zvp8u* buffer) {
    using T = Part<Element>;
    Carver carver(buffer);
    auto& state = *carver.take<IirState<Element>>(1, 32);
    state = {};
    state.tag = tag;
    const int64_t count = n;
    int64_t delays = 0;
    if (kind == IirKind::order) {
        delays = count + 1 + static_cast<int64_t>(kIirPadding<T>);
        state.order = n;
        state.taps = carver.take<Element>(2 * count + 1);
        state.delay = carver.take<Element>(delays);
        state.filter = {static_cast<size_t>(n), parts(state.delay), {}, {}};
        const auto vector = [&] {
            Element* const zeros = carver.take<Element>(delays);
            std::fill_n(zeros, delays, Element{});
            return parts(zeros);
        };
        for (size_t i = 0; i < (kIsComplex<Element> ? 2 : 1); ++i) {
            state.filter.b[i] = vector();
            state.filter.a[i] = vector();
        }
    } else {
        const bool isDirectForm1 = kind == IirKind::directForm1;
        delays = count * (isDirectForm1 ? 4 : 2);
        state.order = 2 * n;
        state.sections = n;
        state.taps = carver.take<Element>(static_cast<int64_t>(kBiquadTaps) * count);
        state.delay = carver.take<Element>(delays);
        if (!isDirectForm1 && !kIsComplex<Element>) state.biquads.runs = carver.take<BiquadRun<T>>(count);
        state.biquads.cascade = {static_cast<size_t>(n), parts(state.taps), parts(state.delay), nullptr, 0};
    }
    std::fill_n(state.delay, delays, Element{});
    if (scratch > 0) state.scratch = carver.take<Element>(scratch);
    return &state;
}

template <class Taps>
bool hasZeroDivisor(IirKind kind, const Taps* taps, int n) {
    if (kind == IirKind::order) return isZero(taps[int64_t{n} + 1]);
    for (const Taps* section = taps; section != taps + 6 * int64_t{n}; section += 6) {
        if (isZero(section[0]) || isZero(section[3])) return true;
    }
    return false;
}

template <class Element, class Taps>
void setIirTaps(IirState<Element>& state, IirKind kind, const Taps* taps) {
    using T = Part<Element>;
    if (kind == IirKind::order) {
        const int n = state.order;
        const Element factor = reciprocal(converted<Element>(taps[int64_t{n} + 1]));
        for (int k = 0; k <= n; ++k) {
            state.taps[k] = product(converted<Element>(taps[k]), factor);
            setVectorTap<Element>(state.filter.b, k, state.taps[k]);
        }
        for (int k = 1; k <= n; ++k) {
            Element& a = state.taps[int64_t{n} + k];
            a = product(converted<Element>(taps[int64_t{n} + 1 + k]), factor);
            setVectorTap<Element>(state.filter.a, k, negative(a));
        }
        return;
    }
    const int sections = state.sections;
    if constexpr (!kIsComplex<Element>) {
        if (kind == IirKind::biquads && state.biquads.cascade.phase != 0) {
            // The new taps begin with a new run.
            for (int s = 0; s < sections; ++s)
                joinedDelay(state, s, state.delay + 2 * int64_t{s});
        }
    }
    for (int s = 0; s < sections; ++s) {
        const Taps* const given = taps + 6 * int64_t{s};
        Element* const kept = state.taps + static_cast<int64_t>(kBiquadTaps) * s;
        const Element factor = reciprocal(converted<Element>(given[3]));
        for (int k = 0; k < 5; ++k)
            kept[k] = product(converted<Element>(given[k < 3 ? k : k + 1]), factor);
    }
    BiquadRun<T>* const runs = state.biquads.runs;
    if (runs == nullptr) return;
    bool canJoin = true;
    for (int s = 0; s < sections; ++s) {
        std::fill_n(runs[s].rest, 2, T{});
        canJoin = canJoin && setRun(runs[s], parts(state.taps) + static_cast<int64_t>(kBiquadTaps) * s);
    }
    state.biquads.cascade.runs = canJoin ? runs : nullptr;
    state.biquads.cascade.phase = 0;
}

template <class Element>
void getIirDelay(const IirState<Element>& state, int first, int count, Element* delay) {
    if constexpr (!kIsComplex<Element>) {
        if (state.sections != 0 && state.biquads.cascade.phase != 0) {
            for (int i = 0; i < count; i += 2)
                joinedDelay(state, (first + i) / 2, delay + i);
            return;
        }
    }
    std::copy_n(state.delay + first, count, delay);
}

template <class Element>
void clearIirDelay(IirState<Element>& state) {
    std::fill_n(state.delay, state.order, Element{});
    if (state.sections == 0 || state.biquads.runs == nullptr) return;
    state.biquads.cascade.phase = 0;
    for (int s = 0; s < state.sections; ++s)
        std::fill_n(state.biquads.runs[s].rest, 2, Part<Element>{});
}

#define ZVPS_INSTANTIATE(TYPE)                                                                                         \
    template IirState<Zvp##TYPE>* buildIirState(IirKind kind, uint32_t tag, int n, int scratch, Zvp8u* buffer);        \
    template void getIirDelay(const IirState<Zvp##TYPE>& state, int first, int count, Zvp##TYPE* delay);               \
    template void clearIirDelay(IirState<Zvp##TYPE>& state);
ZVPS_INSTANTIATE(32f)
ZVPS_INSTANTIATE(32fc)
ZVPS_INSTANTIATE(64f)
ZVPS_INSTANTIATE(64fc)
#undef ZVPS_INSTANTIATE
#define ZVPS_INSTANTIATE(TYPE, ELEMENT)                                                                                \
    template void setIirTaps(IirState<Zvp##ELEMENT>& state, IirKind kind, const Zvp##TYPE* taps);
ZVPS_INSTANTIATE(32f, 32f)
ZVPS_INSTANTIATE(32f, 64f)
ZVPS_INSTANTIATE(32s, 64f)
ZVPS_INSTANTIATE(64f, 64f)
ZVPS_INSTANTIATE(32fc, 32fc)
ZVPS_INSTANTIATE(32fc, 64fc)
ZVPS_INSTANTIATE(32sc, 64fc)
ZVPS_INSTANTIATE(64fc, 64fc)
#undef ZVPS_INSTANTIATE
template bool hasZeroDivisor(IirKind kind, const Zvp16s* taps, int n);
template bool hasZeroDivisor(IirKind kind, const Zvp32f* taps, int n);
template bool hasZeroDivisor(IirKind kind, const Zvp32s* taps, int n);
template bool hasZeroDivisor(IirKind kind, const Zvp64f* taps, int n);
template bool hasZeroDivisor(IirKind kind, const Zvp32fc* taps, int n);
template bool hasZeroDivisor(IirKind kind, const Zvp32sc* taps, int n);
template bool hasZeroDivisor(IirKind kind, const Zvp64fc* taps, int n);

} // namespace zvps
