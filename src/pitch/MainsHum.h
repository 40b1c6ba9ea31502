#pragma once
#include <span>

namespace parlowen {

/// Takes the hum of the mains, 50 or 60 Hz and their multiples up to 900 Hz, out of samples with `rate` a second,
/// and tells whether there was any; else nothing is changed. Phases and amplitudes are measured in the quiet
/// tenths of a second and go on beneath the voice between them; the frequency, which is never quite that of
/// the mains, follows from how the phases advance from one to the next.
///
/// There is hum where the quiet tenths, 12 dB below the loud ones or more, are alike to their neighbours and owe
/// a fifth of their power to harmonics that keep step. No tenth may be 3 dB quieter than it. So a voice or a
/// tone of 100 Hz alone, or with silence or noise about it, is not taken for hum; beneath a louder voice and
/// never ceasing it is.
bool RemoveMainsHum(std::span<float> samples, double rate);

}  // namespace parlowen
