#pragma once
#include <cmath>
#include <map>

#include "headless/Program.h"

namespace parlowen::testing {

using Row = std::map<std::string, std::string>;

/// The rows of a CSV by their columns.
inline std::vector<Row> RowsOf(const std::string& csv) {
  std::vector<std::vector<std::string>> lines(1, {""});
  bool quoted = false;
  for (std::size_t i = csv.starts_with("\xEF\xBB\xBF") ? 3 : 0; i < csv.size(); ++i) {
    if (csv[i] == '"' && !(quoted && i + 1 < csv.size() && csv[i + 1] == '"')) {
      quoted = !quoted;
    } else if (!quoted && csv[i] == ',') {
      lines.back().emplace_back();
    } else if (!quoted && csv[i] == '\n') {
      lines.push_back({""});
    } else {
      lines.back().back() += csv[i];
      if (quoted && csv[i] == '"') ++i;
    }
  }
  std::vector<Row> rows;
  for (std::size_t i = 1; i + 1 < lines.size(); ++i) {
    EXPECT_EQ(lines[i].size(), lines[0].size());
    for (std::size_t k = 0; k < lines[0].size(); ++k) {
      if (k == 0) rows.emplace_back();
      rows.back()[lines[0][k]] = k < lines[i].size() ? lines[i][k] : "";
    }
  }
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
