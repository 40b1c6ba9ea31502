#include "measure/Recording.h"

#include <algorithm>
#include <vector>

#include "document/Frames.h"

namespace parlowen {
namespace {

constexpr const char* kCannotOpen = "the recording cannot be opened";
constexpr const char* kNoWav = "the recording is no WAV file";
constexpr const char* kNot16Bits = "the recording is no 16-bit WAV file of one or two channels";
constexpr const char* kEmpty = "the recording holds no samples";

}  // namespace

Recording::Recording(const std::string& path, int channel) : file_(path), channel_(channel) {
  const auto layout = file_.isOpen() ? ReadWavLayout(file_, WavHeaderRule::OneChunkSkipped) : std::nullopt;
  if (layout) layout_ = *layout;
  const bool rightRate = layout_.sampleRate >= kSmallestRate && layout_.sampleRate <= kLargestRate;
  const bool rightShape = layout_.bitsPerSample == 16 && (layout_.blockAlign == 2 || layout_.blockAlign == 4);
  if (rightRate && rightShape) count_ = std::max<std::int64_t>(0, layout_.dataBytes) / layout_.blockAlign;
  problem_ = !file_.isOpen()             ? kCannotOpen
             : !layout                   ? kNoWav
             : !rightRate || !rightShape ? kNot16Bits
             : count_ == 0               ? kEmpty
                                         : "";
}

std::int64_t Recording::DocumentSamples() const {
  return std::min(kMaxSamples, SampleOfFrame(kUsableContourFrames, SampleRate()));
}

bool Recording::Load(std::int64_t from, int count, SoundDocument& document) const {
  const std::int64_t offset = layout_.dataOffset + from * layout_.blockAlign;
  int got = 0;
  if (layout_.blockAlign == 2) {
    got = ReadMonoSamples(file_, offset, count, document.samples.data());
  } else {
    // The channel that is not asked for goes where the other one follows.
    std::int16_t* const target = document.samples.data();
    constexpr int kAtOnce = 16384;
    std::vector<std::int16_t> other(kAtOnce);
    for (int wanted = 0; got < count; got += wanted) {
      wanted = std::min(kAtOnce, count - got);
      const int read = ReadStereoFrames(file_, offset + std::int64_t{got} * 4, wanted,
                                        channel_ == 1 ? target + got : other.data(),
                                        channel_ == 1 ? other.data() : target + got);
      if (read < wanted) return false;
    }
  }
  document.sampleCount = got;
  document.sampleRate = SampleRate();
  document.SamplesChanged();
  document.resetPitch();
  return got == count;
}

void Recording::LoadContour(SoundDocument& document) const {
  if (layout_.blockAlign == 2) ReadPitchTail(file_, layout_.dataOffset + count_ * 2, document);
}

}  // namespace parlowen
