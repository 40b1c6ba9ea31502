#include <gtest/gtest.h>

#include <climits>

#include "ui/CommandStates.h"
#include "ui/InputForm.h"

namespace parlowen {
namespace {

using Numbers = std::vector<int>;

/// Those of the commands that can be chosen.
Numbers Among(const CommandStates& states, const Numbers& commands) {
  Numbers enabled;
  for (const int command : commands)
    if (states.IsEnabled(command)) enabled.push_back(command);
  return enabled;
}

const Numbers kByRate = {212, 40089, 40057, 40051, 40069, 40073, 40082, 40070, 40058, 40033};
const Numbers kKeptAtHighRates = {40095, 40096, 40062, 40063, 40064};
const Numbers kOfSelection = {40001, 40002, 40040, 40004, 40006, 40007, 40074};

TEST(CommandStates, TheRateThatLosesTheVowelCommandsLiesJustAbove22050) {
  for (const int rate : {11025, 22050, 22099, 22100, 44100}) {
    SCOPED_TRACE(rate);
    CommandStates states;
    states.onSoundLoaded(rate);
    EXPECT_EQ(Among(states, kByRate), rate < 22100 ? kByRate : Numbers{});
    EXPECT_EQ(Among(states, kKeptAtHighRates), rate < 22100 ? kKeptAtHighRates : Numbers{})
        << "never enabled before";
    EXPECT_EQ(states.IsEnabled(40029), rate < 22100);
    EXPECT_EQ(Among(states, {40115, 40079, 40080, 40090}), (Numbers{40115, 40079, 40080, 40090}));
    EXPECT_EQ(Among(states, {40003, 272, 40022, 40112, 40025, 40030, 40067, 40059, 40072, 40085}), Numbers{});
  }
}

TEST(CommandStates, ALoadAfterALowRateKeepsTheGroupThatHasNoRuleForHighRates) {
  CommandStates states;
  states.onSoundLoaded(16000);
  states.onCopy();
  states.onSelectionChanged({true, 5000, 16000, true});
  states.onSoundLoaded(44100, true);
  EXPECT_EQ(Among(states, kKeptAtHighRates), kKeptAtHighRates);
  EXPECT_EQ(Among(states, kByRate), Numbers{});
  EXPECT_TRUE(states.IsEnabled(40003)) << "the clip survives a load";
  EXPECT_EQ(Among(states, {160, 40081, 40024, 40050, 40068, 274, 40001, 40040, 40002, 40006, 40007, 40036,
                           40074, 40004, 40029}),
            Numbers{});
  states.onRateChanged(16000);
  EXPECT_EQ(Among(states, kByRate), kByRate);
  EXPECT_TRUE(states.IsEnabled(40029));
}

TEST(CommandStates, FiftyOneSamplesPlayAndFiftyDoNot) {
  const struct {
    bool defined;
    int length, rate;
    bool pitch;
    Numbers enabled;
  } cases[] = {
      {true, 50, 16000, false, {40056, 40067, 40068}},
      {true, 51, 16000, false, {160, 40024, 40081, 40056, 40067, 40068}},
      {true, 51, 22099, true, {160, 40024, 40081, 40056, 40067, 40068, 40050, 40052, 40103}},
      {true, 51, 22100, true, {160, 40024, 40050, 40052, 40103}},
      {false, 5000, 16000, true, {40103}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.length) + " at " + std::to_string(c.rate));
    CommandStates states;
    for (const bool before : {false, true}) {
      states.onSelectionChanged({before, 100000, 16000, before});
      states.onSelectionChanged({c.defined, c.length, c.rate, c.pitch});
      EXPECT_EQ(Among(states, kOfSelection), c.defined ? kOfSelection : Numbers{});
      EXPECT_EQ(Among(states, {160, 40024, 40081, 40056, 40067, 40068, 40050, 40052, 40103}), c.enabled);
    }
  }
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
