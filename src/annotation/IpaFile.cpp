#include "annotation/IpaFile.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "document/WavFile.h"

namespace parlowen {
namespace {

constexpr std::string_view kAnnotationTag("IPA\0", 4), kPitchTag("PCH\0", 4);
constexpr std::size_t kTagBytes = 4, kTextBytes = kAnnotationBytes + 1, kPeriodBytes = 4;
constexpr std::size_t kRecordBytes = kTagBytes + kTextBytes + 4;

std::string_view AsText(ByteSpan bytes) {
  return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

void PutText(ByteWriter& out, const std::string& text) {
  std::string bytes = IpaToGbk(text);
  bytes.resize(CutGbk(bytes, kAnnotationBytes).size());
  bytes.resize(kTextBytes);
  out.PutTag(bytes);
}

/// A text that fills its bytes has no end of its own: one byte less is taken.
std::string TakeText(ByteReader& reader) {
  const std::string_view bytes = AsText(reader.Take(kTextBytes));
  return IpaFromGbk(CutGbk(bytes.substr(0, bytes.find('\0')), kAnnotationBytes));
}

void TakeAnnotation(ByteReader& reader, IpaRecords& records) {
  Annotation annotation;
  annotation.text = TakeText(reader);
  annotation.position = reader.TakeInt32LE();
  if (reader.failed()) return;
  records.tooMany = records.annotations.size() >= kMostAnnotations;
  if (!records.tooMany) records.annotations.push_back(std::move(annotation));
}

void TakePeriods(ByteReader& reader, IpaRecords& records) {
  const int count = reader.TakeInt16LE();
  if (reader.failed() || count < 0 || static_cast<std::size_t>(count) > reader.Remaining() / kPeriodBytes) {
    reader.Skip(reader.Remaining());  // a block that is cut off counts as none, and nothing can follow it
    return;
  }
  const int kept = std::min(count, kContourFrames);
  std::vector<float> periods(static_cast<std::size_t>(kept));
  for (float& period : periods) period = reader.TakeFloat32LE();
  reader.Skip(static_cast<std::size_t>(count - kept) * kPeriodBytes);
  records.periods = std::move(periods);
}

}  // namespace

IpaRecords ReadIpaRecords(ByteSpan behindSamples) {
  IpaRecords records;
  ByteReader reader(behindSamples);
  while (reader.Remaining() >= kTagBytes) {
    const std::string_view tag = AsText(reader.Take(kTagBytes));
    if (tag == kAnnotationTag) {
      TakeAnnotation(reader, records);
    } else if (tag == kPitchTag) {
      TakePeriods(reader, records);
    } else {
      break;
    }
  }
  return records;
}

std::vector<std::uint8_t> IpaBytesOf(const SoundDocument& document, std::span<const Annotation> annotations,
                                     bool withPitch) {
  const auto count = static_cast<std::size_t>(document.sampleCount);
  ByteWriter out;
  out.Reserve(kWavHeaderBytes + count * 2 + annotations.size() * kRecordBytes + 6 +
              kPeriodBytes * kContourFrames);
  WriteWavHeader(out, document.sampleRate, 1, document.sampleCount);
  out.PutInt16sLE({document.samples.data(), count});
  for (const Annotation& annotation : annotations) {
    out.PutTag(kAnnotationTag);
    PutText(out, annotation.text);
    out.PutInt32LE(annotation.position);
  }
  if (withPitch) {
    const int frames = document.ContourLength();
    out.PutTag(kPitchTag);
    out.PutInt16LE(static_cast<std::int16_t>(frames));
    for (int i = 0; i < frames; ++i) out.PutFloat32LE(document.pitch[static_cast<std::size_t>(i)]);
  }
  return out.bytes();
}

}  // namespace parlowen
