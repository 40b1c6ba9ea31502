#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "ui/Window.h"

namespace parlowen {

/// The index of the phonetic symbols of standard Chinese, a text in GBK with the phonetic codes, in the data
/// folder.
inline constexpr const char* kIpaIndexName = "Ipacode.txt";

/// 40077: shows the index, or says that it is missing.
void ShowIpaIndex(Window& window, const std::string& dataFolder);

/// A row of the index; all but the symbol may be empty.
struct IpaIndexRow {
  std::string symbol, codes, pinyin, example, description;  ///< UTF-8
};

/// The rows of the index's bytes: lines of five fields between tabs. Other lines, the first such line too,
/// are headings.
std::vector<IpaIndexRow> ReadIpaIndex(std::string_view bytes);

}  // namespace parlowen
