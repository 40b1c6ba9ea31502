#pragma once
#include <bit>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace parlowen {

using ByteSpan = std::span<const std::uint8_t>;

/// Reads little-endian fields one after another. Reading past the end gives zeros and sets `failed()`,
/// which stays set: ask once per record.
class ByteReader {
 public:
  explicit ByteReader(ByteSpan bytes) : bytes_(bytes) {}

  bool failed() const { return failed_; }
  std::size_t Position() const { return position_; }
  std::size_t Remaining() const { return bytes_.size() - position_; }

  /// Moves to `position`, at most the end of the bytes; beyond it fails.
  void SeekTo(std::size_t position) {
    if (position > bytes_.size()) return Fail();
    position_ = position;
  }
  void Skip(std::size_t count) {
    if (count > Remaining()) return Fail();
    position_ += count;
  }

  ByteSpan Take(std::size_t count) {
    if (count > Remaining()) {
      Fail();
      return {};
    }
    const ByteSpan taken = bytes_.subspan(position_, count);
    position_ += count;
    return taken;
  }
  /// True when the next bytes are `tag`; they are consumed either way.
  bool TakeTag(std::string_view tag) {
    const ByteSpan taken = Take(tag.size());
    return taken.size() == tag.size() && std::memcmp(taken.data(), tag.data(), tag.size()) == 0;
  }
  std::uint8_t TakeUint8() { return static_cast<std::uint8_t>(TakeUnsigned(1)); }
  std::uint16_t TakeUint16LE() { return static_cast<std::uint16_t>(TakeUnsigned(2)); }
  std::int16_t TakeInt16LE() { return static_cast<std::int16_t>(TakeUint16LE()); }
  std::uint32_t TakeUint32LE() { return static_cast<std::uint32_t>(TakeUnsigned(4)); }
  std::int32_t TakeInt32LE() { return static_cast<std::int32_t>(TakeUint32LE()); }
  float TakeFloat32LE() { return std::bit_cast<float>(TakeUint32LE()); }
  double TakeFloat64LE() { return std::bit_cast<double>(TakeUnsigned(8)); }

 private:
  std::uint64_t TakeUnsigned(std::size_t count) {
    std::uint64_t value = 0;
    const ByteSpan taken = Take(count);
    for (std::size_t i = 0; i < taken.size(); ++i) value |= std::uint64_t{taken[i]} << (8 * i);
    return value;
  }
  void Fail() {
    failed_ = true;
    position_ = bytes_.size();
  }

  ByteSpan bytes_;
  std::size_t position_ = 0;
  bool failed_ = false;
};

/// Collects little-endian fields one after another.
class ByteWriter {
 public:
  void PutTag(std::string_view tag) {
    PutBytes({reinterpret_cast<const std::uint8_t*>(tag.data()), tag.size()});
  }
  void PutBytes(ByteSpan bytes) { bytes_.insert(bytes_.end(), bytes.begin(), bytes.end()); }
  void PutUint8(std::uint8_t value) { bytes_.push_back(value); }
  void PutUint16LE(std::uint16_t value) { PutUnsigned(value, 2); }
  void PutInt16LE(std::int16_t value) { PutUint16LE(static_cast<std::uint16_t>(value)); }
  void PutInt16sLE(std::span<const std::int16_t> values) {
    if constexpr (std::endian::native == std::endian::little) {
      PutBytes({reinterpret_cast<const std::uint8_t*>(values.data()), values.size_bytes()});
    } else {
      for (const std::int16_t value : values) PutInt16LE(value);
    }
  }
  void PutUint32LE(std::uint32_t value) { PutUnsigned(value, 4); }
  void PutInt32LE(std::int32_t value) { PutUint32LE(static_cast<std::uint32_t>(value)); }
  void PutFloat32LE(float value) { PutUint32LE(std::bit_cast<std::uint32_t>(value)); }
  void PutFloat64LE(double value) { PutUnsigned(std::bit_cast<std::uint64_t>(value), 8); }
  void Reserve(std::size_t count) { bytes_.reserve(count); }

  const std::vector<std::uint8_t>& bytes() const { return bytes_; }
  operator ByteSpan() const { return bytes_; }

 private:
  void PutUnsigned(std::uint64_t value, int count) {
    for (int i = 0; i < count; ++i) bytes_.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
  }
  std::vector<std::uint8_t> bytes_;
};

}  // namespace parlowen
