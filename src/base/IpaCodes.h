#pragma once
#include <string>
#include <string_view>

namespace parlowen {

// Phonetic symbols are stored as the user-defined GBK codes AAA1..AAFE, one symbol a code; docs/ipa-codes.md
// has the table. All other codes are ordinary GBK.

/// UTF-8 of GBK bytes with phonetic symbols.
std::string IpaFromGbk(std::string_view gbk);

/// The reverse. A symbol that has an ordinary GBK code as well (ɑ, ɡ, β, θ, χ ...) is stored as its phonetic
/// one.
std::string IpaToGbk(std::string_view utf8);

/// True when every character of the UTF-8 text has a GBK code, phonetic symbols included.
bool HasIpaCodes(std::string_view utf8);

}  // namespace parlowen
