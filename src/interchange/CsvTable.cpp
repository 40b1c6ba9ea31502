#include "interchange/CsvTable.h"

#include <cmath>

#include "base/Files.h"
#include "base/Format.h"
#include "interchange/FrameGrid.h"

namespace parlowen {
namespace {

std::string Quoted(const std::string& cell) {
  if (cell.find_first_of(",\"\r\n") == std::string::npos && !cell.starts_with('#')) return cell;
  std::string quoted = "\"";
  for (const char character : cell)
    quoted += character == '"' ? std::string("\"\"") : std::string(1, character);
  return quoted + "\"";
}

std::string SelectionNote(const CsvOrigin& origin) {
  if (origin.start < 0 || origin.end <= origin.start) return "none";
  const int rate = origin.sampleRate;
  return CsvNumber(SecondsOf(origin.start, rate)) + " s - " + CsvNumber(SecondsOf(origin.end, rate)) +
         " s (samples " + std::to_string(origin.start) + " - " + std::to_string(origin.end) + ")";
}

}  // namespace

void CsvTable::AddNote(std::string_view name, std::string_view value) {
  std::string line = "# " + std::string(name) + ": " + std::string(value);
  for (char& character : line)
    if (character == '\n' || character == '\r') character = ' ';
  notes_ += line + "\n";
}

std::string CsvRow(const std::vector<std::string>& cells) {
  std::string row;
  for (std::size_t i = 0; i < cells.size(); ++i) row += (i == 0 ? "" : ",") + Quoted(cells[i]);
  return row + '\n';
}

void CsvTable::AddRow(const std::vector<std::string>& cells) { rows_ += CsvRow(cells); }

std::string CsvTable::text() const { return std::string(kCsvMark) + notes_ + rows_; }

std::string CsvNumber(double value) { return std::isfinite(value) ? ShortestNumber(value) : std::string(); }

std::string CsvNumberOrNone(double value) { return value == 0 ? std::string() : CsvNumber(value); }

CsvOrigin OriginOf(const SoundDocument& document, std::string settings) {
  return {document.filePath, document.sampleRate,
          document.selectionDefined() ? document.selectionStart : kNoSelection,
          document.selectionDefined() ? document.selectionEnd : kNoSelection, std::move(settings)};
}

CsvTable MakeCsvTable(const CsvOrigin& origin) {
  CsvTable table;
  table.AddNote("program", "Parlowen " PARLOWEN_VERSION);
  table.AddNote("sound", FileNameOf(origin.soundPath));
  table.AddNote("rate", std::to_string(origin.sampleRate) + " Hz");
  table.AddNote("settings", origin.settings);
  table.AddNote("selection", SelectionNote(origin));
  return table;
}

}  // namespace parlowen
