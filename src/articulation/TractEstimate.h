#pragma once
#include <array>
#include <optional>
#include <span>
#include <string>

#include "articulation/Articulation.h"
#include "spectral/Formants.h"

namespace parlowen {

inline constexpr std::size_t kTubeSections = 8;
using FourFormants = std::array<double, 4>;
using TubeAreas = std::array<double, kTubeSections>;

/// What the formants of a stretch say about the vocal tract.
struct TractEstimate {
  FourFormants formants{};  ///< Hz
  double length = 0;        ///< cm, 12..20
  TongueShape tongue{};
  LipShape lips;
  std::string nearest;             ///< the vowel target of the largest weight
  std::optional<TubeAreas> areas;  ///< from the glottis, the largest 1
};

/// The medians of F1, F2 and F3 over the frames with three formants or more, of F4 over those with four, or else
/// 1.4·F3. Nothing when no frame has three.
std::optional<FourFormants> MedianFormants(std::span<const FormantFrame> frames);

/// The length of a uniform tube with that F4, 7·c/(4·F4) at c = 35000 cm/s, held to 12..20 cm.
double TractLength(double f4);

/// Areas of eight sections of length/8 from the glottis: an all-pole filter of order 8 at 8000 Hz with poles at the
/// formants and bandwidths 50·(1 + F²/6000000) Hz, stepped down to reflection coefficients; from the lips back
/// A ← A·(1 − k)/(1 + k) from each section to the next, k1 first (Wakita 1973). The largest area is 1. `formants` are
/// those of a tract of 17.5 cm; nothing unless they ascend below 4000 Hz.
std::optional<TubeAreas> AreasOf(const FourFormants& formants);

/// All of it. Tongue and lips are means of ten vowel targets with the weights 1/(d² + 0.01),
/// d² = ΔB1² + ΔB2² + ΔB3²/4 in Bark, 7·asinh(f/650), of the formants brought to a tract of 17.5 cm.
TractEstimate EstimateTract(const FourFormants& formants);

}  // namespace parlowen
