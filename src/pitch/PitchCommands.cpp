#include "pitch/PitchCommands.h"

#include <algorithm>
#include <vector>

#include "base/Files.h"
#include "base/Format.h"
#include "base/Gbk.h"
#include "pitch/PitchAnalysis.h"
#include "pitch/PitchFile.h"
#include "spectral/SpectrogramCommands.h"
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kHarmonicStatus = "谐波号=%d";
constexpr UiText kAgainTitle = "再求一次音高";
constexpr UiText kRangeLabels[] = {"自动", "144--600 Hz", "96--400 Hz", "64--280 Hz"};
constexpr int kFirstRangeButton = 1010;

constexpr int kShortestSegment = 200;  // samples: below there is no contour to keep
constexpr UiText kSaveTitle = "保存基频数据文件", kOpenTitle = "打开基频数据文件";
constexpr UiText kNoPitchFile = "无基频数据文件！";
// Five hours of contour. A longer file is none, and its listing would fill the memory.
constexpr std::size_t kLongestPitchFile = std::size_t{8} << 20;

constexpr const char* kPitchListing = "Pitch.txt";

constexpr UiText kHarmonicsHint =
    "左键：沿谐波描点，右键：结束；1–9：谐波号；右键拖动：选帧，D：清音，↑↓：加倍／减半，R：复原；Z：撤消；Es"
    "c：退出";
constexpr UiText kCepstrumHint =
    "左键：沿倒谱峰描点，右键：结束；右键拖动：选帧，D：清音，↑↓：加倍／减半，R：复原；Z：撤消；Esc：退出";
constexpr UiText kOnlyVoiced = "只能修改浊音段";

FileDialog PitchFileDialog(UiText title) {
  constexpr const FileKind& kKind = FileKindNamed("pdt");
  return {title, {kKind}, kKind.extension};
}

PitchProgress ProgressOf(Window& window) {
  return [&window](double share) { return window.Progress(share); };
}

void ContourIsThere(Window& window, SoundDocument& document, CommandStates& states) {
  window.Progress(1.0);
  states.onContourChanged(document.SelectionFacts());
  window.Repaint();
}

/// The whole sound again; false, and nothing changed, when there is no frame or it was stopped.
bool AnalyseAll(Window& window, SoundDocument& document, CommandStates& states,
                const PitchAnalysisRequest& request) {
  const int frames = document.ContourLength();
  if (frames == 0) return false;
  std::vector<float> periods;
  if (!RunPitchAnalysis(document, 0, document.sampleCount, request, {0, frames - 1}, periods,
                        ProgressOf(window)))
    return false;
  periods.resize(kContourFrames, kUnvoiced);
  document.TakePeriods(0, periods);
  ContourIsThere(window, document, states);
  return true;
}

bool AnalyseSelection(Window& window, SoundDocument& document, CommandStates& states,
                      const PitchAnalysisRequest& request) {
  const int start = document.selectionStart, length = document.SelectionLength();
  const FrameSpan frames{
      FrameOfSample(start, document.sampleRate),
      std::min(FrameOfSample(start + length - 1, document.sampleRate), document.ContourLength() - 1)};
  if (frames.last < frames.first) return false;
  std::vector<float> periods;
  if (!RunPitchAnalysis(document, start, length, request, frames, periods, ProgressOf(window))) return false;
  document.TakePeriods(frames.first, periods);
  ContourIsThere(window, document, states);
  return true;
}

/// Reports what a step of the repair came to.
void Repaired(Window& window, bool changed) {
  if (!changed) return window.ShowStatus(kOnlyVoiced);
  window.Repaint();
}

}  // namespace

bool PitchCommand(Window& window, SoundDocument& document, CommandStates& states, const PitchState& state) {
  return AnalyseAll(window, document, states, {state.range, true, true, state.paneWidth});
}

bool PitchByCorrelationCommand(Window& window, SoundDocument& document, CommandStates& states,
                               const PitchState& state) {
  return AnalyseAll(window, document, states, {state.range, false, true, state.paneWidth});
}

bool PitchAgainCommand(Window& window, SoundDocument& document, CommandStates& states, PitchState& state) {
  InputForm form{kAgainTitle, {}};
  for (int i = 0; i < 4; ++i) {
    FormField button;
    button.control = kFirstRangeButton + i;
    button.kind = FieldKind::Radio;
    button.label = kRangeLabels[i];
    button.checked = i == static_cast<int>(state.range);
    form.fields.push_back(std::move(button));
  }
  if (!window.AskInput(form)) return false;
  const int chosen = form.CheckedIndex();
  if (chosen < 0) return false;
  const PitchAnalysisRequest request{static_cast<PitchRange>(chosen), true, true, state.paneWidth};
  const bool done = document.selectionDefined() ? AnalyseSelection(window, document, states, request)
                                                : AnalyseAll(window, document, states, request);
  if (done) state.range = request.range;  // stopped: the setting stays with the contour it made
  return done;
}

