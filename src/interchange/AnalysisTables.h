#pragma once
#include <string>

#include "document/SoundDocument.h"
#include "palatography/PalateState.h"
#include "pitch/FastPitch.h"
#include "spectral/LtaCommands.h"
#include "voice/GlottalAnalysis.h"
#include "vowel/VowelFormants.h"

namespace parlowen {

// Curves as CSV tables. Times are those of FrameGrid.h; what a frame has no value for is an empty cell.

/// The contour's frames, of the selection where there is one: time_s, f0_Hz, semitones above 64 Hz,
/// period_samples.
std::string PitchCsv(const SoundDocument& document, PitchRange range);

/// The same frames: time_s, start_s (where the 10 ms begin that were measured), the largest |x|, the level in
/// dB. Needs InitSignalTables().
std::string LevelsCsv(const SoundDocument& document);

/// A track of the selection: time_s, F1_Hz, B1_Hz .. F6_Hz, B6_Hz.
std::string FormantsCsv(const SoundDocument& document, const VowelTrack& track);

/// The last long-term spectrum: frequency_Hz, level_dB; previous_dB where there is an earlier one;
/// difference_dB after a comparison.
std::string LtaCsv(const LtaState& lta);

/// The periods of a glottal wave, with the fields of `print glottal`: start and n in samples, f0, oq, qoq, sq, naq, h1h2,
/// hrf. `soundPath` is that of its sound.
std::string GlottalCsv(const GlottalWave& wave, const std::string& soundPath);

/// The contact frames of the selection, without one all of them: frame, time_s (where it begins), row1 .. row8 (bit
/// c is column c + 1 from the left), total, front, middle, back (%), ca, cc, cog, asymmetry.
std::string PalateCsv(const PalateState& palate, const SoundDocument& document);

}  // namespace parlowen
