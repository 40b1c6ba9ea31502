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

const Texts kQuestion = {"ask|Parlowen(Tessiran)|合成之前必须将基频修正，本段基频值正确吗（Yes/No)？"};

class ModalWindow : public FakeWindow {
 public:
  std::function<void(ToolWindow&)> act;
  int repaints = 0;
  void Repaint(std::optional<Pane>) override { ++repaints; }
  void RunModal(ToolWindow& tool) override {
    log.push_back("modal|" + tool.Title());
    if (act) act(tool);
    tool.Closed(*this);
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

TEST(SynthesisCommands, TenWholeSecondsAreAcceptedAndElevenAreNot) {
  struct Case {
    int rate, length;
    bool accepted;
  };
  for (const Case& c : {Case{16000, 160000, true}, {16000, 174400, true}, {16000, 175999, true}, {16000, 176000, false},
                        {11025, 121274, true}, {11025, 121275, false}}) {
    Stage stage(c.rate, c.length);
    StartResynthesis(stage.window, {stage.document, stage.state, stage.player, stage.exportFolder, stage.readTarget});
    EXPECT_EQ(stage.window.Log(), c.accepted ? kQuestion : Texts{"error|Parlowen(Tessiran)|所选段太长，请重新设定！"}) << c.length;
    EXPECT_TRUE(stage.state.job.marks.empty());   // refused, or No
  }
}

TEST(SynthesisCommands, TheMarksStandBeforeTheDialogAndAllIsRepaintedAfterIt) {
  Stage stage;
  int before = 0;
  stage.Run([&](ToolWindow& tool) {
    EXPECT_GT(stage.state.job.marks.size(), 100u);
    EXPECT_FALSE(tool.WantsToClose());
    tool.Press(stage.window, {2, "退出", true});
    EXPECT_TRUE(tool.WantsToClose());
    before = stage.window.repaints;
  });
  EXPECT_EQ(stage.window.Log(), (Texts{kQuestion[0], "modal|选定段按给定音高合成声音"}));
  EXPECT_GT(stage.window.repaints, before);
}

TEST(SynthesisCommands, ADrawnMelodyIsPlayedAndSaved) {
  Stage stage;
  const std::string path = stage.folder / "Synth.wav";
  WriteFile(path, std::string("older"));
  stage.Run([&](ToolWindow& tool) {
    stage.Press(tool, 1034);   // nothing yet
    EXPECT_EQ(ReadFile(path), "older");
    for (const int x : {0, 99}) tool.Click(stage.window, {x, 96}, MouseButton::Left, false);
    tool.Click(stage.window, {50, 10}, MouseButton::Right, false);
    EXPECT_EQ(stage.state.target[9], 62.5f);
    EXPECT_EQ(stage.state.target[10], 0.0f);
    EXPECT_EQ(stage.state.target[100], 0.0f);   // the frame of the end, to which nothing was drawn
    stage.window.Log();
    stage.Press(tool, 1);
    EXPECT_EQ(stage.window.Log(), Texts{"status|T 键停止放音"});
    EXPECT_EQ(stage.speaker.heard, std::vector<std::int16_t>(stage.state.job.output.begin(), stage.state.job.output.end() - 100));
    stage.Press(tool, 1034);
    EXPECT_EQ(stage.window.Log(), Texts{"none|Parlowen(Tessiran)|合成声音已存为文件--Synth.wav!"});
  });
  std::string expected = "RIFF" + Little(32036, 4) + "WAVEfmt " + Little(16, 4) + Little(1, 2) + Little(1, 2) + Little(16000, 4) +
                         Little(32000, 4) + Little(2, 2) + Little(16, 2) + "data" + Little(32000, 4);
  for (std::size_t n = 0; n < 16000; ++n) expected += Little(static_cast<std::uint16_t>(stage.state.job.output[n]), 2);
  EXPECT_EQ(ReadFile(path), expected);
}

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
    EXPECT_TRUE(tool.Key(stage.window, "Escape"));   // ends the play, the window stays
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
  const std::string path = WriteFile(stage.folder / "a.pdt", Record({1, 2}) + Record({90, 95, 0, 80, 1, 1, 1, 1, 1, 1, 70}) + "JUNK");
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
    EXPECT_EQ(press(1101, {"file:" + stage.folder / "none.pdt"}).back(), "error|Parlowen(Tessiran)|无基频数据文件！");
    WriteFile(stage.folder / "bad.pdt", std::string("HEAD"));
    EXPECT_EQ(press(1101, {"file:" + stage.folder / "bad.pdt"}).back(), "error|Parlowen(Tessiran)|基频数据文件错误！");
    EXPECT_EQ(press(1101, {"file:" + path, "ok:3"}).back(), "error|Parlowen(Tessiran)|没有这一段！");
    EXPECT_EQ(press(1101, {"file:" + path, "cancel"}).back(), "input|调入基频数据|第几段（1--2）1");
    for (const char* factor : {"ok:0.2", "ok:4.1", "ok:x", "ok:", "ok:nan", "ok:2x"})
      EXPECT_EQ(press(1102, {factor}).back(), "error|Parlowen(Tessiran)|比例应在 0.25--4 之间") << factor;
    EXPECT_EQ(stage.state.target, nothing);

    press(1101, {"file:" + path, "ok:2"});
    TargetCurve expected = nothing;
    const float recorded[] = {90, 95, 0, 80, 1, 1, 1, 1, 1, 1};   // frame 10 is unvoiced here
    std::copy(std::begin(recorded), std::end(recorded), expected.begin());
    EXPECT_EQ(stage.state.target, expected);

    press(1102, {"ok:1.25"});
    expected.assign(101, 100.0f);
    expected[10] = expected[100] = 0;   // behind the sound's last frame there is no pitch
    EXPECT_EQ(stage.state.target, expected);

    press(1103, {});
    for (float& period : expected) period *= 2;
    EXPECT_EQ(stage.state.target, expected);
  });
  stage.readTarget = nullptr;
  stage.Run([&](ToolWindow& tool) { EXPECT_FALSE(tool.Controls().back().enabled); });
}

