#include <cstdio>
#include <string>

#include "base/Bytes.h"
#include "base/Files.h"
#include "shell/report/CorpusPictures.h"
#include "ui/Svg.h"

namespace {

constexpr const char* kUsage =
    "Usage: parlowen-report TABLE.csv FOLDER\n"
    "Draws the distributions of a table that parlowen-measure made: FOLDER/duration.svg, f0.svg, formants.svg.\n\n"
    "Exit status: 0 done, 1 the table cannot be read or a picture not be written, 2 usage.\n";

int Failed(const std::string& text) {
  std::fprintf(stderr, "parlowen-report: %s\n", text.c_str());
  return 1;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace parlowen;
  const std::string first = argc > 1 ? argv[1] : "";
  if (first == "--help" || first == "--version") {
    std::fputs(first == "--help" ? kUsage : "parlowen-report " PARLOWEN_VERSION "\n", stdout);
    return 0;
  }
  if (argc != 3) {
    std::fputs(kUsage, stderr);
    return 2;
  }
  CsvRows rows(first);
  CorpusValues values;
  if (!rows.isOpen()) return Failed("cannot open " + first);
  if (ReadCorpusValues(rows, values) < 0) return Failed(first + " is no whole table of measures");
  const struct {
    const char* name;
    Picture picture;
  } pictures[] = {{"duration.svg", DurationDistribution(values)},
                  {"f0.svg", F0Distribution(values)},
                  {"formants.svg", FormantDistribution(values)}};
  for (const auto& [name, picture] : pictures) {
    const std::string svg = ToSvg(picture), path = std::string(argv[2]) + "/" + name;
    if (ReplaceFile(path, {reinterpret_cast<const std::uint8_t*>(svg.data()), svg.size()}) < 0)
      return Failed("cannot write " + path);
  }
  return 0;
}
