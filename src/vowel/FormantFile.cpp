#include "vowel/FormantFile.h"

#include <algorithm>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "base/Gbk.h"
#include "document/Frames.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr FileText kBlockTitle = "\r\n          第%d段：T=%.2f秒--%.2f秒\r\n\r\n";
constexpr FileText kColumns = "T(秒)     F1(Hz)  B1(Hz)  F2(Hz)  B2(Hz)  F3(Hz)  B3(Hz)  \r\n";

constexpr int kFrameBytes = 48, kSizeBase = 8;  // the size counts itself and the start sample

}  // namespace

void WriteFormantBlock(ByteWriter& file, const VowelTrack& track) {
  file.PutTag("HEAD");
  file.PutInt32LE(static_cast<std::int32_t>(track.frames.size()) * kFrameBytes + kSizeBase);
  file.PutInt32LE(track.start);
  for (const FormantFrame& frame : track.frames)
    for (std::size_t i = 0; i < 3; ++i) {
      const bool found = static_cast<int>(i) < frame.count;
      file.PutFloat64LE(found ? frame.frequency[i] : 0.0);
      file.PutFloat64LE(found ? frame.bandwidth[i] : 0.0);
    }
}

FormantFileEnd ReadFormantBlocks(ByteSpan bytes, std::vector<FormantBlock>& blocks) {
  ByteReader file(bytes);
  while (file.Remaining() >= 4) {
    if (!file.TakeTag("HEAD")) return FormantFileEnd::Broken;
    const std::int32_t size = file.TakeInt32LE();
    FormantBlock block;
    block.start = file.TakeInt32LE();
    if (file.failed() || size < kSizeBase) return FormantFileEnd::Broken;
    const auto count = static_cast<std::size_t>(size / kFrameBytes);
    if (count > file.Remaining() / kFrameBytes) return FormantFileEnd::Broken;
    block.frames.resize(count);
    for (auto& frame : block.frames)
      for (double& value : frame) value = file.TakeFloat64LE();
    blocks.push_back(std::move(block));
  }
  return FormantFileEnd::Complete;
}

std::string FormantListing(const FormantBlock& block, int number, int sampleRate) {
  const double start = FrameOfSample(block.start, sampleRate) * 0.01;
  const double length = static_cast<double>(block.frames.size()) * 0.01;
  std::string text = Format(kBlockTitle, number, start, start + length);
  text += kColumns;
  for (std::size_t k = 0; k < block.frames.size(); ++k) {
    text += Format("%-7.2f", static_cast<double>(k) * 0.01 + start);
    for (const double value : block.frames[k]) text += Format("%8d", TruncateToInt32(value));
    text += "\r\n";
  }
  return ToGbk(text);
}

}  // namespace parlowen
