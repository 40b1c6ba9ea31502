// The distributions of a corpus: reading its table, scales and shares, what is drawn.

#include <gtest/gtest.h>

#include "shell/report/CorpusPictures.h"
#include "support/Kept.h"
#include "support/TempFolder.h"
#include "ui/Svg.h"

namespace parlowen {
namespace {

using Rows = std::vector<std::vector<std::string>>;

Rows RowsOf(const std::string& text, bool* failed) {
  const testing::TempFolder folder;
  testing::WriteFile(folder / "table.csv", text);
  CsvRows rows(folder / "table.csv");
  Rows all;
  for (std::vector<std::string> cells; rows.Next(cells);) all.push_back(cells);
  *failed = rows.failed();
  return all;
}

TEST(CorpusReport, CsvRowsAreReadAsTheStandardHasThem) {
  const struct {
    std::string text;
    Rows rows;
    bool failed;
  } cases[] = {
      {"\xEF\xBB\xBF# note, \"one\n#\na,b\n1,\n", {{"a", "b"}, {"1", ""}}, false},
      {"a\r\n\n\"x, \"\"y\"\"\nz\"\r\n#b", {{"a"}, {"x, \"y\"\nz"}, {"#b"}}, false},
      {"a,\"\",\"\"\"\"\n", {{"a", "", "\""}}, false},
      {"a\n\"cut off\n", {{"a"}}, true},
      {"a\n" + std::string(CsvRows::kMostBytes + 1, 'x'), {{"a"}}, true},
      {"", {}, false},
  };
  for (const auto& c : cases) {
    bool failed = false;
    EXPECT_EQ(RowsOf(c.text, &failed), c.rows) << c.text.substr(0, 40);
    EXPECT_EQ(failed, c.failed) << c.text.substr(0, 40);
  }
}

TEST(CorpusReport, ScalesHoldTheirValuesBetweenRoundNumbers) {
  const struct {
    std::vector<float> values;
    double first, last;
  } cases[] = {{{0.07f, 0.9f}, 0.05, 1},
               {{99, 480, 120}, 50, 500},
               {{2}, 2, 20},
               {{1, 1}, 1, 2},
               {{6e-4f, 51}, 5e-4, 100}};
  for (const auto& c : cases) {
    PlotScale scale{0, 1, 0, 100};
    ASSERT_TRUE(ScaleAround(c.values, scale));
    EXPECT_NEAR(scale.first, c.first, c.first * 1e-9);
    EXPECT_NEAR(scale.last, c.last, c.last * 1e-9);
  }
  PlotScale decades{1, 100, 0, 400, true};
  const std::vector<float> values = {0.1f, 1, 2, 20, 99, 100, 1e9f, 4};
  EXPECT_EQ(SharesOf(values, decades, 4), (std::vector<double>{37.5, 12.5, 12.5, 37.5}));
}

TEST(CorpusReport, ATableBecomesTiersAndTheirPictures) {
  std::string text = "recording,tier,label,start,duration,f0_mean,f1,f2,problem\n\"a,b.wav\",,,,,,,,bad\n";
  for (int i = 0; i < 6; ++i) text += "a.wav,韵母,a,0,0.2,200,800,1300,\na.wav,声母,sh,0.2,0.1,,,,\n";
  for (int i = 0; i < 8; ++i) text += "a.wav,t" + std::to_string(i) + ",x,0,inf,-1,nan,100,\n";
  const testing::TempFolder folder;
  testing::WriteFile(folder / "table.csv", text);
  CsvRows rows(folder / "table.csv");
  CorpusValues values;
  ASSERT_EQ(ReadCorpusValues(rows, values), 0);
  ASSERT_EQ(values.tiers.size(), std::size_t{CorpusValues::kMostTiers});
  EXPECT_TRUE(values.moreTiers);
  EXPECT_EQ(values.tiers[0].durations.size(), 6u);
  EXPECT_EQ(values.tiers[1].f0.size(), 0u);
  EXPECT_EQ(values.tiers[2].durations.size() + values.tiers[2].vowels.size(), 0u);
  const auto count = [](const Picture& picture, const auto& wanted) {
    int found = 0;
    for (const Mark& mark : picture.marks) found += wanted(mark) ? 1 : 0;
    return found;
  };
  const auto curve = [](const Mark& mark) { return std::holds_alternative<PolylineMark>(mark); };
  EXPECT_EQ(count(DurationDistribution(values), curve), 2);
  EXPECT_EQ(count(F0Distribution(values), curve), 1);
  const Picture formants = FormantDistribution(values);
  EXPECT_EQ(count(formants, [](const Mark& mark) { return std::holds_alternative<OvalMark>(mark); }), 1);
  EXPECT_EQ(count(formants,
                  [](const Mark& mark) {
                    const auto* name = std::get_if<TextMark>(&mark);
                    return name != nullptr && name->text == "a" && name->face == Face::Ipa;
                  }),
            1);
}

/// Two tiers; of the second a rare label, one with a long name, some beside the axes. Kept as it was looked at.
TEST(CorpusReport, ThePicturesAreThoseThatWereLookedAt) {
  std::string text = "recording,tier,label,start,duration,f0_mean,f1,f2,problem\n";
  for (int i = 0; i < 240; ++i) {
    const int spread = i * 37 % 101;
    text += Format("a.wav,韵母,%s,0,0.%03d,%d,%d,%d,\n",
                   i % 9 == 0   ? "iŋ"
                   : i % 4 == 0 ? "ɤ"
                                : "a",
                   80 + spread, 120 + spread, 400 + 5 * spread, i % 50 == 7 ? 9000 : 1000 + 11 * spread);
    if (i % 3 == 0)
      text +=
          Format("a.wav,一个很长很长很长的层名子,%s,0,1.%02d,%d,%d,%d,\n", i < 12 ? "少" : "thirteenchars",
                 spread % 100, 300 - spread, 300 + spread, 2500 - 2 * spread);
  }
  const testing::TempFolder folder;
  CsvRows rows(testing::WriteFile(folder / "table.csv", text));
  CorpusValues values;
  ASSERT_EQ(ReadCorpusValues(rows, values), 0);
  std::string seen;
  for (const auto& picture :
       {DurationDistribution(values), F0Distribution(values), FormantDistribution(values)})
    seen += testing::WithoutDecimals(ToSvg(picture)) + "\n";
  testing::ExpectKept(PARLOWEN_SOURCE_DIR "/tests/corpus/pictures.kept", seen);
}

}  // namespace
}  // namespace parlowen
