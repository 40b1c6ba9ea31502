#include "voice_accuracy/Iaif.h"

#include <cmath>

#include "dsp/Fir.h"
#include "voice/LinearPrediction.h"

namespace parlowen::bench {
namespace {

using Signal = std::vector<double>;
constexpr double kPi = 3.14159265358979323846;
constexpr double kLeak = 0.99;

Signal Through(const TractFilter& filter, const Signal& signal) {
  Signal out(signal.size());
  for (std::size_t n = 0; n < signal.size(); ++n)
    for (std::size_t k = 0; k <= static_cast<std::size_t>(filter.order) && k <= n; ++k)
      out[n] += filter.a[k] * signal[n - k];
  return out;
}

Signal Integrate(Signal signal) {
  for (std::size_t n = 1; n < signal.size(); ++n) signal[n] += kLeak * signal[n - 1];
  return signal;
}

TractFilter Model(const Signal& signal, const Signal& window, int order) {
  return PredictByAutocorrelation(signal.data(), window.data(), static_cast<int>(signal.size()), order);
}

/// The derivative of the flow in one frame.
Signal InverseFilter(const Signal& x, const Signal& window, int order) {
  const Signal first = Through(Model(x, window, 1), x);                      // 1: the tilt of source and lips
  const Signal source = Integrate(Through(Model(first, window, order), x));  // 2, 3: a first flow
  const TractFilter glottis = Model(source, window, 4);                      // 4: its shape
  const Signal tract = Integrate(Through(glottis, x));
  return Through(Model(tract, window, order), x);  // 5, 6
}

}  // namespace

void MeasureByIaif(SampleSpan samples, GlottalWave& wave) {
  const int rate = wave.sampleRate, half = rate / 30, order = rate / 1000 + 2;
  Signal taps(static_cast<std::size_t>(2 * half + 1));
  DesignFirFilter(40, 0.54, half, 1, taps.data(), rate);
  Signal flow, moduli;
  const double sign = wave.inverted ? -1 : 1;
  for (GlottalPeriod& period : wave.periods) {
    // A frame of 6 periods about this one.
    const int length = 6 * period.length, start = period.start - 5 * period.length / 2;
    Signal x, window;
    for (int n = 0; n < length; ++n) {
      double sum = 0;
      for (int k = -half; k <= half; ++k)
        sum += taps[static_cast<std::size_t>(k + half)] * samples.At(start + n + k);
      x.push_back(sign * sum);
      window.push_back(0.5 - 0.5 * std::cos(2 * kPi * (n + 0.5) / length));
    }
    const Signal d = InverseFilter(x, window, order);
    period.measures =
        MeasureGlottalPeriod(std::span(d).subspan(static_cast<std::size_t>(period.start - start),
                                                  static_cast<std::size_t>(period.length + 1)),
                             rate, flow, moduli);
  }
  for (const auto measure : kGlottalMeasures) {
    double sum = 0;
    int count = 0;
    for (const GlottalPeriod& period : wave.periods)
      if (std::isfinite(period.measures.*measure)) {
        sum += period.measures.*measure;
        ++count;
      }
    wave.mean.*measure = count > 0 ? sum / count : std::nan("");
  }
}

}  // namespace parlowen::bench
