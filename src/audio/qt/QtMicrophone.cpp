#include "audio/qt/QtMicrophone.h"

#include <algorithm>
#include <cstring>
#include <utility>

namespace parlowen {

QtMicrophone::QtMicrophone(SoundProcess& process) : process_(process) {
  connect(&process_, &SoundProcess::Replied, this, &QtMicrophone::Take);
  connect(&process_, &SoundProcess::DevicesChanged, this, &QtMicrophone::PresenceChanged);
}

QtMicrophone::~QtMicrophone() { QtMicrophone::Close(); }

bool QtMicrophone::Open(int sampleRate, int channels) {
  Close();
  sampleRate_ = sampleRate;
  channels_ = channels;
  open_ = IsPresent();
  return open_;
}

bool QtMicrophone::Queue(std::span<std::int16_t> block) {
  if (open_) queue_.push_back(block);
  return open_;
}

bool QtMicrophone::Start() {
  if (!open_) return false;
  number_ = std::max(0, process_.Request(SoundMessageKind::Record, PackNumbers({sampleRate_, channels_})));
  return number_ > 0;
}

void QtMicrophone::Close() {
  process_.End(std::exchange(number_, 0));
  open_ = false;
  queue_.clear();
  taken_.clear();
}

void QtMicrophone::Take(const SoundMessage& reply) {
  if (number_ == 0 || reply.number != number_) return;
  if (reply.kind == SoundMessageKind::Sound) {
    taken_ += reply.payload;
    FillBlocks();
  }
  if (reply.kind != SoundMessageKind::Failed) return;
  FillLastBlock();
  const bool wanted = number_ != 0;  // the last block may have ended the recording
  Close();
  const bool opened = reply.Failure() == SoundFailure::Gone || reply.Failure() == SoundFailure::NoAnswer;
  if (wanted && onLost) onLost(opened ? InputLoss::Gone : InputLoss::NotOpened);
}

void QtMicrophone::FillBlocks() {
  while (!queue_.empty()) {
    const std::span<std::int16_t> block = queue_.front();
    const auto bytes = static_cast<qsizetype>(block.size_bytes());
    if (taken_.size() < bytes) return;
    queue_.pop_front();
    std::memcpy(block.data(), taken_.constData(), block.size_bytes());
    taken_.remove(0, bytes);
    if (onFilled) onFilled(block);
  }
}

/// What has not filled a block: both halves of it get the same number of whole frames.
void QtMicrophone::FillLastBlock() {
  if (queue_.empty()) return;
  const auto samples = static_cast<std::size_t>(taken_.size()) / sizeof(std::int16_t);
  const auto whole = samples - samples % (2 * static_cast<std::size_t>(channels_));
  const std::span<std::int16_t> block = queue_.front().first(std::min(whole, queue_.front().size()));
  if (block.empty()) return;
  queue_.pop_front();
  std::memcpy(block.data(), taken_.constData(), block.size_bytes());
  taken_.clear();
  if (onFilled) onFilled(block);
}

}  // namespace parlowen
