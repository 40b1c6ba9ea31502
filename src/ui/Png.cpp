#include "ui/Png.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace parlowen {
namespace {

using Bytes = std::vector<std::uint8_t>;

std::uint32_t Crc32(std::span<const std::uint8_t> bytes) {
  static const auto table = [] {
    std::array<std::uint32_t, 256> made{};
    for (std::uint32_t i = 0; i < 256; ++i) {
      std::uint32_t value = i;
      for (int bit = 0; bit < 8; ++bit) value = (value >> 1) ^ ((value & 1) != 0 ? 0xEDB88320u : 0u);
      made[i] = value;
    }
    return made;
  }();
  std::uint32_t crc = 0xFFFFFFFFu;
  for (const std::uint8_t byte : bytes) crc = (crc >> 8) ^ table[(crc ^ byte) & 0xFF];
  return ~crc;
}

void PutBigEndian(Bytes& out, std::uint32_t value) {
  for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<std::uint8_t>(value >> shift));
}

void PutChunk(Bytes& out, std::string_view type, const Bytes& data) {
  PutBigEndian(out, static_cast<std::uint32_t>(data.size()));
  const std::size_t begin = out.size();
  out.insert(out.end(), type.begin(), type.end());
  out.insert(out.end(), data.begin(), data.end());
  PutBigEndian(out, Crc32(std::span(out).subspan(begin)));
}

/// A zlib stream of stored blocks.
Bytes Store(const Bytes& data) {
  constexpr std::size_t kLargestBlock = 65535;
  Bytes out = {0x78, 0x01};
  std::uint32_t a = 1, b = 0;
  std::size_t at = 0;
  do {
    const std::size_t length = std::min(kLargestBlock, data.size() - at);
    out.push_back(at + length == data.size() ? 1 : 0);
    const auto size = static_cast<std::uint16_t>(length);
    const auto inverse = static_cast<std::uint16_t>(~size);
    for (const std::uint16_t value : {size, inverse}) {
      out.push_back(static_cast<std::uint8_t>(value & 0xFF));
      out.push_back(static_cast<std::uint8_t>(value >> 8));
    }
    for (std::size_t i = at; i < at + length; ++i) {
      a = (a + data[i]) % 65521;
      b = (b + a) % 65521;
    }
    out.insert(out.end(), data.begin() + static_cast<std::ptrdiff_t>(at),
               data.begin() + static_cast<std::ptrdiff_t>(at + length));
    at += length;
  } while (at < data.size());
  PutBigEndian(out, (b << 16) | a);
  return out;
}

}  // namespace

Bytes EncodePng(int columns, int rows, int channels, std::span<const std::uint8_t> pixels) {
  const std::size_t stride = static_cast<std::size_t>(columns) * static_cast<std::size_t>(channels);
  Bytes lines;
  lines.reserve((stride + 1) * static_cast<std::size_t>(rows));
  for (std::size_t row = 0; row < static_cast<std::size_t>(rows); ++row) {
    lines.push_back(0);  // no row filter
    const auto line = pixels.subspan(row * stride, stride);
    lines.insert(lines.end(), line.begin(), line.end());
  }
  Bytes header;
  PutBigEndian(header, static_cast<std::uint32_t>(columns));
  PutBigEndian(header, static_cast<std::uint32_t>(rows));
  header.insert(header.end(), {8, static_cast<std::uint8_t>(channels == 3 ? 2 : 0), 0, 0, 0});
  Bytes png = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
  PutChunk(png, "IHDR", header);
  PutChunk(png, "IDAT", Store(lines));
  PutChunk(png, "IEND", {});
  return png;
}

std::string ToBase64(std::span<const std::uint8_t> bytes) {
  constexpr std::string_view kDigits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string text;
  text.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t at = 0; at < bytes.size(); at += 3) {
    const std::size_t count = std::min<std::size_t>(3, bytes.size() - at);
    std::uint32_t group = 0;
    for (std::size_t i = 0; i < 3; ++i) group = (group << 8) | (i < count ? bytes[at + i] : 0u);
    for (std::size_t i = 0; i < 4; ++i)
      text.push_back(i <= count ? kDigits[(group >> (18 - 6 * i)) & 0x3F] : '=');
  }
  return text;
}

}  // namespace parlowen
