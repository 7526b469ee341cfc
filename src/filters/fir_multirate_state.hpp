// What multi-rate states have beyond those of one rate: the factors, and the taps as kernels take them.
#pragma once

#include "filters/fir_multirate.table.hpp"
#include "filters/fir_state.hpp"

#include <numeric>

namespace zvps {

// Input n stands at position n * up + upPhase, output m is taken at position downPhase + m * down.
struct MultirateFactors {
    int up;
    int upPhase;
    int down;
    int downPhase;

    int64_t position(int64_t output) const { return downPhase + output * down - upPhase; }
    // Of the newest input of an output, and of the first tap that it meets.
    int64_t newest(int64_t output) const {
        const int64_t p = position(output);
        return (p >= 0 ? p : p - (up - 1)) / up;
    }
    int64_t phase(int64_t output) const { return position(output) - newest(output) * up; }
    // The inputs that an output has.
    int64_t past(int tapsLen) const { return (int64_t{tapsLen} + up - 1) / up; }
};

// Lanes are the elements of groups: the sub-filter of each of `outputs` outputs as the sum of `inputs` sub-filters of
// every inputs-th input.
template <class T>
struct MultirateLanes {
    int outputs;  // up and down without their common divisor
    int inputs;
    size_t group; // outputs * inputs
    size_t groups; // in a vector
    size_t rows;

    static constexpr size_t kLanes = kMultirateBytes / sizeof(T);

    MultirateLanes(const MultirateFactors& factors, int tapsLen) {
        const int divisor = std::gcd(factors.up, factors.down);
        outputs = factors.up / divisor;
        inputs = factors.down / divisor;
        const int64_t product = int64_t{outputs} * inputs;
        group = static_cast<size_t>(product);
        groups = kLanes / group;
        rows = static_cast<size_t>((factors.past(tapsLen) + inputs - 1) / inputs);
    }
    // Where groups are larger than vectors, outputs are summed one by one instead.
    bool fit() const { return groups > 0; }
    // The oldest input that the lanes of an output of the first group meet.
    int64_t oldest(const MultirateFactors& factors, int output) const {
        return factors.newest(output) + 1 - static_cast<int64_t>(rows) * inputs;
    }
};

template <class T>
struct FirMultirate {
    MultirateFactors factors;
    int32_t past;
    bool isExact; // sums of integers are, in double precision
    T* taps;      // rows of lanes, or those of each phase
    Part<T>* mask;
    bool isPartial; // the first row of lanes lacks taps
    int32_t* order; // where lanes come from in the inputs
};

// The bytes of a state, or -1 if an int does not hold them. State: FirState or FirIntegerState.
template <class State>
int multirateStateSize(const MultirateFactors& factors, int tapsLen);

// Builds a state in `buffer`, without taps and past inputs.
template <class State>
State* buildMultirateState(uint32_t tag, const MultirateFactors& factors, int tapsLen, int threads,
                           unsigned char* buffer);

// `reversed`: the parts of the state's taps, the last tap first.
template <class T, class P>
void setMultirateTaps(FirMultirate<T>& fir, const P* reversed, int tapsLen);

} // namespace zvps
