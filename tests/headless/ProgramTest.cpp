#include <gtest/gtest.h>

#include "headless/Program.h"

namespace parlowen {
namespace {

namespace fs = std::filesystem;
using testing::ProgramResult;
using testing::ReadFile;
using testing::RunProgram;
using testing::TempFolder;
using testing::WriteFile;
using testing::WriteSounds;

std::size_t Count(const std::string& text, const std::string& what) {
  std::size_t found = 0;
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + what.size())) ++found;
  return found;
}

TEST(Program, AScriptErrorNamesItsLineTwiceAndStopsTheRun) {
  const TempFolder folder;
  WriteSounds(folder);
  const std::string load = "answer file mono7.wav\ncommand 110\n";
  const struct {
    std::string script;
    int line;
    const char* text;
  } cases[] = {
      {"dance", 1, "unknown step dance"},
      {"\n# c\ncommand", 3, "command needs one number"},
      {"command 110 120", 1, "command needs one number"},
      {"command 99999999999", 1, "command needs one number"},
      {"command 41", 1, "no command has the number 41"},
      {"print \"state", 1, "a quote is not closed"},
      {"answer", 1, "answer takes"},
      {"answer maybe", 1, "answer takes"},
      {"answer ok 1000=1 2", 1, "answer takes"},
      {"answer file", 1, "answer takes"},
      {"answer yes\ncommand 110", 2, "a file dialog took an answer that is no file"},
      {"answer file long.wav\nanswer no\ncommand 110", 3, "an input dialog took"},
      {"answer file long.wav\nanswer ok 1001=5\ncommand 110", 3, "the dialog has no field for 1001=5"},
      {"answer file long.wav\nanswer ok up=2\ncommand 110", 3, "the dialog has no scroll arrows"},
      {"answer file long.wav\nanswer ok choose=3\ncommand 110", 3, "the dialog has no button 3"},
      {"answer file pitch.wav\ncommand 110\nanswer ok\ncommand 120", 4, "a question took an answer that is not yes or no"},
      {"select 5", 1, "select needs"},
      {"click attic 1 1", 1, "no pane or open window is called attic"},
      {"click waveform 1", 1, "click needs"},
      {"click waveform 1 1 middle", 1, "click knows right and shift"},
      {"key Enter", 1, "key needs"},
      {"key", 1, "key needs"},
      {"button 5", 1, "no tool window is open"},
      {"close", 1, "no tool window is open"},
      {"print", 1, "print needs"},
      {"print weather", 1, "no value is called weather"},
      {"print state 5", 1, "print state takes nothing more"},
      {"print samples 5", 1, "print samples needs"},
      {"print samples 0 5 3", 1, "print samples needs"},
      {"print pitch 5", 1, "print pitch takes"},
      {"picture waveform", 1, "picture needs"},
      {"picture cellar x.svg", 1, "no pane or open window is called cellar"},
      {"picture waveform folder", 1, "cannot write folder"},
      {"sound-input none.wav", 1, "cannot open none.wav"},
      {"sound-input mono7.wav -1", 1, "sound-input needs"},
      {"exit now", 1, "exit takes nothing more"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.script);
    const ProgramResult result = RunProgram(folder, "", c.script + "\nprint commands\n");
    EXPECT_EQ(result.status, 1);
    const std::string head = "{\"event\":\"error\",\"line\":" + std::to_string(c.line) + ",\"text\":\"" + c.text;
    ASSERT_FALSE(result.lines.empty());
    EXPECT_EQ(result.lines.back().substr(0, head.size()), head);
    EXPECT_EQ(result.errors.rfind("line " + std::to_string(c.line) + ": " + c.text, 0), 0u) << result.errors;
  }
  EXPECT_EQ(RunProgram(folder, "-", load + "answer yes\nanswer ok 5\n").status, 0) << "left-over answers are ignored";
}

