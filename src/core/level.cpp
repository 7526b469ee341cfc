#include "core/level.hpp"

#include <initializer_list>

namespace zvps {

#define ZVPS_TABLE(type, slot, table) extern const type table;
namespace v2 {
ZVPS_KERNEL_TABLES(ZVPS_TABLE)
}
namespace v3 {
ZVPS_KERNEL_TABLES(ZVPS_TABLE)
}
namespace v4 {
ZVPS_KERNEL_TABLES(ZVPS_TABLE)
}
#undef ZVPS_TABLE

namespace {

#define ZVPS_V2(type, slot, table) &v2::table,
#define ZVPS_V3(type, slot, table) &v3::table,
#define ZVPS_V4(type, slot, table) &v4::table,
constexpr Kernels levels[] = {
    {ZVPS_KERNEL_TABLES(ZVPS_V2)},
    {ZVPS_KERNEL_TABLES(ZVPS_V3)},
    {ZVPS_KERNEL_TABLES(ZVPS_V4)},
};

// Early among the constructors, so that those of a program that links statically find the level chosen.
[[gnu::constructor(101)]] void chooseLevel() {
    for (const Level level : {Level::v4, Level::v3}) {
        if (isSupported(level)) {
            useLevel(level);
            return;
        }
    }
}

} // namespace

const Kernels* activeKernels = &levels[static_cast<int>(Level::v2)];

bool isSupported(Level level) {
    __builtin_cpu_init();
    switch (level) {
    case Level::v2:
        return __builtin_cpu_supports("x86-64-v2");
    case Level::v3:
        return __builtin_cpu_supports("x86-64-v3");
    case Level::v4:
        return __builtin_cpu_supports("x86-64-v4");
    }
    return false;
}

void useLevel(Level level) {
    activeKernels = &levels[static_cast<int>(level)];
}

} // namespace zvps
