#pragma once
#include <string>
#include <string_view>

#include "interchange/TokenReader.h"

namespace parlowen {

/// Writes the long form of a text object file: one `name = value ` a line, indented by four blanks a level,
/// LF, UTF-8 without a byte order mark. A number is the shortest text that reads back, a quote inside a
/// string is doubled.
class TextObjectWriter {
 public:
  explicit TextObjectWriter(std::string_view className);

  void PutNumber(int level, std::string_view name, double value);
  void PutCount(int level, std::string_view name, std::size_t value);
  void PutString(int level, std::string_view name, std::string_view value);
  /// A line without a value ("item []: ", "points [3]:").
  void PutLine(int level, std::string_view line);
  /// "name [number]:"
  void PutItem(int level, std::string_view name, std::size_t number);

  const std::string& text() const { return text_; }

 private:
  std::string text_;
};

/// Takes the two strings that every text object file begins with. True when it is one of that class, whatever
/// the version behind the name.
bool TakeObjectHead(TokenReader& reader, std::string_view className);

}  // namespace parlowen