TEST(Program, ArgumentsAndScriptsThatDoNotOpen) {
  const TempFolder folder;
  WriteSounds(folder);
  WriteFile(folder / "s.txt", std::string("\xEF\xBB\xBFprint clip\r\nexit"));
  WriteFile(folder / "secret.txt", std::string("print clip"));
  fs::permissions(folder / "secret.txt", fs::perms(0600));
  const struct {
    const char* arguments;
    int status;
    std::size_t lines;
    const char* errors;
  } cases[] = {
      {"s.txt", 0, 1, ""},
      {"--pane-width 21 s.txt", 0, 1, ""},
      {"none.txt", 3, 0, "parlowen-headless: cannot open none.txt\n"},
      {"folder", 3, 0, "parlowen-headless: cannot open folder\n"},
      {"mono7.wav/x", 3, 0, "parlowen-headless: cannot open mono7.wav/x\n"},
      {"--version", 0, 1, ""},
      {"/dev/null", 0, 0, ""},
  };
  for (const auto& c : cases) {
    const ProgramResult result = RunProgram(folder, c.arguments, "");
    EXPECT_EQ(result.status, c.status) << c.arguments;
    EXPECT_EQ(result.lines.size(), c.lines) << c.arguments;
    EXPECT_EQ(result.errors, c.errors) << c.arguments;
  }
  EXPECT_EQ(RunProgram(folder, "--version", "").lines, std::vector<std::string>{"parlowen-headless {version}"});
  for (const char* wrong : {"--pane-width", "--pane-width 20", "--pane-width=x", "--dance", "s.txt s.txt"}) {
    const ProgramResult result = RunProgram(folder, wrong, "print clip");
    EXPECT_EQ(result.status, 1) << wrong;
    EXPECT_TRUE(result.lines.empty() && result.errors.find("Usage:") != std::string::npos) << wrong;
  }
}

TEST(Program, ASaveOnAFullDiskIsRefusedAndLeavesTheOldFile) {
  const TempFolder folder;
  WriteSounds(folder);
  const std::string old = ReadFile(folder / "mono7.wav");
  // 40 blocks of 512 bytes are less than the 64044 bytes of the sound.
  const ProgramResult result = RunProgram(folder, "", "answer file mono7.wav\ncommand 110\ncommand 120\nprint clip\n", "ulimit -f 40 &&");
  EXPECT_EQ(result.status, 0);
  ASSERT_EQ(result.lines.size(), 4u);
  EXPECT_NE(result.lines[2].find("文件夹或文件名不对，请重选"), std::string::npos);
  EXPECT_EQ(ReadFile(folder / "mono7.wav"), old);
  for (const std::string& name : folder.Names()) EXPECT_NE(name[0], '.') << name;
}

TEST(Program, PicturesHaveTheSizeOfTheirPaneAndTheirTexts) {
  const TempFolder folder;
  WriteSounds(folder);
  const ProgramResult result = RunProgram(folder, "--pane-width 640",
                                          "picture waveform empty.svg\nanswer file pitch.wav\ncommand 110\nselect 100 1500\n"
                                          "picture amplitude a.svg\npicture pitch p.svg\npicture analysis n.svg\npicture waveform w.svg\n"
                                          "command 180\npicture analysis s.svg\nprint spectrogram\nkey L\npicture analysis l.svg\n");
  ASSERT_EQ(result.status, 0) << result.errors;
  const struct {
    const char* name;
    int height;
    std::size_t texts, images;
    const char* contains;
  } cases[] = {
      {"empty.svg", 165, 3, 0, ">0</text>"},
      {"a.svg", 110, 6, 0, ">90 dB</text>"},          // four levels and the two marks
      {"p.svg", 165, 6, 0, ">512 Hz</text>"},         // four octaves and the marks
      {"n.svg", 330, 0, 0, "<svg"},
      {"w.svg", 165, 5, 0, ">起</text>"},
      // Three in the title, 1 to 7 kHz, 0.02 to 0.08 s, the two marks.
      {"s.svg", 330, 16, 1, ">波形 : T=0.01 -- 0.10（秒）</text>"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.name);
    const std::string svg = ReadFile(folder / c.name);
    EXPECT_NE(svg.find("width=\"640\" height=\"" + std::to_string(c.height) + "\" viewBox"), std::string::npos);
    EXPECT_EQ(Count(svg, "<text "), c.texts);
    EXPECT_EQ(Count(svg, "<image "), c.images);
    EXPECT_NE(svg.find(c.contains), std::string::npos);
  }
  EXPECT_EQ(Count(ReadFile(folder / "p.svg"), "<polyline ") + Count(ReadFile(folder / "p.svg"), "width=\"2\" height=\"2\""), 3u)
      << "the voiced pieces 100 | 90 80 | 70 60 50";
  EXPECT_NE(ReadFile(folder / "s.svg"), ReadFile(folder / "l.svg"));
  const std::string& value = result.lines.back();
  EXPECT_EQ(value.rfind("{\"event\":\"value\",\"what\":\"spectrogram\",\"kind\":\"narrow\",\"columns\":[[", 0), 0u);
  // Under a tenth of a second, so the stretch goes on to the end, 1600: C = 640·16000/1500 = 6826; column j begins at
  // 100 + j·16000/6826, and the margin 4 + 2·j ends the picture.
  std::size_t columns = 0;
  while (100 + columns * 16000 / 6826 + 4 + 2 * columns <= 1600) ++columns;
  EXPECT_EQ(Count(value, "["), columns + 1);
  EXPECT_EQ(Count(value, ","), columns * 256 + 3 - 1);
}

}  // namespace
}  // namespace parlowen
