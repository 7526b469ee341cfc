// Integers transformed in floating point.
#pragma once

#include "transforms/fft_objects.hpp"
#include "vector/converted.hpp"

namespace zvps {

// The transform of one array in place, on `room` converted elements of type F; those behind them are its buffer.
template <class F, class Transform, class Src, class Dst>
ZvpStatus throughFloats(const Transform& transform, int workSize, const Src* src, int srcCount, Dst* dst, int dstCount,
                        size_t room, int scaleFactor, Zvp8u* buffer) {
    const WorkArea work(buffer, workSize);
    if (!work) return zvpStsNoMemory;
    F* const data = work.as<F>();
    toFloats(src, data, srcCount);
    const ZvpStatus status = transform(data, reinterpret_cast<Zvp8u*>(data + room));
    if (status == zvpStsOk) fromFloats(data, dst, dstCount, scaleFactor);
    return status;
}

template <class F, class Transform, class T>
ZvpStatus splitThroughFloats(const Transform& transform, int workSize, const T* srcRe, const T* srcIm, T* dstRe,
                             T* dstIm, int points, int scaleFactor, Zvp8u* buffer) {
    const WorkArea work(buffer, workSize);
    if (!work) return zvpStsNoMemory;
    F* const re = work.as<F>();
    F* const im = re + points;
    toFloats(srcRe, re, points);
    toFloats(srcIm, im, points);
    const ZvpStatus status = transform(re, im, reinterpret_cast<Zvp8u*>(im + points));
    if (status == zvpStsOk) {
        fromFloats(re, dstRe, points, scaleFactor);
        fromFloats(im, dstIm, points, scaleFactor);
    }
    return status;
}

} // namespace zvps
