#pragma once
#include <string>

#include "document/SoundDocument.h"
#include "interchange/PitchObjects.h"
#include "prosody/Intonation.h"
#include "prosody/ToneState.h"

namespace parlowen {

// Tones and intonation as tables and objects for other programs.

/// One point of one item a row, items in the order they were added: group, item (its number in the group), sound, start_s, end_s, duration_ms,
/// percent, Hz, semitones, T, D, LZ. The sound that the table names is the one that was loaded when it was
/// written.
std::string TonesCsv(const ToneState& tones, const SoundDocument& document);

/// One unit a row: name, start, end (samples), frames, time, duration (s), top, base, range, mean (semitones),
/// qTop, qBase (%), durationRatio, energyRatio; empty where a pause has no figure.
std::string IntonationCsv(const Intonation& intonation, const SoundDocument& document);

/// The close copy as a melody, at the times that every export gives to frames.
PitchTier IntonationTier(const Intonation& intonation, const SoundDocument& document);

}  // namespace parlowen
