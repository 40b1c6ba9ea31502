#pragma once
#include <optional>

#include "support/WavBytes.h"

namespace parlowen::testing {

inline std::string SampleBytes(const std::vector<std::int16_t>& samples) {
  std::string bytes;
  for (const std::int16_t sample : samples) bytes += Little(static_cast<std::uint16_t>(sample), 2);
  return bytes;
}

/// A chunk; `length` may lie. A pad byte stands behind an odd body when `padded`.
inline std::string Chunk(const std::string& id, const std::string& body, bool padded = true,
                         std::optional<std::uint32_t> length = {}) {
  std::string chunk = id + Little(length.value_or(static_cast<std::uint32_t>(body.size())), 4) + body;
  if (padded && body.size() % 2 != 0) chunk += '\0';
  return chunk;
}
inline std::string Speech(const std::string& id, const std::vector<std::int16_t>& samples) {
  return Chunk(id, SampleBytes(samples), false);
}
inline std::string Marker(const std::string& id, std::uint32_t position, const std::string& label) {
  return Chunk(id, Little(position, 4) + label);
}
inline std::string Preferences(char fill = 'p') { return Chunk("PREF", std::string(392, fill)); }

/// The bytes of an NSP file, field by field, so that every one of them can lie. What the readers skip is
/// 0xEE.
struct NspBytes {
  std::string magic = "FORMDS16";
  std::optional<std::uint32_t> formLength, headerLength;
  std::uint32_t rate = 16000;
  std::string chunks;

  /// "NHDR": 36 unused bytes, rate, 60 unused bytes.
  std::string TwoChannel(const std::string& id = "NHDR") const {
    return Form(id, std::string(36, '\xEE') + Little(rate, 4) + std::string(60, '\xEE'));
  }
  /// "HEDR": 20 bytes of date, rate, number of samples, the maxima of the two channels.
  std::string Epg(std::uint32_t samples, const std::string& id = "HEDR") const {
    return Form(id, std::string(20, '\xEE') + Little(rate, 4) + Little(samples, 4) + Little(1234, 2) +
                        Little(0x8000, 2));
  }

 private:
  std::string Form(const std::string& id, const std::string& header) const {
    const std::string rest =
        id + Little(headerLength.value_or(static_cast<std::uint32_t>(header.size())), 4) + header + chunks;
    return magic + Little(formLength.value_or(static_cast<std::uint32_t>(rest.size())), 4) + rest;
  }
};

}  // namespace parlowen::testing
