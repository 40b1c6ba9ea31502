#include <gtest/gtest.h>

#include "headless/Program.h"

namespace parlowen {
namespace {

namespace fs = std::filesystem;
using namespace testing;

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
      {"command 41", 1, "no command has the number 41"},
      {"print \"state", 1, "a quote is not closed"},
      {"answer yes\ncommand 110", 2, "a file dialog took an answer that is no file"},
      {"answer file long.wav\nanswer no\ncommand 110", 3, "an input dialog took"},
      {"answer file long.wav\nanswer ok 1001=5\ncommand 110", 3, "the dialog has no field for 1001=5"},
      {"answer file long.wav\nanswer ok up=2\ncommand 110", 3, "the dialog has no scroll arrows"},
      {"answer file long.wav\nanswer ok choose=3\ncommand 110", 3, "the dialog has no button 3"},
      {"answer file pitch.wav\ncommand 110\nanswer ok\ncommand 120", 4,
       "a question took an answer that is not yes or no"},
      {"answer file pitch.wav\ncommand 110\nselect 0 800\nanswer file kept.pdt\nanswer cancel\ncommand 40050",
       6, "a question took an answer that is not yes or no"},
      {"select 5", 1, "select needs"},
      {"click attic 1 1", 1, "no pane or open window is called attic"},
      {"close", 1, "no tool window is open"},
      {"print weather", 1, "no value is called weather"},
      {"print samples 0 5 3", 1, "print samples needs"},
      {"picture waveform folder", 1, "cannot write folder"},
      {"sound-input none.wav", 1, "cannot open none.wav"},
      {"sound-input mono7.wav -1", 1, "sound-input needs"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.script);
    const ProgramResult result = RunProgram(folder, "", c.script + "\nprint commands\n");
    EXPECT_EQ(result.status, 1);
    const std::string head =
        "{\"event\":\"error\",\"line\":" + std::to_string(c.line) + ",\"text\":\"" + c.text;
    ASSERT_FALSE(result.lines.empty());
    EXPECT_EQ(result.lines.back().substr(0, head.size()), head);
    EXPECT_EQ(result.errors.rfind("line " + std::to_string(c.line) + ": " + c.text, 0), 0u) << result.errors;
  }
  EXPECT_FALSE(std::filesystem::exists(folder / "kept.pdt")) << "a question without an answer writes nothing";
  EXPECT_EQ(RunProgram(folder, "-", load + "answer yes\nanswer ok 5\n").status, 0)
      << "left-over answers are ignored";
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
  EXPECT_EQ(RunProgram(folder, "--version", "").lines,
            std::vector<std::string>{"parlowen-headless {version}"});
  for (const char* wrong : {"--pane-width", "--pane-width 20", "--pane-width=x", "--dance", "s.txt s.txt"}) {
    const ProgramResult result = RunProgram(folder, wrong, "print clip");
    EXPECT_EQ(result.status, 1) << wrong;
    EXPECT_TRUE(result.lines.empty() && result.errors.find("Usage:") != std::string::npos) << wrong;
  }
}

}  // namespace
}  // namespace parlowen
