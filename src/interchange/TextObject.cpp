#include "interchange/TextObject.h"

#include "base/Format.h"

namespace parlowen {
namespace {

constexpr std::string_view kFileType = "ooTextFile";

bool IsVersionOf(std::string_view name, std::string_view className) {
  return name.starts_with(className) && (name.size() == className.size() || name[className.size()] == ' ');
}

}  // namespace

TextObjectWriter::TextObjectWriter(std::string_view className) {
  text_ =
      "File type = \"" + std::string(kFileType) + "\"\nObject class = \"" + std::string(className) + "\"\n\n";
}

void TextObjectWriter::PutNumber(int level, std::string_view name, double value) {
  PutLine(level, std::string(name) + " = " + ShortestNumber(value) + " ");
}

void TextObjectWriter::PutCount(int level, std::string_view name, std::size_t value) {
  PutLine(level, std::string(name) + " = " + std::to_string(value) + " ");
}

void TextObjectWriter::PutString(int level, std::string_view name, std::string_view value) {
  std::string line = std::string(name) + " = \"";
  for (const char character : value)
    line += character == '"' ? std::string("\"\"") : std::string(1, character);
  PutLine(level, line + "\" ");
}

void TextObjectWriter::PutLine(int level, std::string_view line) {
  text_.append(static_cast<std::size_t>(level) * 4, ' ');
  text_ += line;
  text_ += '\n';
}

void TextObjectWriter::PutItem(int level, std::string_view name, std::size_t number) {
  PutLine(level, std::string(name) + " [" + std::to_string(number) + "]:");
}

bool TakeObjectHead(TokenReader& reader, std::string_view className) {
  // Old short files say "ooTextFile short".
  const bool isObject = IsVersionOf(reader.TakeString(), kFileType);
  return isObject && IsVersionOf(reader.TakeString(), className) && !reader.failed();
}

}  // namespace parlowen
