#include "interchange/TokenReader.h"

#include <charconv>
#include <cmath>
#include <optional>

namespace parlowen {
namespace {

constexpr std::string_view kBlanks = " \t\r\n\v\f";
constexpr std::string_view kEndsOfWord = " \t\r\n\v\f\"<!";

/// The value of a word that is a decimal number and nothing else; infinite when it lies outside the range.
std::optional<double> NumberOf(std::string_view word) {
  if (word.starts_with('+')) word.remove_prefix(1);
  const std::string_view digits = word.starts_with('-') ? word.substr(1) : word;
  // "inf" and "nan" are words.
  if (digits.empty() || !((digits[0] >= '0' && digits[0] <= '9') || digits[0] == '.')) return {};
  double value = 0;
  const auto [end, error] = std::from_chars(word.data(), word.data() + word.size(), value);
  if (end != word.data() + word.size()) return {};
  if (error == std::errc::result_out_of_range) return HUGE_VAL;
  if (error != std::errc()) return {};
  return value;
}

}  // namespace

TokenReader::Token TokenReader::Next() {
  while (true) {
    at_ = std::min(text_.find_first_not_of(kBlanks, at_), text_.size());
    if (at_ == text_.size()) return {};
    Token token;
    switch (text_[at_]) {
      case '!': at_ = std::min(text_.find_first_of("\r\n", at_), text_.size()); break;
      case '"':
        token.kind = Kind::String;
        if (TakeQuoted(token.text)) return token;
        return {};
      case '<':
        token.kind = Kind::Flag;
        if (TakeBracketed(token.text)) return token;
        break;
      default:
        if (const auto number = NumberOf(TakeWord())) {
          token.kind = Kind::Number;
          token.number = *number;
          return token;
        }
    }
  }
}

TokenReader::Token TokenReader::Take(Kind kind) {
  Token token = failed_ ? Token{} : Next();
  if (token.kind == kind) return token;
  failed_ = true;
  return {};
}

/// A string from its opening quote to behind its closing one; false, and at the end, when there is none.
bool TokenReader::TakeQuoted(std::string& content) {
  while (true) {
    const std::size_t quote = text_.find('"', ++at_);
    if (quote == std::string_view::npos) {
      at_ = text_.size();
      return false;
    }
    content += text_.substr(at_, quote - at_);
    at_ = quote + 1;
    if (at_ == text_.size() || text_[at_] != '"') return true;
    content += '"';
  }
}

/// A flag; a bracket that is not closed on its line is noise.
bool TokenReader::TakeBracketed(std::string& content) {
  const std::size_t end = text_.find_first_of(">\r\n", at_);
  if (end == std::string_view::npos || text_[end] != '>') {
    ++at_;
    return false;
  }
  content = text_.substr(at_ + 1, end - at_ - 1);
  at_ = end + 1;
  return true;
}

std::string_view TokenReader::TakeWord() {
  const std::size_t end = std::min(text_.find_first_of(kEndsOfWord, at_), text_.size());
  const std::string_view word = text_.substr(at_, end - at_);
  at_ = end;
  return word;
}

double TokenReader::TakeNumber() {
  const double number = Take(Kind::Number).number;
  if (std::isfinite(number)) return number;
  failed_ = true;
  return 0;
}

std::int64_t TokenReader::TakeCount() {
  const double number = TakeNumber();
  const double most = static_cast<double>((text_.size() - at_ + 1) / 2);
  if (!failed_ && number >= 0 && number <= most && number == std::floor(number))
    return static_cast<std::int64_t>(number);
  failed_ = true;
  return 0;
}

std::string TokenReader::TakeString() { return Take(Kind::String).text; }

bool TokenReader::TakeFlag(std::string_view name) { return Take(Kind::Flag).text == name; }

}  // namespace parlowen
