#pragma once
#include <cmath>
#include <cstdint>

namespace parlowen {

/// 32-bit sums, differences and products that wrap modulo 2^32, as the fixed-point transforms need them.
inline std::int32_t WrapAdd32(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
inline std::int32_t WrapSub32(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}
inline std::int32_t WrapMul32(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) * static_cast<std::uint32_t>(b));
}

/// Truncation toward zero. NaN gives 0, values beyond the 64-bit range the nearest end of it.
inline std::int64_t TruncateToInt64(double value) {
  if (std::isnan(value)) return 0;
  if (value >= 9223372036854775808.0) return INT64_MAX;
  if (value <= -9223372036854775808.0) return INT64_MIN;
  return static_cast<std::int64_t>(value);
}

/// The low 16 or 32 bits as a signed number.
inline std::int16_t LowInt16(std::int64_t value) {
  return static_cast<std::int16_t>(static_cast<std::uint16_t>(static_cast<std::uint64_t>(value)));
}
inline std::int32_t LowInt32(std::int64_t value) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(static_cast<std::uint64_t>(value)));
}

/// The nearest value of the narrower type.
inline std::int16_t SaturateInt16(std::int64_t value) {
  return value > INT16_MAX ? INT16_MAX : value < INT16_MIN ? INT16_MIN : static_cast<std::int16_t>(value);
}
inline std::int32_t SaturateInt32(std::int64_t value) {
  return value > INT32_MAX ? INT32_MAX : value < INT32_MIN ? INT32_MIN : static_cast<std::int32_t>(value);
}

/// Truncation toward zero into 32 bits, saturated; NaN gives 0.
inline std::int32_t TruncateToInt32(double value) { return SaturateInt32(TruncateToInt64(value)); }

}  // namespace parlowen
