#include "SyntheticVoice.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <random>

namespace parlowen {
namespace {

constexpr double kPi = std::numbers::pi;
// The wave follows its source by the open phase of the pulse and the delay of the formants, in seconds.
constexpr double kLag = 0.002;

enum class Sound { Vowel, Nasal, VoiceBar, Fricative, VoicedFricative, Burst, Silence };

struct Segment {
  Sound sound = Sound::Silence;
  double seconds = 0;
  double amplitude = 1;               ///< 1 is a stressed vowel
  std::array<double, 3> frequency{};  ///< F0 at start, middle, end, as factors of the speaker's
  int vowel = 0;
};

struct Speaker {
  double f0 = 110;      ///< Hz
  double tract = 1.0;   ///< factor on the formants
  double jitter = 0.0;  ///< standard deviation of a period, as a share
  double breath = 0.0;  ///< noise in the open phase, as a share
  /// In one of three voiced stretches every other pulse is stronger by this share and later by a third of it.
  double alternation = 0.0;
};

constexpr double kFormants[][4] = {{760, 1280, 2500, 3500}, {480, 850, 2450, 3400}, {500, 1250, 2450, 3450},
                                   {290, 2300, 3000, 3550}, {330, 720, 2350, 3300}, {290, 1950, 2350, 3350},
                                   {560, 1750, 2500, 3500}, {250, 1100, 2300, 3300}};
constexpr int kNasalFormants = 7;
constexpr double kBandwidths[] = {70, 95, 140, 200};

/// Two-pole resonator of unit gain at 0 Hz.
class Resonator {
 public:
  void Set(double frequency, double bandwidth, double rate) {
    const double r = std::exp(-kPi * bandwidth / rate);
    b_ = 2 * r * std::cos(2 * kPi * frequency / rate);
    c_ = -r * r;
    a_ = 1 - b_ - c_;
  }
  double Next(double x) {
    const double y = a_ * x + b_ * y1_ + c_ * y2_;
    y2_ = y1_;
    y1_ = y;
    return y;
  }

