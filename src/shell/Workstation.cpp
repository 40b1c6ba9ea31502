#include "shell/Workstation.h"

#include <algorithm>
#include <optional>
#include <string_view>

#include "annotation/AnnotationCommands.h"
#include "base/Files.h"
#include "document/EditCommands.h"
#include "document/SoundFileCommands.h"
#include "document/WavFile.h"
#include "dsp/SignalTables.h"
#include "palatography/NspCommands.h"
#include "shell/CommandTable.h"
#include "spectral/FrameCommands.h"
#include "spectral/SpectrogramCommands.h"
#include "vowel/VowelCommands.h"

namespace parlowen {
namespace {

// Samples that an edited sound needs for its picture to be made anew.
constexpr int kLeastForAnalysis = 2000;

/// Palate recordings and two-channel speech share their name's ending; the header chunk tells them apart.
bool IsPalateRecording(const std::string& path) {
  char id[4] = {};
  return InputFile(path).ReadAt(12, id, sizeof id) == sizeof id && std::string_view(id, sizeof id) == "HEDR";
}

/// What the commands that open files do once the file is chosen.
struct FileReader {
  int command;
  void (*read)(Workstation& w, const std::string& path);
};
constexpr FileReader kReaders[] = {
    {commands::kOpenSound,
     [](Workstation& w, const std::string& path) {
       openPath(w.window, w.document, w.states, path, ChannelMode::One, false);
     }},
    {commands::kOpenIpa,
     [](Workstation& w, const std::string& path) {
       OpenIpaFile(w.window, w.document, w.states, w.annotations, path);
     }},
    {commands::kOpenTwoChannelNsp,
     [](Workstation& w, const std::string& path) {
       if (IsPalateRecording(path)) {
         ReadEpgNsp(w.window, w.document, w.states, w.palate, path);
       } else {
         ReadTwoChannelNsp(w.window, w.document, w.states, path);
       }
     }},
    {commands::kOpenChart,
     [](Workstation& w, const std::string& path) {
       OpenChartFile(w.window, w.document, w.states, w.vowels, path);
     }},
    {commands::kImportTextGrid,
     [](Workstation& w, const std::string& path) {
       ImportTextGridFile(w.window, w.MarkersToExchange(), path);
     }},
};

}  // namespace

Workstation::Workstation(Window& ownWindow, std::string folder, SoundDevices devices)
    : window(ownWindow),
      states(CommandRules()),
      view(ownWindow, document, states, spectrogram, pitch.repair, vowels),
      dataFolder(std::move(folder)),
      prosody{document, exportFolder},
      player(devices.output, ownWindow, document, states),
      recording(devices.input, ownWindow, document, states, recorder),
      input_(devices.input) {
  view.palate = &palate;
  view.palateView = &palateView;
  view.annotations = &annotations;
  view.characters = &characters;
  InitSignalTables();
  player.changed = [this] { MoveCursor(); };
  recording.changed = [this] {
    view.listening = !recording.running()      ? Listening::No
                     : recording.listensOnly() ? Listening::ToTestGain
                     : recording.keeping()     ? Listening::ToRecord
                                               : Listening::ForVoice;
    DocumentChanged();
  };
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
  playSoundFile = [this](Window&, const std::string& path) { return PlayFile(path); };
  readTarget = [this](Window& asking, int firstFrame, int frameCount) {
    return ReadPitchTierTarget(asking, document.sampleRate, firstFrame, frameCount);
  };
  prosody.play = playStretch;
  prosody.firstBand = [this] { return ReadFirstBand(); };
  prosody.mark = [this](int start, int end) {
    Select(start, end);
    view.ScrollTo(start);
  };
  InputDevicesChanged();
}

FirstBand Workstation::ReadFirstBand() {
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

MarkerDesk Workstation::MarkersToExchange() {
  return {document, markers, annotations, [this] { EnsureMarkersRead(document, markers); },
          [this] { ShowMarkers(window, document, markers, playStretch); }};
}

PalateDesk Workstation::PalatesToShow() { return {document, palate, palateView, exportFolder, playStretch}; }

bool Workstation::dispatchCommand(int number) {
  const CommandRow* row = FindCommand(number);
  if (row == nullptr || !states.IsEnabled(number)) return false;
  if (row->does.Has(Does::StopPlay)) player.stopPlayback();
  std::optional<MainView::ToolInUse> before;
  if (row->does.Has(Does::EndTool)) before = view.PutToolAside(row->does.Has(Does::DrawInPanes));
  const bool done = row->run.Run(*this);
  if (before) done ? window.Repaint() : view.TakeUp(*before);
  DocumentChanged();
  return true;
}

bool Workstation::Save(int number) {
  const CommandRow* row = FindCommand(number);
  if (row == nullptr || recording.running()) return false;
  row->run.Run(*this);
  DocumentChanged();
  return true;
}

int Workstation::OpeningCommand(const std::string& path) {
  const FileKind* kind = OpenedKindOf(path);
  return kind != nullptr ? kind->open : commands::kOpenSound;
}

void Workstation::OpenFile(const std::string& path) {
  if (recording.running()) return;
  player.stopPlayback();
  const int command = OpeningCommand(path);
  const auto* reader = std::find_if(std::begin(kReaders), std::end(kReaders),
                                    [command](const FileReader& r) { return r.command == command; });
  if (reader != std::end(kReaders)) reader->read(*this, path);
  DocumentChanged();
}

void Workstation::Select(int start, int end) {
  view.Select(start, end);
  SelectionMoved();
  DocumentChanged();
}

void Workstation::Click(Pane pane, Point at, MouseButton button, bool shift) {
  view.Click(pane, at, button, shift);
  SelectionMoved();
  DocumentChanged();
}

bool Workstation::Key(const std::string& key) {
  const std::string name = key == "t" ? "T" : key;
  if (name == "Escape" && player.playing()) return dispatchCommand(commands::kStopPlaying);
  if (name == "Space")
    return dispatchCommand(player.playing()              ? commands::kStopPlaying
                           : document.selectionDefined() ? commands::kPlaySelection
                                                         : commands::kPlayWhole);
  for (const CommandRow& row : CommandTable())
    if (row.keys == name && dispatchCommand(row.number)) return true;
  const bool used = view.Key(key);
  DocumentChanged();
  return used;
}

void Workstation::InputDevicesChanged() {
  states.Tell(Need::Microphone, input_ != nullptr && input_->IsPresent());
}

bool Workstation::MoveCursor() {
  view.cursor = player.CursorSample();
  return player.playing();
}

bool Workstation::PlayFile(const std::string& path) {
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

std::string Workstation::ExportPath(const std::string& name) const {
  return exportFolder.empty() ? name : exportFolder + "/" + name;
}

void Workstation::SelectionMoved() {
  FollowSelectedFrames(window, document, frames, lpc);
  FollowSelectedConsonant(window, document, consonant);
}

void Workstation::DocumentChanged() {
  UpdateDerived();
  FollowShownFrames(palateView, palate, document);
  TellStates();
}

void Workstation::TellStates() {
  states.Tell(Need::Region, document.activity == Activity::RegionChosen);
  UpdateVowelCommands(document, states, vowels);
  states.Tell(Need::Points, vowels.chart.count > 0);
  states.Tell(Need::Statistics, tones.open);
  states.Tell(Need::ToneItems, !tones.items.empty());
  states.Tell(Need::Intonation, intonation.result.has_value());
  states.Tell(Need::Picture, spectrogram.shown);
  states.Tell(Need::Samples, document.sampleCount > 0 && document.sampleRate > 0);
  states.Tell(Need::TwoChannels, document.twoChannel);
  states.Tell(Need::GlottalWave, glottal.shown);
  states.Tell(Need::LongTermSpectrum, lta.frames > 0 && IsFinite(lta.levels));
  states.Tell(Need::ContactFrames, TimingOf(palate, document).frames > 0);
}

void Workstation::Follow(const Edit& edit) {
  if (!edit) return;
  FollowEdit({markers, annotations, characters}, edit, document);
  if (!spectrogram.shown || document.sampleCount >= kLeastForAnalysis) return;
  spectrogram = {};
  window.Repaint(Pane::Analysis);
}

void Workstation::DropOldResults() {
  const SoundStamp now = document.Stamp();
  const auto drop = [&now](auto& state) {
    if (state.sound != now) state = {};
  };
  drop(spectrogram);
  drop(glottal);
  drop(synthesis);
  drop(intonation);
  drop(annotations);
  drop(characters);
  // What outlives the sound, windows and settings, stays in these.
  if (frames.sound != now) frames.hasFrame = frames.hasComparison = false;
  if (consonant.sound != now) consonant.shown = false;
  if (palate.sound != now) palate.DropRecording();
  if (articulation.estimatedSound != now) articulation.estimate.reset();
  if (palateView.sound != now) {
    palateView.statistics = {};
    palateView.current = 0;
    palateView.sound = now;
  }
  DropOldMarkers(window, document, markers);
}

void Workstation::UpdateDerived() {
  pitch.repair.KeepTo(document);
  if (seenSound_ != document.Stamp()) {
    seenSound_ = document.Stamp();
    DropOldResults();
    seenSamples_ = document.samplesVersion;
    view.Reset();
    window.Repaint();
    return;
  }
  if (seenSamples_ == document.samplesVersion) return;
  seenSamples_ = document.samplesVersion;
  if (markers.windowOpen) window.Repaint();
  if (!spectrogram.shown) return;
  RedrawSpectrogram(document, spectrogram);
  window.Repaint(Pane::Analysis);
}

}  // namespace parlowen
