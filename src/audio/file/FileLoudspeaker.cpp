#include "audio/file/FileLoudspeaker.h"

#include <algorithm>

#include "document/WavFile.h"

namespace parlowen {

void FileLoudspeaker::WriteTo(const std::string& path) {
  path_ = path;
  written_.clear();
}

bool FileLoudspeaker::Deliver() {
  if (!running_) return false;
  const auto block = playing_.subspan(position_, std::min<std::size_t>(kBlock, playing_.size() - position_));
  if (!path_.empty()) written_.insert(written_.end(), block.begin(), block.end());
  position_ += block.size();
  if (position_ < playing_.size()) return true;
  running_ = false;
  if (onDone) onDone();
  return true;
}

std::string FileLoudspeaker::Open(int sampleRate) {
  if (written_.empty()) sampleRate_ = sampleRate;
  position_ = 0;
  return {};
}

bool FileLoudspeaker::Prepare(std::span<const std::int16_t> samples) {
  playing_ = samples;
  return true;
}

bool FileLoudspeaker::Write() { return running_ = true; }

bool FileLoudspeaker::Reset() {
  running_ = false;
  return true;
}

bool FileLoudspeaker::Close() {
  running_ = false;
  playing_ = {};
  if (path_.empty()) return true;
  ByteWriter file;
  WriteWavHeader(file, sampleRate_, 1, static_cast<int>(written_.size()));
  file.PutInt16sLE(written_);
  return ReplaceFile(path_, file) == 0;
}

}  // namespace parlowen
