#include "vowel/VowelCommands.h"

#include <gtest/gtest.h>

#include <cmath>

#include "base/Bytes.h"
#include "support/Child.h"
#include "support/TempFolder.h"
#include "support/WavBytes.h"
#include "vowel/FormantFile.h"
#include "vowel/VowelChartFile.h"
#include "vowel/VowelGroupCommands.h"
#include "vowel/Vowels.h"

namespace parlowen {
namespace {

using namespace testing;

std::string Notice(const char* text, const char* caption = nullptr, const char* icon = "none") {
  return std::string(icon) + "|" + (caption != nullptr ? caption : "Parlowen(Tessiran)") + "|" + text;
}

const std::string kFull = Notice("点数已满，不能再加入!", nullptr, "error");
const std::string kDeleteOrModify = "ask|删除或修改|删除(Yes)?修改(No)？";

class VowelCommands : public ::testing::Test, protected testing::VowelStation {
 protected:
  VowelCommands() { window.SetCaption("Parlowen(Tessiran)"); }

  void Answer(std::deque<std::string> answers) { window.answers = std::move(answers); }
  void Open(bool hertz = true) {
    Answer({hertz ? "yes" : "no", "ok:120"});
    PointChartCommand(window, {document, states, vowels});
    window.answers.clear();
    window.log.clear();
  }
  void ClickAt(int sample) { ClickVowel(window, {document, states, vowels}, sample); }
  Texts Undo(std::deque<std::string> answers) {
    Answer(std::move(answers));
    UndoPointCommand(window, {document, states, vowels});
    EXPECT_TRUE(window.answers.empty());
    return window.Log();
  }
  Texts Type(std::deque<std::string> answers) {
    Answer(std::move(answers));
    TypePointCommand(window, {document, states, vowels});
    EXPECT_TRUE(window.answers.empty());
    return window.Log();
  }
  TempFolder folder;
};

TEST_F(VowelCommands, ChartsAreRefusedAbove16000Hz) {
  Select(0, 5000);
  for (const int rate : {16000, 16001}) {
    document.sampleRate = rate;
    document.activity = Activity::Waveform;
    Answer({"yes"});
    PointChartCommand(window, {document, states, vowels});
    EXPECT_EQ(document.activity == Activity::PointChart, rate == 16000);
    Answer({"yes"});
    document.activity = Activity::Waveform;
    SegmentChartCommand(window, {document, states, vowels});
    EXPECT_EQ(document.activity == Activity::SegmentChart, rate == 16000);
  }
}

TEST_F(VowelCommands, The199thClickIsStoredAndThe200thRefused) {
  Open();
  for (int i = 0; i < 198; ++i) vowels.chart.Add(300, 1000, 0);
  ClickAt(MiddleOf(0));
  EXPECT_EQ(vowels.chart.count, 199);
  EXPECT_TRUE(window.Log().empty());
  ClickAt(MiddleOf(0));
  EXPECT_EQ(window.Log(), Texts{kFull});
  EXPECT_EQ(vowels.chart.count, 199);
  EXPECT_EQ(Type({"set:300,1000"}).size(), 1u) << "a typed point may be the 200th";
  EXPECT_EQ(vowels.chart.count, 200);
  EXPECT_EQ(Type({}), Texts{kFull});
  const VowelPoint before = vowels.chart.points[198];
  EXPECT_EQ(Undo({"no"}), (Texts{kDeleteOrModify, kFull}));
  EXPECT_EQ(vowels.chart.count, 200) << "all of them stay";
  EXPECT_EQ(vowels.chart.points[198], before);
}

TEST_F(VowelCommands, TheLimitsOfATypedPoint) {
  const struct {
    int f1, f2;
    bool accepted;
  } cases[] = {{150, 420, true},   {149, 420, false},   {150, 419, false},
               {1500, 4000, true}, {1501, 4000, false}, {1500, 4001, false},
               {1000, 1001, true}, {1000, 1000, false}, {1001, 1000, false}};
  for (const auto& c : cases) EXPECT_EQ(MayBeTyped(c.f1, c.f2), c.accepted) << c.f1 << ' ' << c.f2;
}

TEST_F(VowelCommands, AFailedSaveLeavesTheOldChartFile) {
  Open(false);
  for (int v = 0; v < 3; ++v) ClickAt(MiddleOf(v));
  const std::string path = folder / "a.vch";
  Answer({"file:" + path});
  SaveChartCommand(window, vowels);
  Undo({"yes"});
  const std::string old = ReadFile(path);
  EXPECT_EQ(old.size(), 6u + 48);
  EXPECT_EQ(testing::WithFileSizeLimit(
                20,
                [&] {
                  Answer({"file:" + path});
                  SaveChartCommand(window, vowels);
                  return window.log.back() == Notice("不能建立文件！", nullptr, "error") ? 0 : 1;
                }),
            0);
  EXPECT_EQ(ReadFile(path), old);
}

TEST_F(VowelCommands, ADamagedFormantFileIsListedUpToItsDamage) {
  const std::string path = folder / "f.fmt";
  for (const int start : {1000, MiddleOf(0) - 1000}) {
    Select(start, start + 2000);
    Answer({"file:" + path, "no"});
    SaveFormantsCommand(window, document);
  }
  const std::string bytes = ReadFile(path);
  ASSERT_EQ(bytes.size(), 2 * (12u + 12 * 48));
  std::vector<FormantBlock> blocks;
  ReadFormantBlocks(AsBytes(bytes), blocks);
  for (const auto& frame : blocks.at(1).frames) {
    EXPECT_NEAR(frame[0], kNineVowels[0].formants[0], 70);
    EXPECT_NEAR(frame[2], kNineVowels[0].formants[1], 70);
  }
  const auto list = [&](const std::string& file) {
    Answer({"file:" + WriteFile(path, file)});
    ListFormantsCommand(window, document, folder.path());
    return std::pair(window.Log().back(), ReadFile(folder / "Formant.txt"));
  };
  const std::string whole = list(bytes).second, damaged = Notice("共振峰数据文件错误！", nullptr, "error");
  const auto [said, first] = list(bytes.substr(0, bytes.size() - 1));
  EXPECT_EQ(said, damaged);
  EXPECT_TRUE(!first.empty() && first.size() < whole.size() && whole.starts_with(first));
  EXPECT_EQ(list(std::string((8 << 20) + 1, 'x')), std::pair(damaged, first))
      << "too large a file is not read";
}

TEST_F(VowelCommands, The47thPointOfAGroupIsStoredAndThe48thRefused) {
  Open();
  ClickAt(MiddleOf(0));
  vowels.chart.points[0].f1 = 781.9f;
  const std::string path = folder / "g.vls";
  Answer({"file:" + path, "ok:啊一普"});
  AddPointToGroupCommand(window, document, vowels);
  for (int i = 1; i < 47; ++i) {
    Answer({"yes"});
    AddPointToGroupCommand(window, document, vowels);
  }
  window.log.clear();
  std::string file = ReadFile(path);
  ASSERT_EQ(file.size(), 200u);
  EXPECT_EQ(file[10], 47);
  EXPECT_EQ(static_cast<std::uint8_t>(file[12]) | file[13] << 8, 781) << "truncated";
  Answer({"yes"});
  AddPointToGroupCommand(window, document, vowels);
  EXPECT_EQ(window.Log().back(), Notice("数据太多，不能再加入！"));
  Answer({"no", "file:" + path, "no", "ok:啊一普"});
  AddPointToGroupCommand(window, document, vowels);
  EXPECT_EQ(window.Log().back(), Notice("数据太多，不能再加入！"));
  EXPECT_EQ(ReadFile(path), file);
}

}  // namespace
}  // namespace parlowen
