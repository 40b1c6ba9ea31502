#include "channels/ChannelFiles.h"

#include <cmath>
#include <limits>

#include "base/Format.h"
#include "base/Gbk.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr FileText kTitle = "\r\n          鼻音能量比数据\r\n\r\n %s\r\n";
constexpr FileText kHead = " 采样率=%d Hz  增益比=%.4f  帧数=%d  有效帧数=%d\r\n";
constexpr FileText kFigures = " 平均值=%.2f%%  标准差=%.2f%%  最小值=%.2f%%  最大值=%.2f%%\r\n";
constexpr FileText kColumns = "\r\n 帧序号      时间(s)    鼻音能量比(%)\r\n";

constexpr std::int32_t kHeadBytes = 12;  // start, step, gain ratio
constexpr float kBlank = -1.0f;

}  // namespace

std::vector<std::uint8_t> NasBytesOf(const NasalanceCurve& curve) {
  ByteWriter out;
  out.PutTag("HEAD");
  out.PutInt32LE(kHeadBytes + 4 * static_cast<std::int32_t>(curve.values.size()));
  out.PutInt32LE(curve.start);
  out.PutInt32LE(curve.step);
  out.PutFloat32LE(curve.gainRatio);
  for (const float value : curve.values) out.PutFloat32LE(std::isnan(value) ? kBlank : value);
  return out.bytes();
}

std::optional<NasalanceCurve> ParseNas(ByteSpan file) {
  ByteReader reader(file);
  if (!reader.TakeTag("HEAD")) return {};
  const std::uint32_t length = reader.TakeUint32LE();
  if (reader.failed() || length != reader.Remaining() || length % 4 != 0) return {};
  NasalanceCurve curve;
  curve.start = reader.TakeInt32LE();
  curve.step = reader.TakeInt32LE();
  curve.gainRatio = reader.TakeFloat32LE();
  if (reader.failed() || curve.start < 0 || curve.start > kMaxSamples) return {};
  if (curve.step < 1 || curve.step > kLargestRate / 100) return {};
  if (!std::isfinite(curve.gainRatio) || curve.gainRatio <= 0) return {};
  const std::size_t count = reader.Remaining() / 4;
  if (count > static_cast<std::size_t>(kMaxSamples / curve.step)) return {};
  curve.values.reserve(count);
  for (std::size_t i = 0; i < count; ++i) {
    const float value = reader.TakeFloat32LE();
    curve.values.push_back(value >= 0 && value <= 100 ? value : std::numeric_limits<float>::quiet_NaN());
  }
  return curve;
}

std::string NasRatioText(const NasalanceCurve& curve, const std::string& source, int sampleRate) {
  const NasalanceFigures figures = FiguresOf(curve.values);
  const double rate = sampleRate;
  std::string text = Format(kTitle, source.c_str());
  text += Format(kHead, sampleRate, static_cast<double>(curve.gainRatio),
                 static_cast<int>(curve.values.size()), figures.count);
  if (figures.count > 0)
    text += Format(kFigures, figures.mean, figures.deviation, figures.smallest, figures.largest);
  text += kColumns;
  for (std::size_t i = 0; i < curve.values.size(); ++i) {
    // The middle of a frame of two steps is where the next one begins.
    const double time = (curve.start + static_cast<double>(i + 1) * curve.step) / rate;
    text += Format("%7d   %10.3f", static_cast<int>(i) + 1, time);
    const double value = curve.values[i];
    text += std::isnan(value) ? "          --\r\n" : Format("   %9.2f\r\n", value);
  }
  return ToGbk(text);
}

std::vector<std::uint8_t> StereoWavBytesOf(const SoundDocument& document) {
  const int dataBytes = document.sampleCount * 4;
  ByteWriter out;
  out.Reserve(44 + static_cast<std::size_t>(dataBytes));
  out.PutTag("RIFF");
  out.PutInt32LE(dataBytes + 36);
  out.PutTag("WAVEfmt ");
  out.PutInt32LE(16);
  out.PutUint16LE(1);  // linear PCM
  out.PutUint16LE(2);
  out.PutInt32LE(document.sampleRate);
  out.PutInt32LE(document.sampleRate * 4);
  out.PutUint16LE(4);
  out.PutUint16LE(16);
  out.PutTag("data");
  out.PutInt32LE(dataBytes);
  for (int i = 0; i < document.sampleCount; ++i) {
    out.PutInt16LE(document.samples[i]);
    out.PutInt16LE(document.samples2[i]);
  }
  return out.bytes();
}

}  // namespace parlowen
