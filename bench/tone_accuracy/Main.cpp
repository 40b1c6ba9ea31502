#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <numbers>
#include <random>
#include <string>
#include <vector>

#include "base/Format.h"
#include "document/SoundDocument.h"
#include "dsp/SignalTables.h"
#include "pitch/PitchAnalysis.h"
#include "prosody/ToneCurve.h"

// How well tones of known T come out of the whole way: samples, contour (220), tone curve, T values, digits.
//
//   tone_accuracy         a line for each register and rate: the largest error of T at points 1..9 and at the
//                         ends against the same share of the true tone, the largest at points 1..9 against the
//                         true tone at the moment that the point stands for, and the wrong digits
//   tone_accuracy all     a line for each tone as well
//
// A tone is a vowel whose semitones are straight lines between the middles of its degrees, T = degree − 0.5, in
// a range that is given to the scale. It is made of harmonics under the envelope of four formants, so its phase
// is exactly the integral of its frequency. White noise lies 40 dB below it.

namespace {

using namespace parlowen;

constexpr double kPi = std::numbers::pi;
constexpr double kSilence = 0.25, kRamp = 0.015;  // seconds

struct Register {
  const char* name;
  double low, high;  // Hz
};
constexpr Register kRegisters[] = {{"man, low", 75, 150}, {"man", 90, 220}, {"woman", 150, 400}};
constexpr int kRates[] = {11025, 16000, 22050, 44100};

struct Tone {
  const char* digits;
  double seconds;
  double turn;  ///< where the middle degree stands, as a share
};
constexpr Tone kTones[] = {{"55", 0.30, 0},   {"44", 0.30, 0},   {"33", 0.30, 0},   {"22", 0.30, 0},
                           {"11", 0.30, 0},   {"35", 0.32, 0},   {"24", 0.32, 0},   {"13", 0.32, 0},
                           {"51", 0.24, 0},   {"53", 0.24, 0},   {"31", 0.24, 0},   {"42", 0.20, 0},
                           {"15", 0.35, 0},   {"214", 0.42, .5}, {"212", 0.40, .5}, {"424", 0.40, .5},
                           {"452", 0.36, .4}, {"131", 0.36, .5}};

struct Vowel {
  const char* name;
  double formants[4];
};
constexpr Vowel kVowels[] = {
    {"a", {760, 1280, 2500, 3500}}, {"i", {290, 2300, 3000, 3550}}, {"u", {330, 720, 2350, 3300}}};
constexpr double kBandwidths[] = {70, 95, 140, 200};

double TrueT(const Tone& tone, double share) {
  const auto degree = [&](std::size_t i) { return tone.digits[i] - '0' - 0.5; };
  const std::size_t last = std::strlen(tone.digits) - 1;
  if (last == 1) return degree(0) + share * (degree(1) - degree(0));
  return share < tone.turn ? degree(0) + share / tone.turn * (degree(1) - degree(0))
                           : degree(1) + (share - tone.turn) / (1 - tone.turn) * (degree(2) - degree(1));
}

double Envelope(const Vowel& vowel, double frequency, double tract) {
  // −12 dB an octave of the voice, +6 of the lips.
  double gain = 100.0 / std::max(frequency, 50.0);
  for (std::size_t i = 0; i < 4; ++i) {
    const double f = vowel.formants[i] * tract, b = kBandwidths[i];
    gain *= f * f / std::hypot(f * f - frequency * frequency, b * frequency);
  }
  return gain;
}

/// Silence, the tone, silence.
void Speak(SoundDocument& document, const Tone& tone, const Vowel& vowel, const Register& range, int rate) {
  const auto silence = static_cast<int>(kSilence * rate), length = static_cast<int>(tone.seconds * rate);
  const double tract = range.low > 120 ? 1.15 : 1.0, octaves = std::log2(range.high / range.low);
  std::vector<double> wave(static_cast<std::size_t>(length));
  double phase = 0, largest = 0;
  for (int i = 0; i < length; ++i) {
    const double share = i / static_cast<double>(length);
    const double f0 = range.low * std::exp2(TrueT(tone, share) / 5 * octaves);
    phase += 2 * kPi * f0 / rate;
    double value = 0;
    for (int h = 1; h * f0 < std::min(4000.0, 0.45 * rate); ++h)
      value += Envelope(vowel, h * f0, tract) * std::cos(h * phase);
    const double seconds = i / static_cast<double>(rate);
    const double edge = std::min({1.0, seconds / kRamp, (tone.seconds - seconds) / kRamp});
    wave[static_cast<std::size_t>(i)] = edge * value;
    largest = std::max(largest, std::abs(edge * value));
  }
  std::mt19937 random(static_cast<unsigned>(rate + length));
  std::normal_distribution<double> noise(0, 30);
  document.sampleRate = rate;
  document.sampleCount = 2 * silence + length;
  for (int i = 0; i < document.sampleCount; ++i) {
    const int at = i - silence;
    const double voice = at >= 0 && at < length ? 12000 * wave[static_cast<std::size_t>(at)] / largest : 0.0;
    document.samples[i] = static_cast<std::int16_t>(voice + noise(random));
  }
  document.SamplesChanged();
}

struct Score {
  double inner = 0, ends = 0, timed = 0;
  std::string wrong;
};

void Measure(SoundDocument& document, const Tone& tone, const Vowel& vowel, const Register& range,
             Score& score, bool all) {
  std::vector<float> periods;
  PitchAnalysisRequest request;
  document.resetPitch();
  RunPitchAnalysis(document, 0, document.sampleCount, request, {0, document.ContourLength() - 1}, periods);
  std::copy(periods.begin(), periods.end(), document.pitch.begin());
  const std::string name = Format("%s(%s)", tone.digits, vowel.name);
  const auto curve = FindToneCurve(document, 0, document.sampleCount);
  if (!curve) {
    score.wrong += " " + name + "=none";
    return;
  }
  const TonePoints t = ToneTs(TonePointsOf(curve->hertz), ToneRange::OfHertz(range.low, range.high));
  if (all)
    std::printf("    %-8s frames %2d of %2.0f:", name.c_str(), static_cast<int>(curve->hertz.size()),
                100 * tone.seconds);
  for (std::size_t p = 0; p < kTonePoints; ++p) {
    const double error = std::abs(t[p] - TrueT(tone, static_cast<double>(p) / 10));
    if (all) std::printf(" %+.2f", t[p] - TrueT(tone, static_cast<double>(p) / 10));
    double& worst = p == 0 || p == 10 ? score.ends : score.inner;
    worst = std::max(worst, error);
    // A frame's value is that of the sound 10 ms behind its start.
    const double frame =
        curve->first + static_cast<double>(p) / 10 * (static_cast<double>(curve->hertz.size()) - 1);
    const double share = (frame * 0.01 + 0.01 - kSilence) / tone.seconds;
    if (p > 0 && p < 10) score.timed = std::max(score.timed, std::abs(t[p] - TrueT(tone, share)));
  }
  const std::string digits = ToneDigits(t);
  if (all) std::printf("  %s\n", digits.c_str());
  if (digits != tone.digits) score.wrong += " " + name + "=" + digits;
}

}  // namespace

int main(int count, char** words) {
  InitSignalTables();
  const bool all = count > 1 && std::string(words[1]) == "all";
  auto document = std::make_unique<SoundDocument>();
  std::printf("%-10s %6s %10s %10s %10s  wrong digits\n", "register", "rate", "points 1-9", "ends",
              "timed 1-9");
  for (const Register& range : kRegisters)
    for (const int rate : kRates) {
      Score score;
      for (const Tone& tone : kTones)
        for (const Vowel& vowel : kVowels) {
          Speak(*document, tone, vowel, range, rate);
          Measure(*document, tone, vowel, range, score, all);
        }
      std::printf("%-10s %6d %10.3f %10.3f %10.3f %s\n", range.name, rate, score.inner, score.ends,
                  score.timed, score.wrong.empty() ? " none" : score.wrong.c_str());
    }
  return 0;
}
