#include "shell/Workstation.h"

#include <algorithm>
#include <string_view>

#include "annotation/AnnotationCommands.h"
#include "base/Files.h"
#include "document/SoundFileCommands.h"
#include "dsp/SignalTables.h"
#include "palatography/NspCommands.h"
#include "shell/CommandTable.h"
#include "spectral/FrameCommands.h"
#include "spectral/SpectrogramCommands.h"
#include "vowel/VowelCommands.h"

namespace parlowen {
namespace {

constexpr int kLeastForAnalysis =
    2000;  // samples that a cut or pasted sound needs for its picture to be made anew

constexpr std::pair<const char*, int> kFunctionKeys[] = {
    {"F1", 270}, {"F5", 220}, {"F6", 170}, {"F7", 180}, {"F8", 210}};

/// Commands that take another sound in or change this one: a play of it ends before they begin.
constexpr int kReplacing[] = {110, 40093, 40078, 40060, 40110, 40116, 272,   40022, 40112, 40104,
                              215, 40001, 40003, 40006, 40007, 40036, 40114, 40115, 40102};
constexpr int kRecordings[] = {272, 40022, 40112};
constexpr int kStopPlay = 40025, kPlaySelection = 160, kPlayWhole = 40023;

/// Menus whose commands are tools: choosing one ends the tool before it. Only the saving of a sound with its
/// annotations stands among them and is none.
bool IsTool(const CommandRow& row) {
  constexpr int kSaveIpa = 40079;
  const Menu menu = row.menu;
  return row.number != kSaveIpa && (menu == Menu::Pitch || menu == Menu::Tone || menu == Menu::Spectrum ||
                                    menu == Menu::Vowel || menu == Menu::Palate);
}

/// Commands that draw into the three lower panes: a chart over them gives way.
bool DrawsInPanes(int command) {
  constexpr int kCommands[] = {170, 180, 190, 200, 205, 210, 220, 40005, 40042, 40066, 40103, 40108};
  return std::find(std::begin(kCommands), std::end(kCommands), command) != std::end(kCommands);
}

/// Palate recordings and two-channel speech share their name's ending; the header chunk tells them apart.
bool IsPalateRecording(const std::string& path) {
  char id[4] = {};
  return InputFile(path).ReadAt(12, id, sizeof id) == sizeof id && std::string_view(id, sizeof id) == "HEDR";
}

}  // namespace

Workstation::Workstation(Window& ownWindow, std::string folder, SoundDevices devices)
    : window(ownWindow),
      view(ownWindow, document, states, spectrogram, pitch.repair, vowels),
      dataFolder(std::move(folder)),
      player(devices.output, ownWindow, document, states),
      recording(devices.input, ownWindow, document, states, recorder),
      input_(devices.input) {
  view.palate = &palate;
  view.annotations = &annotations;
  view.characters = &characters;
  InitSignalTables();
  player.changed = [this] { MoveCursor(); };
  recording.changed = [this] {
    view.recording = recording.running();
    DocumentChanged();
  };
  view.beforeEdit = [this] { player.stopPlayback(); };
  playChannel = [this](Window&, int channel, int start, int end) {
    player.startPlayback(start, end, PlayMode::Forward,
                         (channel == 2 ? document.samples2 : document.samples).data());
  };
  playStretch = [this](Window&, int start, int end) {
    player.startPlayback(start, end, PlayMode::Forward, document.samples.data());
  };
  readTarget = [this](Window& asking, int firstFrame, int frameCount) {
    return ReadPitchTierTarget(asking, document.sampleRate, firstFrame, frameCount);
  };
  InputDevicesChanged();
}

MarkerDesk Workstation::MarkersToExchange() {
  return {document, markers, annotations, [this] { EnsureMarkersRead(document, markers); },
          [this] { ShowMarkers(window, document, markers, playStretch); }};
}

bool Workstation::dispatchCommand(int number) {
  const CommandRow* row = FindCommand(number);
  if (row == nullptr || !states.IsEnabled(number)) return false;
  StopPlayFor(number);
  if (IsTool(*row)) view.EndTool();
  if (DrawsInPanes(number) && view.ChartShown()) document.activity = activities::kWaveform;
  RunCommand(*this, *row);
  DocumentChanged();
  return true;
}

void Workstation::StopPlayFor(int command) {
  if (std::find(std::begin(kReplacing), std::end(kReplacing), command) != std::end(kReplacing))
    player.stopPlayback();
}

void Workstation::OpenFile(const std::string& path) {
  if (recording.running()) return;
  player.stopPlayback();
  if (HasEnding(path, ".vch")) {
    OpenChartFile(window, document, states, vowels, path);
  } else if (HasEnding(path, ".textgrid")) {
    ImportTextGridFile(window, MarkersToExchange(), path);
  } else if (HasEnding(path, ".ipa")) {
    OpenIpaFile(window, document, states, annotations, path);
  } else if (HasEnding(path, ".nsp") && IsPalateRecording(path)) {
    ReadEpgNsp(window, document, states, palate, path);
  } else if (HasEnding(path, ".nsp")) {
    ReadTwoChannelNsp(window, document, states, path);
  } else {
    openPath(window, document, states, path, ChannelMode::One, false);
  }
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
  if (key == "T" || key == "t" || (key == "Escape" && player.playing())) {
    if (!recording.running() && !player.playing()) return false;
    recording.stopRecording();
    player.stopPlayback();
    return true;
  }
  if (key == "Space")
    return dispatchCommand(player.playing()              ? kStopPlay
                           : document.selectionDefined() ? kPlaySelection
                                                         : kPlayWhole);
  for (const auto& [name, command] : kFunctionKeys)
    if (key == name) return dispatchCommand(command);
  const bool used = view.Key(key);
  DocumentChanged();
  return used;
}

void Workstation::InputDevicesChanged() {
  const bool present = input_ != nullptr && input_->IsPresent();
  for (const int command : kRecordings) states.enableCommand(command, present);
}

bool Workstation::MoveCursor() {
  view.cursor = player.CursorSample();
  return player.playing();
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
  UpdateExchangeCommands(document, states, lta, vowels.chart);
  for (const int command : {41010, 41011}) states.enableCommand(command, spectrogram.shown);
}

void Workstation::UpdateDerived() {
  states.enableCommand(40015, document.activity == activities::kRegionChosen);
  UpdateVowelCommands(document, states, vowels);
  if (seenGeneration_ != document.soundGeneration) {
    seenGeneration_ = document.soundGeneration;
    seenSamples_ = document.samplesVersion;
    seenCount_ = document.sampleCount;
    seenEdit_ = EditPlaceOf(document);
    spectrogram = {};
    frames.hasFrame = frames.hasComparison = false;
    consonant.shown = false;
    synthesis = {};
    if (palate.generation != document.soundGeneration) palate = {};
    DropOldMarkers(window, document, markers);
    if (annotations.generation != document.soundGeneration) annotations = {};
    if (characters.generation != document.soundGeneration) characters = {};
    view.Reset();
    window.Repaint();
    return;
  }
  if (seenSamples_ == document.samplesVersion) return;
  seenSamples_ = document.samplesVersion;
  FollowEdit({markers, annotations, characters}, seenEdit_, document);
  seenEdit_ = EditPlaceOf(document);
  if (markers.windowOpen) window.Repaint();
  const bool resized = seenCount_ != document.sampleCount;
  seenCount_ = document.sampleCount;
  if (!spectrogram.shown) return;
  if (resized && document.sampleCount < kLeastForAnalysis) {
    spectrogram = {};
  } else {
    RedrawSpectrogram(document, spectrogram);
  }
  window.Repaint(Pane::Analysis);
}

}  // namespace parlowen
