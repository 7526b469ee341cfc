/* Vectors from the library's allocator, and the library's version. */
#ifndef ZVPS_MEMORY_H
#define ZVPS_MEMORY_H

#include "zvps/types.h"

#ifdef __cplusplus
extern "C" {
#endif
#pragma GCC visibility push(default)

/* What this library is. The record is constant and lives as long as the library. */
typedef struct {
    Zvp32s major;
    Zvp32s minor;
    Zvp32s majorBuild;
    Zvp32s build;
    char targetCpu[4]; /* the processor generation the results are defined for */
    const char* name;
    const char* version;
    const char* buildDate;
} ZvpLibraryVersion;

/* The version record; never null, the same pointer at every call. */
const ZvpLibraryVersion* zvpsGetLibVersion(void);

/* Uninitialised storage for len elements, aligned to 32 bytes at least (zvpMalloc); null when len is below 1 or memory
   has run out. */
Zvp8u* zvpsMalloc_8u(int len);
Zvp8s* zvpsMalloc_8s(int len);
Zvp8sc* zvpsMalloc_8sc(int len);
Zvp16s* zvpsMalloc_16s(int len);
Zvp16u* zvpsMalloc_16u(int len);
Zvp16sc* zvpsMalloc_16sc(int len);
Zvp32f* zvpsMalloc_32f(int len);
Zvp32s* zvpsMalloc_32s(int len);
Zvp32u* zvpsMalloc_32u(int len);
Zvp32fc* zvpsMalloc_32fc(int len);
Zvp32sc* zvpsMalloc_32sc(int len);
Zvp64f* zvpsMalloc_64f(int len);
Zvp64s* zvpsMalloc_64s(int len);
Zvp64fc* zvpsMalloc_64fc(int len);
Zvp64sc* zvpsMalloc_64sc(int len);

/* Releases a vector from any zvpsMalloc function; null is accepted. */
void zvpsFree(void* ptr);

#pragma GCC visibility pop
#ifdef __cplusplus
}
#endif

#endif
