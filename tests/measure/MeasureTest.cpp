// parlowen-measure as a user meets it: options, labels, damaged files, long recordings, the contour's points.

#include "measure/MeasureRecording.h"

#include <gtest/gtest.h>
#include <signal.h>

#include "annotation/MarkerFile.h"
#include "base/Format.h"
#include "measure/Table.h"
#include "support/Child.h"

namespace parlowen {
namespace {

using namespace testing;
namespace fs = std::filesystem;
using Texts = std::vector<std::string>;

const std::string kSounds = PARLOWEN_SOURCE_DIR "/sounds/";

std::string Wave(std::vector<std::int16_t> samples, int rate, const std::string& behind = "") {
  WavBytes wav;
  wav.rate = static_cast<std::uint32_t>(rate);
  wav.samples = std::move(samples);
  wav.behind = behind;
  return wav.Bytes();
}

Texts Column(const std::vector<Row>& rows, const std::string& name) {
  Texts cells;
  for (const Row& row : rows) cells.push_back(row.at(name));
  return cells;
}

TEST(MeasureProgram, SaysByItsStatusWhatBecameOfTheTable) {
  const TempFolder folder;
  WriteFile(folder / "a.wav", Wave(Ramp(1600), 16000));
  WriteFile(folder / "b.wav", std::string(100, 'x'));
  fs::create_directory(folder / "shut");
  const struct {
    const char* arguments;
    int status;
    const char* error;  // a part of what is told on standard error
  } cases[] = {
      {"--help", 0, ""},
      {"--version", 0, ""},
      {"a.wav", 0, ""},
      {"-- a.wav", 0, ""},
      {"a.wav b.wav nowhere.wav", 1, "nowhere.wav: the recording cannot be opened"},
      {"", 2, "no recording"},
      {"--wrong a.wav", 2, "unknown option --wrong"},
      {"a.wav --labels", 2, "--labels needs a file"},
      {"--labels a.txt a.wav b.wav", 2, "--labels belongs to one recording"},
      {"--points 1 a.wav", 2, "--points needs"},
      {"--points=101 a.wav", 2, "--points needs"},
      {"--points 5x a.wav", 2, "--points needs"},
      {"--range 60-400 a.wav", 2, "--range needs"},
      {"--measures time,pich a.wav", 2, "--measures needs"},
      {"--channel 3 a.wav", 2, "--channel needs"},
      {"--format xml a.wav", 2, "--format needs"},
      {"--output ./a.wav b.wav a.wav", 2, "--output would replace"},
      {"--output nowhere/t.csv a.wav", 3, "cannot write nowhere/t.csv"},
      {"--output shut a.wav", 3, "cannot write shut"},
  };
  for (const auto& c : cases) {
    const MeasureRun run = Measure(folder, c.arguments);
    EXPECT_EQ(run.status, c.status) << c.arguments;
    EXPECT_NE(run.errors.find(c.error), std::string::npos) << c.arguments << run.errors;
    EXPECT_TRUE(*c.error != '\0' || run.errors.empty()) << run.errors;
  }
  const std::vector<Row> rows = RowsOf(Measure(folder, "a.wav b.wav nowhere.wav").out);
  EXPECT_EQ(Column(rows, "recording"), (Texts{"a.wav", "b.wav", "nowhere.wav"}));
  EXPECT_EQ(Column(rows, "problem"),
            (Texts{"", "the recording is no WAV file", "the recording cannot be opened"}));
  EXPECT_EQ(Column(rows, "start"), (Texts{"0", "", ""}));
}

TEST(MeasureProgram, TheSameFilesGiveTheSameBytes) {
  const TempFolder folder;
  fs::copy_file(kSounds + "english_female_prompt_8000.wav", folder / "a.wav");
  WriteFile(folder / "a.TextGrid", GridText("t", {{1.0, "a, \"b\"\n#"}, {1.5, " "}, {2.5, "好"}}));
  const std::string csv = Measure(folder, "a.wav").out;
  fs::create_directory(folder / "in");
  EXPECT_EQ(Measure(folder, "--output t.csv a.wav").out, "");
  EXPECT_EQ(ReadFile(folder / "t.csv"), csv);
  ::setenv("LC_ALL", "de_DE.UTF-8", 1);
  EXPECT_EQ(Replaced(Measure(folder, "$PWD/a.wav").out, folder.path() + "/", ""), csv);
  ::unsetenv("LC_ALL");
  EXPECT_TRUE(csv.starts_with("\xEF\xBB\xBFrecording,tier,index,label,start,end,duration,"));
  EXPECT_EQ(csv.find('\r'), std::string::npos);
  const std::vector<Row> rows = RowsOf(csv);
  ASSERT_EQ(Column(rows, "label"), (Texts{"a, \"b\"\n#", "好"}));
  EXPECT_EQ(Column(rows, "index"), (Texts{"1", "3"}));
  // JSON Lines hold the same numbers.
  std::istringstream lines(Measure(folder, "--format jsonl --points 2 a.wav").out);
  std::string line;
  std::getline(lines, line);
  EXPECT_TRUE(line.starts_with(
      "{\"recording\":\"a.wav\",\"tier\":\"t\",\"index\":1,\"label\":\"a, \\\"b\\\"\\n#\",\"start\":0,"));
  EXPECT_NE(line.find(",\"f0_mean\":" + rows[0].at("f0_mean") + ","), std::string::npos);
  EXPECT_TRUE(line.ends_with(",\"gravity\":null,\"dispersion\":null,\"intensity\":null,\"problem\":null}"));
  // What is not asked for has no column and changes nothing else.
  const std::vector<Row> some = RowsOf(Measure(folder, "--measures level,voice a.wav").out);
  EXPECT_EQ(some[1].size(), 8 + 2 + 5 + 1u);
  EXPECT_EQ(some[1].at("hnr"), rows[1].at("hnr"));
  // A disk that is full: the old table stays.
  const int status = WithFileSizeLimit(500, [&] {
    ::signal(SIGXFSZ, SIG_IGN);
    return Measure(folder, "--output t.csv a.wav a.wav a.wav").status;
  });
  EXPECT_EQ(status, 3);
  EXPECT_EQ(ReadFile(folder / "t.csv"), csv);
}

std::string MarkerFile() {
  MarkerSet set;
  set.markerCount = {2, 0, 2, 0};
  set.labelCount = {2, 0, 1, 0};
  set.markerPos[0] = 1600, set.markerPos[1] = 4000;
  set.markerPos[40] = 0, set.markerPos[41] = 8000;
  set.labels[0] = {1600, 4000, "ɑ"};
  set.labels[1] = {4000, 4000, "点"};
  set.labels[40] = {0, 8000, "词"};
  const auto bytes = MarkerBytesOf(set);
  return {bytes.begin(), bytes.end()};
}

TEST(MeasureProgram, TakesTheLabelsBesideTheRecordingOrThoseNamed) {
  const TempFolder folder;
  WriteFile(folder / "a.wav", Wave(Ramp(16000), 16000));
  const auto labels = [&](const std::string& arguments = "") {
    Texts found;
    for (const Row& row : RowsOf(Measure(folder, arguments + " a.wav").out))
      found.push_back(row.at("tier") + "|" + row.at("index") + "|" + row.at("label") + "|" + row.at("start") +
                      "|" + row.at("end") + "|" + row.at("problem"));
    return found;
  };
  EXPECT_EQ(labels(), Texts{"|1||0|1|"});
  WriteFile(folder / "a.txt",
            std::string("0.1\t0.25\tone\r\n\\\t100\t200\n0.5\t0.5\tpoint\n0.5 0.75 two words\n"));
  EXPECT_EQ(labels(), (Texts{"|1|one|0.1|0.25|", "|3|two words|0.5|0.75|"}));
  WriteFile(folder / "a.lbl", MarkerFile());
  EXPECT_EQ(labels(), (Texts{"1|1|ɑ|0.1|0.25|", "3|1|词|0|0.5|"}));
  EXPECT_EQ(labels("--tier 3"), Texts{"3|1|词|0|0.5|"});
  std::string grid =
      GridText("word", {{0.25, ""}, {0.5, "ma"}, {1.004, "pa"}, {1.5, "behind"}, {1.6, "outside"}});
  WriteFile(folder / "a.textgrid", grid);
  EXPECT_EQ(labels(), (Texts{"word|2|ma|0.25|0.5|", "word|3|pa|0.5|1.004|",
                             "word|4|behind|1.004|1.5|the interval lies outside the recording",
                             "word|5|outside|1.5|1.6|the interval lies outside the recording"}));
  EXPECT_EQ(labels("--tier phone --tier x"), Texts{"|||||no interval tier \"phone\", \"x\""});
  EXPECT_EQ(labels("--labels a.lbl --tier 1"), Texts{"1|1|ɑ|0.1|0.25|"});
  WriteFile(folder / "b", GridText("w", {{0.001, "x"}, {0.00102, "y"}, {0.9, "z"}, {1.2, "far"}}));
  EXPECT_EQ(labels("--labels b"),
            (Texts{"w|1|x|0|0.001|", "w|2|y|0.001|0.00102|the interval is shorter than a sample",
                   "w|3|z|0.00102|0.9|", "w|4|far|0.9|1.2|the interval reaches beyond the recording"}));
}

TEST(MeasureProgram, ADamagedLabelFileIsAFailureOfItsRecordingAlone) {
  const TempFolder folder;
  const std::string wave = Wave(Ramp(16000), 16000);
  const std::string grid = GridText("t", {{0.5, "a"}, {1, "b"}});
  std::string markers = MarkerFile();
  markers[0] = 21;
  const struct {
    const char *name, *problem;
    std::string bytes;
  } cases[] = {
      {"a.TextGrid", "the TextGrid is damaged", grid.substr(0, grid.size() - 4)},
      {"b.TextGrid", "the label file is no TextGrid", "0\t1\ta\n"},
      {"c.lbl", "the marker file is damaged", markers},
      {"d.lbl", "the marker file is damaged", MarkerFile().substr(1)},
      {"e.txt", "line 2 of the label track is no label", "0\t0.5\ta\n0.7\t0.6\tb\n"},
  };
  std::string all;
  for (const auto& c : cases) {
    WriteFile(folder / c.name, c.bytes);
    WriteFile(folder / (std::string(1, c.name[0]) + ".wav"), wave);
    all += std::string(" ") + c.name[0] + ".wav";
  }
  WriteFile(folder / "good.wav", wave);
  const MeasureRun run = Measure(folder, all + " good.wav");
  EXPECT_EQ(run.status, 1);
  const std::vector<Row> rows = RowsOf(run.out);
  ASSERT_EQ(rows.size(), std::size(cases) + 1);
  for (std::size_t i = 0; i < std::size(cases); ++i) {
    EXPECT_EQ(rows[i].at("problem"), cases[i].problem);
    EXPECT_EQ(rows[i].at("start") + rows[i].at("sample_rate") + rows[i].at("level_mean"), "");
  }
  EXPECT_EQ(rows.back().at("problem"), "");
  EXPECT_EQ(std::count(run.errors.begin(), run.errors.end(), '\n'), std::ssize(cases));
}

TEST(MeasureProgram, TheContourGoesThroughShortGapsInLogF) {
  // Frames of 10 ms from a contour that was saved with the sound: 100 Hz, a gap of 5 frames, 200 Hz, one of 6, 200 Hz.
  std::vector<float> periods(102);
  for (std::size_t f = 10; f < 15; ++f) periods[f] = 160;
  for (std::size_t f = 20; f < 30; ++f) periods[f] = 80;
  for (std::size_t f = 36; f < 41; ++f) periods[f] = 80;
  const TempFolder folder;
  WriteFile(folder / "a.wav", Wave(Ramp(16000), 16000, PitchTail(periods)));
  const Row row = RowsOf(Measure(folder, "--measures pitch --points 31 a.wav").out).at(0);
  // Point i stands at frame 10 + i.
  const auto hertz = [&](int i) { return row.at(Format("f0_%02d", i + 1)); };
  EXPECT_EQ(hertz(0) + " " + hertz(4) + " " + hertz(10) + " " + hertz(19) + " " + hertz(26),
            "100 100 200 200 200");
  for (int i = 5; i < 10; ++i) EXPECT_NEAR(std::stod(hertz(i)), 100 * std::pow(2, (i - 4) / 6.0), 0.001);
  for (int i = 20; i < 26; ++i) EXPECT_EQ(hertz(i), "");
  EXPECT_EQ(row.at("voiced"), "0.2");
  EXPECT_EQ(row.at("f0_mean"), "175");
  EXPECT_NEAR(std::stod(row.at("f0_st_range")), 12, 1e-4);
  EXPECT_NEAR(std::stod(row.at("f0_sd")), std::sqrt((5 * 75.0 * 75 + 15 * 25.0 * 25) / 19), 0.001);
  // Asked for a range, the contour is computed: a ramp has no voice.
  EXPECT_EQ(RowsOf(Measure(folder, "--range auto a.wav").out).at(0).at("voiced"), "0");
}

TEST(MeasureProgram, MeasuresTheChannelThatIsAskedFor) {
  const TempFolder folder;
  WavBytes wav;
  wav.blockAlign = 4;
  wav.samples.clear();
  for (int i = 0; i < 20000; ++i) wav.samples.insert(wav.samples.end(), {10, 100});
  for (int i = 0; i < 20000; ++i)
    wav.samples.insert(wav.samples.end(), {100, 1000});  // not in the first read
  WriteFile(folder / "a.wav", wav.Bytes());
  const auto level = [&](const std::string& option) {
    return std::stod(RowsOf(Measure(folder, option + " a.wav").out).at(0).at("level_max"));
  };
  EXPECT_NEAR(level(""), 40, 0.02);
  EXPECT_NEAR(level("--channel 2"), 60, 0.02);
}

/// A recording of many copies of one, each a whole number of 10 ms frames, with its stretches labelled in each.
void WriteCopies(const TempFolder& folder, const std::string& name, const std::string& sound, int rate,
                 int unit, int copies, double whole) {
  const std::string bytes = ReadFile(kSounds + sound).substr(44);
  std::vector<std::int16_t> samples, all;
  for (std::size_t i = 0; i + 1 < bytes.size(); i += 2)
    samples.push_back(static_cast<std::int16_t>(static_cast<unsigned char>(bytes[i]) |
                                                static_cast<unsigned char>(bytes[i + 1]) << 8));
  samples.resize(static_cast<std::size_t>(unit));
  std::vector<std::pair<double, std::string>> intervals;
  for (int copy = 0; copy < copies; ++copy) {
    all.insert(all.end(), samples.begin(), samples.end());
    for (int part = 1; part <= 4; ++part)
      intervals.push_back(
          {(copy + part / 4.0) * unit / rate + 0.0031, std::to_string(part)});  // off all samples
  }
  WriteFile(folder / (name + ".wav"), Wave(std::move(all), rate));
  std::string grid = GridText("part", intervals);
  if (whole > 0) {
    const std::string end = Format("%.15g", intervals.back().first);
    grid.replace(grid.find("<exists>\n1\n"), 11, "<exists>\n2\n");
    grid += "\"IntervalTier\"\n\"whole\"\n0\n" + end + "\n2\n0\n" + Format("%.15g", whole) + "\n\"long\"\n" +
            Format("%.15g", whole) + "\n" + end + "\n\"\"\n";
  }
  WriteFile(folder / (name + ".TextGrid"), grid);
}

TEST(MeasureProgram, AnIntervalOfALongRecordingMeasuresAsInAShortOne) {
  const struct {
    const char* sound;
    int rate, unit, copies;
    double
        share;  // of the intervals that may differ in what depends on the contour: the creak of one syllable of four
  } cases[] = {
      {"mandarin_mao_four_tones_female_11025.wav", 11025, 27342, 110, 0},  // 2.48 s, 273 s in all
      {"mandarin_mao_four_tones_male_44100.wav", 44100, 126126, 30,
       0.25},  // 2.86 s, 86 s; a document has 35 s
  };
  for (const auto& c : cases) {
    const TempFolder folder;
    WriteCopies(folder, "short", c.sound, c.rate, c.unit, 6, 0);
    WriteCopies(folder, "long", c.sound, c.rate, c.unit, c.copies, c.copies * 2.2);
    const std::vector<Row> few = RowsOf(Measure(folder, "short.wav").out),
                           many = RowsOf(Measure(folder, "long.wav").out);
    ASSERT_EQ(many.size(), static_cast<std::size_t>(4 * c.copies + 1));
    EXPECT_NE(many.back().at("problem").find("longer than a document ("), std::string::npos);
    EXPECT_EQ(many.back().at("level_mean"), "");
    int compared = 0, differing = 0;
    for (std::size_t i = 4; i + 5 < many.size(); ++i, ++compared) {
      const Row& same = few[8 + i % 4];  // the third copy, with sound on either side
      EXPECT_EQ(many[i].at("problem"), "");
      EXPECT_EQ(many[i].at("level_mean"), same.at("level_mean")) << many[i].at("start");
      if (c.rate >= 16000) {
        EXPECT_NEAR(std::stod(many[i].at("gravity")), std::stod(same.at("gravity")), 0.002);
      }
      const auto apart = [&](const char* column, double most) {
        const std::string &one = many[i].at(column), &other = same.at(column);
        if (one.empty() || other.empty()) return one != other;
        return std::fabs(std::stod(one) - std::stod(other)) > most;
      };
      differing += apart("voiced", 1e-9) || apart("f0_median", 0.1) || apart("f0_06", 0.1);
    }
    EXPECT_GT(compared, 4 * c.copies - 12);
    EXPECT_LE(differing, c.share * compared) << c.sound;
  }
}

TEST(MeasureRecording, StretchesBeginAtWholeSecondsWithContext) {
  constexpr int kRate = 11025;
  const std::int64_t document = 100 * kRate, total = 1000 * kRate;
  const struct {
    double start, end;
    double origin, seconds;  // −1: none
  } cases[] = {
      {0.5, 1, 0, 100},         {1.9, 3, 0, 100},      {3.9, 5, 1, 100},     {500.2, 596, 498, 100},
      {500.2, 597.5, 498, 100},  // 2.7 s are left: half of them before
      {500.2, 599.9, 500, 100}, {500.2, 600.5, -1, 0}, {950, 951, 900, 100}, {999, 1000, 900, 100},
  };
  for (const auto& c : cases) {
    const auto plan =
        PlanStretch(std::llround(c.start * kRate), std::llround(c.end * kRate), total, kRate, document);
    ASSERT_EQ(plan.has_value(), c.origin >= 0) << c.start;
    if (!plan) continue;
    EXPECT_EQ(plan->origin, static_cast<std::int64_t>(c.origin * kRate)) << c.start << " " << c.end;
    EXPECT_EQ(plan->count, static_cast<int>(c.seconds * kRate)) << c.start;
  }
  // The quietest of the 10 ms pieces; nowhere when there is none.
  std::vector<std::int16_t> samples(1600, 100);
  std::fill(samples.begin() + 640, samples.begin() + 800, std::int16_t{1});
  EXPECT_EQ(QuietestPlace({samples.data(), 1600}, 16000, 160, 1600), 640);
  EXPECT_EQ(QuietestPlace({samples.data(), 1600}, 16000, 1500, 1600), 1600);
}

}  // namespace
}  // namespace parlowen
