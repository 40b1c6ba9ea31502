#include "base/Format.h"

#include <charconv>
#include <cmath>
#include <cstdarg>
#include <cstdio>

namespace parlowen {
namespace {

template <typename Number>
std::string Shortest(Number value) {
  if (!std::isfinite(value)) return "null";
  char digits[40];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  return std::string(digits, end);
}

}  // namespace

std::string Format(const char* format, ...) {
  va_list arguments, again;
  va_start(arguments, format);
  va_copy(again, arguments);
  const int length = std::vsnprintf(nullptr, 0, format, arguments);
  va_end(arguments);
  std::string text(length > 0 ? static_cast<std::size_t>(length) : 0, '\0');
  if (length > 0) std::vsnprintf(text.data(), text.size() + 1, format, again);
  va_end(again);
  return text;
}

std::string ShortestNumber(double value) { return Shortest(value); }
std::string ShortestNumber(float value) { return Shortest(value); }

}  // namespace parlowen
