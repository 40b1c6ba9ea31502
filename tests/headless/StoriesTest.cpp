// Every stories/NAME.txt is run as a script; what it prints is NAME.jsonl, what it leaves behind NAME.files: a line a
// file that was not there before or has changed. Comment lines at its head say what is special: "# arguments: ..." for
// the program, "# status: N" for its exit status.

#include <gtest/gtest.h>

#include <cctype>
#include <map>

#include "base/Format.h"
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

/// FNV-1a over the bytes (Fowler, Noll and Vo).
std::uint64_t DigestOf(const std::string& bytes) {
  std::uint64_t digest = 0xCBF29CE484222325u;
  for (const char byte : bytes) digest = (digest ^ static_cast<unsigned char>(byte)) * 0x100000001B3u;
  return digest;
}

/// What a file is known by: names of folders taken out, and of pictures numbers rounded to whole pixels, since another
/// machine's library may print the last digit otherwise.
std::string ComparedText(const fs::path& path, const testing::TempFolder& folder) {
  std::string text = testing::Replaced(ReadFile(path), folder.path(), "{folder}");
  if (path.extension() != ".svg") return text;
  std::string whole;
  for (std::size_t i = 0; i < text.size(); ++i) {
    whole += text[i];
    if (!std::isdigit(static_cast<unsigned char>(text[i])) || i + 1 >= text.size() || text[i + 1] != '.')
      continue;
    for (++i; i + 1 < text.size() && std::isdigit(static_cast<unsigned char>(text[i + 1]));) ++i;
  }
  return whole;
}

using FileStates = std::map<std::string, std::string>;

FileStates StatesOf(const testing::TempFolder& folder) {
  FileStates states;
  for (const auto& entry : fs::recursive_directory_iterator(folder.path())) {
    if (!entry.is_regular_file()) continue;
    const std::string text = ComparedText(entry.path(), folder);
    states[fs::relative(entry.path(), folder.path()).generic_string()] =
        Format("%zu %016llx", text.size(), static_cast<unsigned long long>(DigestOf(text)));
  }
  return states;
}

/// "NAME SIZE DIGEST" a line of what is new or changed, "NAME gone" of what is not there any more.
std::string ChangesOf(const FileStates& before, const FileStates& after) {
  std::string lines;
  for (const auto& [name, state] : after)
    if (const auto old = before.find(name); old == before.end() || old->second != state)
      lines += name + " " + state + "\n";
  for (const auto& [name, state] : before)
    if (!after.contains(name)) lines += name + " gone\n";
  return lines;
}

/// Compares with what is kept beside the story. To write a new story's lines: PARLOWEN_WRITE_STORIES=1, and read them
/// before they are kept.
void ExpectKept(const std::string& path, const std::string& seen) {
  if (std::getenv("PARLOWEN_WRITE_STORIES") != nullptr) {
    if (seen.empty()) {
      fs::remove(path);
    } else {
      testing::WriteFile(path, seen);
    }
  }
  EXPECT_EQ(seen, fs::exists(path) ? ReadFile(path) : std::string()) << path;
}

class Story : public ::testing::TestWithParam<std::string> {};

TEST_P(Story, PrintsItsLines) {
  const testing::TempFolder folder;
  testing::WriteSounds(folder);
  const FileStates before = StatesOf(folder);
  const std::string script = ReadFile(kStories + GetParam() + ".txt");
  const auto result = testing::RunProgram(folder, HeadValue(script, "arguments"), script);
  const std::string status = HeadValue(script, "status");
  EXPECT_EQ(result.status, status.empty() ? 0 : std::stoi(status)) << result.errors;
  std::string printed;
  for (const std::string& line : result.lines)
    printed += testing::Replaced(line, PARLOWEN_SOURCE_DIR, "{source}") + "\n";
  ExpectKept(kStories + GetParam() + ".jsonl", printed);
  ExpectKept(kStories + GetParam() + ".files", ChangesOf(before, StatesOf(folder)));
}

INSTANTIATE_TEST_SUITE_P(Headless, Story, ::testing::ValuesIn(StoryNames()), [](const auto& story) {
  std::string name = story.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
});

}  // namespace
}  // namespace parlowen
