#include "annotation/IpaIndex.h"

#include <algorithm>

#include "base/Files.h"
#include "base/IpaCodes.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kNoIndex = "不能调入国际音标索引";
constexpr std::size_t kFields = 5;

std::vector<std::string> FieldsOf(std::string_view line) {
  std::vector<std::string> fields;
  for (std::size_t begin = 0;;) {
    const std::size_t tab = line.find('\t', begin);
    fields.emplace_back(line.substr(begin, tab == std::string_view::npos ? tab : tab - begin));
    if (tab == std::string_view::npos) return fields;
    begin = tab + 1;
  }
}

}  // namespace

void ShowIpaIndex(Window& window, const std::string& dataFolder) {
  const std::string path = dataFolder + "/" + kIpaIndexName;
  if (!InputFile(path).isOpen()) return window.Notify(kNoIndex, Icon::Error);
  window.OpenInEditor(path);
}

std::vector<IpaIndexRow> ReadIpaIndex(std::string_view bytes) {
  const std::string text = IpaFromGbk(bytes);
  std::vector<IpaIndexRow> rows;
  bool headed = false;
  for (std::size_t begin = 0; begin < text.size();) {
    const std::size_t end = std::min(text.find_first_of("\r\n", begin), text.size());
    const std::vector<std::string> fields = FieldsOf(std::string_view(text).substr(begin, end - begin));
    begin = end + 1;
    if (fields.size() != kFields) continue;
    if (headed) rows.push_back({fields[0], fields[1], fields[2], fields[3], fields[4]});
    headed = true;
  }
  return rows;
}

}  // namespace parlowen
