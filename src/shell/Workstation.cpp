#include "shell/Workstation.h"

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

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

/// Palate recordings and two-channel speech share their name's ending; the header chunk tells them apart.
bool IsPalateRecording(const std::string& path) {
  char id[4] = {};
  return InputFile(path).ReadAt(12, id, sizeof id) == sizeof id && std::string_view(id, sizeof id) == "HEDR";
}

/// What the commands that open files do once the file is chosen.
struct FileReader {
  int command;
  void (*read)(Rooms& w, const std::string& path);
};
constexpr FileReader kReaders[] = {
    {commands::kOpenSound,
     [](Rooms& w, const std::string& path) {
       openPath(w.window, w.document, w.states, path, ChannelMode::One, false);
     }},
    {commands::kOpenIpa,
     [](Rooms& w, const std::string& path) {
       OpenIpaFile(w.window, w.document, w.states, w.annotations, path);
     }},
    {commands::kOpenTwoChannelNsp,
     [](Rooms& w, const std::string& path) {
       if (IsPalateRecording(path)) {
         ReadEpgNsp(w.window, w.document, w.states, w.palate, path);
       } else {
         ReadTwoChannelNsp(w.window, w.document, w.states, path);
       }
     }},
    {commands::kOpenChart,
     [](Rooms& w, const std::string& path) {
       OpenChartFile(w.window, {w.document, w.states, w.vowels}, path);
     }},
    {commands::kImportTextGrid,
     [](Rooms& w, const std::string& path) { ImportTextGridFile(w.window, w.MarkersToExchange(), path); }},
};

}  // namespace

Workstation::Workstation(Window& ownWindow, std::string folder, SoundDevices devices)
    : Rooms(ownWindow, std::move(folder), devices, CommandRules()), input_(devices.input) {
  player.changed = [this] { MoveCursor(); };
  recording.changed = [this] {
    Act([this] {
      view.listening = !recording.running()      ? Listening::No
                       : recording.listensOnly() ? Listening::ToTestGain
                       : recording.keeping()     ? Listening::ToRecord
                                                 : Listening::ForVoice;
    });
  };
  prosody.mark = [this](int start, int end) {
    Select(start, end);
    view.ScrollTo(start);
  };
  InputDevicesChanged();
}

void Workstation::Act(const std::function<void()>& action) {
  action();
  FollowSelection();
  RenewDerived();
  FollowShownFrames(palateView, palate, document);
  TellStates();
}

bool Workstation::dispatchCommand(int number) {
  const CommandRow* row = FindCommand(number);
  if (row == nullptr || !states.IsEnabled(number)) return false;
  Act([&] {
    if (row->does.Has(Does::StopPlay)) player.stopPlayback();
    std::optional<MainView::ToolInUse> before;
    if (row->does.Has(Does::EndTool)) before = view.PutToolAside(row->does.Has(Does::DrawInPanes));
    const bool done = row->run.Run(*this);
    if (before) done ? window.Repaint() : view.TakeUp(*before);
  });
  return true;
}

bool Workstation::Save(int number) {
  const CommandRow* row = FindCommand(number);
  if (row == nullptr || recording.running()) return false;
  Act([&] { row->run.Run(*this); });
  return true;
}

int Workstation::OpeningCommand(const std::string& path) {
  const FileKind* kind = OpenedKindOf(path);
  return kind != nullptr ? kind->open : commands::kOpenSound;
}

void Workstation::OpenFile(const std::string& path) {
  if (recording.running()) return;
  const int command = OpeningCommand(path);
  const auto* reader = std::find_if(std::begin(kReaders), std::end(kReaders),
                                    [command](const FileReader& r) { return r.command == command; });
  Act([&] {
    player.stopPlayback();
    if (reader != std::end(kReaders)) reader->read(*this, path);
  });
}

void Workstation::Select(int start, int end) {
  Act([&] { view.Select(start, end); });
}

