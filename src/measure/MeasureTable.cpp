#include "measure/MeasureTable.h"

#include <cmath>

#include "base/Format.h"
#include "base/JsonLine.h"
#include "interchange/CsvTable.h"
#include "measure/MeasuredSound.h"

namespace parlowen {
namespace {

constexpr int kDurationDecimals = 9;  // what a subtraction of two times leaves beyond is no part of them
constexpr int kPointDecimals = 3;

/// A cell is text, or a number as text; empty without a value.
struct Cell {
  std::string text{};
  bool isNumber = false;
};

Cell TextCell(const std::string& text) { return {text, false}; }
Cell NumberCell(double value) { return {CsvNumber(value), true}; }
Cell RoundedCell(double value, int decimals) {
  const double scale = std::pow(10.0, decimals);
  return NumberCell(std::round(value * scale) / scale + 0.0);  // no −0
}

/// Calls `take` with the name and the cell of every column.
template <typename Take>
void ForEachColumn(const MeasureRow& row, const MeasureSettings& settings, Take take) {
  const LabelInterval& interval = row.interval;
  const bool known = row.hasInterval;
  const auto wants = [&settings](MeasureGroup group) { return (settings.measures & SetOf(group)) != 0; };
  const auto count = [](bool has, int number) { return Cell{has ? std::to_string(number) : "", true}; };
  take("recording", TextCell(row.recording));
  take("tier", TextCell(interval.tier));
  take("index", count(known, interval.index));
  take("label", TextCell(interval.text));
  take("start", NumberCell(known ? interval.start : kNoMeasure));
  take("end", NumberCell(known ? interval.end : kNoMeasure));
  if (wants(MeasureGroup::Time))
    take("duration", RoundedCell(known ? interval.end - interval.start : kNoMeasure, kDurationDecimals));
  take("sample_rate", count(row.sampleRate > 0, row.sampleRate));
  take("analysis_rate", count(row.sampleRate > 0, AnalysisRateOf(row.sampleRate)));
  MeasureGroup last = MeasureGroup::Level;
  for (const MeasureColumn& column : kMeasureColumns) {
    if (last == MeasureGroup::Pitch && column.group != last && wants(last))
      for (int i = 0; i < settings.points; ++i) {
        const auto& points = row.measures.contour;
        const double value = i < std::ssize(points) ? points[static_cast<std::size_t>(i)] : kNoMeasure;
        take(Format("f0_%02d", i + 1), RoundedCell(value, kPointDecimals));
      }
    last = column.group;
    if (wants(column.group)) take(column.name, RoundedCell(row.measures.*column.value, column.decimals));
  }
  take("problem", TextCell(row.problem));
}

}  // namespace

MeasureTable::MeasureTable(TableFormat format, const MeasureSettings& settings)
    : format_(format), settings_(settings) {
  ForEachColumn({}, settings_, [this](const std::string& name, const Cell&) { names_.push_back(name); });
}

std::string MeasureTable::Head() const {
  return format_ == TableFormat::Csv ? std::string(kCsvMark) + CsvRow(names_) : std::string();
}

std::string MeasureTable::RowText(const MeasureRow& row) const {
  if (format_ == TableFormat::Csv) {
    std::vector<std::string> cells;
    ForEachColumn(row, settings_, [&](const std::string&, const Cell& cell) { cells.push_back(cell.text); });
    return CsvRow(cells);
  }
  JsonObject object;
  ForEachColumn(row, settings_, [&](const std::string& name, const Cell& cell) {
    object.Raw(name, cell.text.empty() ? "null" : cell.isNumber ? cell.text : JsonString(cell.text));
  });
  return object.Done() + "\n";
}

}  // namespace parlowen
