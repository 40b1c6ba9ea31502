#include "audio/Recorder.h"

#include <algorithm>
#include <cmath>

#include "audio/SettingsCommand.h"
#include "base/Format.h"
#include "document/SoundFileCommands.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kErrorCaption = "Error";
constexpr UiText kNoDevice = " Error Getting Wave_In_Dev_Caps!";
constexpr UiText kOpenFailed = " Error Opening Wave_In_Device!";
constexpr UiText kPrepareFailed = " Error in waveIn PrepareHeader!";
constexpr UiText kQueueFailed = " Error in waveIn Add Buffer";
constexpr UiText kStartFailed = " Error in Start_Recording";

constexpr UiText kLength = "L=%.2lf Sec";
constexpr UiText kRecordingEnded = "录音结束";

constexpr UiText kTesting = "Please keep silence, Testing ......";
constexpr UiText kTested = "Testing finished,      OK!";
constexpr UiText kTooQuiet = "录音增益太低，必须手工调高！";
constexpr UiText kTooLoud = "录音增益太高，必须手工调低！";
constexpr UiText kTestResult = "Gain, Thr=%.2f, %d";
constexpr UiText kTestStopped = "增益测试已停止，增益和阈值不变";

constexpr UiText kLostInMiddle =
    "录音设备已断开或没有响应，录音到此结束。\n已录下的 %.2f 秒声音都在，请保存。";
constexpr UiText kLostBeforeVoice = "录音设备已断开或没有响应，录音没有开始。\n原来的声音没有改变。";
constexpr UiText kLostInTest = "录音设备已断开或没有响应，增益测试没有做完，增益和阈值不变。";
constexpr UiText kLostUntil = "\n设备恢复后即可再录，不必重新启动程序。";

constexpr int kGainTestEnded = 200;
constexpr int kQuietestRoom = 2, kLoudestRoom = 400;  // mean block level
constexpr double kUsualRoom = 60.0;

/// About 1.1 s of blocks.
int SilenceLimit(int channels, int sampleRate) { return channels * sampleRate / 1900; }

/// Samples of trailing silence that are cut off: most of the silence limit, in whole and half blocks.
int TrailingSilence(int sampleRate) { return sampleRate == 8000 ? 4400 : sampleRate == 16000 ? 12100 : 5500; }

}  // namespace

Recorder::Recorder(SoundInput* input, Window& window, SoundDocument& document, CommandStates& states,
                   RecorderSettings& settings)
    : input_(input), window_(window), document_(document), states_(states), settings_(settings) {
  if (input_ == nullptr) return;
  input_->onFilled = [this](std::span<std::int16_t> block) { onBlockFilled(block); };
  input_->onLost = [this](InputLoss loss) { DeviceLost(loss); };
}

Recorder::~Recorder() {
  if (input_ == nullptr) return;
  input_->onFilled = nullptr;
  input_->onLost = nullptr;
  if (running()) input_->Close();
}

int Recorder::startRecording(RecordingStop stop, int channels) {
  if (running()) return -1;
  gainTest_.reset();
  manualStop_ = stop == RecordingStop::ByHand;
  return Start(channels);
}

int Recorder::runGainTest(const std::string& file) {
  if (running()) return -1;
  gainTest_.emplace(0);
  gainFile_ = file;
  if (Start(1) < 0) return -1;
  window_.ShowStatus(kTesting);
  return 0;
}

int Recorder::Start(int channels) {
  const bool usable = std::find(kRecordingRates.begin(), kRecordingRates.end(), document_.sampleRate) !=
                      kRecordingRates.end();
  sampleRate_ = usable ? document_.sampleRate : kUsualRecordingRate;
  channels_ = channels;
  ringIndex_ = silentBlocks_ = recorded_ = blockCount_ = 0;
  started_ = false;
  levels_ = {};
  if (gainTest_) gainTest_.emplace(sampleRate_);
  if (const auto failure = OpenDevice()) {
    if (input_ != nullptr) input_->Close();
    gainTest_.reset();
    const bool ofBlock = std::string(*failure) == kQueueFailed.Get();
    window_.ShowMessage(*failure, ofBlock ? window_.Caption() : kErrorCaption, Icon::None);
    return -1;
  }
  state_ = State::Running;
  states_.onRecording(true);
  Changed();
  window_.Repaint();
  return 0;
}

/// What is said about the step that failed; nothing when all went well.
std::optional<UiText> Recorder::OpenDevice() {
  if (input_ == nullptr) return kNoDevice;
  input_->Close();
  if (!input_->IsPresent()) return kNoDevice;
  if (!input_->Open(sampleRate_, channels_)) return kOpenFailed;
  for (auto& block : blocks_) {
    if (!input_->Prepare(block)) return kPrepareFailed;
    if (!input_->Queue(block)) return kQueueFailed;
    // Capture starts with the first block in place; the second follows while it is being filled.
    if (&block == &blocks_.front() && !input_->Start()) return kStartFailed;
  }
  return {};
}

void Recorder::stopRecording() {
  if (state_ == State::Running) state_ = State::StopRequested;
}

int Recorder::onBlockFilled(std::span<std::int16_t> block) {
  if (state_ == State::Stopped) return 0;
  if (state_ == State::StopRequested) return Finish(Ending::Wanted);
  const int frames = static_cast<int>(block.size()) / channels_;
  if (recorded_ + frames > kMaxSamples) {
    stopRecording();
    return 0;
  }
  ++blockCount_;
  levels_ = ConditionBlock(block, channels_, settings_.recordGain);
  if (gainTest_) {
    if (gainTest_->Add(levels_.first + levels_.second)) stopRecording();
  } else {
    Keep(block);
  }
  if (!input_->Queue(block)) {
    const int result = Finish(Ending::Broken);
    window_.Notify(kQueueFailed);
    return result;
  }
  Changed();
  return 0;
}

