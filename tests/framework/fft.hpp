// The FFT functions in tables: types of transform objects with their operations, and transforms; data for them.
#pragma once

#include "framework/call.hpp"
#include "framework/function.hpp"

#include <cstring>

namespace zvps::test {

// ---- Transform objects ----

struct SpecType {
    const char* name;
    bool isReal;
    int lastOrder;
    ZvpStatus (*getSize)(int order, int flag, ZvpHintAlgorithm hint, int* spec, int* init, int* work);
    ZvpStatus (*init)(void** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem, Zvp8u* initBuf);
    ZvpStatus (*initAlloc)(void** spec, int order, int flag, ZvpHintAlgorithm hint);
    ZvpStatus (*free)(void* spec);
    ZvpStatus (*getBufSize)(const void* spec, int* size);
};

template <class Spec>
inline constexpr SpecType kSpecType = {};

// X(type, last order)
#define ZVPS_TEST_SPECS(X)                                                                                             \
    X(C_16sc, 27)                                                                                                      \
    X(C_16s, 27)                                                                                                       \
    X(R_16s, 27)                                                                                                       \
    X(C_32fc, 27)                                                                                                      \
    X(C_32f, 27)                                                                                                       \
    X(R_32f, 27)                                                                                                       \
    X(C_64fc, 26)                                                                                                      \
    X(C_64f, 26)                                                                                                       \
    X(R_64f, 26)                                                                                                       \
    X(C_32sc, 26)                                                                                                      \
    X(C_32s, 26)                                                                                                       \
    X(R_32s, 26)                                                                                                       \
    X(R_16s32s, 27)

#define ZVPS_TEST_SPEC(CODE, LAST)                                                                                     \
    template <>                                                                                                        \
    inline constexpr SpecType kSpecType<ZvpsFFTSpec_##CODE> = {                                                        \
        #CODE,                                                                                                         \
        #CODE[0] == 'R',                                                                                               \
        LAST,                                                                                                          \
        zvpsFFTGetSize_##CODE,                                                                                         \
        [](void** spec, int order, int flag, ZvpHintAlgorithm hint, Zvp8u* specMem, Zvp8u* initBuf) {                  \
            return zvpsFFTInit_##CODE(reinterpret_cast<ZvpsFFTSpec_##CODE**>(spec), order, flag, hint, specMem,        \
                                      initBuf);                                                                        \
        },                                                                                                             \
        [](void** spec, int order, int flag, ZvpHintAlgorithm hint) {                                                  \
            return zvpsFFTInitAlloc_##CODE(reinterpret_cast<ZvpsFFTSpec_##CODE**>(spec), order, flag, hint);           \
        },                                                                                                             \
        [](void* spec) { return zvpsFFTFree_##CODE(static_cast<ZvpsFFTSpec_##CODE*>(spec)); },                         \
        [](const void* spec, int* size) {                                                                              \
            return zvpsFFTGetBufSize_##CODE(static_cast<const ZvpsFFTSpec_##CODE*>(spec), size);                       \
        },                                                                                                             \
    };
ZVPS_TEST_SPECS(ZVPS_TEST_SPEC)
#undef ZVPS_TEST_SPEC

inline const SpecType* const kSpecTypes[] = {
#define ZVPS_TEST_SPEC(CODE, LAST) &kSpecType<ZvpsFFTSpec_##CODE>,
    ZVPS_TEST_SPECS(ZVPS_TEST_SPEC)
#undef ZVPS_TEST_SPEC
};

// ---- Transforms ----

enum class Layout { interleaved, split, perm, pack, ccs };

// One array for each part in split layout, else one.
struct TransformCall {
    const void* src[2];
    void* dst[2];
    const void* spec;
    int scaleFactor;
    Zvp8u* buffer;
};

struct Transform {
    const char* name;
    const SpecType* spec;
    const ElementType* from; // the type of the parts
    const ElementType* to;
    Layout layout;
    bool isForward;
    ZvpStatus (*call)(const TransformCall& call);
    ZvpStatus (*callInPlace)(const TransformCall& call); // on dst; null where types differ

