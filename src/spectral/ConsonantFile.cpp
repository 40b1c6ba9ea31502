#include "spectral/ConsonantFile.h"

#include "base/Format.h"

namespace parlowen {
namespace {

constexpr std::size_t kNameBytes = 16, kFrameBytes = 16;
constexpr std::size_t kHeadBytes = 2 * sizeof(std::int32_t) + 2 * kNameBytes;  // behind the length
constexpr const char* kGravity = "Gravity";
constexpr const char* kDispersion = "Dispersion";

void PutName(ByteWriter& file, std::string name) {
  name.resize(kNameBytes);
  file.PutTag(name);
}

}  // namespace

void WriteConsonants(ByteWriter& file, const ConsonantRecord& record) {
  file.PutTag("HEAD");
  file.PutInt32LE(static_cast<std::int32_t>(kHeadBytes + kFrameBytes * record.frames.size()));
  file.PutInt32LE(record.start);
  file.PutInt32LE(record.step);
  PutName(file, kGravity);
  PutName(file, kDispersion);
  for (const auto& frame : record.frames) {
    file.PutFloat64LE(frame.gravity);
    file.PutFloat64LE(frame.dispersion);
  }
}

std::optional<ConsonantRecord> ParseConsonants(ByteSpan bytes) {
  ByteReader reader(bytes);
  if (!reader.TakeTag("HEAD")) return {};
  const std::int64_t length = reader.TakeInt32LE();
  if (reader.failed() || length != static_cast<std::int64_t>(reader.Remaining())) return {};
  if (reader.Remaining() < kHeadBytes || (reader.Remaining() - kHeadBytes) % kFrameBytes != 0) return {};
  ConsonantRecord record;
  record.start = reader.TakeInt32LE();
  record.step = reader.TakeInt32LE();
  reader.Skip(2 * kNameBytes);
  record.frames.resize(reader.Remaining() / kFrameBytes);
  for (auto& frame : record.frames) {
    frame.gravity = reader.TakeFloat64LE();
    frame.dispersion = reader.TakeFloat64LE();
  }
  return record;
}

std::string ConsonantText(const ConsonantRecord& record) {
  std::string text = Format("\r\n %14s %14s \r\n", kGravity, kDispersion);
  for (const auto& frame : record.frames)
    text += Format("\r\n %14.2f %14.2f", frame.gravity, frame.dispersion);
  return text;
}

}  // namespace parlowen
