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

// What the lanes of vectors are: outputs that follow each other, or in decimation the products of inputs that do, whose
// sums are an output. They repeat in groups of `outputs` outputs, which take `inputs` inputs.
template <class T>
class MultirateLanes {
  public:
    static constexpr int64_t kLanes = kMultirateBytes / sizeof(T);
    static constexpr int64_t kMostChunks = 64;

    int64_t outputs; // up and down without their common divisor
    int64_t inputs;
    int64_t groups = 0; // in a vector; 0: neither fits, outputs are summed one by one
    int64_t chunks = 1; // vectors of a group that is longer than a vector
    int64_t rows = 0;   // of taps

    MultirateLanes(const MultirateFactors& factors, int tapsLen) {
        const int divisor = std::gcd(factors.up, factors.down);
        outputs = factors.up / divisor;
        inputs = factors.down / divisor;
        const int64_t past = factors.past(tapsLen);
        if (addsLanes()) {
            groups = kLanes / inputs;
            rows = (past + inputs - 1) / inputs;
            return;
        }
        rows = past;
        while ((groups + 1) * outputs <= kLanes && reach(factors, 0, (groups + 1) * outputs) <= kLanes)
            ++groups;
        if (groups > 0 || outputs > kMostChunks * kLanes) return;
        groups = 1;
        chunks = 0;
        for (int64_t first = 0; first < outputs; first += width(factors, first))
            ++chunks;
        // Vectors of a few outputs are not worth their while.
        if (outputs * 4 < chunks * kLanes) {
            groups = 0;
            chunks = 1;
        }
    }

    bool fit() const { return groups > 0; }
    bool addsLanes() const { return outputs == 1; }
    int64_t lanes() const { return addsLanes() ? groups * inputs : groups * outputs; }
    // The outputs from `first` on that a chunk holds.
    int64_t width(const MultirateFactors& factors, int64_t first) const {
        int64_t n = 1;
        while (n < kLanes && first + n < outputs && reach(factors, first, n + 1) <= kLanes)
            ++n;
        return n;
    }
    int64_t rowStep() const { return addsLanes() ? inputs : 1; }
    // The oldest input that the first lane meets.
    int64_t oldest(const MultirateFactors& factors) const { return factors.newest(0) + 1 - rows * rowStep(); }

  private:
    // From the newest input of the first to that of the last of n outputs.
    static int64_t reach(const MultirateFactors& factors, int64_t first, int64_t n) {
        return factors.newest(first + n - 1) - factors.newest(first) + 1;
    }
};

// A vector's first output of a group, how many it holds, and its newest input beyond the group's first output's.
struct MultirateChunk {
    int32_t output;
    int32_t width;
    int32_t input;
    bool isPartial; // the first row lacks taps
};

template <class T>
struct FirMultirate {
    MultirateFactors factors;
    MultirateLanes<T> lanes;
    T* taps; // rows of lanes by chunks, or those of each phase
    // For each chunk:
    MultirateChunk* chunks;
    Part<T>* masks;
    int32_t* orders; // where lanes come from in the inputs
    bool isExact;    // sums of integers are, in double precision
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
