#pragma once
#include <array>
#include <vector>

#include "dsp/SampleSpan.h"

namespace parlowen {

/// The bands of a consonant frame are those of the Bark scale with the numbers 2..24.
inline constexpr int kFirstBand = 2, kLastBand = 24, kBandCount = kLastBand - kFirstBand + 1;
/// Upper edges of the bands 0..24 in Hz: 650·sinh(z/7), rounded; the sixteenth lies 26 Hz lower.
inline constexpr std::array<int, kLastBand + 1> kBandEdges{
    0,    93,   188,  287,  392,  505,  628,  764,  915,  1086, 1278, 1497, 1746,
    2031, 2357, 2732, 3136, 3658, 4228, 4884, 5640, 6512, 7516, 8674, 10010};

/// Sampling rates at which consonants are analysed.
inline constexpr int kLowestConsonantRate = 16000, kHighestConsonantRate = 22050;
/// A frame is analysed when it starts more than so many samples before the end.
inline constexpr int kConsonantEndMargin = 1000;

/// What one 10 ms frame of a voiceless consonant measures.
struct ConsonantFrame {
  std::array<double, kBandCount> bands{};  ///< mean power of bands 2..24
  double gravity = 0;                      ///< centre of the bands, a band number
  double dispersion = 0;                   ///< bands: spread about the centre
  double intensity = 0;                    ///< dB: 10·log10 of the mean band, less 50
};

/// The frame of sampleRate/100 samples from `start`.
/// - y[n] = x[n+1] − 0.95·x[n] through MakeAnalysisWindow(sampleRate/100, 0.04), which it makes; 512 points.
/// - Bands lie behind one another from bin 2 on; band b takes at least one bin and goes on while the bin is
/// at most kBandEdges[b]·512/sampleRate. Bins from 256 on count but hold nothing: a band beyond half the
/// sampling rate comes out lower.
/// - With the sum S of the bands: gravity Σ b·E/S, dispersion √(Σ (b − gravity)²·E/S), intensity
/// 10·log10(S/23) − 50; 0, 0 and −50 in silence.
/// Needs InitSignalTables().
ConsonantFrame AnalyseConsonantFrame(SampleSpan samples, int sampleRate, int start);

/// One frame every sampleRate/100 samples of a stretch: (end − start)/(sampleRate/100) of them, at least one.
/// Frames too near the end of the sound repeat the one before them, the first of them `previous`.
std::vector<ConsonantFrame> AnalyseConsonant(SampleSpan samples, int sampleRate, int start, int end,
                                             ConsonantFrame previous);

}  // namespace parlowen
