#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>

#include "base/Files.h"
#include "dsp/SignalTables.h"
#include "measure/MeasureOptions.h"

namespace {

enum ExitStatus { kDone = 0, kUnreadable = 1, kWrongUsage = 2, kNotWritten = 3 };

bool Print(const std::string& text) {
  return std::fwrite(text.data(), 1, text.size(), stdout) == text.size() && std::fflush(stdout) == 0;
}

int WrongUsage(const std::string& fault) {
  std::fprintf(stderr, "parlowen-measure: %s\n%s", fault.c_str(), parlowen::kMeasureUsage);
  return kWrongUsage;
}

/// True when the table would take the place of what it is made from.
bool ReplacesInput(const parlowen::MeasureOptions& options) {
  const auto same = [&options](const std::string& path) {
    std::error_code error;
    return std::filesystem::equivalent(path, options.output, error);
  };
  return same(options.job.labels) || std::any_of(options.recordings.begin(), options.recordings.end(), same);
}

int CannotWrite(const std::string& what) {
  std::fprintf(stderr, "parlowen-measure: cannot write %s\n", what.c_str());
  return kNotWritten;
}

}  // namespace

int main(int argc, char** argv) {
  using namespace parlowen;
  MeasureOptions options;
  const std::string fault = ReadMeasureOptions({argv + 1, argv + std::max(argc, 1)}, options);
  if (!fault.empty()) return WrongUsage(fault);
  if (options.help || options.version)
    return Print(options.help ? kMeasureUsage : "parlowen-measure " PARLOWEN_VERSION "\n") ? kDone
                                                                                           : kNotWritten;

  if (ReplacesInput(options)) return WrongUsage("--output would replace a recording or its labels");

  InitSignalTables();
  FileReplacement file;  // the place is tried before the work
  const bool toFile = !options.output.empty();
  if (toFile && file.Begin(options.output) < 0) return CannotWrite(options.output);
  const MeasureTable table(options.format, options.job.settings);
  SoundDocument document;
  std::string text = table.Head();
  bool allRead = true;
  for (const std::string& recording : options.recordings) {
    options.job.recording = recording;
    std::vector<MeasureRow> rows;
    const std::string problem = MeasureRecording(options.job, document, rows);
    if (!problem.empty())
      std::fprintf(stderr, "parlowen-measure: %s: %s\n", recording.c_str(), problem.c_str());
    allRead = allRead && problem.empty();
    for (const MeasureRow& row : rows) text += table.RowText(row);
    if (toFile) continue;
    if (!Print(text)) return CannotWrite("the table");
    text.clear();
  }
  if (toFile && file.Commit({reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}) < 0)
    return CannotWrite(options.output);
  return allRead ? kDone : kUnreadable;
}
