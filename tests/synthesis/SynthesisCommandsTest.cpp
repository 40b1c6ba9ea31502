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

std::string Record(const std::vector<float>& periods) {
  std::string bytes = "HEAD" + Little(4 * periods.size() + 4, 4) + Little(0, 4);
  for (const float period : periods) bytes += Little(std::bit_cast<std::uint32_t>(period), 4);
  return bytes;
}

TEST(SynthesisCommands, ARecordAFactorOrAnotherProgramsCurveBecomesTheTarget) {
  Stage stage;
  const std::string path = WriteFile(stage.folder / "a.pdt",
                                     Record({1, 2}) + Record({90, 95, 0, 80, 1, 1, 1, 1, 1, 1, 70}) + "JUNK");
  const TargetCurve nothing(101, 0.0f);
  stage.readTarget = [](Window&, int first, int count) {
    return std::optional(TargetCurve(static_cast<std::size_t>(count), static_cast<float>(200 + first)));
  };
  stage.Run([&](ToolWindow& tool) {
    const auto press = [&](int number, std::vector<std::string> answers) {
      stage.window.Log();
      stage.window.answers.assign(answers.begin(), answers.end());
      stage.Press(tool, number);
      return stage.window.Log();
    };
    EXPECT_EQ(press(1101, {"file:" + stage.folder / "none.pdt"}).back(),
              "error|Parlowen(Tessiran)|无基频数据文件！");
    WriteFile(stage.folder / "bad.pdt", std::string("HEAD"));
    EXPECT_EQ(press(1101, {"file:" + stage.folder / "bad.pdt"}).back(),
              "error|Parlowen(Tessiran)|基频数据文件错误！");
    EXPECT_EQ(press(1101, {"file:" + path, "ok:3"}).back(), "error|Parlowen(Tessiran)|没有这一段！");
    EXPECT_EQ(press(1101, {"file:" + path, "cancel"}).back(), "input|调入基频数据|第几段（1--2）1");
    for (const char* factor : {"ok:0.2", "ok:4.1", "ok:x", "ok:", "ok:nan", "ok:2x"})
      EXPECT_EQ(press(1102, {factor}).back(), "error|Parlowen(Tessiran)|比例应在 0.25--4 之间") << factor;
    EXPECT_EQ(stage.state.target, nothing);

    press(1101, {"file:" + path, "ok:2"});
    TargetCurve expected = nothing;
    const float recorded[] = {90, 95, 0, 80, 1, 1, 1, 1, 1, 1};  // frame 10 is unvoiced here
    std::copy(std::begin(recorded), std::end(recorded), expected.begin());
    EXPECT_EQ(stage.state.target, expected);

    press(1102, {"ok:1.25"});
    expected.assign(101, 100.0f);
    expected[10] = expected[100] = 0;  // behind the sound's last frame there is no pitch
    EXPECT_EQ(stage.state.target, expected);

    press(1103, {});
    for (float& period : expected) period *= 2;
    EXPECT_EQ(stage.state.target, expected);
  });
  stage.readTarget = nullptr;
  stage.Run([&](ToolWindow& tool) { EXPECT_FALSE(tool.Controls().back().enabled); });
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
