#pragma once
#include <string>
#include <string_view>
#include <vector>

#include "document/SoundDocument.h"

namespace parlowen {

/// The byte order mark that a table begins with.
inline constexpr std::string_view kCsvMark = "\xEF\xBB\xBF";

/// The cells of a row with commas between them and LF behind it. A cell with a comma, a quote, a line end or a "#" at
/// its start stands in quotes, a quote doubled.
std::string CsvRow(const std::vector<std::string>& cells);

/// A table for spreadsheets and statistics programs: UTF-8 with byte order mark, LF, "# name: value" lines, a
/// header row, rows.
class CsvTable {
 public:
  void AddNote(std::string_view name, std::string_view value);
  /// The header row, before all others, or a row.
  void AddRow(const std::vector<std::string>& cells);
  std::string text() const;

 private:
  std::string notes_, rows_;
};

/// The shortest text that reads back, with "." whatever the locale; an empty cell for what is no number.
std::string CsvNumber(double value);
/// The same with an empty cell for 0, which stands for "none".
std::string CsvNumberOrNone(double value);

/// What a table says about its origin.
struct CsvOrigin {
  std::string soundPath;  ///< its name without the folder is told; "" is a sound without a file
  int sampleRate = 0;
  int start = kNoSelection, end = kNoSelection;  ///< samples; none unless 0 ≤ start < end
  std::string settings;
};
CsvOrigin OriginOf(const SoundDocument& document, std::string settings);

/// A table with the program's version, the sound's name, the rate, the settings and the selection.
CsvTable MakeCsvTable(const CsvOrigin& origin);

}  // namespace parlowen
