// TextGrid files: the bytes that are written, the forms that are read, what is refused.

#include <gtest/gtest.h>

#include "interchange/TextGrid.h"

namespace parlowen {
namespace {

TextGrid SmallGrid() {
  TextGrid grid{0, 2.3};
  grid.tiers.push_back({"1", false, 0, 2.3, {{0, 0.1, ""}, {0.1, 2.3, "说\"x\""}}});
  grid.tiers.push_back({"1 点", true, 0, 2.3, {}, {{0.5, "T1"}}});
  return grid;
}

const char* const kLong =
    "File type = \"ooTextFile\"\nObject class = \"TextGrid\"\n\nxmin = 0 \nxmax = 2.3 \ntiers? <exists> \nsize = 2 \nitem []: \n"
    "    item [1]:\n        class = \"IntervalTier\" \n        name = \"1\" \n        xmin = 0 \n        xmax = 2.3 \n"
    "        intervals: size = 2 \n        intervals [1]:\n            xmin = 0 \n            xmax = 0.1 \n            text = \"\" \n"
    "        intervals [2]:\n            xmin = 0.1 \n            xmax = 2.3 \n            text = \"说\"\"x\"\"\" \n"
    "    item [2]:\n        class = \"TextTier\" \n        name = \"1 点\" \n        xmin = 0 \n        xmax = 2.3 \n"
    "        points: size = 1 \n        points [1]:\n            number = 0.5 \n            mark = \"T1\" \n";

std::optional<TextGrid> Read(const std::string& text, GridFault expected = GridFault::None) {
  GridFault fault = GridFault::None;
  auto grid = ReadTextGrid(text, fault);
  EXPECT_EQ(fault, expected) << text;
  EXPECT_EQ(grid.has_value(), fault == GridFault::None);
  return grid;
}

TEST(TextGridFile, IsWrittenInTheLongFormToTheByte) { EXPECT_EQ(TextGridText(SmallGrid()), kLong); }

TEST(TextGridFile, LongShortAndHandMadeFilesReadAlike) {
  const std::string shortForm =
      "File type = \"ooTextFile\"\nObject class = \"TextGrid\"\n\n0\n2.3\n<exists>\n2\n\"IntervalTier\"\n\"1\"\n0\n2.3\n2\n"
      "0\n0.1\n\"\"\n0.1\n2.3\n\"说\"\"x\"\"\"\n\"TextTier\"\n\"1 点\"\n0\n2.3\n1\n0.5\n\"T1\"";
  const std::string byHand =
      "\"ooTextFile\" ! made by hand: 5 \"tiers\"\n\"TextGrid\" from 0 to 2.3 s <exists> 2 tiers\n"
      "\"IntervalTier\" \"1\" 0 2.3 with 2 parts: 0 0.1 \"\" 0.1 2.3 \"说\"\"x\"\"\"\n\"TextTier\" \"1 点\" 0 2.3 1 0.5 \"T1\"\n";
  EXPECT_EQ(Read(kLong), SmallGrid());
  EXPECT_EQ(Read(shortForm), SmallGrid());
  EXPECT_EQ(Read(byHand), SmallGrid());
  std::string windows = shortForm;
  for (std::size_t at = 0; (at = windows.find('\n', at)) != std::string::npos; at += 2)
    windows.replace(at, 1, "\r\n");
  EXPECT_EQ(Read(windows), SmallGrid());
}

std::string Grid(const std::string& tiers) { return "\"ooTextFile\" \"TextGrid\" 0 1 <exists> " + tiers; }

TEST(TextGridFile, RoundedTimesDoNotMakeGapsOrOverlaps) {
  const auto grid = Read(Grid("1 \"IntervalTier\" \"a\" 0 1 3 0 0.3 \"x\" 0.2999999 0.5 \"y\" 0.7 1 \"z\""));
  ASSERT_TRUE(grid);
  EXPECT_EQ(grid->tiers[0].intervals[1].start, 0.3);
  EXPECT_EQ(grid->tiers[0].intervals[2].start, 0.7) << "a gap stays one";
}

TEST(TextGridFile, RefusesWhatIsNoneAndWhatIsDamaged) {
  for (const char* text : {"", "RIFF", "\"ooTextFile\" \"PitchTier\" 0 1 1 0.5 100"})
    Read(text, GridFault::NoTextGrid);
  const std::string intervals = "1 \"IntervalTier\" \"a\" 0 1 ";
  for (const std::string& text :
       {std::string("\"ooTextFile\" \"TextGrid\" 0"),
        std::string("\"ooTextFile\" \"TextGrid\" 0 1 2 \"IntervalTier\""),
        std::string("\"ooTextFile\" \"TextGrid\" 1 1 <exists> 0"), Grid("-1"), Grid("999999999"),
        Grid("1e300"), Grid("1 \"OtherTier\" \"a\" 0 1 0"), Grid(intervals + "2 0 1 \"x\""),
        Grid(intervals + "4294967297 0 1 \"x\""), Grid(intervals + "1 0 \"x\" 1"),
        Grid(intervals + "1 0 1 \"x"), Grid(intervals + "1 0.5 0.4 \"x\""),
        Grid(intervals + "2 0 0.6 \"x\" 0.5 1 \"y\""), Grid("1 \"TextTier\" \"a\" 0 1 1 1e400 \"x\"")})
    Read(text, GridFault::Damaged);
  std::string tiers;
  for (std::size_t i = 0; i <= kMostTiers; ++i) tiers += " \"TextTier\" \"\" 0 1 0";
  Read(Grid(std::to_string(kMostTiers + 1) + tiers), GridFault::Damaged);
  std::string points;
  for (std::size_t i = 0; i <= kMostTierItems; ++i) points += " 0 \"\"";
  GridFault fault = GridFault::None;
  EXPECT_FALSE(
      ReadTextGrid(Grid("1 \"TextTier\" \"\" 0 1 " + std::to_string(kMostTierItems + 1) + points), fault));
  EXPECT_TRUE(Read("\"ooTextFile\" \"TextGrid\" 0 1 <absent>")->tiers.empty());
  // Cut anywhere, the file is refused; only the last blank and the line's end can go.
  const std::string whole = kLong;
  for (std::size_t length = 0; length + 2 < whole.size(); ++length) {
    EXPECT_FALSE(ReadTextGrid(whole.substr(0, length), fault)) << length;
  }
}

}  // namespace
}  // namespace parlowen
