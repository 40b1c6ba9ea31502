#pragma once
#include <string>
#include <string_view>

namespace parlowen {

/// GBK bytes of a UTF-8 text. Characters without a code, and bytes that are no UTF-8, become "?".
/// The user-defined codes AAA1..AFFE, F8A1..FEFE and A140..A7A0 stand for U+E000..U+E765.
std::string ToGbk(std::string_view utf8);

/// UTF-8 text of GBK bytes. Pairs without a character and single lead bytes become U+FFFD.
std::string FromGbk(std::string_view gbk);

/// True when every character of the UTF-8 text has a GBK code.
bool HasGbkCodes(std::string_view utf8);

/// The longest beginning of a GBK text that has at most `bytes` bytes and does not cut a character.
std::string_view CutGbk(std::string_view gbk, std::size_t bytes);

}  // namespace parlowen
