#pragma once
#include <bit>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "base/Bytes.h"

namespace parlowen::testing {

inline ByteSpan AsBytes(const std::string& text) {
  return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

inline std::string Little(std::uint64_t value, int bytes) {
  std::string text;
  for (int i = 0; i < bytes; ++i) text += static_cast<char>(value >> (8 * i) & 0xFF);
  return text;
}

/// A pitch tail as it lies behind the samples; `count` may lie.
inline std::string PitchTail(const std::vector<float>& values, std::optional<int> count = {}) {
  std::string tail = std::string("PCH\0", 4) +
                     Little(static_cast<std::uint64_t>(count.value_or(static_cast<int>(values.size()))), 2);
  for (const float value : values) tail += Little(std::bit_cast<std::uint32_t>(value), 4);
  return tail;
}

/// The bytes of a WAV file, field by field, so that every one of them can lie.
struct WavBytes {
  std::string riff = "RIFF", wave = "WAVE", fmt = "fmt ";
  std::optional<std::uint32_t> riffSize, fmtSize, dataSize;
  int formatTag = 1, channels = 1;
  std::uint32_t rate = 16000;
  int blockAlign = 2, bits = 16;
  std::string fmtExtra, between;  ///< behind the 16 bytes of fmt; whole chunks before the data
  std::vector<std::int16_t> samples = std::vector<std::int16_t>(10, 1);
  std::string behind;

  std::string Bytes() const {
    std::string data;
    for (const std::int16_t sample : samples) data += Little(static_cast<std::uint16_t>(sample), 2);
    const auto size = static_cast<std::uint32_t>(data.size());
    return riff + Little(riffSize.value_or(size + 36), 4) + wave + fmt +
           Little(fmtSize.value_or(static_cast<std::uint32_t>(16 + fmtExtra.size())), 4) +
           Little(static_cast<std::uint64_t>(formatTag), 2) +
           Little(static_cast<std::uint64_t>(channels), 2) + Little(rate, 4) +
           Little(std::uint64_t{rate} * static_cast<std::uint64_t>(blockAlign), 4) +
           Little(static_cast<std::uint64_t>(blockAlign), 2) + Little(static_cast<std::uint64_t>(bits), 2) +
           fmtExtra + between + "data" + Little(dataSize.value_or(size), 4) + data + behind;
  }
};

/// `count` samples that tell their place.
inline std::vector<std::int16_t> Ramp(int count, int first = 1) {
  std::vector<std::int16_t> samples(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i)
    samples[static_cast<std::size_t>(i)] = static_cast<std::int16_t>((first + i) % 30000);
  return samples;
}

}  // namespace parlowen::testing
