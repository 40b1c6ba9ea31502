#pragma once
#include <string>
#include <string_view>

namespace parlowen {

/// GBK bytes of a UTF-8 text. Characters without a code, and bytes that are no UTF-8, become "?".
/// The user-defined codes AAA1..AFFE, F8A1..FEFE and A140..A7A0 stand for U+E000..U+E765, the other codes
/// without a character for U+E766..U+E864 in their order, U+EF80..U+EFFF for single bytes 80..FF.
std::string ToGbk(std::string_view utf8);

/// UTF-8 text of GBK bytes; ToGbk() makes the very same bytes of it again, whatever they are. 80, FF and lead
/// bytes that no trail byte 40..7E or 80..FE follows are single bytes.
std::string FromGbk(std::string_view gbk);

/// True when every character of the UTF-8 text has a GBK code.
bool HasGbkCodes(std::string_view utf8);

/// The longest beginning of a GBK text that has at most `bytes` bytes and does not cut a character.
std::string_view CutGbk(std::string_view gbk, std::size_t bytes);

}  // namespace parlowen
