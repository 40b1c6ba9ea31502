#pragma once
#include "dsp/SampleSpan.h"
#include "spectral/SpectrogramMatrix.h"

namespace parlowen {

/// Samples of the longest stretch that the filter bank takes.
inline constexpr int kLongestFilterBankStretch = 63200;

/// A stretch that begins before this sample is analysed from here on.
inline constexpr int kFirstFilterBankSample = 50;

/// Samples whose energy makes a grey: Fs/250 above 12000 Hz, else Fs/300; at least 1.
int FilterBankFrameLength(int sampleRate);

/// The wide-band picture of samples start .. end − 1 by a bank of 255 channels instead of a transform, in
/// order:
///   1. the block: the stretch with 50 samples on either side, y[n] = (x[n+1] −
///      0.95·x[n])·1500/(peakLevel·Fs·0.0001); a start below 50 is moved to 50;
///   2. the range: a copy, truncated to 16 bits, through the low-pass of 2000 Hz that works in place; the
///      largest and the smallest column energy in dB give the contrast 255/max(40, 0.75·(largest − smallest))
///      greys a dB;
///   3. channel c = 1..255 from (c − 1)·Fs/512 to (c + 1)·Fs/512 Hz: low-pass at the upper edge, or a factor
///      of 0.8 where it is not below Fs/2 − 10, then high-pass at the lower edge, or 0.8 where it is below
///      11; both have 41 taps, and the second finds silence behind the block;
///   4. row c of a column: 255 − trunc(contrast·dB), at least 0. Row 0 is channel 1.
/// Column j covers FilterBankFrameLength samples from start + j·length/columns on; the block is silent beyond
/// its ends. No columns for an empty stretch. Needs InitSignalTables().
SpectrogramMatrix ComputeFilterBank(SampleSpan samples, int sampleRate, int start, int end, int columns,
                                    int peakLevel);

}  // namespace parlowen
