// Recordings and label files of any bytes through the measuring step: no harm, one row for a recording that cannot be
// read, and in the others every measure a number or none.

#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>

#include "Mutants.h"
#include "Require.h"
#include "annotation/MarkerFile.h"
#include "dsp/SignalTables.h"
#include "measure/MeasureRecording.h"
#include "support/WavBytes.h"

namespace {

using namespace parlowen;

/// Two files of the process, gone with it.
struct Files {
  std::string folder =
      (std::filesystem::temp_directory_path() / ("measure-fuzz-" + std::to_string(::getpid()))).string();
  Files() {
    std::filesystem::create_directories(folder);
    InitSignalTables();
  }
  ~Files() {
    std::error_code error;
    std::filesystem::remove_all(folder, error);
  }
  std::string Write(const char* name, const std::string& bytes) const {
    std::ofstream(folder + "/" + name, std::ios::binary) << bytes;
    return folder + "/" + name;
  }
};

void Check(const std::string& wave, const std::string& labels, bool isMarkerFile) {
  static const Files files;
  static SoundDocument document;
  MeasureJob job;
  job.recording = files.Write("a.wav", wave);
  job.labels = files.Write(isMarkerFile ? "a.lbl" : "a.TextGrid", labels);
  std::vector<MeasureRow> rows;
  const std::string problem = MeasureRecording(job, document, rows);
  Require(problem.empty() || (rows.size() == 1 && rows[0].problem == problem), "a failure is one row");
  const MeasureTable table(TableFormat::JsonLines, job.settings);
  for (const MeasureRow& row : rows) {
    for (const MeasureColumn& column : kMeasureColumns)
      Require(!std::isinf(row.measures.*column.value), "a measure is a number or none");
    Require(row.problem.empty() || !row.problem.ends_with(" "), "a problem is told");
    const std::string text = table.RowText(row);
    Require(text.find("nan") == std::string::npos && text.find('\n') == text.size() - 1, "a row is a line");
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const std::string bytes(reinterpret_cast<const char*>(data + 2), size - 2);
  const std::size_t cut = std::min<std::size_t>(bytes.size(), data[0] * 16u);
  Check(bytes.substr(cut), bytes.substr(0, cut), data[1] % 2 != 0);
  return 0;
}

#ifndef PARLOWEN_LIBFUZZER
int main() {
  testing::WavBytes mono, stereo;
  mono.samples.resize(6000);
  for (std::size_t n = 0; n < mono.samples.size(); ++n)
    mono.samples[n] = static_cast<std::int16_t>(80 * (n % 100));
  stereo = mono;
  stereo.blockAlign = 4;
  mono.behind = testing::PitchTail(std::vector<float>(39, 100.0f));
  MarkerSet set;
  set.markerCount[0] = 2;
  set.labelCount[0] = 1;
  set.markerPos[1] = 3000;
  set.labels[0] = {0, 3000, "a"};
  const auto markers = MarkerBytesOf(set);
  const std::string grid =
      "\"ooTextFile\" \"TextGrid\" 0 0.375 <exists> 2 \"IntervalTier\" \"a\" 0 0.375 2 0 0.1 \"x\" 0.1 0.375 \"y\" "
      "\"TextTier\" \"b\" 0 0.375 1 0.2 \"z\"";
  Mutator spoilWave, spoilLabels;
  spoilWave.head = 60;
  spoilLabels.head = 400;
  for (int run = 0; run < 1500; ++run) {
    const bool isMarkerFile = spoilLabels.Below(2) == 0;
    Check(spoilWave(spoilWave.Below(2) == 0 ? mono.Bytes() : stereo.Bytes()),
          spoilLabels(isMarkerFile ? std::string(markers.begin(), markers.end()) : grid), isMarkerFile);
  }
  return 0;
}
#endif
