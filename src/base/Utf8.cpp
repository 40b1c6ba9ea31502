#include "base/Utf8.h"

#include <cstdint>

namespace parlowen {
namespace {

/// The character at `at`, or -1 where none is well formed; `length` is its number of bytes.
std::int32_t DecodeUtf8(std::string_view text, std::size_t at, std::size_t& length) {
  const auto lead = static_cast<std::uint8_t>(text[at]);
  length = 1;
  if (lead < 0x80) return lead;
  const int extra = lead >= 0xC2 && lead < 0xE0   ? 1
                    : lead >= 0xE0 && lead < 0xF0 ? 2
                    : lead >= 0xF0 && lead < 0xF5 ? 3
                                                  : 0;
  if (extra == 0 || text.size() - at <= static_cast<std::size_t>(extra)) return -1;
  std::int32_t character = lead & (0x3F >> extra);
  for (int i = 1; i <= extra; ++i) {
    const auto next = static_cast<std::uint8_t>(text[at + static_cast<std::size_t>(i)]);
    if ((next & 0xC0) != 0x80) return -1;
    character = (character << 6) | (next & 0x3F);
  }
  constexpr std::int32_t kSmallest[] = {0, 0x80, 0x800, 0x10000};
  if (character < kSmallest[extra] || character > 0x10FFFF) return -1;
  if (character >= 0xD800 && character < 0xE000) return -1;
  length = static_cast<std::size_t>(extra) + 1;
  return character;
}

}  // namespace

char32_t TakeUtf8(std::string_view text, std::size_t& at) {
  std::size_t length = 0;
  const std::int32_t character = DecodeUtf8(text, at, length);
  at += length;
  return character < 0 ? kReplacementCharacter : static_cast<char32_t>(character);
}

void AppendUtf8(std::string& text, char32_t character) {
  if (character > 0x10FFFF || (character >= 0xD800 && character < 0xE000)) character = kReplacementCharacter;
  const auto put = [&text](char32_t byte) {
    text.push_back(static_cast<char>(static_cast<std::uint8_t>(byte)));
  };
  if (character < 0x80) return put(character);
  if (character < 0x800) {
    put(0xC0 | (character >> 6));
  } else {
    if (character < 0x10000) {
      put(0xE0 | (character >> 12));
    } else {
      put(0xF0 | (character >> 18));
      put(0x80 | ((character >> 12) & 0x3F));
    }
    put(0x80 | ((character >> 6) & 0x3F));
  }
  put(0x80 | (character & 0x3F));
}

bool IsUtf8(std::string_view text) {
  for (std::size_t at = 0, length = 0; at < text.size(); at += length)
    if (DecodeUtf8(text, at, length) < 0) return false;
  return true;
}

std::string_view CutUtf8(std::string_view text, std::size_t bytes) {
  std::size_t end = 0;
  for (std::size_t next = 0; next < text.size(); end = next) {
    TakeUtf8(text, next);
    if (next > bytes) break;
  }
  return text.substr(0, end);
}

}  // namespace parlowen
