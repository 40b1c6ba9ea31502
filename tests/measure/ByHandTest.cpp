// What a row says of an interval is what the workstation says of the same stretch.

#include <gtest/gtest.h>

#include <regex>

#include "measure/Table.h"

namespace parlowen {
namespace {

using namespace testing;

double MeanOf(const std::vector<double>& values) {
  double sum = 0;
  for (const double value : values) sum += value;
  return sum / static_cast<double>(values.size());
}
double MedianOf(std::vector<double> values) {
  std::sort(values.begin(), values.end());
  return (values[(values.size() - 1) / 2] + values[values.size() / 2]) / 2;
}

/// The numbers of a list of JSON numbers, or of all fields of that name.
std::vector<double> Numbers(const std::string& line, const std::string& name) {
  std::vector<double> values;
  const std::string key = "\"" + name + "\":";
  for (std::size_t at = line.find(key); at != std::string::npos; at = line.find(key, at + 1)) {
    const char* text = line.c_str() + at + key.size();
    const bool list = *text == '[';
    for (char* end = nullptr; *text != ']' || !list; text = end) {
      if (list && *(text += *text == '[' || *text == ',') == ']') break;
      values.push_back(std::strtod(text, &end));
      if (!list) break;
    }
  }
  return values;
}

/// An empty cell where there is nothing to compute from, else the number to its last digit.
void ExpectCell(const Row& row, const std::string& column, const std::vector<double>& values,
                double (*of)(std::vector<double>), double rounding = 0.000501) {
  const std::string& cell = row.at(column);
  const std::string where = column + " of " + row.at("label");
  if (values.empty()) {
    EXPECT_EQ(cell, "") << where;
  } else {
    ASSERT_NE(cell, "") << where;
    EXPECT_NEAR(std::stod(cell), of(values), rounding) << where;
  }
}

double Mean(std::vector<double> values) { return MeanOf(values); }
double Largest(std::vector<double> values) { return *std::max_element(values.begin(), values.end()); }
double Least(std::vector<double> values) { return *std::min_element(values.begin(), values.end()); }

struct Sound {
  const char* name;
  int rate;
  double seconds;
};

class ByHand : public ::testing::TestWithParam<Sound> {};

TEST_P(ByHand, FiftyIntervalsHaveTheNumbersOfTheWorkstation) {
  constexpr int kIntervals = 50;
  const Sound sound = GetParam();
  const int analysisRate = std::min(sound.rate, 16000);
  const TempFolder folder;
  std::filesystem::copy_file(std::string(PARLOWEN_SOURCE_DIR "/sounds/") + sound.name, folder / "a.wav");
  // Ends that lie on no frame, and lengths from 20 to 380 ms.
  std::vector<std::pair<double, std::string>> intervals;
  std::vector<std::pair<double, double>> times;
  double time = 0.1137;
  for (int i = 0; i < kIntervals; ++i) {
    const double end = time + (sound.seconds - 0.6) / kIntervals * (0.2 + 1.6 * (i % 7) / 6.0);
    intervals.push_back({end, "i" + std::to_string(i)});
    times.push_back({i == 0 ? 0 : time, end});
    time = end;
  }
  WriteFile(folder / "a.TextGrid", GridText("t", intervals));
  const auto samples = [&](double t, int rate) { return std::to_string(std::lround(t * rate)); };
  std::string script = "answer file a.wav\ncommand 110\ncommand 220\nprint pitch\n";
  script += "answer file level.csv\ncommand 41028\n";
  if (sound.rate > 16000) script += "answer yes\ncommand 40102\n";
  for (const auto& [start, end] : times) {
    script +=
        "select " + samples(start, analysisRate) + " " + samples(end, analysisRate) + "\nprint formants\n";
    if (analysisRate == 16000) script += "answer no\ncommand 40096\nprint consonant\nclose\n";
  }
  const ProgramResult hand = RunProgram(folder, "", script);
  ASSERT_EQ(hand.status, 0) << hand.errors;
  std::vector<double> periods;
  std::vector<std::string> formants, consonants;
  for (const std::string& line : hand.lines) {
    if (line.find("\"what\":\"pitch\"") != std::string::npos) periods = Numbers(line, "values");
    if (line.find("\"what\":\"formants\"") != std::string::npos) formants.push_back(line);
    if (line.find("\"what\":\"consonant\"") != std::string::npos)
      consonants.push_back(line.substr(line.find("stretch")));
  }
  std::string levelText = ReadFile(folder / "level.csv");
  const std::vector<Row> levels = RowsOf(levelText.substr(levelText.find("time_s")));

  const MeasureRun run = Measure(folder, "a.wav");
  ASSERT_EQ(run.status, 0) << run.errors;
  const std::vector<Row> rows = RowsOf(run.out);
  ASSERT_EQ(rows.size(), times.size());
  for (std::size_t i = 0; i < rows.size(); ++i) {
    const std::int64_t start = std::lround(times[i].first * sound.rate),
                       end = std::lround(times[i].second * sound.rate);
    std::vector<double> level, hertz;
    int frames = 0;
    for (std::int64_t frame = 0; frame < std::ssize(levels); ++frame) {
      const std::int64_t first = frame * sound.rate / 100;
      if (first < start || first >= end) continue;
      ++frames;
      level.push_back(std::stod(levels[static_cast<std::size_t>(frame)].at("level_dB")));
      const double period = periods[static_cast<std::size_t>(frame)];
      if (period > 0) hertz.push_back(sound.rate / period);
    }
    ExpectCell(rows[i], "level_mean", level, Mean);
    ExpectCell(rows[i], "level_max", level, Largest);
    ExpectCell(rows[i], "f0_mean", hertz, Mean, 0.002);
    ExpectCell(
        rows[i], "f0_median", hertz, [](std::vector<double> v) { return MedianOf(v); }, 0.002);
    ExpectCell(rows[i], "f0_min", hertz, Least, 0.002);
    ExpectCell(rows[i], "f0_max", hertz, Largest, 0.002);
    std::vector<double> shares;
    if (frames > 0) shares.push_back(static_cast<double>(hertz.size()) / frames);
    ExpectCell(rows[i], "voiced", shares, Mean);
    EXPECT_EQ(rows[i].at("problem"), frames > 0 ? "" : "no 10 ms frame begins in the interval");
    // The three lists of a frame; below 16000 Hz the order differs, so that only the others are compared.
    if (analysisRate == 16000) {
      static const std::regex kFrame(R"re("time":([^,]*),"f":\[([^\]]*)\])re");
      std::vector<std::pair<double, std::vector<double>>> track;
      for (std::sregex_iterator match(formants[i].begin(), formants[i].end(), kFrame), none; match != none;
           ++match)
        track.push_back({std::stod((*match)[1]), Numbers("\"f\":[" + (*match)[2].str() + "]", "f")});
      const std::size_t third = track.size() / 3;
      for (std::size_t n = 0; n < 3; ++n) {
        std::vector<double> values;
        for (std::size_t k = third; k < track.size() - third; ++k) {
          const auto frame = static_cast<std::size_t>(track[k].first * 100 + 1e-9);
          if (periods[frame] > 0 && track[k].second.size() > n) values.push_back(track[k].second[n]);
        }
        ExpectCell(
            rows[i], "f" + std::to_string(n + 1), values, [](std::vector<double> v) { return MedianOf(v); },
            0.006);
      }
      for (const char* name : {"gravity", "dispersion", "intensity"})
        ExpectCell(rows[i], name, Numbers(consonants[i], name), Mean);
    } else {
      EXPECT_EQ(rows[i].at("gravity"), "");
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Sounds, ByHand,
                         ::testing::Values(Sound{"english_male_sentence_16000.wav", 16000, 7.1},
                                           Sound{"mandarin_initials_male_22050.wav", 22050, 11.2},
                                           Sound{"mandarin_mao_four_tones_female_11025.wav", 11025, 2.45}));

}  // namespace
}  // namespace parlowen
