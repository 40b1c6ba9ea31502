#include "document/SoundFileCommands.h"

#include <algorithm>
#include <climits>

#include "base/Arithmetic.h"
#include "document/NextDigit.h"
#include "document/WavFile.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kStartTitle = " 选择所需的地点";
constexpr UiText kStartLabel = "输入该处的秒数（Max=）";
constexpr UiText kOpenTitle = "打开声音文件", kSaveTitle = "保存文件";
constexpr UiText kBadName = "文件夹或文件名不对";
constexpr UiText kNoWav = "不是 wav 文件";
constexpr UiText kNot16Bits = "不是单/双声道16位 .wav 文件！";
constexpr UiText kOneChannelOnly = "双声道16位 .wav 文件,只调入一个声道！";
constexpr UiText kNotStereo = "不是双声道文件";
constexpr UiText kLongFile = "长文件，选择调入起点";
constexpr UiText kKeepPitch = "本文件的基频数据已求出，保存吗（Yes/No)?";
constexpr UiText kKeepPitchCaption = "保存基频？";

constexpr const char* kWavSuffix = ".wav";

constexpr int kRawLeadIn = 44, kRawTail = 24;  // bytes before and samples behind that the raw reader drops
constexpr int kRateOfRaw = 11025;              // of a raw file before any rate is known

/// The document's long-file fields and everything behind them once the samples are in place.
struct LoadedSound {
  int count = 0;
  int longFileSeconds = 0, longFileStart = 0;
  bool twoChannel = false;
  bool partOfFile = false;
  std::int64_t tailOffset = -1;  ///< where a pitch tail may lie; −1 for none
};

void FinishLoad(Window& window, SoundDocument& document, CommandStates& states, const std::string& path,
                const LoadedSound& loaded, const TailReader& readTail) {
  document.twoChannel = document.fileTwoChannel = loaded.twoChannel;
  document.partOfFile = loaded.partOfFile;
  document.longFileSeconds = loaded.longFileSeconds;
  document.longFileStart = loaded.longFileStart;
  document.resetForNewSound(loaded.count, document.sampleRate, states);
  states.onTwoChannelChanged(loaded.twoChannel);
  document.filePath = path;
  document.nextDigitPath = nextDigitPathOf(path);
  window.SetCaption(CaptionFor(path));
  readTail(loaded.tailOffset);
  states.onContourChanged(document.SelectionFacts());
  window.Repaint();
}

/// A sound file has nothing but a contour behind its samples.
TailReader ContourOnly(const InputFile& file, SoundDocument& document) {
  return [&file, &document](std::int64_t offset) {
    if (offset < 0) return document.resetPitch();
    ReadPitchTail(file, offset, document);
  };
}

bool HasUsableRate(const WavLayout& layout) {
  return layout.sampleRate >= kSmallestRate && layout.sampleRate <= kLargestRate;
}

