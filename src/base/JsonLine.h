#pragma once
#include <span>
#include <string>
#include <string_view>

#include "base/Format.h"

namespace parlowen {

/// Text as a JSON string, quotes included; bytes that are no UTF-8 become U+FFFD.
std::string JsonString(std::string_view text);

/// One JSON object, built field by field in order.
class JsonObject {
 public:
  JsonObject& Raw(std::string_view name, const std::string& json);
  JsonObject& Text(std::string_view name, std::string_view text) { return Raw(name, JsonString(text)); }
  JsonObject& Integer(std::string_view name, long long value) { return Raw(name, std::to_string(value)); }
  JsonObject& Number(std::string_view name, double value) { return Raw(name, ShortestNumber(value)); }
  JsonObject& Number(std::string_view name, float value) { return Raw(name, ShortestNumber(value)); }
  std::string Done() const { return body_ + "}"; }

 private:
  std::string body_ = "{";
};

/// "[a,b,c]" of what `toJson` makes of every item.
template <typename Range, typename ToJson>
std::string JsonList(const Range& items, ToJson toJson) {
  std::string list = "[";
  bool first = true;
  for (const auto& item : items) {
    if (!first) list += ',';
    first = false;
    list += toJson(item);
  }
  return list + "]";
}

inline std::string IntegerText(long long value) { return std::to_string(value); }

}  // namespace parlowen
