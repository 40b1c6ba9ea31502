#pragma once
#include <array>

#include "document/SoundDocument.h"
#include "dsp/FrameSpectrum.h"
#include "spectral/Formants.h"

namespace parlowen {

/// The time of a frame that begins at a sample: seconds, cut to hundredths.
double FrameTime(int position, int sampleRate);

/// What the frame display shows of one frame.
struct FrameParameters {
  double time = 0;         ///< seconds
  double level = 0;        ///< dB
  double f0 = 0;           ///< Hz, of the contour; 0 where it has none
  int f0Cepstral = 0;      ///< Hz, whole; 0 where the cepstrum has no peak
  FormantFrame formants;   ///< of the unscaled envelope
  FrameSpectrum narrow{};  ///< display levels: dB·1.2
  FrameSpectrum lpc{};     ///< display levels, moved to the narrow-band spectrum's
};

/// min(512, sampleRate/39).
int FrameDisplayLength(int sampleRate);

/// The frame from `position` on. The peak level is that of the selection, its ends in either order; of the view
/// where nothing is marked; of the frame itself where both ends are one or only one is there. Both curves are
/// computed with the high level off:
///   1. narrow-band spectrum, sine window; LPC envelope of order 16;
///   2. both times 1.2; the LPC curve moved by the mean of the five narrow-band points about the largest of
///      points 15..255, less its own largest point there; nothing below 0;
///   3. formants; level PowerToDb(mean square of the frame, 0); F0 of the contour at position·100/sampleRate;
///   4. the cepstrum's largest value at 64..500 Hz.
FrameParameters AnalyseFrame(const SoundDocument& document, int position, LpcAnalyser& analyser);

/// What the comparison shows of one of its two frames.
struct ComparedFrame {
  double time = 0;                    ///< seconds
  FrameSpectrum curve{};              ///< display levels: dB·1.5, raised to the other's peak
  std::array<double, 3> frequency{};  ///< Hz; 0 where there is no formant
  std::array<double, 3> bandwidth{};
};

struct FrameComparison {
  bool voiced = false;
  ComparedFrame a, b;
};

/// min(512, sampleRate/40).
int ComparedFrameLength(int sampleRate);

/// Compares the frames from two positions on. The peak level is that of the stretch between the positions, in
/// either order, and of the frame where they are one.
/// - Voiced: LPC envelopes of order 14, high level, of the frame behind a low-pass of 3000 Hz (a copy of its
/// samples, filtered in place from the 8th on); unvoiced: homomorphic spectra in dB, sine window.
/// - Curves times 1.5; the one with the lower maximum over points 0..245 is raised to the other's.
/// - Formants of the unscaled curves.
FrameComparison CompareFrames(const SoundDocument& document, int positionA, int positionB, bool voiced,
                              LpcAnalyser& analyser);

}  // namespace parlowen
