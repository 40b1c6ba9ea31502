#pragma once
#include <string>
#include <vector>

#include "measure/LabelIntervals.h"
#include "measure/Measures.h"

namespace parlowen {

enum class TableFormat { Csv, JsonLines };

/// One row: an interval of a recording, or a recording that could not be read.
struct MeasureRow {
  std::string recording;
  bool hasInterval = true;  ///< false: only recording and problem are told
  LabelInterval interval{};
  int sampleRate = 0;
  Measures measures{};
  std::string problem{};  ///< why measures are missing; empty when none is
};

/// The table's rows as text. The columns of measures that were not asked for are left out; those that say
/// what was measured, the rates and the problem always stand. No value is an empty cell, or null.
class MeasureTable {
 public:
  MeasureTable(TableFormat format, const MeasureSettings& settings);

  /// What the file begins with: byte order mark and header row of a CSV.
  std::string Head() const;
  std::string RowText(const MeasureRow& row) const;

 private:
  const TableFormat format_;
  const MeasureSettings settings_;
  std::vector<std::string> names_;
};

}  // namespace parlowen
