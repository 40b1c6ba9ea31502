#pragma once
#include <string>
#include <string_view>

namespace parlowen {

// Phonetic symbols are stored as the user-defined GBK codes AAA1..AAFE, one symbol a code; docs/ipa-codes.md
// has the table. All other codes are ordinary GBK.

/// UTF-8 of GBK bytes with phonetic symbols. Five symbols (ɑ, ɡ, β, θ, χ) have an ordinary GBK code as well: a
/// text that was read with it has the private-use character in the symbol's place that the phonetic code would
/// be without the row (U+E000 + number − 1).
std::string IpaFromGbk(std::string_view gbk);

/// The reverse, to the byte. A symbol is stored as its phonetic code.
std::string IpaToGbk(std::string_view utf8);

/// The text as it is drawn and given to other programs: those private-use characters as the symbols they
/// stand for.
std::string IpaAsDrawn(std::string_view utf8);

/// True when every character of the UTF-8 text has a GBK code, phonetic symbols included.
bool HasIpaCodes(std::string_view utf8);

}  // namespace parlowen
