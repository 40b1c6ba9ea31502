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
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"
#include "vowel/VowelGroupCommands.h"

namespace parlowen {
namespace {

constexpr UiText kLostTiers = "没有读入的层（标志带只有4个）：%d";
constexpr UiText kLostOutside = "没有读入的声音之外的段和点：%d";
constexpr UiText kLostMarkers = "没有读入的标志（每带最多20个）：%d";
constexpr UiText kLostLabels = "没有读入的标注文字（每带最多20个，段的两端是相邻的标志）：%d";
constexpr UiText kLostAnnotations = "没有读入的注释字符（最多500个）：%d";
constexpr UiText kShortenedTexts = "截短的文字（标注文字最长12字符，注释字符最长9字符）：%d";
constexpr UiText kRecodedTexts = "有字符没有GBK编码、写成“?”的文字：%d";
constexpr UiText kJoinedTexts = "同一处的文字用空格连接：%d";
constexpr UiText kImportGridTitle = "导入TextGrid文件";
constexpr UiText kExportGridTitle = "导出TextGrid文件";
constexpr UiText kImportTrackTitle = "导入标签轨";
constexpr UiText kExportTrackTitle = "导出标签轨";
constexpr UiText kExportMarkersTitle = "导出标志和标注";
constexpr UiText kExportTierTitle = "导出PitchTier文件";
constexpr UiText kExportPitchTitle = "导出Pitch文件";
constexpr UiText kExportFormantTitle = "导出Formant文件";
constexpr UiText kExportPitchCsvTitle = "导出基频数据";
constexpr UiText kExportLevelsTitle = "导出幅度能量数据";
constexpr UiText kExportFormantsTitle = "导出共振峰数据";
constexpr UiText kExportLtaTitle = "导出LTA谱数据";
constexpr UiText kExportChartTitle = "导出元音图数据";
constexpr UiText kExportGlottalTitle = "导出声门波数据";
constexpr UiText kDurationsTitle = "音长统计数据转为CSV";
constexpr UiText kVowelGroupsTitle = "元音统计数据转为CSV";
constexpr UiText kExportTonesTitle = "导出声调统计数据";
constexpr UiText kExportIntonationTitle = "导出语调数据";
constexpr UiText kExportTargetTitle = "导出语调目标";
constexpr UiText kExportPalateTitle = "导出腭位数据";
constexpr UiText kOpenTierTitle = "打开PitchTier文件";
constexpr UiText kBadTrackLine = "标签轨文件第%d行数据错误！";
constexpr UiText kNoSound = "请先打开声音文件！";
constexpr UiText kNoMarkers = "没有标志，不能导出！";
constexpr UiText kNoLabels = "没有标注文字，不能导出！";
constexpr UiText kNoVoice = "没有浊音段，不能导出！";
constexpr UiText kTooShort = "语音段太短，请重新选定！";
constexpr UiText kReadAsGbk = "文件不是Unicode编码，已按GBK读入";
constexpr UiText kNoTiers = "TextGrid文件中没有层！";
constexpr UiText kNoTrackLabels = "标签轨文件中没有标签！";
constexpr UiText kNoPitchPoints = "PitchTier文件中没有基频点！";
constexpr UiText kNoSuchFile = "无此%s文件！", kNotThatKind = "不是%s文件！",
                 kDamagedFile = "%s文件数据错误！";
constexpr UiText kGridName = "TextGrid", kTrackName = "标签轨", kTierName = "PitchTier";
constexpr UiText kReadBands = "已读入：标志 %d，标注文字 %d", kReadAnnotations = "已读入：注释字符 %d";
constexpr UiText kReadBoth = "已读入：标志 %d，标注文字 %d，注释字符 %d", kReadNothing = "已读入：";
constexpr UiText kLeftOut = "没有写出的标志和文字：%d";
constexpr int kPitchCeiling = 600;  // Hz, of a Pitch object

std::string NoSuchFile(UiText kind) { return Format(kNoSuchFile.Get(), kind.Get()); }
std::string NotThatKind(UiText kind) { return Format(kNotThatKind.Get(), kind.Get()); }
std::string DamagedFile(UiText kind) { return Format(kDamagedFile.Get(), kind.Get()); }

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

std::optional<std::string> AskSave(Window& window, UiText title, const FileKind& kind,
                                   const std::string& source, const char* ending = "") {
  const auto choice =
      window.AskSaveFile({title, {kind}, kind.extension, NameBeside(source, ending, kind.extension)});
  if (!choice || choice->path.empty()) return {};
  return choice->path;
}

std::optional<std::string> AskOpen(Window& window, UiText title, const FileKind& kind) {
  const auto choice = window.AskOpenFile({title, {kind}});
  if (!choice || choice->path.empty()) return {};
  return choice->path;
}

bool Write(Window& window, const std::string& path, ByteSpan bytes) {
  if (SaveFile(window, path, bytes) == 0) return true;
  window.ShowError(messages::kBadSaveName, messages::kBadNameCaption);
  return false;
}

bool Write(Window& window, const std::string& path, const std::string& text) {
  return Write(window, path, ByteSpan(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

/// The text of a file; nothing when it cannot be read or is too large, with its message.
std::optional<DecodedText> ReadText(Window& window, const std::string& path, UiText kind) {
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
  if (!document.pitchPresent) window.Notify(messages::kNoContour);
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
  const std::pair<int, UiText> lines[] = {
      {losses.tiers, kLostTiers},
      {losses.outside, kLostOutside},
      {losses.markers, kLostMarkers},
      {losses.labels, kLostLabels},
      {losses.annotations, kLostAnnotations},
      {losses.shortened, kShortenedTexts},
      {losses.recoded, kRecodedTexts},
  };
  std::string text;
  for (const auto& [count, line] : lines)
    if (count > 0) text += (text.empty() ? "" : "\n") + Format(line.Get(), count);
  return text;
}

std::string ImportReport(const ImportedMarkers& imported) {
  const int markers = Sum(imported.set.markerCount), labels = Sum(imported.set.labelCount);
  const int characters = static_cast<int>(imported.annotations.size());
  if (imported.hasBands && imported.hasAnnotations)
    return Format(kReadBoth.Get(), markers, labels, characters);
  if (imported.hasBands) return Format(kReadBands.Get(), markers, labels);
  if (imported.hasAnnotations) return Format(kReadAnnotations.Get(), characters);
  return kReadNothing;
}

void TakeImport(Window& window, const MarkerDesk& desk, ImportedMarkers imported) {
  const std::string report = ImportReport(imported);
  if (imported.hasBands) {
    desk.markers.set = std::move(imported.set);
    desk.markers.sound = desk.document.Stamp();
    desk.markers.changed = true;
  }
  if (imported.hasAnnotations) {
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
  if (losses.joined > 0) text = Format(kJoinedTexts.Get(), losses.joined);
  if (losses.leftOut > 0) text += (text.empty() ? "" : "\n") + Format(kLeftOut.Get(), losses.leftOut);
  if (!text.empty()) window.Notify(text, Icon::Warning);
}

// --- Analyses

/// The formants of the selection; nothing when there is none or it is too short, with its message.
std::optional<VowelTrack> FormantsToExport(Window& window, const SoundDocument& document) {
  if (!document.selectionDefined()) {
    window.ShowStatus(messages::kMarkFirst);
    return {};
  }
  if (document.SelectionLength() < document.sampleRate / 100) {
    window.Notify(kTooShort);
    return {};
  }
  return SelectionTrack(document);
}

template <typename MakeTable>
void ExportGroups(Window& window, const GroupKind& kind, UiText title, const MakeTable& makeTable) {
  // The name of the file is a part of the table and of its proposed name.
  const auto source = window.AskOpenFile(kind.dialog);
  if (!source || source->path.empty()) return;
  const auto groups = ReadGroupsOf(window, kind, source->path);
  if (!groups) return;
  if (const auto path = AskSave(window, title, kCsv, source->path))
    Write(window, *path, makeTable(*groups, source->path));
}

}  // namespace

const MarkerSet& MarkersOf(const MarkerDesk& desk) { return PresentMarkers(desk); }

std::optional<std::string> AskCsvPath(Window& window, UiText title, const std::string& source,
                                      const char* ending) {
  return AskSave(window, title, kCsv, source, ending);
}

void ImportTextGridCommand(Window& window, const MarkerDesk& desk) {
  if (!RequireSound(window, desk.document)) return;
  if (const auto path = AskOpen(window, kImportGridTitle, kTextGrid)) ImportTextGridFile(window, desk, *path);
}

void ImportTextGridFile(Window& window, const MarkerDesk& desk, const std::string& path) {
  if (!RequireSound(window, desk.document)) return;
  const auto text = ReadText(window, path, kGridName);
  if (!text) return;
  GridFault fault = GridFault::None;
  const auto grid = ReadTextGrid(text->text, fault);
  if (!grid)
    return window.ShowError(fault == GridFault::NoTextGrid ? NotThatKind(kGridName) : DamagedFile(kGridName));
  if (grid->tiers.empty()) return window.ShowError(kNoTiers);
  SayHowItWasRead(window, *text);
  TakeImport(window, desk, MarkersOfGrid(*grid, desk.document.sampleCount, desk.document.sampleRate));
}

void ExportTextGridCommand(Window& window, const MarkerDesk& desk) {
  const SoundDocument& document = desk.document;
  if (!RequireSound(window, document)) return;
  const auto path = AskSave(window, kExportGridTitle, kTextGrid, document.filePath);
  if (!path) return;
  ExportLosses losses;
  const TextGrid grid = GridOfMarkers(PresentMarkers(desk), PresentAnnotations(desk), document.sampleCount,
                                      document.sampleRate, losses);
  if (Write(window, *path, TextGridText(grid))) SayLosses(window, losses);
}

void ImportLabelTrackCommand(Window& window, const MarkerDesk& desk) {
  if (!RequireSound(window, desk.document)) return;
  const auto path = AskOpen(window, kImportTrackTitle, kTrack);
  if (!path) return;
  const auto text = ReadText(window, *path, kTrackName);
  if (!text) return;
  int badLine = 0;
  const std::vector<TrackLabel> labels = ReadLabelTrack(text->text, badLine);
  if (badLine > 0) return window.ShowError(Format(kBadTrackLine.Get(), badLine));
  if (labels.empty()) return window.ShowError(kNoTrackLabels);
  SayHowItWasRead(window, *text);
  TakeImport(window, desk, MarkersOfTrack(labels, desk.document.sampleCount, desk.document.sampleRate));
}

void ExportLabelTrackCommand(Window& window, const MarkerDesk& desk) {
  if (!RequireSound(window, desk.document)) return;
  const std::vector<TrackLabel> labels = TrackOfMarkers(PresentMarkers(desk), desk.document.sampleRate);
  if (labels.empty()) return window.Notify(kNoLabels);
  const auto path = AskSave(window, kExportTrackTitle, kTrack, desk.document.filePath);
  if (path) Write(window, *path, LabelTrackText(labels));
}

void ExportMarkersCsvCommand(Window& window, const MarkerDesk& desk) {
  if (!RequireSound(window, desk.document)) return;
  const MarkerSet& markers = PresentMarkers(desk);
  if (!markers.HasMarkers() && Sum(markers.labelCount) == 0) return window.Notify(kNoMarkers);
  const auto path = AskSave(window, kExportMarkersTitle, kCsv, desk.document.filePath, "_markers");
  if (path) Write(window, *path, MarkersCsv(markers, desk.document));
}

void ExportPitchTierCommand(Window& window, const SoundDocument& document) {
  if (!RequireContour(window, document)) return;
  const PitchTier tier = PitchTierOf(document);
  if (tier.points.empty()) return window.Notify(kNoVoice);
  const auto path = AskSave(window, kExportTierTitle, kPitchTier, document.filePath);
  if (path) Write(window, *path, PitchTierText(tier));
}

void ExportPitchCommand(Window& window, const SoundDocument& document, PitchRange range) {
  if (!RequireContour(window, document)) return;
  const auto path = AskSave(window, kExportPitchTitle, kPitch, document.filePath);
  if (path) Write(window, *path, PitchText(document, std::max(kPitchCeiling, BoundsOf(range).highest)));
}

void ExportFormantCommand(Window& window, const SoundDocument& document) {
  const auto track = FormantsToExport(window, document);
  if (!track) return;
  const auto path = AskSave(window, kExportFormantTitle, kFormant, document.filePath);
  if (path) Write(window, *path, FormantText(document, *track));
}

void ExportPitchCsvCommand(Window& window, const SoundDocument& document, PitchRange range) {
  if (!RequireContour(window, document)) return;
  const auto path = AskSave(window, kExportPitchCsvTitle, kCsv, document.filePath, "_f0");
  if (path) Write(window, *path, PitchCsv(document, range));
}

void ExportLevelsCsvCommand(Window& window, const SoundDocument& document) {
  if (!RequireSound(window, document)) return;
  const auto path = AskSave(window, kExportLevelsTitle, kCsv, document.filePath, "_level");
  if (path) Write(window, *path, LevelsCsv(document));
}

void ExportFormantsCsvCommand(Window& window, const SoundDocument& document) {
  const auto track = FormantsToExport(window, document);
  if (!track) return;
  const auto path = AskSave(window, kExportFormantsTitle, kCsv, document.filePath, "_formants");
  if (path) Write(window, *path, FormantsCsv(document, *track));
}

void ExportLtaCsvCommand(Window& window, const LtaState& lta) {
  if (lta.frames == 0 || !IsFinite(lta.levels)) return;
  const auto path = AskSave(window, kExportLtaTitle, kCsv, lta.soundPath, "_lta");
  if (path) Write(window, *path, LtaCsv(lta));
}

void ExportVowelChartCsvCommand(Window& window, const SoundDocument& document, const VowelChart& chart) {
  if (chart.count < 1) return;
  const auto path = AskSave(window, kExportChartTitle, kCsv, document.filePath, "_vowels");
  if (path) Write(window, *path, VowelChartCsv(chart, document));
}

void ExportGlottalCsvCommand(Window& window, const SoundDocument& document, const GlottalState& glottal) {
  if (!glottal.shown) return;
  const auto path = AskSave(window, kExportGlottalTitle, kCsv, document.filePath, "_glottal");
  if (path) Write(window, *path, GlottalCsv(glottal.wave, document.filePath));
}

void ExportDurationsCsvCommand(Window& window, const SoundDocument& document) {
  ExportGroups(window, DurationKind(), kDurationsTitle, [&](const auto& groups, const std::string& file) {
    return DurationsCsv(groups, file, document);
  });
}

void ExportVowelGroupsCsvCommand(Window& window, const SoundDocument& document) {
  ExportGroups(window, VowelGroupKind(), kVowelGroupsTitle, [&](const auto& groups, const std::string& file) {
    return VowelGroupsCsv(groups, file, document);
  });
}

void ExportTonesCsvCommand(Window& window, const SoundDocument& document, const ToneState& tones) {
  if (tones.items.empty()) return;
  const auto path = AskSave(window, kExportTonesTitle, kCsv, tones.path);
  if (path) Write(window, *path, TonesCsv(tones, document));
}

void ExportIntonationCsvCommand(Window& window, const SoundDocument& document, const IntonationState& state) {
  if (!state.result) return;
  const auto path = AskSave(window, kExportIntonationTitle, kCsv, document.filePath, "_intonation");
  if (path) Write(window, *path, IntonationCsv(*state.result, document));
}

void ExportIntonationTierCommand(Window& window, const SoundDocument& document,
                                 const IntonationState& state) {
  if (!state.result) return;
  const auto path = AskSave(window, kExportTargetTitle, kPitchTier, document.filePath, "_target");
  if (path) Write(window, *path, PitchTierText(IntonationTier(*state.result, document)));
}

void ExportStereoWavCommand(Window& window, const SoundDocument& document) {
  if (!document.twoChannel) return;
  const auto path = AskSave(window, messages::kExportStereo, kWav, document.filePath, "_stereo");
  if (path) Write(window, *path, StereoWavBytesOf(document));
}

void ExportPalateCsvCommand(Window& window, const SoundDocument& document, const PalateState& palate) {
  if (TimingOf(palate, document).frames < 1) return;
  const auto path = AskSave(window, kExportPalateTitle, kCsv, document.filePath, "_palate");
  if (path) Write(window, *path, PalateCsv(palate, document));
}

std::optional<TargetCurve> ReadPitchTierTarget(Window& window, int sampleRate, int firstFrame,
                                               int frameCount) {
  const auto path = AskOpen(window, kOpenTierTitle, kPitchTier);
  const auto text = path ? ReadText(window, *path, kTierName) : std::nullopt;
  if (!text) return {};
  PitchTierFault fault = PitchTierFault::None;
  const auto tier = ReadPitchTier(text->text, fault);
  if (!tier) {
    window.ShowError(fault == PitchTierFault::NoPitchTier ? NotThatKind(kTierName)
                     : fault == PitchTierFault::Damaged   ? DamagedFile(kTierName)
                                                          : std::string(kNoPitchPoints));
    return {};
  }
  SayHowItWasRead(window, *text);
  return TargetOf(*tier, sampleRate, firstFrame, frameCount);
}

}  // namespace parlowen
