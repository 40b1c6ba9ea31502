// Every stories/NAME.txt is run as a script; what it prints is NAME.jsonl. Comment lines at its head say what
// is special: "# arguments: ..." for the program, "# status: N" for its exit status.

#include <gtest/gtest.h>

#include "headless/Program.h"

namespace parlowen {
namespace {

namespace fs = std::filesystem;
using testing::ReadFile;

const std::string kStories = PARLOWEN_SOURCE_DIR "/tests/headless/stories/";

std::vector<std::string> StoryNames() {
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(kStories))
    if (entry.path().extension() == ".txt") names.push_back(entry.path().stem());
  std::sort(names.begin(), names.end());
  return names;
}

std::string HeadValue(const std::string& script, const std::string& name) {
  const std::size_t at = script.find("# " + name + ": ");
  if (at == std::string::npos) return "";
  const std::size_t begin = at + name.size() + 4;
  return script.substr(begin, script.find('\n', begin) - begin);
}

class Story : public ::testing::TestWithParam<std::string> {};

TEST_P(Story, PrintsItsLines) {
  const testing::TempFolder folder;
  testing::WriteSounds(folder);
  const std::string script = ReadFile(kStories + GetParam() + ".txt");
  const auto result = testing::RunProgram(folder, HeadValue(script, "arguments"), script);
  const std::string status = HeadValue(script, "status");
  EXPECT_EQ(result.status, status.empty() ? 0 : std::stoi(status)) << result.errors;
  std::string printed;
  for (const std::string& line : result.lines)
    printed += testing::Replaced(line, PARLOWEN_SOURCE_DIR, "{source}") + "\n";
  // To write a new story's lines: PARLOWEN_WRITE_STORIES=1, and read them before they are kept.
  if (std::getenv("PARLOWEN_WRITE_STORIES") != nullptr)
    testing::WriteFile(kStories + GetParam() + ".jsonl", printed);
  EXPECT_EQ(printed, ReadFile(kStories + GetParam() + ".jsonl"));
}

INSTANTIATE_TEST_SUITE_P(Headless, Story, ::testing::ValuesIn(StoryNames()), [](const auto& story) {
  std::string name = story.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

}  // namespace
}  // namespace parlowen
