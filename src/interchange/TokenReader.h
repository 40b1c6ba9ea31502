#pragma once
#include <cstdint>
#include <string>
#include <string_view>

namespace parlowen {

/// Takes what counts out of a text object file, one after another: numbers that stand free, "…" strings (a
/// quote is doubled inside, newlines are allowed) and <flags>. All other words ("xmin", "=", "[1]:") are
/// noise, and "!" begins a comment that lasts to the end of the line; so the long form, the short form and
/// files written by hand read alike. Taking another kind than the next one, a number that is not finite or
/// anything behind the end gives 0 or "" and sets `failed()`, which stays set.
class TokenReader {
 public:
  /// The text outlives the reader.
  explicit TokenReader(std::string_view utf8) : text_(utf8) {}

  bool failed() const { return failed_; }

  double TakeNumber();
  /// A whole number of things that follow, 0 or more. Each has at least one token, so it is bounded by half
  /// the characters that are left.
  std::int64_t TakeCount();
  std::string TakeString();
  /// True when the next token is that flag, named without its brackets; it is consumed either way.
  bool TakeFlag(std::string_view name);

 private:
  enum class Kind { Number, String, Flag, End };
  struct Token {
    Kind kind = Kind::End;
    double number = 0;
    std::string text;
  };
  Token Next();
  Token Take(Kind kind);
  bool TakeQuoted(std::string& content);
  bool TakeBracketed(std::string& content);
  std::string_view TakeWord();

  std::string_view text_;
  std::size_t at_ = 0;
  bool failed_ = false;
};

}  // namespace parlowen
