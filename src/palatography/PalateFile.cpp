#include "palatography/PalateFile.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/Format.h"
#include "base/Gbk.h"
#include "document/SoundDocument.h"
#include "ui/Text.h"

// A record, little-endian; records follow one another without a file header.
//
//   0    4      "HEAD"
//   4    4      int32 bytes behind this field: 656
//   8    16     int32 start sample, end sample, sampling rate, frames
//   24   8      float64 frames a second
//   32   496    62 float64 percent of the frames with contact, rows from the front, each from the left
//   528  64     8 float64 means: total, front, middle, back, CA, CC, centre of gravity, asymmetry
//   592  64     8 float64 deviations of the same
//   656  8      float64 variability

namespace parlowen {
namespace {

constexpr std::int32_t kBytesBehind = 656;
constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

constexpr FileText kBetween = "，";
constexpr FileText kTitle = "\r\n          腭位统计数据\r\n";
constexpr FileText kRecordTitle = "\r\n          第%d段：T=%.3f秒--%.3f秒，%d帧\r\n\r\n";
constexpr FileText kMeanTitle = "\r\n          平均（%d段）\r\n\r\n";
constexpr FileText kDeviations = "标准差：";
constexpr FileText kNames[] = {"总接触", "前", "中", "后", "CA", "CC", "COG", "不对称"};
constexpr FileText kFormats[] = {"%.1f%%", "%.1f%%", "%.1f%%", "%.1f%%", "%.3f", "%.3f", "%.2f", "%.2f"};
constexpr FileText kVariability = "，变异=%.1f%%";

double OrZero(double value) { return std::isnan(value) ? 0.0 : value; }

bool TakeAll(ByteReader& reader, std::span<double> values) {
  for (double& value : values) value = reader.TakeFloat64LE();
  return std::all_of(values.begin(), values.end(), [](double value) { return std::isfinite(value); });
}

std::optional<PalateRecord> TakeRecord(ByteReader& reader) {
  if (!reader.TakeTag("HEAD") || reader.TakeInt32LE() != kBytesBehind) return {};
  PalateRecord record;
  record.start = reader.TakeInt32LE();
  record.end = reader.TakeInt32LE();
  record.sampleRate = reader.TakeInt32LE();
  record.frames = reader.TakeInt32LE();
  record.rate = reader.TakeFloat64LE();
  ContactStatistics& statistics = record.statistics;
  const bool finite = TakeAll(reader, statistics.percent) && TakeAll(reader, statistics.mean) &&
                      TakeAll(reader, statistics.deviation) &&
                      TakeAll(reader, {&statistics.variability, 1}) && std::isfinite(record.rate);
  if (reader.failed() || !finite) return {};
  if (record.start < 0 || record.end <= record.start || record.end > kMaxSamples) return {};
  if (record.sampleRate < kSmallestRate || record.sampleRate > kLargestRate) return {};
  if (record.frames < 1 || record.rate <= 0) return {};
  for (const double share : statistics.percent)
    if (share < 0 || share > 100) return {};
  if (!statistics.HasContact())
    for (const std::size_t k : {kGravityCentre, kAsymmetry})
      statistics.mean[k] = statistics.deviation[k] = kNone;
  return record;
}

std::string IndicesText(const ContactIndices& indices) {
  std::string line;
  for (std::size_t k = 0; k < kContactIndices; ++k) {
    line += std::string(k == 0 ? "" : kBetween) + kNames[k] + "=";
    line += std::isnan(indices[k]) ? std::string("--") : Format(kFormats[k], indices[k]);
  }
  return line;
}

std::string StatisticsText(const ContactStatistics& statistics) {
  std::string text;
  for (int row = 0; row < kPalateRows; ++row) {
    if (row == 0) text += "      ";
    for (int column = 0; column < kPalateColumns; ++column)
      if (HasElectrode(row, column))
        text += Format("%6.1f", statistics.percent[static_cast<std::size_t>(ElectrodeAt(row, column))]);
    text += "\r\n";
  }
  text += IndicesText(statistics.mean) + Format(kVariability, statistics.variability) + "\r\n";
  return text + kDeviations + IndicesText(statistics.deviation) + "\r\n";
}

}  // namespace

void WritePalateRecord(ByteWriter& out, const PalateRecord& record) {
  out.PutTag("HEAD");
  out.PutInt32LE(kBytesBehind);
  out.PutInt32LE(record.start);
  out.PutInt32LE(record.end);
  out.PutInt32LE(record.sampleRate);
  out.PutInt32LE(record.frames);
  out.PutFloat64LE(record.rate);
  for (const double share : record.statistics.percent) out.PutFloat64LE(share);
  for (const double mean : record.statistics.mean) out.PutFloat64LE(OrZero(mean));
  for (const double deviation : record.statistics.deviation) out.PutFloat64LE(OrZero(deviation));
  out.PutFloat64LE(record.statistics.variability);
}

std::optional<std::vector<PalateRecord>> ReadPalateFile(ByteSpan bytes) {
  const std::size_t count = bytes.size() / kPalateRecordBytes;
  if (bytes.size() % kPalateRecordBytes != 0 || count < 1 || count > kMostPalateRecords) return {};
  ByteReader reader(bytes);
  std::vector<PalateRecord> records;
  records.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    auto record = TakeRecord(reader);
    if (!record) return {};
    records.push_back(*record);
  }
  return records;
}

ContactStatistics MeanOf(const std::vector<PalateRecord>& records) {
  std::vector<ContactStatistics> all;
  all.reserve(records.size());
  for (const PalateRecord& record : records) all.push_back(record.statistics);
  return MeanOf(all);
}

std::string PalateText(const std::vector<PalateRecord>& records) {
  std::string text = kTitle;
  int number = 0;
  for (const PalateRecord& record : records) {
    const double rate = record.sampleRate;
    text += Format(kRecordTitle, ++number, record.start / rate, record.end / rate, record.frames);
    text += StatisticsText(record.statistics);
  }
  if (records.size() > 1) text += Format(kMeanTitle, number) + StatisticsText(MeanOf(records));
  return ToGbk(text);
}

std::optional<std::vector<ContactFrame>> ParseContactFrames(ByteSpan bytes, std::size_t bytesPerFrame) {
  if (bytes.empty() || bytes.size() % bytesPerFrame != 0) return {};
  std::vector<ContactFrame> frames(bytes.size() / bytesPerFrame);
  const std::size_t unused = bytesPerFrame - kContactFrameBytes;
  for (std::size_t i = 0; i < frames.size(); ++i) {
    const ByteSpan frame = bytes.subspan(i * bytesPerFrame + unused, kContactFrameBytes);
    std::copy(frame.begin(), frame.end(), frames[i].begin());
  }
  return frames;
}

}  // namespace parlowen
