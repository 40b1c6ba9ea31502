#include "audio/Player.h"

#include <gtest/gtest.h>

#include "audio/FakeDevices.h"
#include "support/FakeWindow.h"
#include "support/WavBytes.h"

namespace parlowen {
namespace {

using testing::Texts;

struct Stage {
  testing::FakeWindow window;
  CommandStates states;
  SoundDocument document;
  testing::FakeLoudspeaker speaker;
  Player player{&speaker, window, document, states};

  Stage() {
    const auto ramp = testing::Ramp(1000);
    std::copy(ramp.begin(), ramp.end(), document.samples.data());
    document.resetForNewSound(1000, 22050, states);
  }
  int Play(int start, int end, PlayMode mode = PlayMode::Forward) {
    return player.startPlayback(start, end, mode, document.samples.data());
  }
};

TEST(Player, PlaysAStretchAndTellsWhereItIs) {
  Stage stage;
  EXPECT_EQ(stage.Play(100, 151), 0);
  EXPECT_EQ(stage.window.Log(), Texts{"status|T 键停止放音"});
  EXPECT_EQ(stage.speaker.rate, 22050);
  EXPECT_EQ(stage.speaker.heard, testing::Ramp(51, 101));
  EXPECT_TRUE(stage.states.Holds(Need::Playing));
  stage.speaker.position = 20;
  EXPECT_EQ(stage.player.playbackPosition(), 20);
  EXPECT_EQ(stage.player.CursorSample(), 120);
  stage.speaker.position = 1000;  // a device that counts on
  EXPECT_EQ(stage.player.CursorSample(), 151);

  stage.speaker.onDone();
  EXPECT_EQ(stage.window.Log(), Texts{"status|放音结束"});
  EXPECT_FALSE(stage.player.playing());
  EXPECT_FALSE(stage.states.Holds(Need::Playing));
  EXPECT_FALSE(stage.player.CursorSample());
  EXPECT_EQ(stage.speaker.calls, (Texts{"open", "prepare", "write", "reset", "close"}));
}

TEST(Player, ReverseBeginsWithTheSampleAtTheEnd) {
  Stage stage;
  EXPECT_EQ(stage.Play(100, 151, PlayMode::Reverse), 0);
  // Sample i holds i + 1: samples 151, 150 … 101.
  ASSERT_EQ(stage.speaker.heard.size(), 51u);
  EXPECT_EQ(stage.speaker.heard.front(), 152);
  EXPECT_EQ(stage.speaker.heard[1], 151);
  EXPECT_EQ(stage.speaker.heard.back(), 102);
  stage.speaker.position = 20;
  EXPECT_EQ(stage.player.CursorSample(), 131);
  EXPECT_EQ(stage.Play(990, 1000, PlayMode::Reverse), 0);
  EXPECT_EQ(stage.speaker.heard.front(), 0) << "behind the last sample lies silence";
}

TEST(Player, NothingToPlayIsSilentlyRefused) {
  Stage stage;
  for (const auto& [start, end] : {std::pair{0, 0}, {5, 4}, {-1000, -1000}, {-1, 5}})
    EXPECT_EQ(stage.Play(start, end), -1);
  EXPECT_TRUE(stage.window.Log().empty());
  EXPECT_TRUE(stage.speaker.calls.empty());
}

TEST(Player, EveryFailureHasItsText) {
  const struct {
    const char *failAt, *text;
  } starts[] = {{"prepare", " Error in waveOut PrepareHeader!"}, {"write", " Error in waveoutwrite Buffer"}};
  for (const auto& c : starts) {
    Stage stage;
    stage.speaker.failAt = c.failAt;
    EXPECT_EQ(stage.Play(0, 100), -1);
    EXPECT_EQ(stage.window.Log(), Texts{std::string("none|Parlowen(Tessiran)|") + c.text});
    EXPECT_EQ(stage.speaker.calls.back(), "close");
    EXPECT_FALSE(stage.player.playing());
    EXPECT_FALSE(stage.states.Holds(Need::Playing));
  }
  const struct {
    const char *failAt, *text;
  } stops[] = {{"reset", " Error Reseting wave output device"},
               {"close", " Error closing wave output device"}};
  for (const auto& c : stops) {
    Stage stage;
    stage.Play(0, 100);
    stage.window.Log();
    stage.speaker.failAt = c.failAt;
    stage.speaker.onDone();
    EXPECT_EQ(stage.window.Log(),
              (Texts{"status|放音结束", std::string("none|Parlowen(Tessiran)|") + c.text}));
    EXPECT_FALSE(stage.player.playing());
  }
  Stage stage;
  stage.Play(0, 100);
  stage.window.Log();
  stage.speaker.onFailed("gone");
  stage.speaker.onFailed("gone");
  EXPECT_EQ(stage.window.Log(), (Texts{"status|放音结束", "none|Parlowen(Tessiran)|gone"}));
  EXPECT_EQ(stage.speaker.calls.back(), "close");
}

}  // namespace
}  // namespace parlowen