/// Loads what the layout describes, once its rate has been taken; false when that was refused or given up.
bool LoadWavData(Window& window, SoundDocument& document, CommandStates& states, const InputFile& file,
                 const std::string& path, const WavLayout& layout, ChannelMode mode,
                 const TailReader& readTail) {
  const auto refuse = [&window](UiText text) {
    window.ShowError(text);
    return false;
  };
  if (layout.bitsPerSample != 16) return refuse(kNot16Bits);
  LoadedSound loaded;
  if (layout.blockAlign == 4) {
    if (mode == ChannelMode::One) window.ShowError(kOneChannelOnly);
    const std::int64_t bytes = std::min<std::int64_t>(layout.dataBytes, std::int64_t{kMaxSamples} * 4);
    loaded.twoChannel = mode == ChannelMode::Two;
    loaded.count =
        ReadStereoFrames(file, layout.dataOffset, static_cast<int>(bytes / 4), document.samples.data(),
                         loaded.twoChannel ? document.samples2.data() : nullptr);
    loaded.partOfFile = !loaded.twoChannel || bytes < layout.dataBytes;
    loaded.tailOffset = layout.dataOffset + bytes / 4 * 4;
  } else if (layout.blockAlign != 2) {
    return refuse(kNot16Bits);
  } else if (mode == ChannelMode::Two) {
    return refuse(kNotStereo);
  } else if (layout.dataBytes <= std::int64_t{kMaxSamples} * 2) {
    loaded.count = ReadMonoSamples(file, layout.dataOffset, static_cast<int>(layout.dataBytes / 2),
                                   document.samples.data());
    loaded.tailOffset = layout.dataOffset + layout.dataBytes;
  } else {
    window.ShowError(kLongFile);
    const int seconds = SaturateInt32(layout.dataBytes / 2 / document.sampleRate);
    const auto second = AskStartSecond(window, seconds);
    if (!second) return false;
    const LongFileStretch stretch = PlanLongFile(layout.dataBytes, document.sampleRate, *second);
    loaded.longFileSeconds = std::min(seconds, SHRT_MAX);
    loaded.longFileStart = stretch.startSample;
    loaded.partOfFile = true;
    loaded.count = ReadMonoSamples(file, layout.dataOffset + stretch.offset,
                                   static_cast<int>(stretch.bytes / 2), document.samples.data());
  }
  loaded.partOfFile = loaded.partOfFile || HoldsMoreThanSound(file, layout);
  FinishLoad(window, document, states, path, loaded, readTail);
  return true;
}

/// The rate is taken before the format is known: a rejected file leaves it behind, and a contour of the sound
/// that stays would be out of tune with it.
void LoadWav(Window& window, SoundDocument& document, CommandStates& states, const InputFile& file,
             const std::string& path, const WavLayout& layout, ChannelMode mode, const TailReader& readTail) {
  if (!HasUsableRate(layout)) return window.ShowError(kNot16Bits);
  const int rate = static_cast<int>(layout.sampleRate);
  const bool changed = rate != document.sampleRate;
  document.TakeRate(rate, states);
  if (!LoadWavData(window, document, states, file, path, layout, mode, readTail) && changed)
    states.onContourChanged(document.SelectionFacts());
}

/// Headerless 16-bit mono: a 44-byte lead-in and the last 24 samples are dropped.
void LoadRaw(Window& window, SoundDocument& document, CommandStates& states, const InputFile& file,
             const std::string& path) {
  const std::int64_t present = std::max<std::int64_t>(0, file.size() - kRawLeadIn) / 2;
  const int count = static_cast<int>(std::min<std::int64_t>(present, kMaxSamples)) - kRawTail;
  if (count < 1) return window.ShowError(kNoWav);
  if (document.sampleRate == 0) document.sampleRate = kRateOfRaw;
  LoadedSound loaded;
  loaded.count = ReadMonoSamples(file, kRawLeadIn, count, document.samples.data());
  loaded.partOfFile = true;
  FinishLoad(window, document, states, path, loaded, ContourOnly(file, document));
}

std::string WithWavSuffix(const std::string& path) {
  return path.ends_with(kWavSuffix) ? path : path + kWavSuffix;
}

}  // namespace

std::string CaptionFor(const std::string& path) { return std::string(kProgramCaption) + " -- " + path; }

std::optional<int> AskStartSecond(Window& window, int seconds) {
  InputForm form = OneFieldForm(kStartTitle, kStartLabel, std::to_string(seconds));
  if (!window.AskInput(form)) return {};
  return form.CountOf(1000);
}

void openInteractive(Window& window, SoundDocument& document, CommandStates& states, ChannelMode mode) {
  const auto choice = window.AskOpenFile({kOpenTitle, {FileKindNamed("wav"), FileKindNamed("raw")}});
  if (!choice || choice->path.size() > kLongestPath)
    return window.ShowError(kBadName, messages::kBadNameCaption);
  openPath(window, document, states, choice->path, mode, mode == ChannelMode::One && choice->filter == 1);
}

