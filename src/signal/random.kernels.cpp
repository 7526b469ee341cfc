#include "signal/random.hpp"

namespace zvps::ZVPS_LEVEL {

extern const RandomKernels randomKernels;
const RandomKernels randomKernels = {
#define ZVPS_SLOT(type) {uniform<Zvp##type>, gauss<Zvp##type>},
    ZVPS_RANDOM_TYPES(ZVPS_SLOT)
#undef ZVPS_SLOT
};

} // namespace zvps::ZVPS_LEVEL
