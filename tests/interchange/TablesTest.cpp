// The CSV tables, line by line.

#include <gtest/gtest.h>

#include <sstream>

#include "dsp/SignalTables.h"
#include "interchange/AnalysisTables.h"
#include "interchange/CsvTable.h"
#include "interchange/StatisticsTables.h"
#include "pitch/Voices.h"
#include "support/FakeWindow.h"

namespace parlowen {
namespace {

using testing::Texts;

/// The lines behind the five that every table begins with.
Texts Rows(const std::string& text) {
  Texts lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  if (lines.size() < 5) return {"too short"};
  return {lines.begin() + 5, lines.end()};
}

std::unique_ptr<SoundDocument> Document(CommandStates& states) {
  auto document = testing::Document(testing::Silence(16000, 0.04), 16000, states);
  document->filePath = "/home/某人/a,1.wav";
  for (int i = 160; i < 320; ++i) document->samples[i] = static_cast<std::int16_t>(i % 2 ? 1000 : -1000);
  const float periods[] = {kNoValue, 125.0f, kUnvoiced, 62.5f};
  std::copy(std::begin(periods), std::end(periods), document->pitch.begin());
  document->pitchPresent = true;
  return document;
}

TEST(CsvTables, HaveARowForEveryFrameAndEmptyCellsForNone) {
  InitSignalTables();
  CommandStates states;
  const auto document = Document(states);
  EXPECT_EQ(Rows(PitchCsv(*document, {})), (Texts{"time_s,f0_Hz,semitones,period_samples", "0.01,,,",
                                                  "0.02,128,12,125", "0.03,,,", "0.04,256,24,62.5"}));
  // The mean square of ±1000 is 60 dB.
  EXPECT_EQ(Rows(LevelsCsv(*document)), (Texts{"time_s,start_s,peak,level_dB", "0.01,0,0,0",
                                               "0.02,0.01,1000,60", "0.03,0.02,0,0", "0.04,0.03,0,0"}));
  document->selectionStart = 160;
  document->selectionEnd = 330;
  EXPECT_EQ(Rows(PitchCsv(*document, {})).size(), 3u);
  VowelTrack track;
  track.start = 160;
  track.step = 160;
  track.frames.resize(1);
  track.frames[0] = {1, {512.5}, {40}};
  EXPECT_EQ(Rows(FormantsCsv(*document, track)),
            (Texts{"time_s,F1_Hz,B1_Hz,F2_Hz,B2_Hz,F3_Hz,B3_Hz,F4_Hz,B4_Hz,F5_Hz,B5_Hz,F6_Hz,B6_Hz",
                   "0.02,512.5,40,,,,,,,,,,"}));
}

TEST(CsvTables, TheLongTermSpectrumIsInDecibels) {
  LtaState lta;
  lta.sampleRate = 16000;
  lta.frames = 7;
  lta.levels[1] = 81.0;  // the doubled scale
  EXPECT_EQ(Rows(LtaCsv(lta))[2], "31.25,40.5");
  lta.hasPrevious = true;
  lta.difference.emplace();
  lta.difference->curve[1] = -3;
  EXPECT_EQ(Rows(LtaCsv(lta))[0], "frequency_Hz,level_dB,previous_dB,difference_dB");
  EXPECT_EQ(Rows(LtaCsv(lta))[2], "31.25,40.5,0,-1.5");
}

TEST(CsvTables, ChartsAndGroupsHaveTheirFigures) {
  CommandStates states;
  const auto document = Document(states);
  VowelChart chart;
  chart.shape = PointShape::Diamond;
  chart.Add(650, 1300, 0);
  // 7·asinh(1) and 7·asinh(2)
  const Texts points = Rows(VowelChartCsv(chart, *document));
  EXPECT_TRUE(points[1].starts_with("1,diamond,650,1300,,6.169615")) << points[1];
  EXPECT_NE(points[1].find(",10.1054"), std::string::npos) << points[1];

  ValueGroup group{"\xBC\xD7,1", true, {1000, 2001}};
  const Texts durations = Rows(DurationsCsv({group}, "/x/t.lgs", *document));
  EXPECT_TRUE(durations[1].starts_with("\"甲,1\",1,-100,-150.05,50.05")) << durations[1];
  EXPECT_TRUE(durations[2].starts_with("\"甲,1\",2,-200.1,-150.05,50.05")) << durations[2];
  group.values = {300, 2000, 500, 2200};
  EXPECT_EQ(Rows(VowelGroupsCsv({group}, "/x/t.vls", *document))[2], "\"甲,1\",2,500,2200,400,100,2100,100");
}

TEST(CsvTables, MarkersStandByBandAndTimeAndTextsAreQuoted) {
  CommandStates states;
  const auto document = Document(states);
  MarkerSet set;
  set.markerCount = {2, 0, 0, 0};
  set.markerPos[0] = 160;
  set.markerPos[1] = 320;
  set.labelCount = {2, 1, 0, 0};
  set.labels[0] = {160, 320, "say \"a\""};
  set.labels[1] = {160, 160, "#x"};
  set.labels[kLabelsPerBand] = {0, 640, "音"};
  EXPECT_EQ(Rows(MarkersCsv(set, *document)),
            (Texts{"band,kind,start_s,end_s,duration_s,start_sample,end_sample,text",
                   "1,marker,0.01,0.01,0,160,160,", "1,segment,0.01,0.02,0.01,160,320,\"say \"\"a\"\"\"",
                   "1,point,0.01,0.01,0,160,160,\"#x\"", "1,marker,0.02,0.02,0,320,320,",
                   "2,segment,0,0.04,0.04,0,640,音"}));
}

}  // namespace
}  // namespace parlowen
