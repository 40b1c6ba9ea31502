#include "interchange/TextDecoding.h"

#include <array>

#include "base/IpaCodes.h"
#include "base/Utf8.h"

namespace parlowen {
namespace {

enum class ByteOrder { Little, Big };

std::string FromUtf16(ByteSpan bytes, ByteOrder order) {
  const auto unitAt = [&](std::size_t i) {
    const char32_t first = bytes[i], second = bytes[i + 1];
    return order == ByteOrder::Little ? second << 8 | first : first << 8 | second;
  };
  const auto isHigh = [](char32_t unit) { return unit >= 0xD800 && unit < 0xDC00; };
  const auto isLow = [](char32_t unit) { return unit >= 0xDC00 && unit < 0xE000; };
  std::string text;
  text.reserve(bytes.size());
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
    char32_t character = unitAt(i);
    if (isHigh(character) && i + 3 < bytes.size() && isLow(unitAt(i + 2))) {
      character = 0x10000 + ((character - 0xD800) << 10) + (unitAt(i + 2) - 0xDC00);
      i += 2;
    }
    AppendUtf8(text, character);
  }
  return text;
}

bool BeginsWith(ByteSpan bytes, std::initializer_list<std::uint8_t> mark) {
  return bytes.size() >= mark.size() && std::equal(mark.begin(), mark.end(), bytes.begin());
}

std::string Plain(ByteSpan bytes) { return {reinterpret_cast<const char*>(bytes.data()), bytes.size()}; }

}  // namespace

DecodedText DecodeText(ByteSpan bytes) {
  if (BeginsWith(bytes, {0xEF, 0xBB, 0xBF})) return {Plain(bytes.subspan(3)), false};
  if (BeginsWith(bytes, {0xFF, 0xFE})) return {FromUtf16(bytes.subspan(2), ByteOrder::Little), false};
  if (BeginsWith(bytes, {0xFE, 0xFF})) return {FromUtf16(bytes.subspan(2), ByteOrder::Big), false};
  std::array<std::size_t, 2> zeros{};
  for (std::size_t i = 0; i < bytes.size(); ++i) zeros[i % 2] += bytes[i] == 0;
  if (zeros[0] != zeros[1])
    return {FromUtf16(bytes, zeros[1] > zeros[0] ? ByteOrder::Little : ByteOrder::Big), false};
  std::string text = Plain(bytes);
  if (IsUtf8(text)) return {std::move(text), false};
  return {IpaFromGbk(text), true};
}

}  // namespace parlowen
