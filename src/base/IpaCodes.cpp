#include "base/IpaCodes.h"

#include "base/Gbk.h"
#include "base/Utf8.h"

namespace parlowen {
namespace {

// The row in the order of its codes: docs/ipa-codes.md numbers it. Files hold the codes, so it is never
// reordered.
constexpr char32_t kRow[] =
    U"ɑɐɒəɛɤøœɶɞɘɵɨʉɯʏæɜɚʮʊʯᴇᴀ"
    U"ɓβçɕɖðɗɟɠɢɣɡɦɔʌħʜɥʝɭɬɫɮʎ"
    U"ʟɱŋɿʅɳɲɪɴɸθɹɺɻɽɾʀʁɝʂʃʈʋʍ"
    U"χʐʑʒʔʕʦʣȵȶȡʰʷʲːˈˌ˥˦˧˨˩";
constexpr char32_t kFirstUserCode = 0xE000;  // what the GBK table makes of AAA1
constexpr std::size_t kRowLength = 94;
static_assert(std::size(kRow) == kRowLength + 1);

template <typename Replace>
std::string EachCharacter(std::string_view utf8, Replace replace) {
  std::string text;
  text.reserve(utf8.size());
  for (std::size_t at = 0; at < utf8.size();) AppendUtf8(text, replace(TakeUtf8(utf8, at)));
  return text;
}

char32_t SymbolOf(char32_t character) {
  const bool inRow = character >= kFirstUserCode && character < kFirstUserCode + kRowLength;
  return inRow ? kRow[character - kFirstUserCode] : character;
}

/// Symbols and the characters of their codes change places. What an ordinary code has made a symbol gets the
/// character that the phonetic code leaves free, so that both come back.
char32_t Exchanged(char32_t character) {
  for (std::size_t i = 0; i < kRowLength; ++i)
    if (kRow[i] == character) return static_cast<char32_t>(kFirstUserCode + i);
  return SymbolOf(character);
}

}  // namespace

std::string IpaFromGbk(std::string_view gbk) { return EachCharacter(FromGbk(gbk), Exchanged); }

std::string IpaToGbk(std::string_view utf8) { return ToGbk(EachCharacter(utf8, Exchanged)); }

std::string IpaAsDrawn(std::string_view utf8) { return EachCharacter(utf8, SymbolOf); }

bool HasIpaCodes(std::string_view utf8) { return HasGbkCodes(EachCharacter(utf8, Exchanged)); }

}  // namespace parlowen
