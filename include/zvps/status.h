/* What a call reports: 0 for success, a negative error (nothing was written) or a positive warning (the output is
   complete, with the substitute values that the function documents). */
#ifndef ZVPS_STATUS_H
#define ZVPS_STATUS_H

#include <stdint.h>

typedef int32_t ZvpStatus;
enum {
    zvpStsOk = 0,

    zvpStsSqrtNegArg = 3,
    zvpStsDivByZero = 6,
    zvpStsLnZeroArg = 7,
    zvpStsLnNegArg = 8,

    zvpStsBadArg = -5,
    zvpStsBadSize = -6,
    zvpStsBadZeroCrossType = -7,
    zvpStsNullPtr = -8,
    zvpStsNoMemory = -9,
    zvpStsDivByZeroErr = -10,
    zvpStsBadCauchyParam = -11,
    zvpStsBadTapsScale = -13,
    zvpStsBadFftOrder = -15,
    zvpStsBadFftFlag = -16,
    zvpStsContextMismatch = -17,
    zvpStsBadThresholdOrder = -18,
    zvpStsBadThresholdLevel = -19,
    zvpStsBadDelayIndex = -24,
    zvpStsBadIirOrder = -25,
    zvpStsBadFirLength = -26,
    zvpStsBadRelFreq = -27,
    zvpStsBadMrPhase = -28,
    zvpStsBadMrFactor = -29,
    zvpStsBadSamplePhase = -30,
    zvpStsBadSampleFactor = -31,
    zvpStsBadShift = -32,
    zvpStsBadWindowLength = -33,
    zvpStsBadWtOffset = -35,
    zvpStsBadJaehneMagn = -38,
    zvpStsBadKaiserAlpha = -39,
    zvpStsBadTriAsym = -40,
    zvpStsBadTriPhase = -41,
    zvpStsBadTriFreq = -42,
    zvpStsBadTriMagn = -43,
    zvpStsBadTonePhase = -44,
    zvpStsBadToneFreq = -45,
    zvpStsBadToneMagn = -46,
    zvpStsBadIirParam = -53,
    zvpStsBadBlockSize = -182,
    zvpStsBadSparsePos = -194,
    zvpStsSingular = -195,
    zvpStsBadRoundMode = -213
};

/* A one-line English text for a status; "unknown status" for a value that no function returns. Never null. */
static inline const char* zvpsStatusText(ZvpStatus status) {
    switch (status) {
    case zvpStsOk: return "success";
    case zvpStsSqrtNegArg: return "warning: square root of a negative value";
    case zvpStsDivByZero: return "warning: division by zero";
    case zvpStsLnZeroArg: return "warning: logarithm of zero";
    case zvpStsLnNegArg: return "warning: logarithm of a negative value";
    case zvpStsBadArg: return "an argument is outside its allowed set";
    case zvpStsBadSize: return "a length or count is below its minimum";
    case zvpStsBadZeroCrossType: return "the zero-crossing type is outside its allowed set";
    case zvpStsNullPtr: return "a required pointer is null";
    case zvpStsNoMemory: return "memory could not be allocated";
    case zvpStsDivByZeroErr: return "a divisor is zero and no substitute result is defined";
    case zvpStsBadCauchyParam: return "the parameter of the Cauchy function is not positive";
    case zvpStsBadTapsScale: return "integer taps carry a negative scale factor";
    case zvpStsBadFftOrder: return "the transform order is out of range";
    case zvpStsBadFftFlag: return "the transform's normalisation flag is not 1, 2, 4 or 8";
    case zvpStsContextMismatch: return "the object is of another kind or not initialised";
    case zvpStsBadThresholdOrder: return "the lower threshold level lies above the upper one";
    case zvpStsBadThresholdLevel: return "the threshold level is negative";
    case zvpStsBadDelayIndex: return "the delay-line index is out of range";
    case zvpStsBadIirOrder: return "the filter order or number of biquads is below 1";
    case zvpStsBadFirLength: return "the number of taps is below 1";
    case zvpStsBadRelFreq: return "the relative frequency is out of range";
    case zvpStsBadMrPhase: return "the multi-rate phase is out of range";
    case zvpStsBadMrFactor: return "the multi-rate factor is below 1";
    case zvpStsBadSamplePhase: return "the sampling phase is out of range";
    case zvpStsBadSampleFactor: return "the sampling factor is below 1";
    case zvpStsBadShift: return "the shift count is negative";
    case zvpStsBadWindowLength: return "the window length is below 1";
    case zvpStsBadWtOffset: return "the wavelet filter offset is below -1";
    case zvpStsBadJaehneMagn: return "the magnitude is negative";
    case zvpStsBadKaiserAlpha: return "the Kaiser window's parameter is too large";
    case zvpStsBadTriAsym: return "the triangle's asymmetry is out of range";
    case zvpStsBadTriPhase: return "the triangle's phase is out of range";
    case zvpStsBadTriFreq: return "the triangle's relative frequency is out of range";
    case zvpStsBadTriMagn: return "the triangle's magnitude is not positive";
    case zvpStsBadTonePhase: return "the tone's phase is out of range";
    case zvpStsBadToneFreq: return "the tone's relative frequency is out of range";
    case zvpStsBadToneMagn: return "the tone's magnitude is not positive";
    case zvpStsBadIirParam: return "a parameter of the multi-channel filter is out of range";
    case zvpStsBadBlockSize: return "an internal block size is not a positive multiple of 8";
    case zvpStsBadSparsePos: return "the sparse taps' positions are negative or not strictly increasing";
    case zvpStsSingular: return "the filter design met a singular system";
    case zvpStsBadRoundMode: return "the rounding mode is unknown or not offered here";
    default: return "unknown status";
    }
}

#endif
