#include "document/ConversionCommands.h"

#include "base/Format.h"
#include "document/Frames.h"
#include "document/NextDigit.h"
#include "document/RateConversion.h"
#include "document/SegmentFilter.h"
#include "document/SoundFileCommands.h"
#include "document/WavFile.h"
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kRateTooHigh = "采样频率不宜超过16000Hz！";
constexpr UiText kNoSegment = "请先在幅度能量图中用鼠标左、右键选定要滤波的语音段！";
constexpr UiText kFilterTitle = "对选定段进行滤波";
constexpr UiText kAskCutoff = "输入滤波器的截止频率（Hz, 范围：200-500）";
constexpr UiText kWrongCutoff = "输入频率范围超界！";
constexpr UiText kAskPass = "低通滤波(Yes),高通滤波(No)?";
constexpr UiText kAskPassCaption = "低通/高通选择";
constexpr UiText kFiltered = "波形数据从%6.2f 秒到%6.2f 秒已经被滤波！";

constexpr UiText kAskTarget = "转换为16000Hz(Yes)?11025Hz(No)?";
constexpr UiText kAskTargetCaption = "选择转换频率";
constexpr UiText kNothingToConvert = "原频率低于新频率，转换无意义";

constexpr int kHighestFilterRate = 16000;                 // Hz
constexpr int kFewestFrames = 50, kMostFrames = 800;      // of 10 ms
constexpr int kLowestCutoff = 200, kHighestCutoff = 500;  // Hz
constexpr const char* kFirstCutoff = "300";               // what the dialog begins with
constexpr int kTargetOnYes = 16000, kTargetOnNo = 11025;

}  // namespace

void FilterSegmentCommand(Window& window, SoundDocument& document) {
  if (document.sampleRate > kHighestFilterRate) return window.Notify(kRateTooHigh);
  const int start = document.selectionStart, end = document.selectionEnd;
  const int frames = FrameOfSample(document.SelectionLength(), document.sampleRate);
  if (frames < 1) return window.Notify(kNoSegment);
  if (frames < kFewestFrames || frames > kMostFrames) return window.Notify(messages::kWrongLength);
  InputForm form = OneFieldForm(kFilterTitle, kAskCutoff, kFirstCutoff);
  if (!window.AskInput(form)) return;
  const int cutoff = form.CountOf(1000);
  if (cutoff > kHighestCutoff || cutoff < kLowestCutoff) return window.Notify(kWrongCutoff);
  const bool lowPass = window.AskYesNo(kAskPass, kAskPassCaption);
  FilterStretch(document, start, end, cutoff, lowPass ? FilterPass::Low : FilterPass::High);
  const double rate = document.sampleRate;
  window.Notify(Format(kFiltered.Get(), start / rate, end / rate));
  window.Repaint();
}

Edit ConvertRateCommand(Window& window, SoundDocument& document, CommandStates& states) {
  const int target = window.AskYesNo(kAskTarget, kAskTargetCaption) ? kTargetOnYes : kTargetOnNo;
  if (document.sampleRate <= target) {
    window.Notify(kNothingToConvert);
    return {};
  }
  const bool ofTwoChannels = states.Holds(Need::TwoChannelFile);
  const Edit edit = ConvertDocument(document, target);
  document.resetForNewSound(document.sampleCount, target, states);
  states.onTwoChannelChanged(ofTwoChannels);  // only a load or a recording tells otherwise
  window.Repaint();
  return edit;
}

void SaveSelectionCommand(Window& window, SoundDocument& document) {
  const int length = document.SelectionLength();
  if (length > kMaxSamples) return;
  const auto path = AskSoundName(window, kSaveUnderOtherName, document.nextDigitPath);
  if (!path) return;
  ByteWriter file;
  WriteWavHeader(file, document.sampleRate, 1, length);
  if (length > 0)
    file.PutInt16sLE({&document.samples[document.selectionStart], static_cast<std::size_t>(length)});
  if (SaveFile(window, *path, file) < 0) return SayCannotSave(window);
  document.nextDigitPath = nextDigitPathOf(*path);
}

}  // namespace parlowen
