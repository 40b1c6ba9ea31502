#pragma once
#include <string>
#include <string_view>

namespace parlowen {

inline constexpr char32_t kReplacementCharacter = 0xFFFD;

/// Decodes the character at `at` (below `text.size()`) and moves `at` behind it. A byte that begins no
/// well-formed character (overlong forms and surrogates included) gives U+FFFD and is skipped alone.
char32_t TakeUtf8(std::string_view text, std::size_t& at);

/// Appends one character; surrogates and values above U+10FFFF are written as U+FFFD.
void AppendUtf8(std::string& text, char32_t character);

bool IsUtf8(std::string_view text);

/// The longest beginning of `text` that has at most `bytes` bytes and does not cut a character.
std::string_view CutUtf8(std::string_view text, std::size_t bytes);

}  // namespace parlowen
