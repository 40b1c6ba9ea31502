#include "audio/Player.h"

#include <algorithm>
#include <new>

#include "base/Utf8.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kNoMemory = "内存不足，不能实现反向播放！";
constexpr UiText kPrepareFailed = " Error in waveOut PrepareHeader!";
constexpr UiText kWriteFailed = " Error in waveoutwrite Buffer";
constexpr UiText kResetFailed = " Error Reseting wave output device";
constexpr UiText kCloseFailed = " Error closing wave output device";
constexpr UiText kPlaying = "T 键停止放音";
constexpr UiText kEnded = "放音结束";
constexpr int kLongestError = 99;  // characters of a device's own text that are shown

std::string FirstCharacters(const std::string& text, int count) {
  std::size_t at = 0;
  for (int i = 0; i < count && at < text.size(); ++i) TakeUtf8(text, at);
  return text.substr(0, at);
}

}  // namespace

Player::Player(SoundOutput* output, Window& window, SoundDocument& document, CommandStates& states)
    : output_(output), window_(window), document_(document), states_(states) {
  if (output_ == nullptr) return;
  output_->onDone = [this] { stopPlayback(); };
  output_->onFailed = [this](const std::string& text) { Fail(text); };
}

Player::~Player() {
  if (output_ == nullptr) return;
  output_->onDone = nullptr;
  output_->onFailed = nullptr;
  if (!closed_) output_->Close();
}

int Player::startPlayback(int start, int end, PlayMode mode, const std::int16_t* base, int sampleRate,
                          PlayRefusal where) {
  stopPlayback();
  if (start < 0 || end <= start || base == nullptr) return -1;
  const std::string refusal = output_ != nullptr
                                  ? output_->Open(sampleRate > 0 ? sampleRate : document_.sampleRate)
                                  : std::string(kNoLoudspeaker);
  if (output_ == nullptr || !refusal.empty()) {
    const std::string said = FirstCharacters(refusal, kLongestError);
    where == PlayRefusal::InBox ? window_.Notify(said) : window_.ShowStatus(said);
    return -1;
  }
  base_ = base;
  start_ = start;
  end_ = end;
  mode_ = mode;
  if (mode == PlayMode::Reverse && !MakeReversed(base)) {
    output_->Close();
    window_.Notify(kNoMemory);
    return -1;
  }
  const std::int16_t* first = mode == PlayMode::Reverse ? reversed_.get() : base + start;
  if (!Begin({first, static_cast<std::size_t>(end - start)})) {
    reversed_.reset();
    return -1;
  }
  closed_ = false;
  states_.Tell(Need::Playing);
  window_.ShowStatus(kPlaying);
  Changed();
  return 0;
}

bool Player::Begin(std::span<const std::int16_t> stretch) {
  const bool prepared = output_->Prepare(stretch);
  if (prepared && output_->Write()) return true;
  output_->Close();
  window_.Notify(prepared ? kWriteFailed : kPrepareFailed);
  return false;
}

bool Player::MakeReversed(const std::int16_t* base) {
  const int count = end_ - start_;
  reversed_.reset(new (std::nothrow) std::int16_t[static_cast<std::size_t>(count)]);
  if (!reversed_) return false;
  std::reverse_copy(base + start_ + 1, base + end_ + 1, reversed_.get());
  return true;
}

int Player::playbackPosition() const {
  return closed_ ? 0 : std::clamp(output_->Position(), 0, end_ - start_);
}

void Player::stopPlayback() {
  if (closed_) return;
  closed_ = true;
  const bool silenced = output_->Reset();
  const bool released = output_->Close();
  reversed_.reset();
  states_.Tell(Need::Playing, false);
  window_.ShowStatus(kEnded);
  // A tool that is in use stays in use.
  if (document_.activity < Activity::Spectrum) document_.activity = Activity::Waveform;
  Changed();
  window_.Repaint();
  if (!silenced) window_.Notify(kResetFailed);
  if (!released) window_.Notify(kCloseFailed);
}

void Player::Fail(const std::string& text) {
  if (closed_) return;
  stopPlayback();
  window_.Notify(FirstCharacters(text, kLongestError));
}

std::optional<int> Player::CursorSample() const { return CursorIn(document_.samples.data()); }

std::optional<int> Player::CursorIn(const std::int16_t* base) const {
  if (closed_ || base_ != base) return {};
  return mode_ == PlayMode::Reverse ? end_ - playbackPosition() : start_ + playbackPosition();
}

void Player::Changed() {
  if (changed) changed();
}

}  // namespace parlowen
