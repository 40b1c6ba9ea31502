// Every stories/NAME.txt is run as a script; what it prints is NAME.jsonl, what it leaves behind NAME.files: a line a
// file that was not there before or has changed. Comment lines at its head say what is special: "# arguments: ..." for
// the program, "# status: N" for its exit status.

#include <gtest/gtest.h>

#include "headless/Program.h"

namespace parlowen {
namespace {

using namespace testing;

class Story : public ::testing::TestWithParam<std::string> {};

TEST_P(Story, PrintsItsLines) {
  const testing::TempFolder folder;
  testing::WriteSounds(folder);
  const testing::FileStates before = testing::StatesOf(folder);
  const std::string script = testing::ScriptOf(GetParam());
  const auto result = testing::RunProgram(folder, testing::HeadValue(script, "arguments"), script);
  const std::string status = testing::HeadValue(script, "status");
  EXPECT_EQ(result.status, status.empty() ? 0 : std::stoi(status)) << result.errors;
  std::string printed;
  for (const std::string& line : result.lines)
    printed += testing::Replaced(line, PARLOWEN_SOURCE_DIR, "{source}") + "\n";
  testing::ExpectKept(kStories + GetParam() + ".jsonl", printed);
  testing::ExpectKept(kStories + GetParam() + ".files",
                      testing::ChangesOf(before, testing::StatesOf(folder)));
}

INSTANTIATE_TEST_SUITE_P(Headless, Story, ::testing::ValuesIn(testing::StoryNames()), testing::TestNameOf);

}  // namespace
}  // namespace parlowen
