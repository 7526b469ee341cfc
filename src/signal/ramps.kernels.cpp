#include "signal/ramps.hpp"

namespace zvps::ZVPS_LEVEL {

extern const RampKernels rampKernels;
const RampKernels rampKernels = {
#define ZVPS_SLOT(type) {ramp<Zvp##type>, slope<Zvp##type>, jaehne<Zvp##type>},
    ZVPS_RAMP_TYPES(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps::ZVPS_LEVEL
