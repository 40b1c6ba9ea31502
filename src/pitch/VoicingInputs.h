#pragma once
#include <array>
#include <cstddef>
#include <span>

#include "pitch/CreakPulses.h"
#include "pitch/PitchBands.h"
#include "pitch/VoicingNet.h"

namespace parlowen {

/// A period that a frame may have.
struct PitchCandidate {
  float lag = 0;      ///< working samples, with a fraction
  float octaves = 0;  ///< log2 of the lag
  float r = 0;
  float cost = 0;
  bool single = false;  ///< the spacing of two single pulses
  bool creak = false;   ///< that too, and slow for the speaker
};

/// What is known of a frame before the search.
struct CandidateFrame {
  static constexpr int kMostVoices = 8;
  int count = 0;
  float level30 = 0, level10 = 0;                    ///< dB of so many ms about the centre, 900 Hz band
  float best = 0;                                    ///< the largest r
  float silence = 0;                                 ///< cost of being unvoiced
  PulsePair pulses;                                  ///< about the centre
  std::array<PitchCandidate, kMostVoices> voices{};  ///< the cheapest, cheapest first

  std::span<const PitchCandidate> Voices() const { return {voices.data(), static_cast<std::size_t>(count)}; }
  std::span<PitchCandidate> Voices() { return {voices.data(), static_cast<std::size_t>(count)}; }
};

/// The levels that frames are held against, and what is added to the energy of every sample before a
/// correlation.
struct SpeechLevels {
  double loud = 0, noise = 0;  ///< dB
  double floor = 0;            ///< of 16-bit samples, squared
};

/// Added to a power before its logarithm is taken: of 16-bit samples, squared.
inline constexpr double kLeastPower = 4.0;

/// What the voicing decision is told of element f of `frames`; the frames at both ends stand for those beyond.
VoicingInputs MeasureVoicing(const PitchBands& bands, const SpeechLevels& levels,
                             std::span<const CandidateFrame> frames, std::size_t f);

}  // namespace parlowen
