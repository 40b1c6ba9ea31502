#pragma once
#include <cmath>
#include <map>

#include "headless/Program.h"
#include "shell/report/CsvRows.h"

namespace parlowen::testing {

using Row = std::map<std::string, std::string>;

/// The rows of a CSV by their columns.
inline std::vector<Row> RowsOf(const std::string& csv) {
  const TempFolder folder;
  CsvRows lines(WriteFile(folder / "table.csv", csv));
  std::vector<std::string> names, cells;
  std::vector<Row> rows;
  for (lines.Next(names); lines.Next(cells);) {
    EXPECT_EQ(cells.size(), names.size());
    cells.resize(names.size());
    for (std::size_t k = 0; k < names.size(); ++k) {
      if (k == 0) rows.emplace_back();
      rows.back()[names[k]] = cells[k];
    }
  }
  EXPECT_FALSE(lines.failed());
  return rows;
}

struct MeasureRun {
  int status = -1;
  std::string out, errors;
};

/// Runs parlowen-measure in the folder.
inline MeasureRun Measure(const TempFolder& folder, const std::string& arguments) {
  const TempFolder streams;
  const std::string line = "cd '" + folder.path() + "' && '" PARLOWEN_MEASURE "' " + arguments + " > '" +
                           (streams / "out") + "' 2> '" + (streams / "err") + "'";
  const int status = std::system(line.c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, ReadFile(streams / "out"), ReadFile(streams / "err")};
}

/// A short TextGrid with one tier; a label follows its end, from 0 on.
inline std::string GridText(const std::string& tier,
                            const std::vector<std::pair<double, std::string>>& intervals) {
  std::ostringstream text;
  text.precision(15);
  const double end = intervals.back().first;
  text << "File type = \"ooTextFile\"\nObject class = \"TextGrid\"\n\n0\n" << end << "\n<exists>\n1\n";
  text << "\"IntervalTier\"\n\"" << tier << "\"\n0\n" << end << "\n" << intervals.size() << "\n";
  double start = 0;
  for (const auto& [to, label] : intervals) {
    text << start << "\n" << to << "\n\"" << Replaced(label, "\"", "\"\"") << "\"\n";
    start = to;
  }
  return text.str();
}

}  // namespace parlowen::testing
