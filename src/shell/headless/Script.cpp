#include "shell/headless/Script.h"

#include <charconv>

namespace parlowen {
namespace {

char Unescaped(char c) { return c == 'n' ? '\n' : c == 't' ? '\t' : c; }

bool IsBlank(char c) { return c == ' ' || c == '\t' || c == '\r'; }

}  // namespace

bool SplitWords(const std::string& line, std::vector<std::string>& words) {
  std::size_t at = 0;
  while (true) {
    while (at < line.size() && IsBlank(line[at])) ++at;
    if (at == line.size() || line[at] == '#') return true;
    std::string word;
    bool quoted = false;
    for (; at < line.size() && (quoted || !IsBlank(line[at])); ++at) {
      const bool escape = quoted && line[at] == '\\' && at + 1 < line.size() &&
                          std::string_view("\"\\nt").find(line[at + 1]) != std::string_view::npos;
      if (escape) {
        word += Unescaped(line[++at]);
      } else if (line[at] == '"') {
        quoted = !quoted;
      } else {
        word += line[at];
      }
    }
    if (quoted) return false;
    words.push_back(std::move(word));
  }
}

std::optional<ScriptStep> ScriptReader::Next() {
  std::string text;
  while (std::getline(input_, text)) {
    ++line_;
    if (line_ == 1 && text.starts_with("\xEF\xBB\xBF")) text.erase(0, 3);
    ScriptStep step{line_, {}, {}};
    if (!SplitWords(text, step.words)) step.error = "a quote is not closed";
    if (!step.words.empty() || !step.error.empty()) return step;
  }
  return {};
}

std::optional<ScriptAnswer> ParseAnswer(const std::vector<std::string>& words) {
  if (words.empty()) return {};
  const std::string& first = words[0];
  ScriptAnswer answer;
  if (words.size() == 1 && (first == "yes" || first == "no" || first == "cancel")) {
    answer.kind = first == "yes"  ? ScriptAnswer::Kind::Yes
                  : first == "no" ? ScriptAnswer::Kind::No
                                  : ScriptAnswer::Kind::Cancel;
    return answer;
  }
  if (first == "file" && words.size() == 2) {
    answer.kind = ScriptAnswer::Kind::File;
    answer.path = words[1];
    return answer;
  }
  if (first == "ok") {
    answer.kind = ScriptAnswer::Kind::Ok;
    answer.entries.assign(words.begin() + 1, words.end());
    // Several entries must all say which field they are for.
    if (answer.entries.size() > 1)
      for (const std::string& entry : answer.entries)
        if (entry.find('=') == std::string::npos) return {};
    return answer;
  }
  return {};
}

std::optional<int> ParseInteger(const std::string& text) {
  const char* begin = text.data();
  const char* end = begin + text.size();
  if (begin != end && *begin == '+') ++begin;
  int value = 0;
  const auto [stop, error] = std::from_chars(begin, end, value);
  if (error != std::errc{} || stop != end) return {};
  return value;
}

}  // namespace parlowen
