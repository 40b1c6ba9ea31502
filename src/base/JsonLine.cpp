#include "base/JsonLine.h"

#include "base/Utf8.h"

namespace parlowen {

std::string JsonString(std::string_view text) {
  std::string out = "\"";
  for (std::size_t at = 0; at < text.size();) {
    const char32_t character = TakeUtf8(text, at);
    switch (character) {
      case U'"': out += "\\\""; break;
      case U'\\': out += "\\\\"; break;
      case U'\n': out += "\\n"; break;
      case U'\r': out += "\\r"; break;
      case U'\t': out += "\\t"; break;
      default:
        if (character < 0x20) {
          out += Format("\\u%04x", static_cast<unsigned>(character));
        } else {
          AppendUtf8(out, character);
        }
    }
  }
  return out + "\"";
}

JsonObject& JsonObject::Raw(std::string_view name, const std::string& json) {
  if (body_.size() > 1) body_ += ',';
  body_ += JsonString(name) + ":" + json;
  return *this;
}

}  // namespace parlowen