    bool isSplit() const { return layout == Layout::split; }
    // The number of parts in each array of samples or of the spectrum.
    size_t count(int order, bool isSpectrum) const {
        const size_t points = size_t{1} << order;
        if (layout == Layout::interleaved) return 2 * points;
        return layout == Layout::ccs && isSpectrum ? 2 * (points / 2 + 1) : points;
    }
    size_t sourceCount(int order) const { return count(order, !isForward); }
    size_t resultCount(int order) const { return count(order, isForward); }
};

// A call of a function of any of the shapes that transforms have.
template <class S, class D, class Spec>
ZvpStatus run(ZvpStatus (*f)(const S*, D*, const Spec*, Zvp8u*), const TransformCall& c) {
    return f(static_cast<const S*>(c.src[0]), static_cast<D*>(c.dst[0]), static_cast<const Spec*>(c.spec), c.buffer);
}
template <class S, class D, class Spec>
ZvpStatus run(ZvpStatus (*f)(const S*, D*, const Spec*, int, Zvp8u*), const TransformCall& c) {
    return f(static_cast<const S*>(c.src[0]), static_cast<D*>(c.dst[0]), static_cast<const Spec*>(c.spec),
             c.scaleFactor, c.buffer);
}
template <class T, class Spec>
ZvpStatus run(ZvpStatus (*f)(const T*, const T*, T*, T*, const Spec*, Zvp8u*), const TransformCall& c) {
    return f(static_cast<const T*>(c.src[0]), static_cast<const T*>(c.src[1]), static_cast<T*>(c.dst[0]),
             static_cast<T*>(c.dst[1]), static_cast<const Spec*>(c.spec), c.buffer);
}
template <class T, class Spec>
ZvpStatus run(ZvpStatus (*f)(const T*, const T*, T*, T*, const Spec*, int, Zvp8u*), const TransformCall& c) {
    return f(static_cast<const T*>(c.src[0]), static_cast<const T*>(c.src[1]), static_cast<T*>(c.dst[0]),
             static_cast<T*>(c.dst[1]), static_cast<const Spec*>(c.spec), c.scaleFactor, c.buffer);
}
template <class T, class Spec>
ZvpStatus run(ZvpStatus (*f)(T*, const Spec*, Zvp8u*), const TransformCall& c) {
    return f(static_cast<T*>(c.dst[0]), static_cast<const Spec*>(c.spec), c.buffer);
}
template <class T, class Spec>
ZvpStatus run(ZvpStatus (*f)(T*, const Spec*, int, Zvp8u*), const TransformCall& c) {
    return f(static_cast<T*>(c.dst[0]), static_cast<const Spec*>(c.spec), c.scaleFactor, c.buffer);
}
template <class T, class Spec>
ZvpStatus run(ZvpStatus (*f)(T*, T*, const Spec*, Zvp8u*), const TransformCall& c) {
    return f(static_cast<T*>(c.dst[0]), static_cast<T*>(c.dst[1]), static_cast<const Spec*>(c.spec), c.buffer);
}
template <class T, class Spec>
ZvpStatus run(ZvpStatus (*f)(T*, T*, const Spec*, int, Zvp8u*), const TransformCall& c) {
    return f(static_cast<T*>(c.dst[0]), static_cast<T*>(c.dst[1]), static_cast<const Spec*>(c.spec), c.scaleFactor,
             c.buffer);
}

#define ZVPS_TEST_TRANSFORM(NAME, SPEC, FROM, TO, LAYOUT, IS_FORWARD, IN_PLACE)                                        \
    {                                                                                                                  \
#NAME, &kSpecType < ZvpsFFTSpec_##SPEC>, &kElement##FROM, &kElement##TO, Layout::LAYOUT, IS_FORWARD,           \
            [](const TransformCall& c) { return run(NAME, c); }, IN_PLACE,                                             \
    }
