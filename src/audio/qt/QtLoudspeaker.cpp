#include "audio/qt/QtLoudspeaker.h"

#include "base/Format.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kRateRefused = "放音设备不支持 %d Hz 的采样频率";
constexpr UiText kNotOpened = "放音设备打不开，请检查系统的声音设置";
constexpr UiText kGone = "放音设备已断开或没有响应，放音到此结束。\n设备恢复后即可再放音，不必重新启动程序。";

std::string TextOf(SoundFailure failure, int sampleRate) {
  switch (failure) {
    case SoundFailure::NoDevice: return kNoLoudspeaker;
    case SoundFailure::RateRefused: return Format(kRateRefused.Get(), sampleRate);
    case SoundFailure::NotOpened: return kNotOpened;
    default: return kGone;
  }
}

}  // namespace

QtLoudspeaker::QtLoudspeaker(SoundProcess& process) : process_(process) {
  connect(&process_, &SoundProcess::Replied, this, &QtLoudspeaker::Take);
}

QtLoudspeaker::~QtLoudspeaker() { QtLoudspeaker::Close(); }

std::string QtLoudspeaker::Open(int sampleRate) {
  Close();
  sampleRate_ = sampleRate;
  return process_.MayPlay() ? std::string() : std::string(kNoLoudspeaker);
}

bool QtLoudspeaker::Prepare(std::span<const std::int16_t> samples) {
  samples_ = samples;
  return true;
}

bool QtLoudspeaker::Write() {
  position_ = 0;
  QByteArray request = PackNumbers({sampleRate_});
  request.append(reinterpret_cast<const char*>(samples_.data()),
                 static_cast<qsizetype>(samples_.size_bytes()));
  number_ = std::max(0, process_.Request(SoundMessageKind::Play, request));
  return number_ > 0;
}

bool QtLoudspeaker::Reset() { return Close(); }

bool QtLoudspeaker::Close() {
  process_.End(std::exchange(number_, 0));
  samples_ = {};
  return true;
}

void QtLoudspeaker::Take(const SoundMessage& reply) {
  if (number_ == 0 || reply.number != number_) return;
  if (reply.kind == SoundMessageKind::Position) position_ = reply.NumberAt(0);
  if (reply.kind != SoundMessageKind::Played && reply.kind != SoundMessageKind::Failed) return;
  number_ = 0;
  if (reply.kind == SoundMessageKind::Played && onDone) onDone();
  if (reply.kind == SoundMessageKind::Failed && onFailed) onFailed(TextOf(reply.Failure(), sampleRate_));
}

}  // namespace parlowen