void Recorder::Keep(std::span<const std::int16_t> block) {
  const bool voiced = levels_.Exceeds(settings_.voiceThreshold);
  silentBlocks_ = voiced ? 0 : silentBlocks_ + 1;
  if (!started_) {
    WaitForVoice(block, voiced);
  } else if (!manualStop_ && silentBlocks_ >= SilenceLimit(channels_, sampleRate_)) {
    stopRecording();
    DropTrailingSilence();
  } else {
    Append(block);
    ShowRecorded();
    window_.ShowStatus(Format(kLength.Get(), static_cast<double>(recorded_) / sampleRate_));
  }
}

/// Keeps the last three blocks. Once voice is found the ring has done its work.
void Recorder::WaitForVoice(std::span<const std::int16_t> block, bool voiced) {
  PendingBlock& slot = ring_[static_cast<std::size_t>(ringIndex_)];
  std::copy(block.begin(), block.end(), slot.samples.begin());
  slot.size = block.size();
  slot.voiced = voiced;
  if (++ringIndex_ < 3) return;
  if (ring_[1].voiced && ring_[2].voiced) {
    started_ = true;
    for (const PendingBlock& pending : ring_) Append({pending.samples.data(), pending.size});
    TakeDocumentOver();
    ShowRecorded();
    return;
  }
  std::rotate(ring_.begin(), ring_.begin() + 1, ring_.end());
  ringIndex_ = 2;
}

void Recorder::Append(std::span<const std::int16_t> block) {
  const auto frames = static_cast<int>(block.size()) / channels_;
  if (channels_ == 1) {
    std::copy(block.begin(), block.end(), &document_.samples[recorded_]);
  } else {
    for (int i = 0; i < frames; ++i) {
      document_.samples[recorded_ + i] = block[static_cast<std::size_t>(2 * i)];
      document_.samples2[recorded_ + i] = block[static_cast<std::size_t>(2 * i + 1)];
    }
  }
  recorded_ += frames;
}

/// What is recorded so far becomes the document's sound; nothing of the old one is left.
void Recorder::TakeDocumentOver() {
  document_.twoChannel = channels_ == 2;
  document_.resetPitch();
  document_.resetForNewSound(recorded_, sampleRate_, states_);
  states_.onTwoChannelChanged(document_.twoChannel);
  states_.onContourChanged(document_.SelectionFacts());
}

/// Shows what there is so far, its end at the right edge of the panes.
void Recorder::ShowRecorded() {
  document_.sampleCount = recorded_;
  document_.SamplesChanged();
  document_.viewStart = std::max(0, recorded_ - document_.FullViewLength());
  document_.setView(states_);
  window_.Repaint();
}

void Recorder::DropTrailingSilence() { recorded_ = std::max(0, recorded_ - TrailingSilence(sampleRate_)); }

int Recorder::Finish(Ending ending) {
  input_->Close();
  state_ = State::Stopped;
  states_.onRecording(false);
  int result = kGainTestEnded;
  if (gainTest_) {
    FinishGainTest(ending);
  } else {
    // A device that fails before there is a voice leaves the old sound.
    if (started_ || ending == Ending::Wanted) FinishRecording();
    window_.ShowStatus(kRecordingEnded);
    result = recorded_;
  }
  Changed();
  window_.Repaint();
  return result;
}

void Recorder::FinishRecording() {
  document_.longFileSeconds = document_.longFileStart = 0;
  document_.filePath.clear();
  TakeDocumentOver();
  window_.SetCaption(kProgramCaption);
}

/// A test that its user ends early counts the blocks that did not come as silent ones; one whose device broke says
/// nothing about the room.
void Recorder::FinishGainTest(Ending ending) {
  const GainTest test = *gainTest_;
  gainTest_.reset();
  Changed();
  if (ending == Ending::Broken && !test.Complete()) return window_.ShowStatus(kTestStopped);
  window_.ShowStatus(kTested);
  const int level = test.MeanLevel();
  if (level < kQuietestRoom) return window_.Notify(kTooQuiet);
  if (level > kLoudestRoom) return window_.Notify(kTooLoud);
  settings_.AdaptToRoom(std::sqrt(level / kUsualRoom));
  WriteSettingsFile(window_, settings_, gainFile_);
  window_.ShowStatus(
      Format(kTestResult.Get(), static_cast<double>(settings_.recordGain), settings_.voiceThreshold));
}

/// Nothing more will come: what was recorded is kept.
void Recorder::DeviceLost(InputLoss loss) {
  if (!running()) return;
  const bool wanted = state_ == State::StopRequested;
  const bool test = listensOnly();
  Finish(wanted ? Ending::Wanted : Ending::Broken);
  if (wanted) return;
  if (loss == InputLoss::NotOpened) return window_.ShowMessage(kOpenFailed, kErrorCaption, Icon::None);
  const std::string kept = Format(kLostInMiddle.Get(), static_cast<double>(recorded_) / sampleRate_);
  const std::string lost = test ? kLostInTest : started_ ? kept : kLostBeforeVoice;
  window_.Notify(lost + kLostUntil.Get());
}

void Recorder::Changed() {
  if (changed) changed();
}

}  // namespace parlowen
