#include "synthesis/SynthesisCommands.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>

#include "audio/FakeDevices.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"
#include "support/WavBytes.h"
#include "synthesis/SynthesisWindow.h"

namespace parlowen {
namespace {

using namespace testing;

class ModalWindow : public FakeWindow {
 public:
  std::function<void(ToolWindow&)> act;
  void RunModal(ToolWindow& modal) override {
    log.push_back("modal|" + modal.Title());
    if (act) act(modal);
    modal.Closed(*this);
  }
};

struct Stage {
  TempFolder folder;
  ModalWindow window;
  CommandStates states;
  SoundDocument document;
  FakeLoudspeaker speaker;
  Player player{&speaker, window, document, states};
  SynthesisState state;
  std::string exportFolder = folder.path();
  TargetReader readTarget;

  /// A sawtooth of 128 Hz with its contour, all of it selected.
  explicit Stage(int rate = 16000, int count = 16000) {
    for (int n = 0; n < count; ++n) document.samples[n] = static_cast<std::int16_t>(6000 - 96 * (n % 125));
    document.resetForNewSound(count, rate, states);
    document.pitch.fill(0.0f);
    std::fill_n(document.pitch.begin(), document.ContourLength(), 125.0f);
    document.pitch[10] = 0.0f;
    document.selectionStart = 0;
    document.selectionEnd = count;
  }
  void Run(std::function<void(ToolWindow&)> act) {
    window.act = std::move(act);
    window.answers.push_front("yes");
    StartResynthesis(window, {document, state, player, exportFolder, readTarget});
  }
  void Press(ToolWindow& tool, int number) {
    for (const ToolControl& control : tool.Controls())
      if (control.number == number && control.enabled) return tool.Press(window, control);
  }
};

TEST(SynthesisCommands, AFileThatCannotBeMadeIsToldAndTheOutputStays) {
  Stage stage;
  stage.exportFolder = stage.folder / "missing";
  stage.Run([&](ToolWindow& tool) {
    stage.Press(tool, 1);
    const auto output = stage.state.job.output;
    stage.window.Log();
    stage.Press(tool, 1034);
    EXPECT_EQ(stage.window.Log(), Texts{"error|文件夹或文件名错误|文件夹或文件名不对（包含空格？），请重选"});
    EXPECT_EQ(stage.state.job.output, output);
  });
}

TEST(SynthesisCommands, APlayEndsBeforeItsSamplesChangeOrGo) {
  Stage stage;
  stage.Run([&](ToolWindow& tool) {
    stage.Press(tool, 1036);
    EXPECT_EQ(stage.speaker.heard.size(), 16000u);
    EXPECT_TRUE(tool.Key(stage.window, "T"));
    EXPECT_FALSE(stage.player.playing());
    stage.Press(tool, 1);
    stage.speaker.calls.clear();
    stage.Press(tool, 1);
    EXPECT_EQ(stage.speaker.calls, (Texts{"reset", "close", "open", "prepare", "write"}));
    stage.speaker.onDone();
    EXPECT_FALSE(stage.player.playing());
    EXPECT_TRUE(tool.Key(stage.window, "Space"));
    EXPECT_TRUE(tool.Key(stage.window, "Escape"));  // ends the play, the window stays
    EXPECT_FALSE(tool.WantsToClose());
    stage.Press(tool, 1);
  });
  EXPECT_FALSE(stage.player.playing());
  EXPECT_EQ(stage.speaker.calls.back(), "close");
}

TEST(SynthesisCommands, ColumnsFollowZoomAndScrollBar) {
  Stage stage;
  stage.Run([&](ToolWindow& tool) {
    EXPECT_FALSE(tool.ScrollBar());
    tool.Resized(450, 400);  // 406 pixels beside the axis: four for each of 101 frames
    EXPECT_FALSE(tool.ScrollBar());
    tool.Click(stage.window, {8, 96}, MouseButton::Left, false);
    tool.Key(stage.window, "X");
    ASSERT_TRUE(tool.ScrollBar());
    EXPECT_EQ(tool.ScrollBar()->largest, 808 - 406);
    tool.ScrollTo(stage.window, 1000);
    EXPECT_EQ(tool.ScrollBar()->position, 402);
    tool.Click(stage.window, {0, 96}, MouseButton::Left, false);  // column 402
    EXPECT_EQ(stage.state.target[1], 0.0f);
    EXPECT_EQ(stage.state.target[2], 62.5f);
    EXPECT_EQ(stage.state.target[50], 62.5f);
    EXPECT_EQ(stage.state.target[51], 0.0f);
    EXPECT_EQ(tool.Hover({5, 96}), "频率=256Hz ");
  });
}

}  // namespace
}  // namespace parlowen