/// The points of the lines in one colour.
std::vector<Point> LinesOf(const Picture& picture, Colour colour) {
  std::vector<Point> points;
  for (const Mark& mark : picture.marks)
    if (const auto* line = std::get_if<PolylineMark>(&mark); line != nullptr && line->colour == colour)
      points.insert(points.end(), line->points.begin(), line->points.end());
  return points;
}
bool Says(const Picture& picture, const std::string& text) {
  return std::any_of(picture.marks.begin(), picture.marks.end(), [&](const Mark& mark) {
    const auto* words = std::get_if<TextMark>(&mark);
    return words != nullptr && words->text.find(text) != std::string::npos;
  });
}

TEST(SynthesisCommands, ThePictureShowsBothMelodiesOverTheirAxis) {
  Stage stage;
  stage.Run([&](ToolWindow& tool) {
    tool.Click(stage.window, {20, 200}, MouseButton::Left, false);
    tool.Click(stage.window, {30, 180}, MouseButton::Left, false);
    const Picture picture = tool.Draw(400, 400);
    std::vector<Point> present, target;
    for (int x = 0; x < 100; ++x)
      if (x != 10) present.push_back({x, 160});   // 128 Hz
    for (int x = 0; x <= 10; ++x) target.push_back({20 + x, 200 - 2 * x});
    EXPECT_EQ(LinesOf(picture, 0x008000), present);
    EXPECT_EQ(LinesOf(picture, 0xD00000), target);
    for (const char* label : {"512", "256", "128", "64"}) EXPECT_TRUE(Says(picture, label));
    EXPECT_FALSE(Says(picture, "基频"));
  });
  stage.document.resetPitch();
  stage.Run([&](ToolWindow& tool) { EXPECT_TRUE(Says(tool.Draw(400, 400), "请先求出基频")); });
}

TEST(SynthesisCommands, ColumnsFollowZoomAndScrollBar) {
  Stage stage;
  stage.Run([&](ToolWindow& tool) {
    EXPECT_FALSE(tool.ScrollBar());
    tool.Resized(450, 400);   // 406 pixels beside the axis: four for each of 101 frames
    EXPECT_FALSE(tool.ScrollBar());
    tool.Click(stage.window, {8, 96}, MouseButton::Left, false);
    tool.Key(stage.window, "X");
    ASSERT_TRUE(tool.ScrollBar());
    EXPECT_EQ(tool.ScrollBar()->largest, 808 - 406);
    tool.ScrollTo(stage.window, 1000);
    EXPECT_EQ(tool.ScrollBar()->position, 402);
    tool.Click(stage.window, {0, 96}, MouseButton::Left, false);   // column 402
    EXPECT_EQ(stage.state.target[1], 0.0f);
    EXPECT_EQ(stage.state.target[2], 62.5f);
    EXPECT_EQ(stage.state.target[50], 62.5f);
    EXPECT_EQ(stage.state.target[51], 0.0f);
    EXPECT_EQ(tool.Hover({5, 96}), "频率=256Hz ");
  });
}

}  // namespace
}  // namespace parlowen
