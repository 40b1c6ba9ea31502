// Our text objects as the program that defines these formats reads them. Skipped where it is not installed.

#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>

#include "dsp/SignalTables.h"
#include "interchange/FormantObject.h"
#include "interchange/MarkerTiers.h"
#include "interchange/PitchObjects.h"
#include "pitch/Voices.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

using namespace testing;

constexpr const char* kReader = "/usr/bin/praat";

class OtherReader : public ::testing::Test {
 protected:
  void SetUp() override {
    if (!std::filesystem::exists(kReader)) GTEST_SKIP() << kReader << " is not there";
  }
  /// The lines that its script prints about the file; what the reader says when it refuses.
  std::vector<std::string> Facts(const std::string& fileText, const std::string& script) {
    WriteFile(folder_ / "object", fileText);
    WriteFile(folder_ / "facts.praat", "Read from file: \"" + (folder_ / "object") + "\"\n" + script);
    const std::string command = "HOME='" + folder_.path() + "' " + kReader + " --run --utf8 '" +
                                (folder_ / "facts.praat") + "' > '" + (folder_ / "out") + "' 2>&1";
    EXPECT_EQ(std::system(command.c_str()), 0) << ReadFile(folder_ / "out");
    std::vector<std::string> lines;
    std::istringstream out(ReadFile(folder_ / "out"));
    for (std::string line; std::getline(out, line);) lines.push_back(line);
    return lines;
  }

 private:
  TempFolder folder_;
};

/// A script that prints the answers of these queries with their units.
std::string Queries(const std::vector<std::string>& queries) {
  std::string script;
  for (const std::string& query : queries) script += "x$ = " + query + "\nappendInfoLine: x$\n";
  return script;
}

TEST_F(OtherReader, ReadsTheTextGrid) {
  MarkerSet set;
  set.markerCount = {2, 0, 0, 0};
  set.markerPos[0] = 4001;
  set.markerPos[1] = 8000;
  set.labelCount = {2, 0, 0, 0};
  set.labels[0] = {4001, 8000, "说\"ɛ\""};
  set.labels[1] = {8000, 8000, "点"};
  ExportLosses losses;
  const std::string text = TextGridText(GridOfMarkers(set, {{"ʂʅ", 100}, {"x", 100}}, 16001, 16000, losses));
  EXPECT_EQ(
      Facts(
          text,
          Queries({"Get number of tiers", "Get number of intervals: 1", "Get label of interval: 1, 2",
                   "Get tier name: 2", "Get number of points: 2", "Get label of point: 2, 1",
                   "Get tier name: 6", "Get label of point: 6, 1", "Get number of intervals: 5"}) +
              "appendInfoLine: fixed$ (do (\"Get end time of interval...\", 1, 1), 7)\nappendInfoLine: fixed$ (do (\"Get total duration\"), 7)\n"),
      (std::vector<std::string>{"6 tiers", "3 intervals", "说\"ɛ\"", "1 点", "1 (points", "点", "音标",
                                "ʂʅ x", "1 intervals", "0.2500625", "1.0000625"}));
}

TEST_F(OtherReader, ReadsTheMelodies) {
  CommandStates states;
  const auto document = Document(Silence(16000, 0.5), 16000, states);
  for (int frame = 0; frame < 50; ++frame)
    document->pitch[static_cast<std::size_t>(frame)] =
        frame < 10 || frame == 30 ? 0.0f : 16000.0f / static_cast<float>(100 + frame);
  const std::string number = "appendInfoLine: fixed$ (";
  EXPECT_EQ(
      Facts(PitchTierText(PitchTierOf(*document)), "appendInfoLine: do (\"Get number of points\")\n" +
                                                       number + "do (\"Get value at index...\", 1), 3)\n" +
                                                       number + "do (\"Get time from index...\", 1), 3)\n" +
                                                       number + "do (\"Get value at time...\", 0.31), 3)\n"),
      (std::vector<std::string>{"39", "110.000", "0.110", "130.000"}));
  EXPECT_EQ(
      Facts(PitchText(*document, 600),
            "appendInfoLine: do (\"Get number of frames\")\nappendInfoLine: do (\"Count voiced frames\")\n" +
                number + "do (\"Get time from frame number...\", 11), 3)\n" + number +
                "do (\"Get value in frame...\", 11, \"Hertz\"), 3)\n" + number +
                "do (\"Get total duration\"), 3)\n"),
      (std::vector<std::string>{"50", "39", "0.110", "110.000", "0.500"}));
}

TEST_F(OtherReader, ReadsTheFormants) {
  InitSignalTables();
  CommandStates states;
  const auto document = Document(Vowel(16000, 120, 0.5), 16000, states);
  document->selectionStart = 1600;
  document->selectionEnd = 6400;
  const VowelTrack track = SelectionTrack(*document);
  const FormantFrame& frame = track.frames[14];
  ASSERT_GT(frame.count, 1);
  const std::string number = "appendInfoLine: fixed$ (";
  const auto facts = Facts(
      FormantText(*document, track),
      "appendInfoLine: do (\"Get number of frames\")\nappendInfoLine: do (\"Get number of formants...\", 15)\n" +
          number + "do (\"Get time from frame number...\", 15), 4)\n" + number +
          "do (\"Get value at time...\", 1, 0.25, \"hertz\", \"linear\"), 4)\n" + number +
          "do (\"Get bandwidth at time...\", 2, 0.25, \"hertz\", \"linear\"), 4)\n");
  ASSERT_EQ(facts.size(), 5u);
  EXPECT_EQ(facts[0], "30");
  EXPECT_EQ(facts[1], std::to_string(frame.count));
  EXPECT_EQ(facts[2], "0.2500");
  EXPECT_NEAR(std::stod(facts[3]), frame.frequency[0], 1e-4);
  EXPECT_NEAR(std::stod(facts[4]), frame.bandwidth[1], 1e-4);
}

}  // namespace
}  // namespace parlowen
