#include "audio/file/FileMicrophone.h"

#include <algorithm>
#include <vector>

namespace parlowen {

std::string FileMicrophone::Listen(const std::string& path) {
  auto file = std::make_unique<InputFile>(path);
  if (!file->isOpen()) return "cannot open";
  const auto layout = ReadWavLayout(*file, WavHeaderRule::OneChunkSkipped);
  if (!layout || layout->bitsPerSample != 16 || (layout->blockAlign != 2 && layout->blockAlign != 4))
    return "no WAV file of 16 bits and one or two channels:";
  file_ = std::move(file);
  layout_ = *layout;
  return {};
}

bool FileMicrophone::Open(int, int channels) {
  channels_ = channels;
  offset_ = 0;
  delivered_ = silent_ = 0;
  return IsPresent();
}

bool FileMicrophone::Queue(std::span<std::int16_t> block) {
  queue_.push_back(block);
  return true;
}

bool FileMicrophone::Start() { return running_ = true; }

void FileMicrophone::Close() {
  running_ = false;
  queue_.clear();
}

bool FileMicrophone::Deliver() {
  if (!running_ || queue_.empty()) return false;
  const std::span<std::int16_t> block = queue_.front();
  queue_.pop_front();
  std::fill(block.begin(), block.end(), std::int16_t{0});
  const int frames = ReadFrames(block);
  ++delivered_;
  if (frames == 0) ++silent_;
  if (onFilled) onFilled(block);
  return true;
}

/// What the file still has for a block; returns how many frames that were.
int FileMicrophone::ReadFrames(std::span<std::int16_t> block) {
  const auto wanted = static_cast<int>(block.size()) / channels_;
  const std::int64_t left = (layout_.dataBytes - offset_) / layout_.blockAlign;
  const auto frames = static_cast<int>(std::min<std::int64_t>(wanted, left));
  if (frames <= 0) return 0;
  std::vector<std::int16_t> first(static_cast<std::size_t>(frames)), second;
  const std::int64_t at = layout_.dataOffset + offset_;
  if (layout_.blockAlign == 4) {
    second.resize(first.size());
    ReadStereoFrames(*file_, at, frames, first.data(), second.data());
  } else {
    ReadMonoSamples(*file_, at, frames, first.data());
  }
  offset_ += std::int64_t{frames} * layout_.blockAlign;
  const auto step = static_cast<std::size_t>(channels_);
  for (std::size_t i = 0; i < first.size(); ++i) {
    block[i * step] = first[i];
    if (channels_ == 2) block[2 * i + 1] = second.empty() ? first[i] : second[i];
  }
  return frames;
}

}  // namespace parlowen