void SavePitchSegment(Window& window, const SoundDocument& document) {
  if (document.SelectionLength() < kShortestSegment) return;
  const auto choice = window.AskSaveFile(PitchFileDialog(kSaveTitle));
  if (!choice) {
    window.Repaint();
    return;
  }
  const auto restart = window.AskBeforeWriting(messages::kRestartOrAppend, messages::kRestartOrAppendCaption);
  if (!restart) return;
  ByteWriter record;
  const FrameSpan frames =
      RecordedFrames(document.selectionStart, document.selectionEnd, document.sampleRate);
  if (!WritePitchRecord(record, document, document.selectionStart, frames)) return;
  const int result =
      *restart ? SaveFile(window, choice->path, record) : SaveBehindFile(window, choice->path, record);
  if (result < 0) window.Notify(*restart ? messages::kCannotCreate : messages::kNoSuchFile, Icon::Error);
}

std::string PitchListingPath(const std::string& exportFolder) {
  return AbsolutePath(exportFolder.empty() ? std::string(kPitchListing) : exportFolder + "/" + kPitchListing);
}

std::optional<std::vector<std::uint8_t>> AskPitchFile(Window& window) {
  const auto choice = window.AskOpenFile(PitchFileDialog(kOpenTitle));
  if (!choice) {
    window.Repaint();
    return {};
  }
  const InputFile file(choice->path);
  const bool tooLong = file.isOpen() && file.size() > static_cast<std::int64_t>(kLongestPitchFile);
  auto bytes = ReadWholeFile(choice->path, kLongestPitchFile);
  if (!bytes) window.Notify(tooLong ? kBadPitchFile : kNoPitchFile, Icon::Error);
  return bytes;
}

int ListPitchFile(Window& window, const SoundDocument& document, const std::string& exportFolder) {
  const auto bytes = AskPitchFile(window);
  if (!bytes) return 1;
  FileReplacement listing;
  if (listing.Begin(PitchListingPath(exportFolder)) < 0) {
    window.Notify(messages::kCannotOpenListing, Icon::Error);
    return 1;
  }
  std::vector<PitchRecord> records;
  const PitchFileEnd end = ReadPitchRecords(*bytes, records);
  std::string gbk;
  for (std::size_t i = 0; i < records.size(); ++i)
    gbk += ToGbk(PitchListing(records[i], static_cast<int>(i) + 1, document.sampleRate));
  if (end == PitchFileEnd::Broken) window.Notify(kBadPitchFile, Icon::Error);
  if (listing.Commit({reinterpret_cast<const std::uint8_t*>(gbk.data()), gbk.size()}) < 0) {
    window.Notify(messages::kCannotOpenListing, Icon::Error);
    return 1;
  }
  window.Saved(PitchListingPath(exportFolder));
  return end == PitchFileEnd::Complete ? 0 : 1;
}

bool RepairPitchCommand(Window& window, SoundDocument& document, SpectrogramState& spectrogram,
                        PitchState& state, SpectrogramKind kind) {
  if (!document.pitchPresent) return window.Refuse(messages::kNoContour);
  if (!document.selectionDefined()) {
    window.ShowStatus(messages::kMarkFirst);
    return false;
  }
  state.repair = {};
  if (kind == SpectrogramKind::Cepstrum) state.repair.rows = RepairRows::Quefrencies;
  SpectrogramCommand(window, document, spectrogram, kind);
  document.activity = Activity::PitchRepair;
  window.ShowStatus(RepairHint(state.repair));
  window.Repaint();
  return true;
}

UiText RepairHint(const PitchRepair& repair) {
  return repair.rows == RepairRows::Quefrencies ? kCepstrumHint : kHarmonicsHint;
}

void RepairClick(Window& window, SoundDocument& document, PitchRepair& repair, RepairPoint point,
                 MouseButton button) {
  repair.KeepTo(document);
  repair.pointer = point;
  if (button == MouseButton::Left) return Repaired(window, TracePoint(document, repair, point));
  // The right button ends a trace; without one it marks frames, as the two ends of a drag do.
  if (repair.lastPoint) {
    repair.lastPoint.reset();
  } else {
    MarkRepairFrame(repair, point.frame);
  }
  window.Repaint();
}

void RepairMark(Window& window, const SoundDocument& document, PitchRepair& repair, int firstFrame,
                int lastFrame) {
  repair.KeepTo(document);
  repair.lastPoint.reset();
  repair.markStart = firstFrame;
  MarkRepairFrame(repair, lastFrame);
  window.Repaint();
}

bool RepairKey(Window& window, SoundDocument& document, PitchRepair& repair, const std::string& key) {
  repair.KeepTo(document);
  if (key.size() == 1 && key[0] >= '1' && key[0] <= '9') {
    if (repair.rows == RepairRows::Quefrencies) return true;  // there the row is the period itself
    repair.harmonic = key[0] - '0';
    repair.lastPoint.reset();
    window.ShowStatus(Format(kHarmonicStatus.Get(), repair.harmonic));
    window.Repaint();
  } else if (key == "D" || key == "d") {
    Repaired(window, UnvoiceMarked(document, repair));
  } else if (key == "Up") {
    Repaired(window, ScaleMarked(document, repair, 2.0));
  } else if (key == "Down") {
    Repaired(window, ScaleMarked(document, repair, 0.5));
  } else if (key == "R" || key == "r") {
    Repaired(window, RestoreMarked(document, repair));
  } else if (key == "Z" || key == "z") {
    if (UndoRepair(document, repair)) window.Repaint();
  } else {
    return false;
  }
  return true;
}

}  // namespace parlowen