 private:
  double a_ = 1, b_ = 0, c_ = 0, y1_ = 0, y2_ = 0;
};

double AlongSegment(const Segment& segment, double share) {
  const auto& f = segment.frequency;
  const double a = share < 0.5 ? f[0] : f[1], b = share < 0.5 ? f[1] : f[2];
  const double t = share < 0.5 ? 2 * share : 2 * share - 1;
  return a * std::pow(b / a, t);
}

bool IsVoiced(Sound sound) {
  return sound == Sound::Vowel || sound == Sound::Nasal || sound == Sound::VoiceBar ||
         sound == Sound::VoicedFricative;
}

/// A sentence: stressed and weak syllables, every kind of neighbour.
std::vector<Segment> Sentence() {
  using enum Sound;
  return {{Silence, 0.35},
          {Fricative, 0.12, 0.5},
          {Vowel, 0.18, 1.0, {1.1, 1.3, 1.2}, 0},
          {Nasal, 0.07, 0.35, {1.2, 1.15, 1.1}},
          {Vowel, 0.10, 0.25, {1.1, 1.05, 1.0}, 2},
          {VoiceBar, 0.05, 0.15, {1.0, 0.97, 0.95}},
          {Burst, 0.01, 0.5},
          {Vowel, 0.20, 0.9, {1.0, 1.2, 1.25}, 3},
          {Silence, 0.06},
          {Burst, 0.03, 0.6},
          {Vowel, 0.15, 0.8, {1.3, 1.2, 1.05}, 4},
          {VoicedFricative, 0.07, 0.25, {1.05, 1.0, 1.0}},
          {Vowel, 0.13, 0.6, {1.0, 0.95, 0.9}, 6},
          {Fricative, 0.15, 0.7},
          {Vowel, 0.08, 0.2, {0.9, 0.88, 0.86}, 2},
          {Nasal, 0.09, 0.20, {0.86, 0.84, 0.82}},
          {Vowel, 0.25, 0.5, {0.85, 0.8, 0.72}, 1},
          {Silence, 0.4},
          {Vowel, 0.22, 1.0, {1.2, 1.45, 1.3}, 5},
          {Fricative, 0.09, 0.2},
          {Vowel, 0.14, 0.3, {1.2, 1.1, 1.0}, 0},
          {Nasal, 0.08, 0.3, {1.0, 0.95, 0.93}},
          {Vowel, 0.30, 0.35, {0.92, 0.85, 0.7}, 0},
          {Silence, 0.5}};
}

/// Four syllables of a tone language, the tones between 0.8 and 1.6 of the speaker's F0.
std::vector<Segment> Tones() {
  using enum Sound;
  const auto tone = [](std::array<double, 3> f, double seconds, int vowel) {
    return std::vector<Segment>{
        {Silence, 0.3}, {Nasal, 0.06, 0.3, {f[0], f[0], f[0]}}, {Vowel, seconds, 1.0, f, vowel}};
  };
  std::vector<Segment> all;
  for (const auto& part : {tone({1.5, 1.5, 1.48}, 0.30, 0), tone({1.0, 1.15, 1.55}, 0.32, 0),
                           tone({1.0, 0.72, 1.0}, 0.42, 0), tone({1.6, 1.3, 0.75}, 0.24, 0)})
    all.insert(all.end(), part.begin(), part.end());
  all.push_back({Silence, 0.3});
  return all;
}

/// A phrase whose last vowel falls into creak.
std::vector<Segment> Creak() {
  using enum Sound;
  return {{Silence, 0.3},
          {Vowel, 0.30, 1.0, {1.1, 1.2, 1.0}, 0},
          {Nasal, 0.08, 0.3, {1.0, 0.95, 0.9}},
          {Vowel, 0.60, 0.6, {0.9, 0.75, 0.62}, 6},
          {Silence, 0.25},
          {Fricative, 0.1, 0.4},
          {Vowel, 0.55, 0.5, {0.85, 0.72, 0.64}, 1},
          {Silence, 0.3}};
}

std::vector<Segment> ScriptOf(const std::string& name) {
  if (name.find("tones") != std::string::npos) return Tones();
  return name.find("creak") != std::string::npos ? Creak() : Sentence();
}

Speaker SpeakerOf(const std::string& name) {
  if (name == "low man") return {92, 0.95, 0.005, 0.02};
  if (name == "man") return {115, 1.0, 0.005, 0.02};
  if (name == "woman") return {210, 1.15, 0.004, 0.05};
  if (name == "breathy woman") return {190, 1.13, 0.006, 0.25};
  if (name == "child") return {310, 1.3, 0.005, 0.04};
  if (name == "tones man") return {115, 1.0, 0.003, 0.02};
  if (name == "tones woman") return {220, 1.15, 0.003, 0.03};
  if (name == "alternating man") return {125, 1.0, 0.004, 0.02, 0.10};
  if (name == "alternating woman") return {220, 1.15, 0.004, 0.05, 0.10};
  if (name == "creak woman") return {150, 1.12, 0.010, 0.05};
  return {100, 1.0, 0.010, 0.02};  // creak
}

/// The mean over the voiced part of the 20 ms about a moment; 0 when the moment itself is unvoiced.
float TrueFrequency(const std::vector<double>& frequencyAt, double moment, double rate) {
  const auto at = static_cast<std::size_t>(moment), half = static_cast<std::size_t>(0.01 * rate);
  if (at >= frequencyAt.size() || frequencyAt[at] <= 0) return 0.0f;
  double sum = 0, count = 0;
  for (std::size_t n = at - half; n < std::min(frequencyAt.size(), at + half); ++n) {
    if (frequencyAt[n] <= 0) continue;
    sum += frequencyAt[n];
    ++count;
  }
  return static_cast<float>(sum / count);
}

/// Windowed-sinc low-pass at 0.45 of the new rate, then one of `factor` samples.
std::vector<double> Downsample(const std::vector<double>& input, int factor) {
  if (factor == 1) return input;
  const int half = 24 * factor;
  std::vector<double> taps(static_cast<std::size_t>(2 * half + 1));
  for (int k = -half; k <= half; ++k) {
    const double x = 2 * 0.45 * k / factor;
    const double sinc = k == 0 ? 1.0 : std::sin(kPi * x) / (kPi * x);
    taps[static_cast<std::size_t>(k + half)] = 0.9 / factor * sinc * (0.54 + 0.46 * std::cos(kPi * k / half));
  }
  std::vector<double> output(input.size() / static_cast<std::size_t>(factor));
  for (std::size_t n = 0; n < output.size(); ++n) {
    const auto centre = static_cast<std::ptrdiff_t>(n) * factor;
    for (int k = -half; k <= half; ++k) {
      const std::ptrdiff_t i = centre + k;
      if (i >= 0 && i < static_cast<std::ptrdiff_t>(input.size()))
        output[n] += taps[static_cast<std::size_t>(k + half)] * input[static_cast<std::size_t>(i)];
    }
  }
  return output;
}

}  // namespace

std::vector<std::string> VoiceNames() {
  return {"man",   "low man",     "woman",           "breathy woman",    "child", "tones man", "tones woman",
          "creak", "creak woman", "alternating man", "alternating woman"};
}

KnownVoice MakeVoice(const std::string& name, int sampleRate) {
  const Speaker speaker = SpeakerOf(name);
  const int factor = std::max(1, 48000 / sampleRate);
  const double rate = static_cast<double>(sampleRate) * factor;
  std::mt19937 random(7);
  std::normal_distribution<double> gauss;

  std::array<Resonator, 4> formants;
  Resonator hiss, voiceBar;
  hiss.Set(3800 * speaker.tract, 1200, rate);
  std::vector<double> wave;
  std::vector<double> frequencyAt;  // Hz per sample; 0 unvoiced
  double phase = 0, stretch = 1, before = 0;
  int voicedSegments = 0, pulses = 0;
  for (const Segment& segment : ScriptOf(name)) {
    voicedSegments += IsVoiced(segment.sound);
    const double alternation = voicedSegments % 3 == 2 ? speaker.alternation : 0.0;
    const double* f = kFormants[segment.sound == Sound::Vowel ? segment.vowel : kNasalFormants];
    const double narrow = segment.sound == Sound::VoiceBar ? 0.5 : 1.0;
    for (std::size_t i = 0; i < 4; ++i)
      formants[i].Set(f[i] * speaker.tract * (i > 0 ? 1 : narrow),
                      kBandwidths[i] * (segment.sound == Sound::Vowel ? 1 : 2), rate);
    const auto count = static_cast<std::size_t>(segment.seconds * rate);
    const double ramp = std::min(0.012, segment.seconds / 3);
    for (std::size_t n = 0; n < count; ++n) {
      const double t = static_cast<double>(n) / rate;
      const double edge = std::min({1.0, t / ramp, (segment.seconds - t) / ramp});
      const double gain = segment.amplitude * (0.5 - 0.5 * std::cos(kPi * edge));
      double source = 0, direct = 0;
      double frequency = 0;
      if (IsVoiced(segment.sound)) {
        frequency = speaker.f0 * AlongSegment(segment, t / segment.seconds);
        phase += frequency / rate * stretch;
        if (phase >= 1) {
          phase -= 1;
          ++pulses;
          stretch = 1 + speaker.jitter * gauss(random) + (pulses % 2 ? alternation : -alternation) / 3;
        }
        // Flow u²(1 − u) over the open 60 % of the period; its derivative excites the tract.
        const double u = phase / 0.6;
        const double flow = u < 1 ? u * u * (1 - u) * 6.75 : 0.0;
        source = (flow - before) * rate / speaker.f0 / 12 + speaker.breath * flow * gauss(random) * 0.15;
        before = flow;
        source *= gain * (1 + (pulses % 2 ? alternation : -alternation));
      } else {
        before = 0;
      }
      if (segment.sound == Sound::Fricative || segment.sound == Sound::Burst ||
          segment.sound == Sound::VoicedFricative)
        direct =
            hiss.Next(gauss(random) * gain * 0.12 * (segment.sound == Sound::VoicedFricative ? 0.5 : 1.0));
      double y = source;
      for (Resonator& formant : formants) y = formant.Next(y);
      wave.push_back(y + direct);
      frequencyAt.push_back(frequency * stretch);
    }
  }

  KnownVoice voice{name, sampleRate, {}, {}};
  const std::vector<double> low = Downsample(wave, factor);
  double largest = 0;
  for (const double y : low) largest = std::max(largest, std::fabs(y));
  for (const double y : low)
    voice.samples.push_back(static_cast<std::int16_t>(std::lround(12000 * y / largest)));
  for (std::size_t frame = 0; frame < voice.samples.size() * 100 / static_cast<std::size_t>(sampleRate);
       ++frame) {
    voice.frequency.push_back(
        TrueFrequency(frequencyAt, (static_cast<double>(frame) * 0.01 + 0.01 - kLag) * rate, rate));
  }
  return voice;
}

void AddNoise(KnownVoice& voice, Noise noise, double ratio) {
  if (noise == Noise::None) return;
  std::mt19937 random(11);
  std::normal_distribution<double> gauss;
  double power = 0;
  std::size_t counted = 0;
  for (std::size_t frame = 0; frame < voice.frequency.size(); ++frame) {
    if (voice.frequency[frame] <= 0) continue;
    const std::size_t from = frame * static_cast<std::size_t>(voice.sampleRate) / 100;
    for (std::size_t n = from; n < from + static_cast<std::size_t>(voice.sampleRate) / 100; ++n, ++counted)
      power += double(voice.samples[n]) * voice.samples[n];
  }
  power /= static_cast<double>(std::max<std::size_t>(1, counted));
  // Hum: mains at 60 Hz and its odd harmonics. Pink: one-pole low-passes an octave and a half apart, equal
  // power each (1/f within 1 dB).
  std::array<double, 9> state{};
  std::vector<double> values(voice.samples.size());
  double noisePower = 0;
  for (std::size_t n = 0; n < values.size(); ++n) {
    double& value = values[n];
    if (noise == Noise::White) {
      value = gauss(random);
    } else if (noise == Noise::Hum) {
      const double angle = 2 * kPi * 60 * static_cast<double>(n) / voice.sampleRate;
      value = std::sin(angle) + 0.4 * std::sin(3 * angle + 1) + 0.2 * std::sin(5 * angle + 2);
    } else {
      value = 0;
      for (std::size_t i = 0; i < state.size(); ++i) {
        const double corner = std::min(0.45, 20 * std::pow(2.4, static_cast<double>(i)) / voice.sampleRate);
        const double pole = std::exp(-2 * kPi * corner);
        state[i] = pole * state[i] + std::sqrt(1 - pole * pole) * gauss(random);
        value += state[i];
      }
    }
    noisePower += value * value;
  }
  const double gain =
      std::sqrt(power / (noisePower / static_cast<double>(values.size())) * std::pow(10, -ratio / 10));
  for (std::size_t n = 0; n < values.size(); ++n)
    voice.samples[n] = static_cast<std::int16_t>(
        std::clamp(std::lround(voice.samples[n] + gain * values[n]), -32768L, 32767L));
}

}  // namespace parlowen