#define ZVPS_TEST_IN_PLACE(NAME) [](const TransformCall& c) { return run(NAME, c); }
// SFS and ISFS end the names.
#define ZVPS_TEST_BOTH(FORWARD, INVERSE, SPEC, PART, LAYOUT, SFS, ISFS)                                                \
    ZVPS_TEST_TRANSFORM(FORWARD##SFS, SPEC, PART, PART, LAYOUT, true, ZVPS_TEST_IN_PLACE(FORWARD##ISFS)),              \
        ZVPS_TEST_TRANSFORM(INVERSE##SFS, SPEC, PART, PART, LAYOUT, false, ZVPS_TEST_IN_PLACE(INVERSE##ISFS))
#define ZVPS_TEST_COMPLEX(TYPE, PART, LAYOUT, SFS, ISFS)                                                               \
    ZVPS_TEST_BOTH(zvpsFFTFwd_CToC_##TYPE, zvpsFFTInv_CToC_##TYPE, C_##TYPE, PART, LAYOUT, SFS, ISFS)
#define ZVPS_TEST_REAL(TYPE, SFS, ISFS)                                                                                \
    ZVPS_TEST_BOTH(zvpsFFTFwd_RToPerm_##TYPE, zvpsFFTInv_PermToR_##TYPE, R_##TYPE, TYPE, perm, SFS, ISFS),             \
        ZVPS_TEST_BOTH(zvpsFFTFwd_RToPack_##TYPE, zvpsFFTInv_PackToR_##TYPE, R_##TYPE, TYPE, pack, SFS, ISFS),         \
        ZVPS_TEST_BOTH(zvpsFFTFwd_RToCCS_##TYPE, zvpsFFTInv_CCSToR_##TYPE, R_##TYPE, TYPE, ccs, SFS, ISFS)

inline const Transform kTransforms[] = {
    ZVPS_TEST_COMPLEX(32fc, 32f, interleaved, , _I),
    ZVPS_TEST_COMPLEX(64fc, 64f, interleaved, , _I),
    ZVPS_TEST_COMPLEX(16sc, 16s, interleaved, _Sfs, _ISfs),
    ZVPS_TEST_COMPLEX(32sc, 32s, interleaved, _Sfs, _ISfs),
    ZVPS_TEST_COMPLEX(32f, 32f, split, , _I),
    ZVPS_TEST_COMPLEX(64f, 64f, split, , _I),
    ZVPS_TEST_COMPLEX(16s, 16s, split, _Sfs, _ISfs),
    ZVPS_TEST_COMPLEX(32s, 32s, split, _Sfs, _ISfs),
    ZVPS_TEST_REAL(32f, , _I),
    ZVPS_TEST_REAL(64f, , _I),
    ZVPS_TEST_REAL(16s, _Sfs, _ISfs),
    ZVPS_TEST_REAL(32s, _Sfs, _ISfs),
    ZVPS_TEST_TRANSFORM(zvpsFFTFwd_RToCCS_16s32s_Sfs, R_16s32s, 16s, 32s, ccs, true, nullptr),
    ZVPS_TEST_TRANSFORM(zvpsFFTInv_CCSToR_32s16s_Sfs, R_16s32s, 32s, 16s, ccs, false, nullptr),
};

// ---- Data: the parts of arrays ----

using Real = long double;
using Reals = std::vector<Real>;

inline Reals loaded(const ElementType& type, const Bytes& data) {
    Reals result(data.size() / type.partBytes);
    withPartType(type, [&](auto zero) {
        for (size_t i = 0; i < result.size(); ++i) {
            std::memcpy(&zero, &data[i * sizeof(zero)], sizeof(zero));
            result[i] = static_cast<Real>(zero);
        }
    });
    return result;
}

// Floats around 0; integers of all magnitudes and extremes.
inline Bytes randomData(const ElementType& type, size_t count, Random& random) {
    Bytes data(count * type.partBytes);
    if (!type.isFloat) {
        fillRandom(type, data.data(), count, random);
        return data;
    }
    withPartType(type, [&](auto zero) {
        for (size_t i = 0; i < count; ++i) {
            zero = static_cast<decltype(zero)>(static_cast<double>(random() >> 11) * 0x1p-52 - 1);
            std::memcpy(&data[i * sizeof(zero)], &zero, sizeof(zero));
        }
    });
    return data;
}

} // namespace zvps::test
