#include "annotation/AnnotationCommands.h"

#include <algorithm>
#include <string_view>

#include "annotation/InsertedText.h"
#include "annotation/IpaFile.h"
#include "base/Files.h"
#include "document/SoundFileCommands.h"
#include "document/WavFile.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kSaveTitle = "保存国际音标文件", kOpenTitle = "打开国际音标数据文件";
constexpr UiText kFirst = "本语音的第一次转换（Yes/No)?";
constexpr UiText kFirstCaption = "第一次？";
constexpr UiText kFull = "标志数已满，不能再加！";
constexpr UiText kNoSuchFile = "无此国际音标数据文件！";
constexpr UiText kTooMany = "文件中的注释字符多于500个，只取前500个";

constexpr std::string_view kSuffix = ".ipa";
constexpr std::int64_t kMostRecordBytes = std::int64_t{16}
                                          << 20;  // hundreds of times what the records can need

std::string WithIpaSuffix(const std::string& path) {
  return HasEnding(path, kSuffix) ? path : path + std::string(kSuffix);
}

/// The sound's own name with the other ending; "" while it has none.
std::string ProposedName(const std::string& soundPath) {
  const std::size_t dot = soundPath.rfind('.'), slash = soundPath.rfind('/');
  const bool hasEnding = dot != std::string::npos && (slash == std::string::npos || dot > slash);
  if (soundPath.empty()) return {};
  return soundPath.substr(0, hasEnding ? dot : soundPath.size()) + std::string(kSuffix);
}

void SayBadName(Window& window) { window.ShowError(messages::kBadNameOrSpace, messages::kBadNameCaption); }

std::vector<std::uint8_t> BytesBehind(const InputFile& file, std::int64_t offset) {
  if (offset < 0) return {};
  std::vector<std::uint8_t> bytes(
      static_cast<std::size_t>(std::clamp<std::int64_t>(file.size() - offset, 0, kMostRecordBytes)));
  bytes.resize(file.ReadAt(offset, bytes.data(), bytes.size()));
  return bytes;
}

void TakeRecords(IpaRecords records, SoundDocument& document, AnnotationState& annotations) {
  for (Annotation& annotation : records.annotations)
    annotation.position = std::clamp(annotation.position, 0, document.sampleCount);
  annotations = {};
  annotations.items = std::move(records.annotations);
  annotations.sound = document.Stamp();
  document.resetPitch();
  if (records.periods) TakeStoredContour(*records.periods, document);
}

}  // namespace

std::span<const Annotation> AnnotationsOf(const AnnotationState& annotations, const SoundDocument& document) {
  if (annotations.sound != document.Stamp()) return {};
  return annotations.items;
}

void BeginAnnotation(Window& window, SoundDocument& document) {
  document.activity = Activity::Annotation;
  window.Repaint();
}

void InsertAnnotation(Window& window, SoundDocument& document, AnnotationState& annotations, int sample) {
  document.activity = document.OpenTool();
  if (annotations.sound != document.Stamp()) {
    annotations = {};
    annotations.sound = document.Stamp();
  }
  std::vector<Annotation>& items = annotations.items;
  const auto text = AskInsertedText(window, items.empty() ? kMiddleTextHeight : items.back().height);
  if (!text) return window.Repaint();
  if (window.AskYesNo(kFirst, kFirstCaption)) items.clear();
  if (items.size() >= kMostAnnotations) return window.Notify(kFull);
  items.push_back({text->text, sample, text->height});
  annotations.changed = true;
  window.Repaint();
}

void SaveIpaCommand(Window& window, SoundDocument& document, AnnotationState& annotations) {
  constexpr const FileKind& kKind = FileKindNamed("saved ipa");
  const auto choice = window.AskSaveFile(
      {kSaveTitle, {kKind}, kKind.extension, ProposedName(document.filePath), WithIpaSuffix});
  if (!choice) return;
  const std::string path = WithIpaSuffix(choice->path);
  // The place is tried before the question, so that nobody answers in vain.
  FileReplacement file;
  if (path.size() > kLongestPath || file.Begin(path) < 0) return SayBadName(window);
  const auto withPitch = HasComputedContour(document) ? AskToKeepPitch(window) : false;
  if (!withPitch) return;
  if (file.Commit(IpaBytesOf(document, AnnotationsOf(annotations, document), *withPitch)) < 0)
    return SayBadName(window);
  annotations.changed = false;
  if (withPitch) document.ContourSaved();
  window.Saved(path);
}

void OpenIpaCommand(Window& window, SoundDocument& document, CommandStates& states,
                    AnnotationState& annotations) {
  const auto choice = window.AskOpenFile({kOpenTitle, {FileKindNamed("ipa")}});
  if (choice) OpenIpaFile(window, document, states, annotations, choice->path);
}

void OpenIpaFile(Window& window, SoundDocument& document, CommandStates& states, AnnotationState& annotations,
                 const std::string& path) {
  const InputFile file(path);
  if (!file.isOpen()) return window.Notify(kNoSuchFile, Icon::Error);
  bool tooMany = false;
  openWithRecords(window, document, states, file, path, [&](std::int64_t behindSamples) {
    IpaRecords records = ReadIpaRecords(BytesBehind(file, behindSamples));
    tooMany = records.tooMany;
    TakeRecords(std::move(records), document, annotations);
  });
  if (tooMany) window.ShowStatus(kTooMany);
}

}  // namespace parlowen
