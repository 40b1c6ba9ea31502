// Errors of the glottal measures on made voices, in a table: ./voice_accuracy [NOISE_DB]
// Each cell is the mean over the voices of |mean measure − truth|; NAQ in % of the truth, marks the median distance to the
// nearest closure in samples. Beside it iterative adaptive inverse filtering as a yardstick.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "dsp/SignalTables.h"
#include "voice_accuracy/Iaif.h"
#include "voice_accuracy/LfVoice.h"

using namespace parlowen;
using namespace parlowen::bench;

namespace {

struct Errors {
  double oq = 0, qoq = 0, naq = 0, h1h2 = 0, hrf = 0, jitter = 0, shimmer = 0, marks = 0;
  int voices = 0, wrongPolarity = 0, failed = 0, undefined = 0;
};

double MarkError(const GlottalWave& wave, const LfVoice& voice) {
  std::vector<double> distances;
  for (const int mark : wave.marks) {
    double nearest = 1e9;
    for (const double closure : voice.closures) nearest = std::min(nearest, std::fabs(closure - mark));
    distances.push_back(nearest);
  }
  std::nth_element(distances.begin(), distances.begin() + std::ssize(distances) / 2, distances.end());
  return distances[distances.size() / 2];
}

void Add(Errors& errors, const LfSettings& settings, bool yardstick) {
  const LfVoice voice = MakeLfVoice(settings);
  const int rate = settings.sampleRate;
  std::vector<float> contour(static_cast<std::size_t>(settings.seconds * 100),
                             static_cast<float>(rate / settings.f0));
  const auto stretch =
      LongestVoicedStretch(contour, rate / 10, static_cast<int>(settings.seconds * rate) - rate / 10, rate);
  const SampleSpan samples{voice.samples.data(), static_cast<int>(voice.samples.size())};
  GlottalWave wave;
  ++errors.voices;
  if (!stretch || EstimateGlottalWave(samples, rate, *stretch, false, wave) < 0) {
    ++errors.failed;
    return;
  }
  if (yardstick) MeasureByIaif(samples, wave);
  const GlottalMeasures& m = wave.mean;
  for (const auto measure : kGlottalMeasures) errors.undefined += !std::isfinite(m.*measure);
  errors.wrongPolarity += wave.inverted != settings.inverted;
  errors.oq += std::fabs(m.oq - voice.truth.oq);
  errors.qoq += std::fabs(m.qoq - voice.truth.qoq);
  errors.naq += 100 * std::fabs(m.naq / voice.truth.naq - 1);
  errors.h1h2 += std::fabs(m.h1h2 - voice.truth.h1h2);
  errors.hrf += std::fabs(m.hrf - voice.truth.hrf);
  errors.jitter += std::fabs(wave.jitter - voice.jitter);
  errors.shimmer += std::fabs(wave.shimmer - voice.shimmer);
  errors.marks += MarkError(wave, voice);
}

void Print(const char* name, double f0, int rate, const Errors& e) {
  const double n = std::max(1, e.voices - e.failed);
  std::printf("%-6s %5.0f %6d %6.3f %6.3f %6.1f %6.2f %6.2f %6.2f %6.2f %6.2f %5d %6d %9d\n", name, f0, rate,
              e.oq / n, e.qoq / n, e.naq / n, e.h1h2 / n, e.hrf / n, e.jitter / n, e.shimmer / n, e.marks / n,
              e.wrongPolarity, e.failed, e.undefined);
}

}  // namespace

int main(int argc, char** argv) {
  InitSignalTables();
  const double noise = argc > 1 ? std::atof(argv[1]) : -1;
  std::printf(
      "method    F0   rate     OQ    QOQ  NAQ %%  H1-H2    HRF jitter shimm.  marks  pol. failed undefined\n");
  for (const bool yardstick : {false, true})
    for (const double f0 : {80.0, 100.0, 120.0, 150.0, 200.0, 220.0, 260.0, 300.0})
      for (const int rate : {8000, 11025, 16000, 22050}) {
        Errors errors;
        for (const double rd : {0.6, 1.0, 1.4, 1.8, 2.3})
          for (int vowel = 0; vowel < 5; ++vowel)
            for (const bool inverted : {false, true})
              Add(errors, {f0, rd, vowel, rate, 0.6, 0.5, 2.0, noise, inverted}, yardstick);
        Print(yardstick ? "iaif" : "ours", f0, rate, errors);
      }
}