void openPath(Window& window, SoundDocument& document, CommandStates& states, const std::string& path,
              ChannelMode mode, bool rawAllowed) {
  const InputFile file(path);
  if (!file.isOpen()) return window.ShowError(messages::kCannotOpen);
  if (rawAllowed && file.size() >= kWavHeaderBytes && !HasRiffTag(file))
    return LoadRaw(window, document, states, file, path);
  const auto layout = ReadWavLayout(file, WavHeaderRule::OneChunkSkipped);
  if (!layout) return window.ShowError(kNoWav);
  LoadWav(window, document, states, file, path, *layout, mode, ContourOnly(file, document));
}

void openWithRecords(Window& window, SoundDocument& document, CommandStates& states, const InputFile& file,
                     const std::string& path, const TailReader& readTail) {
  const auto layout = ReadWavLayout(file, WavHeaderRule::OneChunkSkipped);
  if (!layout || !HasUsableRate(*layout)) return window.ShowError(kNoWav);
  LoadWav(window, document, states, file, path, *layout, ChannelMode::One, readTail);
}

void openByName(Window& window, SoundDocument& document, CommandStates& states, const std::string& path) {
  const InputFile file(path);
  if (!file.isOpen()) return window.ShowError(messages::kCannotOpen);
  if (file.size() < kWavHeaderBytes) return window.ShowError(kNoWav);
  if (!HasRiffTag(file)) return LoadRaw(window, document, states, file, path);
  const auto layout = ReadWavLayout(file, WavHeaderRule::Fixed44);
  if (!layout) return window.ShowError(kNoWav);
  LoadWav(window, document, states, file, path, *layout, ChannelMode::One, ContourOnly(file, document));
}

std::optional<std::string> AskSoundName(Window& window, const std::string& title,
                                        const std::string& proposed) {
  const auto choice = window.AskSaveFile({title, {FileKindNamed("saved wav")}, "", proposed, WithWavSuffix});
  if (!choice || choice->path.size() > kLongestPath) {
    SayCannotSave(window);
    return {};
  }
  return WithWavSuffix(choice->path);
}

std::optional<bool> AskToKeepPitch(Window& window) {
  return window.AskBeforeWriting(kKeepPitch, kKeepPitchCaption);
}

void SayCannotSave(Window& window) { window.ShowError(messages::kBadSaveName, messages::kBadNameCaption); }

std::string PathToSave(const SoundDocument& document) {
  return document.filePath.empty() ? "" : WithWavSuffix(document.filePath);
}

void saveSound(Window& window, SoundDocument& document, bool saveAs) {
  if (document.sampleCount > kMaxSamples) return;
  std::optional<std::string> path = PathToSave(document);
  if (saveAs || path->empty())
    path = AskSoundName(window, saveAs ? kSaveUnderOtherName : kSaveTitle, document.nextDigitPath);
  if (!path) return;
  // The place is tried before the question, so that nobody answers in vain.
  FileReplacement file;
  if (file.Begin(*path) < 0) return SayCannotSave(window);
  const bool mayKeepPitch = HasComputedContour(document) && !document.twoChannel;
  const auto withPitch = mayKeepPitch ? AskToKeepPitch(window) : false;
  if (!withPitch) return;
  if (file.Commit(WavBytesOf(document, *withPitch)) < 0) return SayCannotSave(window);
  if (*withPitch) {
    const auto frames = static_cast<std::size_t>(document.ContourLength());
    document.pitch[frames] = document.pitch[frames + 1] = 0;  // as the file has them
    document.ContourSaved();
  }
  document.partOfFile = false;
  document.fileTwoChannel = document.twoChannel;
  document.filePath = *path;
  document.nextDigitPath = nextDigitPathOf(*path);
  window.SetCaption(CaptionFor(*path));
  window.Saved(*path);
}

}  // namespace parlowen
