#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

#include "SyntheticVoice.h"
#include "document/WavFile.h"
#include "dsp/SignalTables.h"
#include "pitch/PitchAnalysis.h"

// What the pitch analysis gets wrong on voices whose pitch is known.
//
//   pitch_accuracy                       the synthetic voices, five rates, six kinds of noise
//   pitch_accuracy A.wav A.f0 B.wav ...  recordings; the text file has one frequency a frame, that at the
//                                        centre of the 20 ms behind the start of each 10 ms frame; 0 is
//                                        unvoiced, below 0 not known and not counted. diphone_voices.py
//                                        makes such pairs of natural speech sounds
//   pitch_accuracy --net NET [A.wav ...]  the same with another voicing decision than the trained one
//   pitch_accuracy --inputs A.wav A.in ...  what the voicing decision sees of recordings, for train_voicing.py

namespace {

using namespace parlowen;

constexpr int kRates[] = {8000, 11025, 16000, 22050, 44100};
struct Condition {
  const char* name;
  Noise noise;
  double ratio;  // dB
};
constexpr Condition kConditions[] = {{"clean", Noise::None, 0},       {"white 20 dB", Noise::White, 20},
                                     {"pink 20 dB", Noise::Pink, 20}, {"white 10 dB", Noise::White, 10},
                                     {"pink 10 dB", Noise::Pink, 10}, {"hum 25 dB", Noise::Hum, 25}};

/// What of the analysis runs; the second stage alone is command 40005.
struct Stages {
  const char* name;
  bool timeDomain, tracking;
};
constexpr Stages kFirst{"first", true, false}, kSecond{"second", false, true}, kBoth{"both", true, true};

struct Score {
  long voiced = 0, unvoiced = 0;  // frames
  long missed = 0, invented = 0;  // voiced taken for unvoiced, and the other way
  long compared = 0, gross = 0, octave = 0;
  std::vector<double> cents;  // of the frames without gross error