void Workstation::Click(Pane pane, Point at, MouseButton button, bool shift) {
  Act([&] { view.Click(pane, at, button, shift); });
}

void Workstation::MarkStretch(Pane pane, int x0, int x1) {
  Act([&] { view.MarkStretch(pane, x0, x1); });
}

void Workstation::EditLabel(Point at) {
  Act([&] { view.EditLabel(at); });
}

bool Workstation::KeyInLabels(const std::string& key) {
  bool used = false;
  Act([&] { used = view.KeyInLabels(key); });
  return used;
}

void Workstation::ReadLabels() {
  Act([&] { EnsureMarkersRead(document, markers); });
}

void Workstation::MarkRepairFrames(int x0, int x1) {
  Act([&] { view.MarkRepairFrames(x0, x1); });
}

void Workstation::PointAtRepair(std::optional<Point> at) {
  if (at) return view.PointAtRepair(*at);
  pitch.repair.pointer.reset();
}

void Workstation::ScrollTo(std::int64_t viewStart) {
  Act([&] { view.ScrollTo(viewStart); });
}

void Workstation::ScrollTenths(int tenths) {
  Act([&] { view.ScrollTenths(tenths); });
}

void Workstation::Zoom(bool out) {
  Act([&] { view.ZoomKey(out); });
}

void Workstation::ZoomAt(Pane pane, int x, bool out, int steps) {
  Act([&] {
    for (int i = 0; i < steps; ++i) view.ZoomAt(pane, x, out);
  });
}

void Workstation::ZoomTo(int start, int end) {
  Act([&] { view.ZoomTo(start, end); });
}

void Workstation::ZoomToSelection() {
  Act([&] { view.ZoomToSelection(); });
}

void Workstation::SetPaneWidth(int width) { view.SetPaneWidth(width); }

void Workstation::SetAnalysisHeight(int height) { view.analysisHeight = height; }

void Workstation::SetLabelsHeight(int height) { view.labelsHeight = height; }

bool Workstation::Key(const std::string& key) {
  const std::string name = key == "t" ? "T" : key;
  if (name == "Escape" && player.playing()) return dispatchCommand(commands::kStopPlaying);
  if (name == "Space")
    return dispatchCommand(player.playing()              ? commands::kStopPlaying
                           : document.selectionDefined() ? commands::kPlaySelection
                                                         : commands::kPlayWhole);
  for (const CommandRow& row : CommandTable())
    if (row.keys == name && dispatchCommand(row.number)) return true;
  bool used = false;
  Act([&] { used = view.Key(key); });
  return used;
}

void Workstation::InputDevicesChanged() {
  states.Tell(Need::Microphone, input_ != nullptr && input_->IsPresent());
}

bool Workstation::MoveCursor() {
  const auto before = std::exchange(view.cursor, player.CursorSample());
  markers.cursor = view.cursor;
  view.FollowPlay(before);
  return player.playing();
}

void Workstation::FollowSelection() {
  FollowSelectedFrames(window, document, frames, lpc);
  FollowSelectedConsonant(window, document, consonant);
}

void Workstation::TellStates() {
  states.Tell(Need::Region, document.activity == Activity::RegionChosen);
  UpdateVowelCommands({document, states, vowels});
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

void Workstation::RenewDerived() {
  pitch.repair.KeepTo(document);
  if (seenSound_ != document.Stamp()) {
    seenSound_ = document.Stamp();
    DropOldResults();
    seenSamples_ = document.samplesVersion;
    view.Reset();
    view.ShowNewSound();
    window.Repaint();
    return;
  }
  if (seenSamples_ == document.samplesVersion) return;
  seenSamples_ = document.samplesVersion;
  if (spectrogram.shown) RedrawSpectrogram(document, spectrogram);
  // Not every change is an edit whose handler repaints: a file that was not taken in may have left its rate.
  window.Repaint();
}

}  // namespace parlowen
