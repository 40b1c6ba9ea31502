#pragma once
#include <array>
#include <vector>

#include "document/SoundDocument.h"
#include "spectral/Formants.h"

namespace parlowen {

/// F1..F4 of a moment with their bandwidths, in Hz; 0 where there is none.
struct VowelFormants {
  std::array<double, 4> f{}, b{};
};

/// The first four of a frame's formants whose bandwidth is below sampleRate/10. With fewer than four, F4 is
/// F3 + 1000.
VowelFormants ChooseFormants(const FormantFrame& frame, int sampleRate);

// Corrections of a moment that was analysed wrongly.

/// One peak that is two formants: F1 becomes 0.9·F1 and 1.4·F1, F3 the former F2.
void SplitFirst(VowelFormants& formants);
/// Two peaks that are one formant: the mean of F1 and F2, each weighted by the other's bandwidth; the others
/// move down.
void MergeFirstTwo(VowelFormants& formants);
/// A peak that is no formant.
void DeleteFirst(VowelFormants& formants);

/// 150 ≤ F1 ≤ 1600 and 400 ≤ F2 ≤ 4000 Hz.
bool IsVowel(const VowelFormants& formants);

/// The formants of the Fs/40 samples (at most 512) from `sample` on; the frame's own peak is the level.
FormantFrame FormantsAt(const SoundDocument& document, int sample);

/// The formants of frames one after another.
struct VowelTrack {
  int start = 0, step = 1;  ///< samples: frame k begins at start + k·step
  std::vector<FormantFrame> frames;
};

/// Of the selection, as the formant file has it: length/(Fs/100) frames of Fs/50 samples, at most 512.
VowelTrack SelectionTrack(const SoundDocument& document);

/// Of the selection, as the segment chart has it: low-passed at 3000 Hz, a frame of Fs/40 samples, at most
/// 512, every Fs/100 samples while it begins inside.
VowelTrack SegmentTrack(const SoundDocument& document);

}  // namespace parlowen
