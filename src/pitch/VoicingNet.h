#pragma once
#include <array>

namespace parlowen {

/// What the voicing decision knows of a frame. Correlations r are −1..1, the noise added to the energies;
/// levels in dB; "period" is that of the cheapest candidate, 1/150 s where there is none.
enum VoicingInput {
  kBestR,         ///< largest r of the frame, 900 Hz band
  kCheapestR,     ///< r of the cheapest candidate
  kPairR,         ///< r of the period before the centre and the one behind it
  kWideR,         ///< r at the period in 15 ms of the 2 kHz band
  kFullR,         ///< the same of the 3.4 kHz band
  kLeftR,         ///< r at the period, both windows before the centre
  kRightR,        ///< r at the period, both windows behind the centre
  kLevel30,       ///< level of 30 ms less that of the loud frames
  kLevel10,       ///< level of 10 ms less that of the loud frames
  kLevelMinus30,  ///< level of 10 ms at −30 ms less that at 0
  kLevelMinus20,
  kLevelMinus10,
  kLevelPlus10,
  kLevelPlus20,
  kLevelPlus30,
  kAboveNoise,      ///< level of 30 ms less that of the noise
  kFullOverLow,     ///< level of 20 ms of the 3.4 kHz band less that of the 900 Hz band
  kFullOverWide,    ///< the same less that of the 2 kHz band
  kCrossings,       ///< zero crossings of the 3.4 kHz band in 20 ms, a millisecond
  kOctaves,         ///< log2 of the period in seconds, plus 7
  kDistanceBefore,  ///< least |octaves| + (1 − r)/2 from the period to a candidate of the frame before
  kDistanceBehind,
  kBestRMinus2,  ///< largest r two frames before
  kBestRMinus1,
  kBestRPlus1,
  kBestRPlus2,
  kVoicingInputs
};
using VoicingInputs = std::array<float, kVoicingInputs>;

/// A classifier with one hidden layer: inputs, brought to mean 0 and deviation 1 and cut at ± 5 deviations,
/// then units with Squash() and one sum of them.
struct VoicingNet {
  static constexpr int kUnits = 8;
  VoicingInputs mean, deviation;
  std::array<std::array<float, kUnits>, kVoicingInputs> weights;  ///< of an input to every unit
  std::array<float, kUnits> bias, output;
  float outputBias;
};

/// The net that bench/pitch_accuracy/train_voicing.py wrote into VoicingWeights.cpp.
extern const VoicingNet kTrainedVoicing;

/// x·(27 + x²)/(27 + 9x²), ±1 beyond ±3: tanh to 0.024, with the same digits on every machine.
float Squash(float x);

/// Natural logarithm of the odds that a frame is voiced.
float VoicingLogOdds(const VoicingNet& net, const VoicingInputs& inputs);

}  // namespace parlowen
