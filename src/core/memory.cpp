#include "zvps/memory.h"

#include "zvpcore.h"

#define ZVPS_MALLOC(TYPE)                                                                                              \
    Zvp##TYPE* zvpsMalloc_##TYPE(int len) {                                                                            \
        if (len < 1) return nullptr;                                                                                   \
        return static_cast<Zvp##TYPE*>(zvpMalloc(len * static_cast<int64_t>(sizeof(Zvp##TYPE))));                      \
    }

ZVPS_MALLOC(8u)
ZVPS_MALLOC(8s)
ZVPS_MALLOC(8sc)
ZVPS_MALLOC(16s)
ZVPS_MALLOC(16u)
ZVPS_MALLOC(16sc)
ZVPS_MALLOC(32f)
ZVPS_MALLOC(32s)
ZVPS_MALLOC(32u)
ZVPS_MALLOC(32fc)
ZVPS_MALLOC(32sc)
ZVPS_MALLOC(64f)
ZVPS_MALLOC(64s)
ZVPS_MALLOC(64fc)
ZVPS_MALLOC(64sc)

void zvpsFree(void* ptr) {
    zvpFree(ptr);
}

const ZvpLibraryVersion* zvpsGetLibVersion(void) {
    static constexpr ZvpLibraryVersion record = {
        6, 1, 137, 837, {'n', '8', '\0', '\0'}, "zvpsn8-6.1.dll", "6.1 build 137.46", "Nov 27 2009",
    };
    return &record;
}
