#include "pitch/PitchFile.h"

#include "base/Format.h"
#include "ui/Text.h"

// A record, little-endian; records follow one another without a file header.
//
//   0   4        "HEAD"
//   4   4        int32 B: bytes behind this field, 4·n + 8 with n = last − first
//   8   4        int32 start sample of the segment
//   12  4·(n+1)  float32 contour values of frames first..last

namespace parlowen {
namespace {

constexpr FileText kBlockTitle = "\r\n          第%d段：T=%.2f秒--%.2f秒\r\n\r\n";
constexpr FileText kColumns = "T(秒)    频率(Hz) 半音调    T(秒)    频率(Hz) 半音调 \r\n";

}  // namespace

FrameSpan RecordedFrames(int start, int end, int sampleRate) {
  return {LowInt16(FrameOfSample(start, sampleRate)), LowInt16(FrameOfSample(end, sampleRate))};
}

bool WritePitchRecord(ByteWriter& out, const SoundDocument& document, int start, FrameSpan frames) {
  if (frames.last < frames.first) return false;
  const int n = frames.last - frames.first;
  out.PutTag("HEAD");
  out.PutInt32LE(4 * n + 8);
  out.PutInt32LE(start);
  for (int frame = frames.first; frame <= frames.last; ++frame)
    out.PutFloat32LE(frame >= 0 && frame < kContourFrames ? document.pitch[static_cast<std::size_t>(frame)]
                                                          : kUnvoiced);
  return true;
}

PitchFileEnd ReadPitchRecords(ByteSpan bytes, std::vector<PitchRecord>& records) {
  ByteReader reader(bytes);
  while (reader.Remaining() >= 4) {
    if (!reader.TakeTag("HEAD")) return PitchFileEnd::Broken;
    const std::int64_t values = std::int64_t{reader.TakeInt32LE()} / 4 - 1;
    PitchRecord record;
    record.start = reader.TakeInt32LE();
    if (reader.failed() || values < 1 || values > static_cast<std::int64_t>(reader.Remaining() / 4))
      return PitchFileEnd::Broken;
    record.periods.resize(static_cast<std::size_t>(values));
    for (float& period : record.periods) period = reader.TakeFloat32LE();
    records.push_back(std::move(record));
  }
  return PitchFileEnd::Complete;
}

std::string PitchListing(const PitchRecord& record, int number, int sampleRate) {
  const int first = FrameOfSample(record.start, sampleRate);
  const double start = first * 0.01;
  const double length = static_cast<double>(record.periods.size() - 1) * 0.01;
  std::string text = Format(kBlockTitle, number, start, start + length);
  text += kColumns;
  auto time = static_cast<float>(start);
  bool left = true;
  for (const float period : record.periods) {
    const int frequency = ListedFrequency(period, sampleRate);
    text += Format(left ? "%-9.2f%-9d%-10.1lf" : "%-9.2f%-9d%-6.1lf\r\n", static_cast<double>(time),
                   frequency, SemitonesOf(frequency));
    time += 0.01f;
    left = !left;
  }
  return text;
}

}  // namespace parlowen
