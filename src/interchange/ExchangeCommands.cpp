#include "interchange/ExchangeCommands.h"

#include <utility>

#include "base/Files.h"
#include "base/Format.h"
#include "channels/ChannelFiles.h"
#include "interchange/AnalysisTables.h"
#include "interchange/FormantObject.h"
#include "interchange/LabelTrack.h"
#include "interchange/MarkerTiers.h"
#include "interchange/PitchObjects.h"
#include "interchange/ProsodyTables.h"
#include "interchange/StatisticsTables.h"
#include "interchange/TextDecoding.h"
#include "prosody/DurationCommands.h"
#include "ui/Saving.h"
#include "vowel/VowelGroupCommands.h"

namespace parlowen {
namespace {

constexpr const char* kBadSaveName = "文件夹或文件名不对，请重选";
constexpr const char* kBadNameCaption = "文件夹或文件名错误";
constexpr const char* kNoSound = "请先打开声音文件！";
constexpr const char* kNoMarkers = "没有标志，不能导出！";
constexpr const char* kNoLabels = "没有标注文字，不能导出！";
constexpr const char* kNoContour = "请先求出基频！";
constexpr const char* kNoVoice = "没有浊音段，不能导出！";
constexpr const char* kMarkFirst = "请先用鼠标左、右键选定语音段";
constexpr const char* kTooShort = "语音段太短，请重新选定！";
constexpr const char* kReadAsGbk = "文件不是Unicode编码，已按GBK读入";
constexpr const char* kNoTiers = "TextGrid文件中没有层！";
constexpr const char* kNoTrackLabels = "标签轨文件中没有标签！";
constexpr const char* kNoPitchPoints = "PitchTier文件中没有基频点！";
constexpr int kPitchCeiling = 600;  // Hz, of a Pitch object

std::string NoSuchFile(const char* kind) { return Format("无此%s文件！", kind); }
std::string NotThatKind(const char* kind) { return Format("不是%s文件！", kind); }
std::string DamagedFile(const char* kind) { return Format("%s文件数据错误！", kind); }

constexpr const FileKind &kTextGrid = FileKindNamed("TextGrid"), &kPitchTier = FileKindNamed("PitchTier"),
                         &kPitch = FileKindNamed("Pitch"), &kFormant = FileKindNamed("Formant"),
                         &kTrack = FileKindNamed("label track"), &kCsv = FileKindNamed("csv"),
                         &kWav = FileKindNamed("saved wav");

/// "/a/b.wav" with "_f0" and "csv": "/a/b_f0.csv"; "" of a sound that has no file.
std::string NameBeside(const std::string& path, const char* ending, const char* extension) {
  if (path.empty()) return {};
  const std::size_t name = path.rfind('/') + 1, dot = path.rfind('.');
  const std::string stem = dot != std::string::npos && dot > name ? path.substr(0, dot) : path;
  return stem + ending + "." + extension;
}

std::optional<std::string> AskSave(Window& window, const char* title, const FileKind& kind,
                                   const std::string& source, const char* ending = "") {
  const auto choice =
      window.AskSaveFile({title, {kind}, kind.extension, NameBeside(source, ending, kind.extension)});
  if (!choice || choice->path.empty()) return {};
  return choice->path;
}

std::optional<std::string> AskOpen(Window& window, const char* title, const FileKind& kind) {
  const auto choice = window.AskOpenFile({title, {kind}});
  if (!choice || choice->path.empty()) return {};
  return choice->path;
}

bool Write(Window& window, const std::string& path, ByteSpan bytes) {
  if (SaveFile(window, path, bytes) == 0) return true;
  window.ShowError(kBadSaveName, kBadNameCaption);
  return false;
}

bool Write(Window& window, const std::string& path, const std::string& text) {
  return Write(window, path, ByteSpan(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

/// The text of a file; nothing when it cannot be read or is too large, with its message.
std::optional<DecodedText> ReadText(Window& window, const std::string& path, const char* kind) {
  const auto bytes = ReadWholeFile(path, kLargestTextFile);
  if (!bytes) {
    window.ShowError(NoSuchFile(kind));
    return {};
  }
  return DecodeText(*bytes);
}

void SayHowItWasRead(Window& window, const DecodedText& text) {
  if (text.fromGbk) window.Notify(kReadAsGbk, Icon::Info);
}

bool HasSound(const SoundDocument& document) { return document.sampleCount > 0 && document.sampleRate > 0; }

bool RequireSound(Window& window, const SoundDocument& document) {
  if (!HasSound(document)) window.Notify(kNoSound);
  return HasSound(document);
}

bool RequireContour(Window& window, const SoundDocument& document) {
  if (!document.pitchPresent) window.Notify(kNoContour);
  return document.pitchPresent;
}

// --- Markers

/// The set of the present sound.
const MarkerSet& PresentMarkers(const MarkerDesk& desk) {
  static const MarkerSet kNone;
  desk.ensureRead();
  return desk.markers.sound == desk.document.Stamp() ? desk.markers.set : kNone;
}

const std::vector<Annotation>& PresentAnnotations(const MarkerDesk& desk) {
  static const std::vector<Annotation> kNone;
  return desk.annotations.sound == desk.document.Stamp() ? desk.annotations.items : kNone;
}

template <typename Counts>
int Sum(const Counts& counts) {
  int sum = 0;
  for (const auto count : counts) sum += count;
  return sum;
}

std::string LossLines(const ImportLosses& losses) {
  const std::pair<int, const char*> lines[] = {
      {losses.tiers, "没有读入的层（标志带只有4个）：%d"},
      {losses.outside, "没有读入的声音之外的段和点：%d"},
      {losses.markers, "没有读入的标志（每带最多20个）：%d"},
      {losses.labels, "没有读入的标注文字（每带最多20个，段的两端是相邻的标志）：%d"},
      {losses.annotations, "没有读入的注释字符（最多500个）：%d"},
      {losses.shortened, "截短的文字（标注文字最长12字符，注释字符最长9字符）：%d"},
      {losses.recoded, "有字符没有GBK编码、写成“?”的文字：%d"},
  };
  std::string text;
  for (const auto& [count, line] : lines)
    if (count > 0) {
      std::string whole(line);
      whole.replace(whole.find("%d"), 2, std::to_string(count));
      text += (text.empty() ? "" : "\n") + whole;
    }
  return text;
}

void TakeImport(Window& window, const MarkerDesk& desk, ImportedMarkers imported) {
  std::string report = "已读入：";
  if (imported.hasBands) {
    report += Format("标志 %d，标注文字 %d", Sum(imported.set.markerCount), Sum(imported.set.labelCount));
    desk.markers.set = std::move(imported.set);
    desk.markers.sound = desk.document.Stamp();
    desk.markers.changed = true;
  }
  if (imported.hasAnnotations) {
    report +=
        Format("%s注释字符 %d", imported.hasBands ? "，" : "", static_cast<int>(imported.annotations.size()));
    desk.annotations.items = std::move(imported.annotations);
    desk.annotations.sound = desk.document.Stamp();
    desk.annotations.changed = true;
  }
  window.Repaint();
  window.ShowStatus(report);
  if (const std::string lost = LossLines(imported.losses); !lost.empty()) window.Notify(lost, Icon::Warning);
  if (imported.hasBands) desk.show();
}

void SayLosses(Window& window, const ExportLosses& losses) {
  std::string text;
  if (losses.joined > 0) text = Format("同一处的文字用空格连接：%d", losses.joined);
  if (losses.leftOut > 0)
    text += Format("%s没有写出的标志和文字：%d", text.empty() ? "" : "\n", losses.leftOut);
  if (!text.empty()) window.Notify(text, Icon::Warning);
}

// --- Analyses

/// The formants of the selection; nothing when there is none or it is too short, with its message.
std::optional<VowelTrack> FormantsToExport(Window& window, const SoundDocument& document) {
  if (!document.selectionDefined()) {
    window.ShowStatus(kMarkFirst);
    return {};
  }
  if (document.SelectionLength() < document.sampleRate / 100) {
    window.Notify(kTooShort);
    return {};
  }
  return SelectionTrack(document);
}

template <typename MakeTable>
void ExportGroups(Window& window, const GroupKind& kind, const char* title, const MakeTable& makeTable) {
  // The name of the file is a part of the table and of its proposed name.
  const auto source = window.AskOpenFile(kind.dialog);
  if (!source || source->path.empty()) return;
  const auto groups = ReadGroupsOf(window, kind, source->path);
  if (!groups) return;
  if (const auto path = AskSave(window, title, kCsv, source->path))
    Write(window, *path, makeTable(*groups, source->path));
}

}  // namespace

void ImportTextGridCommand(Window& window, const MarkerDesk& desk) {
  if (!RequireSound(window, desk.document)) return;
  if (const auto path = AskOpen(window, "导入TextGrid文件", kTextGrid))
    ImportTextGridFile(window, desk, *path);
}

void ImportTextGridFile(Window& window, const MarkerDesk& desk, const std::string& path) {
  if (!RequireSound(window, desk.document)) return;
  const auto text = ReadText(window, path, "TextGrid");
  if (!text) return;
  GridFault fault = GridFault::None;
  const auto grid = ReadTextGrid(text->text, fault);
  if (!grid)
    return window.ShowError(fault == GridFault::NoTextGrid ? NotThatKind("TextGrid")
                                                           : DamagedFile("TextGrid"));
  if (grid->tiers.empty()) return window.ShowError(kNoTiers);
  SayHowItWasRead(window, *text);
  TakeImport(window, desk, MarkersOfGrid(*grid, desk.document.sampleCount, desk.document.sampleRate));
}

void ExportTextGridCommand(Window& window, const MarkerDesk& desk) {
  const SoundDocument& document = desk.document;
  if (!RequireSound(window, document)) return;
  const auto path = AskSave(window, "导出TextGrid文件", kTextGrid, document.filePath);
  if (!path) return;
  ExportLosses losses;
  const TextGrid grid = GridOfMarkers(PresentMarkers(desk), PresentAnnotations(desk), document.sampleCount,
                                      document.sampleRate, losses);
  if (Write(window, *path, TextGridText(grid))) SayLosses(window, losses);
}

void ImportLabelTrackCommand(Window& window, const MarkerDesk& desk) {
  if (!RequireSound(window, desk.document)) return;
  const auto path = AskOpen(window, "导入标签轨", kTrack);
  if (!path) return;
  const auto text = ReadText(window, *path, "标签轨");
  if (!text) return;
  int badLine = 0;
  const std::vector<TrackLabel> labels = ReadLabelTrack(text->text, badLine);
  if (badLine > 0) return window.ShowError(Format("标签轨文件第%d行数据错误！", badLine));
  if (labels.empty()) return window.ShowError(kNoTrackLabels);
  SayHowItWasRead(window, *text);
  TakeImport(window, desk, MarkersOfTrack(labels, desk.document.sampleCount, desk.document.sampleRate));
}

void ExportLabelTrackCommand(Window& window, const MarkerDesk& desk) {
  if (!RequireSound(window, desk.document)) return;
  const std::vector<TrackLabel> labels = TrackOfMarkers(PresentMarkers(desk), desk.document.sampleRate);
  if (labels.empty()) return window.Notify(kNoLabels);
  const auto path = AskSave(window, "导出标签轨", kTrack, desk.document.filePath);
  if (path) Write(window, *path, LabelTrackText(labels));
}

void ExportMarkersCsvCommand(Window& window, const MarkerDesk& desk) {
  if (!RequireSound(window, desk.document)) return;
  const MarkerSet& markers = PresentMarkers(desk);
  if (!markers.HasMarkers() && Sum(markers.labelCount) == 0) return window.Notify(kNoMarkers);
  const auto path = AskSave(window, "导出标志和标注", kCsv, desk.document.filePath, "_markers");
  if (path) Write(window, *path, MarkersCsv(markers, desk.document));
}

void ExportPitchTierCommand(Window& window, const SoundDocument& document) {
  if (!RequireContour(window, document)) return;
  const PitchTier tier = PitchTierOf(document);
  if (tier.points.empty()) return window.Notify(kNoVoice);
  const auto path = AskSave(window, "导出PitchTier文件", kPitchTier, document.filePath);
  if (path) Write(window, *path, PitchTierText(tier));
}

void ExportPitchCommand(Window& window, const SoundDocument& document, PitchRange range) {
  if (!RequireContour(window, document)) return;
  const auto path = AskSave(window, "导出Pitch文件", kPitch, document.filePath);
  if (path) Write(window, *path, PitchText(document, std::max(kPitchCeiling, BoundsOf(range).highest)));
}

void ExportFormantCommand(Window& window, const SoundDocument& document) {
  const auto track = FormantsToExport(window, document);
  if (!track) return;
  const auto path = AskSave(window, "导出Formant文件", kFormant, document.filePath);
  if (path) Write(window, *path, FormantText(document, *track));
}

void ExportPitchCsvCommand(Window& window, const SoundDocument& document, PitchRange range) {
  if (!RequireContour(window, document)) return;
  const auto path = AskSave(window, "导出基频数据", kCsv, document.filePath, "_f0");
  if (path) Write(window, *path, PitchCsv(document, range));
}

void ExportLevelsCsvCommand(Window& window, const SoundDocument& document) {
  if (!RequireSound(window, document)) return;
  const auto path = AskSave(window, "导出幅度能量数据", kCsv, document.filePath, "_level");
  if (path) Write(window, *path, LevelsCsv(document));
}

void ExportFormantsCsvCommand(Window& window, const SoundDocument& document) {
  const auto track = FormantsToExport(window, document);
  if (!track) return;
  const auto path = AskSave(window, "导出共振峰数据", kCsv, document.filePath, "_formants");
  if (path) Write(window, *path, FormantsCsv(document, *track));
}

void ExportLtaCsvCommand(Window& window, const LtaState& lta) {
  if (lta.frames == 0 || !IsFinite(lta.levels)) return;
  const auto path = AskSave(window, "导出LTA谱数据", kCsv, lta.soundPath, "_lta");
  if (path) Write(window, *path, LtaCsv(lta));
}

void ExportVowelChartCsvCommand(Window& window, const SoundDocument& document, const VowelChart& chart) {
  if (chart.count < 1) return;
  const auto path = AskSave(window, "导出元音图数据", kCsv, document.filePath, "_vowels");
  if (path) Write(window, *path, VowelChartCsv(chart, document));
}

void ExportGlottalCsvCommand(Window& window, const SoundDocument& document, const GlottalState& glottal) {
  if (!glottal.shown) return;
  const auto path = AskSave(window, "导出声门波数据", kCsv, document.filePath, "_glottal");
  if (path) Write(window, *path, GlottalCsv(glottal.wave, document.filePath));
}

void ExportDurationsCsvCommand(Window& window, const SoundDocument& document) {
  ExportGroups(
      window, DurationKind(), "音长统计数据转为CSV",
      [&](const auto& groups, const std::string& file) { return DurationsCsv(groups, file, document); });
}

void ExportVowelGroupsCsvCommand(Window& window, const SoundDocument& document) {
  ExportGroups(
      window, VowelGroupKind(), "元音统计数据转为CSV",
      [&](const auto& groups, const std::string& file) { return VowelGroupsCsv(groups, file, document); });
}

void ExportTonesCsvCommand(Window& window, const SoundDocument& document, const ToneState& tones) {
  if (tones.items.empty()) return;
  const auto path = AskSave(window, "导出声调统计数据", kCsv, tones.path);
  if (path) Write(window, *path, TonesCsv(tones, document));
}

void ExportIntonationCsvCommand(Window& window, const SoundDocument& document, const IntonationState& state) {
  if (!state.result) return;
  const auto path = AskSave(window, "导出语调数据", kCsv, document.filePath, "_intonation");
  if (path) Write(window, *path, IntonationCsv(*state.result, document));
}

void ExportIntonationTierCommand(Window& window, const SoundDocument& document,
                                 const IntonationState& state) {
  if (!state.result) return;
  const auto path = AskSave(window, "导出语调目标", kPitchTier, document.filePath, "_target");
  if (path) Write(window, *path, PitchTierText(IntonationTier(*state.result, document)));
}

void ExportStereoWavCommand(Window& window, const SoundDocument& document) {
  if (!document.twoChannel) return;
  const auto path = AskSave(window, "导出立体声WAV", kWav, document.filePath, "_stereo");
  if (path) Write(window, *path, StereoWavBytesOf(document));
}

void ExportPalateCsvCommand(Window& window, const SoundDocument& document, const PalateState& palate) {
  if (TimingOf(palate, document).frames < 1) return;
  const auto path = AskSave(window, "导出腭位数据", kCsv, document.filePath, "_palate");
  if (path) Write(window, *path, PalateCsv(palate, document));
}

std::optional<TargetCurve> ReadPitchTierTarget(Window& window, int sampleRate, int firstFrame,
                                               int frameCount) {
  const auto path = AskOpen(window, "打开PitchTier文件", kPitchTier);
  const auto text = path ? ReadText(window, *path, "PitchTier") : std::nullopt;
  if (!text) return {};
  PitchTierFault fault = PitchTierFault::None;
  const auto tier = ReadPitchTier(text->text, fault);
  if (!tier) {
    window.ShowError(fault == PitchTierFault::NoPitchTier ? NotThatKind("PitchTier")
                     : fault == PitchTierFault::Damaged   ? DamagedFile("PitchTier")
                                                          : kNoPitchPoints);
    return {};
  }
  SayHowItWasRead(window, *text);
  return TargetOf(*tier, sampleRate, firstFrame, frameCount);
}

}  // namespace parlowen
