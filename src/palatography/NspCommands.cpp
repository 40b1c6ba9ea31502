#include "palatography/NspCommands.h"

#include <algorithm>

#include "base/Files.h"
#include "document/NextDigit.h"
#include "document/SoundFileCommands.h"
#include "palatography/NspFile.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kOpenTwoChannelsTitle = "打开NSP双声道文件";
constexpr UiText kOpenPalateTitle = "打开腭位数据文件";
constexpr UiText kWrongFormat = "文件格式不对！";
constexpr UiText kRateTooHigh = "采样率太高！";
constexpr UiText kTwoChannelSpeech = "不支持双声道采样！";
constexpr std::size_t kLargestFile = std::size_t{256} << 20;

void ShowRefusal(Window& window, NspRefusal refusal) {
  switch (refusal) {
    case NspRefusal::WrongFormat: return window.Notify(kWrongFormat, Icon::Error);
    case NspRefusal::RateTooHigh: return window.Notify(kRateTooHigh, Icon::Error);
    case NspRefusal::TwoChannelSpeech: return window.Notify(kTwoChannelSpeech, Icon::Error);
    case NspRefusal::WrongPreferences: return window.Notify(kPalateDamaged, Icon::Error);
    case NspRefusal::NotNsp:
    case NspRefusal::None: return;  // a file of another kind is passed over
  }
}

/// `samples`, then zeros up to `count`.
void FillChannel(SampleBuffer& channel, const std::vector<std::int16_t>& samples, int count) {
  std::copy(samples.begin(), samples.end(), channel.data());
  std::fill(channel.data() + samples.size(), channel.data() + count, std::int16_t{0});
}

/// Everything behind the samples once they are in place.
void FinishLoad(Window& window, SoundDocument& document, CommandStates& states, const std::string& path,
                int count, int rate, bool twoChannel) {
  document.twoChannel = twoChannel;
  document.partOfFile = true;  // its header, and a palate, are in no file of ours
  document.longFileSeconds = document.longFileStart = 0;
  document.resetForNewSound(count, rate, states);
  states.onTwoChannelChanged(twoChannel);
  document.filePath = path;
  document.nextDigitPath = nextDigitPathOf(path);
  document.resetPitch();
  states.onContourChanged(document.SelectionFacts());
  window.SetCaption(CaptionFor(path));
  window.Repaint();
}

std::optional<std::string> AskNspFile(Window& window, UiText title) {
  const auto choice = window.AskOpenFile({title, {FileKindNamed("nsp")}});
  if (!choice) return {};
  return choice->path;
}

}  // namespace

int ReadTwoChannelNsp(Window& window, SoundDocument& document, CommandStates& states,
                      const std::string& path) {
  const auto bytes = ReadWholeFile(path, kLargestFile);
  if (!bytes) {
    window.Notify(messages::kCannotOpen, Icon::Error);
    return 0;
  }
  TwoChannelNsp recording;
  const NspRefusal refusal = ParseTwoChannelNsp(*bytes, recording);
  if (refusal != NspRefusal::None) {
    ShowRefusal(window, refusal);
    return 0;
  }
  FillChannel(document.samples, recording.first, recording.sampleCount);
  FillChannel(document.samples2, recording.second, recording.sampleCount);
  FinishLoad(window, document, states, path, recording.sampleCount, recording.sampleRate,
             recording.hasFirst && recording.hasSecond);
  return 1;
}

int ReadEpgNsp(Window& window, SoundDocument& document, CommandStates& states, PalateState& palate,
               const std::string& path) {
  const auto bytes = ReadWholeFile(path, kLargestFile);
  if (!bytes) {
    window.Notify(messages::kCannotOpen, Icon::Error);
    return 0;
  }
  EpgRecording recording;
  const NspRefusal refusal = ParseEpgNsp(*bytes, recording);
  if (refusal != NspRefusal::None) {
    ShowRefusal(window, refusal);
    return 0;
  }
  FillChannel(document.samples, recording.samples, recording.sampleCount);
  recording.samples = {};
  FinishLoad(window, document, states, path, recording.sampleCount, recording.sampleRate, false);
  const std::size_t slash = path.rfind('/');
  palate = {true, std::move(recording), document.Stamp(), 0,
            slash == std::string::npos ? std::string(".") : path.substr(0, slash)};
  states.Tell(Need::PalateFile, palate.IsComplete());
  return 1;
}

void OpenTwoChannelNspCommand(Window& window, SoundDocument& document, CommandStates& states) {
  const auto path = AskNspFile(window, kOpenTwoChannelsTitle);
  if (path) ReadTwoChannelNsp(window, document, states, *path);
}

bool OpenEpgCommand(Window& window, SoundDocument& document, CommandStates& states, PalateState& palate) {
  const auto path = AskNspFile(window, kOpenPalateTitle);
  return path && ReadEpgNsp(window, document, states, palate, *path) == 1;
}

}  // namespace parlowen
