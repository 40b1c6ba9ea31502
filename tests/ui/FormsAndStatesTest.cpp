#include <gtest/gtest.h>

#include <climits>

#include "ui/CommandStates.h"
#include "ui/InputForm.h"

namespace parlowen {
namespace {

TEST(CommandStates, ARowIsEnabledWhileAllItNeedsHoldsAndSaysTheFirstThatIsMissing) {
  CommandStates states({{7, {}}, {5, Need::Sound | Need::Clip}, {9, Need::Recording}});
  const auto enabled = [&] { return states.Enabled(); };
  using Numbers = std::vector<int>;
  EXPECT_EQ(enabled(), Numbers{7});
  EXPECT_EQ(std::string(states.MissingFor(5)), "先打开声音文件");
  states.onSoundLoaded(16000);
  EXPECT_EQ(std::string(states.MissingFor(5)), "先剪切或复制一段");
  states.onCopy();
  EXPECT_EQ(enabled(), (Numbers{5, 7}));
  EXPECT_EQ(std::string(states.MissingFor(5)), "");
  states.onRecording(true);
  EXPECT_EQ(enabled(), Numbers{9});
  EXPECT_EQ(std::string(states.MissingFor(5)), "正在录音");
  states.onRecording(false);
  states.enableCommand(5, false);
  EXPECT_EQ(enabled(), Numbers{7});
  states.onCut();
  EXPECT_EQ(enabled(), (Numbers{5, 7})) << "a fact of the row was told again";
  EXPECT_FALSE(states.IsEnabled(6));
}

TEST(InputForm, ACountIsTheDigitsAFieldBeginsWith) {
  const struct {
    const char* text;
    int count;
  } cases[] = {{"", 0},
               {"  12", 12},
               {"+7", 7},
               {"-7", 0},
               {"abc", 0},
               {"3.9", 3},
               {"2147483647", INT_MAX},
               {"2147483648", INT_MAX},
               {"99999999999999999999999999", INT_MAX},
               {"１２", 0},
               {"0x10", 0}};
  for (const auto& c : cases) EXPECT_EQ(OneFieldForm("", "", c.text).CountOf(1000), c.count) << c.text;
  EXPECT_EQ(OneFieldForm("", "", "5").CountOf(1001), 0) << "no such field";
}

}  // namespace
}  // namespace parlowen