  void Add(const Score& other) {
    voiced += other.voiced;
    unvoiced += other.unvoiced;
    missed += other.missed;
    invented += other.invented;
    compared += other.compared;
    gross += other.gross;
    octave += other.octave;
    cents.insert(cents.end(), other.cents.begin(), other.cents.end());
  }
};

Score Compare(const KnownVoice& voice, const std::vector<float>& periods) {
  Score score;
  for (std::size_t f = 1; f < std::min(voice.frequency.size(), periods.size()); ++f) {
    const double truth = voice.frequency[f];
    if (truth < 0) continue;
    const bool found = periods[f] > 1;
    ++(truth > 0 ? score.voiced : score.unvoiced);
    if (truth <= 0) {
      score.invented += found;
    } else if (!found) {
      ++score.missed;
    } else {
      ++score.compared;
      const double ratio = voice.sampleRate / static_cast<double>(periods[f]) / truth;
      const double octaves = std::fabs(std::log2(ratio));
      if (std::fabs(ratio - 1) <= 0.2) {
        score.cents.push_back(1200 * octaves);
      } else {
        ++score.gross;
        if (octaves > 0.5 && std::fabs(octaves - std::round(octaves)) < 0.1) ++score.octave;
      }
    }
  }
  return score;
}

void PrintHead() {
  std::printf("%-16s %-6s %8s %8s %8s %8s %8s %8s %8s\n", "", "stage", "missed%", "false%", "voicing%",
              "gross%", "octave%", "cents", "all%");
}

void Print(const std::string& name, const char* stage, Score score) {
  const auto percent = [](long count, long of) {
    return 100.0 * static_cast<double>(count) / static_cast<double>(std::max(1L, of));
  };
  double median = 0;
  if (!score.cents.empty()) {
    const auto middle = score.cents.begin() + static_cast<std::ptrdiff_t>(score.cents.size() / 2);
    std::nth_element(score.cents.begin(), middle, score.cents.end());
    median = *middle;
  }
  const long frames = score.voiced + score.unvoiced, voicing = score.missed + score.invented;
  std::printf("%-16s %-6s %8.2f %8.2f %8.2f %8.2f %8.2f %8.2f %8.2f\n", name.c_str(), stage,
              percent(score.missed, score.voiced), percent(score.invented, score.unvoiced),
              percent(voicing, frames), percent(score.gross, score.compared),
              percent(score.octave, score.compared), median, percent(voicing + score.gross, frames));
}

Score Analyse(const KnownVoice& voice, SoundDocument& document, const Stages& stages,
              VoicingStudy study = {}) {
  document.sampleRate = voice.sampleRate;
  document.sampleCount = static_cast<int>(std::min<std::size_t>(voice.samples.size(), kMaxSamples));
  std::copy_n(voice.samples.begin(), document.sampleCount, document.samples.data());
  document.SamplesChanged();
  PitchAnalysisRequest request;
  request.timeDomain = stages.timeDomain;
  request.tracking = stages.tracking;
  request.study = study;
  std::vector<float> periods;
  RunPitchAnalysis(document, 0, document.sampleCount, request, {0, document.ContourLength() - 1}, periods);
  return Compare(voice, periods);
}

void SyntheticTable(SoundDocument& document, const VoicingStudy& study) {
  const std::vector<std::string> names = VoiceNames();
  for (const Stages& stages : {kFirst, kSecond, kBoth}) {
    const char* stage = stages.name;
    std::vector<Score> byVoice(names.size()), byRate(std::size(kRates));
    PrintHead();
    for (const Condition& condition : kConditions) {
      Score all;
      for (std::size_t v = 0; v < names.size(); ++v) {
        for (std::size_t r = 0; r < std::size(kRates); ++r) {
          KnownVoice voice = MakeVoice(names[v], kRates[r]);
          AddNoise(voice, condition.noise, condition.ratio);
          const Score score = Analyse(voice, document, stages, study);
          all.Add(score);
          byVoice[v].Add(score);
          byRate[r].Add(score);
        }
      }
      Print(condition.name, stage, all);
    }
    for (std::size_t v = 0; v < names.size(); ++v) Print(names[v], stage, byVoice[v]);
    for (std::size_t r = 0; r < std::size(kRates); ++r)
      Print(std::to_string(kRates[r]) + " Hz", stage, byRate[r]);
    std::printf("\n");
  }
}

bool LoadSamples(const char* wavPath, KnownVoice& voice) {
  const InputFile wav(wavPath);
  if (!wav.isOpen()) return false;
  const auto layout = ReadWavLayout(wav, WavHeaderRule::OneChunkSkipped);
  if (!layout || layout->blockAlign != 2) return false;
  voice.name = FileNameOf(wavPath);
  voice.sampleRate = static_cast<int>(layout->sampleRate);
  voice.samples.resize(static_cast<std::size_t>(layout->dataBytes / 2));
  ReadMonoSamples(wav, layout->dataOffset, static_cast<int>(voice.samples.size()), voice.samples.data());
  return true;
}

bool LoadKnownVoice(const char* wavPath, const char* truthPath, KnownVoice& voice) {
  if (!LoadSamples(wavPath, voice)) return false;
  std::ifstream truth(truthPath);
  voice.frequency.assign(std::istream_iterator<float>(truth), {});
  return !voice.frequency.empty();
}

/// Reads the numbers of a net in the order of its fields, as train_voicing.py writes them.
bool LoadNet(const char* path, VoicingNet& net) {
  std::ifstream file(path);
  const auto take = [&file](auto& values) {
    for (float& value : values) file >> value;
  };
  take(net.mean);
  take(net.deviation);
  for (auto& row : net.weights) take(row);
  take(net.bias);
  take(net.output);
  return static_cast<bool>(file >> net.outputBias);
}

/// Writes what the voicing decision saw of a recording: float32, a frame after the other.
bool WriteInputs(const char* wavPath, const char* path, SoundDocument& document) {
  KnownVoice voice;
  if (!LoadSamples(wavPath, voice)) return false;
  std::vector<VoicingInputs> inputs;
  Analyse(voice, document, kBoth, {&kTrainedVoicing, &inputs});
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(inputs.data()),
             static_cast<std::streamsize>(inputs.size() * sizeof(VoicingInputs)));
  return static_cast<bool>(file);
}

int Refuse(const char* one, const char* other) {
  std::fprintf(stderr, "cannot read or write %s %s\n", one, other);
  return 1;
}

}  // namespace

int main(int count, char** arguments) {
  InitSignalTables();
  const auto document = std::make_unique<SoundDocument>();
  int from = 1;
  VoicingNet net = kTrainedVoicing;
  VoicingStudy study;
  const std::string option = count > 1 ? arguments[1] : "";
  if (option == "--inputs") {
    for (int i = 2; i + 1 < count; i += 2)
      if (!WriteInputs(arguments[i], arguments[i + 1], *document))
        return Refuse(arguments[i], arguments[i + 1]);
    return 0;
  }
  if (option == "--net" && count > 2) {
    if (!LoadNet(arguments[2], net)) return Refuse(arguments[2], "");
    study.net = &net;
    from = 3;
  }
  if (from == count) {
    SyntheticTable(*document, study);
    return 0;
  }
  Score first, both;
  PrintHead();
  for (int i = from; i + 1 < count; i += 2) {
    KnownVoice voice;
    if (!LoadKnownVoice(arguments[i], arguments[i + 1], voice)) return Refuse(arguments[i], arguments[i + 1]);
    const Score score = Analyse(voice, *document, kBoth, study);
    Print(voice.name, "both", score);
    both.Add(score);
    first.Add(Analyse(voice, *document, kFirst));
  }
  Print("all", "first", first);
  Print("all", "both", both);
  return 0;
}
