#pragma once
#include <cstdint>

#include "document/SoundDocument.h"

namespace parlowen {

/// Converts `count` samples from `rate` down to `target` Hz in place and returns their new number,
/// trunc(count·target/rate) − 1, never below 0. The 16 samples behind the last one must exist and be zero.
/// - Low-pass of 15 taps at nine tenths of the new Nyquist frequency, from sample 8 on, with the in-place
///   routine of
///   dsp/Fir.h: the result is the same to the last bit.
/// - Output k stands at input position t = k/r, r = target/rate, on the parabola through the three samples
///   from i =
///   floor(t) on, truncated toward zero, saturated: with d = t − (i + 1), ((((y0 + y2)/2 − y1)·d + (y2 −
///   y0)/2)·d) + y1.
int ConvertSamples(std::int16_t* samples, int count, int rate, int target);

/// The same for every channel of the document, whose length, rate and contour follow; `samplesVersion` moves.
Edit ConvertDocument(SoundDocument& document, int target);

}  // namespace parlowen
