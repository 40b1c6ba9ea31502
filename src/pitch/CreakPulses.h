#pragma once
#include <cstddef>
#include <vector>

#include "pitch/PitchBands.h"

namespace parlowen {

/// A pulse and the next one.
struct PulsePair {
  float spacing = 0;  ///< working samples; 0: no pair
  float r = 0;        ///< of the wave from 2 ms before either pulse to 5 ms behind it
  float within = 0;   ///< the largest r of that wave with itself a quarter to six tenths of the spacing on

  /// Two pulses of a voice with nothing like them between: r is at least 0.7, and within the period at most 0.6
  /// and 0.2 less. A steady voice has such pulses too where it is low enough.
  bool IsSingle() const;
};

/// The pulses of a wave that come one at a time, 8 to 50 ms apart, however irregularly: creak, which has no
/// period that a correlation over 20 ms could find. A pulse is a rise of the short-time power by a factor of 4
/// above what lies before and behind it; voices above 125 Hz have theirs too close for a pair.
class CreakPulses {
 public:
  /// `floor` is added to the energy of every sample before a correlation. `bands` is only read here.
  CreakPulses(const PitchBands& bands, double floor);

  /// The pair that a working sample lies in, else one beside it that is no further than half its spacing.
  PulsePair About(std::size_t sample) const;

 private:
  std::vector<std::size_t> places_;
  std::vector<PulsePair> pairs_;  ///< of a pulse and the next; as many as pulses
};

}  // namespace parlowen
