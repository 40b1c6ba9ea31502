#pragma once
#include <deque>
#include <istream>
#include <optional>
#include <string>
#include <vector>

namespace parlowen {

/// One step of a script: its words and where it stands.
struct ScriptStep {
  int line = 0;                    ///< from 1
  std::vector<std::string> words;  ///< at least one
  std::string error;               ///< what is wrong with the line itself; "" when it could be read
};

/// Splits a line into words: blanks separate, double quotes hold blanks together (with \" \\ \n \t inside),
/// "#" at the start of a word begins a comment. False when a quote is not closed.
bool SplitWords(const std::string& line, std::vector<std::string>& words);

/// Reads the steps of a script one by one, so that it can come through a pipe.
class ScriptReader {
 public:
  explicit ScriptReader(std::istream& input) : input_(input) {}
  std::optional<ScriptStep> Next();

 private:
  std::istream& input_;
  int line_ = 0;
};

/// One queued answer.
struct ScriptAnswer {
  enum class Kind { Yes, No, File, Cancel, Ok } kind = Kind::Cancel;
  std::string path;                  ///< of File, as written
  std::vector<std::string> entries;  ///< of Ok: "FIELD=VALUE" words, or one VALUE
};

/// The words behind `answer`; nothing when they are none of the known forms.
std::optional<ScriptAnswer> ParseAnswer(const std::vector<std::string>& words);

/// A whole decimal number with an optional sign; nothing for anything else or beyond 32 bits.
std::optional<int> ParseInteger(const std::string& text);

}  // namespace parlowen
