#include "vowel/FormantStrip.h"

#include "base/Arithmetic.h"

namespace parlowen {
namespace {

constexpr double kHighest = 4000.0;  // Hz

}  // namespace

void FormantStrip::Update(const SoundDocument& document, std::vector<int> samples) {
  if (version_ == document.samplesVersion && samples_ == samples) return;
  version_ = document.samplesVersion;
  samples_ = std::move(samples);
  frames_.clear();
  for (const int sample : samples_) frames_.push_back(FormantsAt(document, sample));
}

Picture FormantStrip::Draw() const {
  const int width = static_cast<int>(frames_.size()) * kStep;
  Picture picture{width, kHeight, {}};
  picture.Add(LineMark{{0, kHeight - 1}, {width, kHeight - 1}, colours::kGrid});
  int x = 0;
  for (const FormantFrame& frame : frames_) {
    for (std::size_t i = 0; i < static_cast<std::size_t>(frame.count); ++i) {
      const int y = kHeight - 1 - TruncateToInt32(frame.frequency[i] * (kHeight - 1) / kHighest);
      if (y >= 0) picture.Add(BoxMark{x, y, 2, 2, colours::kFormantStrip});
    }
    x += kStep;
  }
  return picture;
}

}  // namespace parlowen
