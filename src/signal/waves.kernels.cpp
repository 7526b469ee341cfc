#include "signal/waves.hpp"

namespace zvps::ZVPS_LEVEL {

extern const WaveKernels waveKernels;
const WaveKernels waveKernels = {
#define ZVPS_SLOT(type) {prepareTone<Zvp##type>, tone<Zvp##type>}, triangle<Zvp##type>,
    ZVPS_WAVE_TYPES(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps::ZVPS_LEVEL
