#pragma once
#include <optional>
#include <string>

#include "document/SoundDocument.h"
#include "spectral/LongTermSpectrum.h"
#include "ui/Window.h"

namespace parlowen {

/// The long-term spectra of the program. They outlive the sound, so that two can be compared.
struct LtaState {
  LtaSpectrum levels{};                     ///< the last one computed
  LtaSpectrum previous{};                   ///< the one computed before it, or the one loaded last
  int frames = 0;                           ///< that were averaged
  int sampleRate = 0;                       ///< of the sound it was computed from
  std::string soundPath;                    ///< of that sound, and
  int start = 0, end = 0;                   ///< the stretch, in samples
  double time = 0;                          ///< seconds analysed so far
  std::optional<LtaDifference> difference;  ///< from `previous`, after a comparison
  bool hasPrevious = false;
};

enum class LtaMode { Compute = 0, Compare = 1, Save = 2 };

/// The three requests of the window: computes over the selection or the view, compares with a file, saves to
/// one. Returns 0, or 1 when a file step fails or the comparison is refused, or 2 after a computation. A
/// failure leaves `levels` as they are. A comparison needs a file of the rate that both the spectrum and the
/// loaded sound have; one refused for its rate has already replaced `previous`. Nothing is saved while a
/// level is no number.
int RunLta(Window& window, const SoundDocument& document, LtaState& state, LtaMode mode);

/// 40090: opens the window "lta" and computes.
void LongTermSpectrumCommand(Window& window, SoundDocument& document, LtaState& state);

/// Left the spectrum in black and the previous or loaded one in red, right their difference.
Picture LtaPicture(const LtaState& state, int width, int height);

}  // namespace parlowen
