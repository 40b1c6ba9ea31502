#include "palatography/PalateState.h"

#include "base/Arithmetic.h"

namespace parlowen {

ContactFault FaultOf(const PalateState& palate, const SoundDocument& document) {
  const std::size_t bytes = palate.recording.palate.size();
  const bool present = palate.loaded && palate.sound == document.Stamp() && palate.recording.hasPalate;
  if (!present || bytes == 0 || bytes % kContactFrameBytes != 0 || palate.recording.sampleCount < 1 ||
      document.sampleRate < 1)
    return ContactFault::Damaged;
  return palate.recording.sampleCount != document.sampleCount ? ContactFault::Edited : ContactFault::None;
}

ContactTiming TimingOf(const PalateState& palate, const SoundDocument& document) {
  if (FaultOf(palate, document) != ContactFault::None) return {};
  const int frames =
      SaturateInt32(static_cast<std::int64_t>(palate.recording.palate.size() / kContactFrameBytes));
  const double rate =
      palate.toldRate > 0 ? palate.toldRate : ContactRate(frames, document.sampleRate, document.sampleCount);
  return {frames, rate, document.sampleRate};
}

std::span<const ContactFrame> FramesOf(const PalateState& palate, const SoundDocument& document) {
  if (FaultOf(palate, document) != ContactFault::None) return {};
  const std::vector<std::uint8_t>& bytes = palate.recording.palate;
  static_assert(sizeof(ContactFrame) == kContactFrameBytes && alignof(ContactFrame) == 1);
  return {reinterpret_cast<const ContactFrame*>(bytes.data()), bytes.size() / kContactFrameBytes};
}

ContactStatistics PalateStatistics::Shown() const {
  if (records.empty()) return {};
  if (ShowsMean()) return MeanOf(records);
  return records[static_cast<std::size_t>(ofFile ? shown - 1 : 0)].statistics;
}

std::int64_t PalateStatistics::ShownFrames() const {
  if (records.empty()) return 0;
  if (!ShowsMean()) return records[static_cast<std::size_t>(ofFile ? shown - 1 : 0)].frames;
  std::int64_t sum = 0;
  for (const PalateRecord& record : records) sum += record.frames;
  return sum;
}

PalateStretch ShownStretchOf(const SoundDocument& document) {
  if (document.selectionDefined()) return {document.selectionStart, document.selectionEnd};
  return {0, document.sampleCount};
}

ContactSpan ShownFramesOf(const ContactTiming& timing, const SoundDocument& document) {
  if (timing.frames < 1) return {};
  const PalateStretch stretch = ShownStretchOf(document);
  return timing.FramesOf(stretch.start, stretch.end);
}

void FollowShownFrames(PalateView& view, const PalateState& palate, const SoundDocument& document) {
  const ContactSpan shown = ShownFramesOf(TimingOf(palate, document), document);
  if (!shown.Holds(view.current)) view.current = shown.first;
}

std::optional<int> CurrentFrameSample(const PalateView& view, const PalateState& palate,
                                      const SoundDocument& document) {
  const ContactTiming timing = TimingOf(palate, document);
  if (!view.framesOpen || view.current >= timing.frames) return {};
  return TruncateToInt32(timing.Start(view.current));
}

}  // namespace parlowen
