#include "shell/Rooms.h"

#include <algorithm>

#include "base/Files.h"
#include "document/EditCommands.h"
#include "document/WavFile.h"
#include "dsp/SignalTables.h"

namespace parlowen {
namespace {

// Samples that an edited sound needs for its picture to be made anew.
constexpr int kLeastForAnalysis = 2000;

}  // namespace

Rooms::Rooms(Window& ownWindow, std::string folder, SoundDevices devices, std::vector<CommandRule> rules)
    : window(ownWindow),
      states(std::move(rules)),
      view(ownWindow, document, states, spectrogram, pitch.repair, vowels),
      dataFolder(std::move(folder)),
      prosody{document, exportFolder},
      player(devices.output, ownWindow, document, states),
      recording(devices.input, ownWindow, document, states, recorder) {
  view.palate = &palate;
  view.palateView = &palateView;
  view.annotations = &annotations;
  view.characters = &characters;
  view.markers = &markers;
  view.playStretch = &playInPassing;
  InitSignalTables();
  view.paste = [this] {
    player.stopPlayback();
    Follow(PasteCommand(window, document, states));
  };
  playChannel = [this](Window&, int channel, int start, int end) {
    player.startPlayback(start, end, PlayMode::Forward,
                         (channel == 2 ? document.samples2 : document.samples).data());
  };
  playStretch = [this](Window&, int start, int end) {
    player.startPlayback(start, end, PlayMode::Forward, document.samples.data());
  };
  playInPassing = [this](Window&, int start, int end) {
    player.startPlayback(start, end, PlayMode::Forward, document.samples.data(), 0,
                         PlayRefusal::InStatusLine);
  };
  playSoundFile = [this](Window&, const std::string& path) { return PlayFile(path); };
  readTarget = [this](Window& asking, int firstFrame, int frameCount) {
    return ReadPitchTierTarget(asking, document.sampleRate, firstFrame, frameCount);
  };
  prosody.play = playStretch;
  prosody.firstBand = [this] { return ReadFirstBand(); };
}

FirstBand Rooms::ReadFirstBand() {
  FirstBand band;
  EnsureMarkersRead(document, markers);
  if (markers.sound != document.Stamp()) return band;
  band.markers.assign(markers.set.Markers(0).begin(), markers.set.Markers(0).end());
  for (const MarkerLabel& label : markers.set.Labels(0))
    if (!label.IsPoint()) band.labels.push_back({label.start, label.end, label.text});
  std::stable_sort(band.labels.begin(), band.labels.end(),
                   [](const LabelledStretch& a, const LabelledStretch& b) { return a.start < b.start; });
  return band;
}

MarkerDesk Rooms::MarkersToExchange() {
  return {document, markers, annotations, [this] { EnsureMarkersRead(document, markers); },
          [this] { ShowMarkers(window, document, markers, playStretch); }};
}

PalateDesk Rooms::PalatesToShow() { return {document, palate, palateView, exportFolder, playStretch}; }

void Rooms::Follow(const Edit& edit) {
  if (!edit) return;
  FollowEdit({markers, annotations, characters}, edit, document);
  if (!spectrogram.shown || document.sampleCount >= kLeastForAnalysis) return;
  spectrogram.Clear();
  window.Repaint(Pane::Analysis);
}

bool Rooms::PlayFile(const std::string& path) {
  const InputFile file(path);
  const auto layout = file.isOpen() ? ReadWavLayout(file, WavHeaderRule::OneChunkSkipped) : std::nullopt;
  const bool playable = layout && layout->blockAlign == 2 && layout->bitsPerSample == 16 &&
                        layout->sampleRate >= kSmallestRate && layout->sampleRate <= kLargestRate;
  const auto count = playable ? std::min<std::int64_t>(layout->dataBytes / 2, kMaxSamples) : 0;
  if (count < 1) return false;
  player.stopPlayback();  // it may be playing these very samples
  fileSamples_.resize(static_cast<std::size_t>(count));
  const int read = ReadMonoSamples(file, layout->dataOffset, static_cast<int>(count), fileSamples_.data());
  player.startPlayback(0, read, PlayMode::Forward, fileSamples_.data(), static_cast<int>(layout->sampleRate));
  return true;
}

std::string Rooms::ExportPath(const std::string& name) const {
  return exportFolder.empty() ? name : exportFolder + "/" + name;
}

}  // namespace parlowen
