#include "prosody/GroupFlow.h"

#include <gtest/gtest.h>

#include <utility>

#include "prosody/DurationCommands.h"
#include "prosody/Durations.h"
#include "support/Child.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"
#include "support/WavBytes.h"

namespace parlowen {
namespace {

using namespace testing;

constexpr const char* kCaption = "Parlowen(Tessiran)";
std::string Refusal(const char* text, const char* icon = "error") {
  return std::string(icon) + "|" + kCaption + "|" + text;
}

const std::string kFull = Refusal("数据太多，不能再加入！", "none");
const std::string kNoGroup = Refusal("无此组名！", "none");
const std::string kDamaged = Refusal("声音长度统计文件错误！");
const std::string kCannotOpen = Refusal("文件打开错误，请重试！");

class GroupFlow : public ::testing::Test {
 protected:
  /// Adds one duration with these answers; gives what was shown.
  Texts Add(std::uint16_t value, std::deque<std::string> answers) {
    window.answers = std::move(answers);
    AddToGroups(window, current, DurationKind(), {&value, 1});
    EXPECT_TRUE(window.answers.empty()) << "asked less than expected";
    return window.Log();
  }
  bool Shown(const Texts& log, const std::string& text) {
    return std::find(log.begin(), log.end(), text) != log.end();
  }
  std::vector<ValueGroup> Groups() { return ReadGroups(kDurationLayout, AsBytes(ReadFile(path))).value(); }
  std::string Full(int used) {
    std::string file(202, '\0');
    file[0] = 1;
    file[2] = 'a';
    file[10] = static_cast<char>(used);
    return file;
  }

  TempFolder folder;
  std::string path = folder / "data.lgs";
  std::string open = "file:" + path;
  FakeWindow window;
  CurrentGroup current;
};

TEST_F(GroupFlow, The95thValueIsStoredAndThe96thRefused) {
  for (const bool byName : {false, true}) {
    SCOPED_TRACE(byName);
    WriteFile(path, Full(94));
    current = {!byName, path, 0, "a"};
    const std::deque<std::string> answers =
        byName ? std::deque<std::string>{open, "no", "ok:a"} : std::deque<std::string>{"yes"};
    EXPECT_FALSE(Shown(Add(7, answers), kFull));
    EXPECT_EQ(Groups()[0].values.size(), 95u);
    const std::string full = ReadFile(path);
    current = {!byName, path, 0, "a"};
    EXPECT_TRUE(Shown(Add(7, answers), kFull));
    EXPECT_EQ(ReadFile(path), full);
  }
}

TEST_F(GroupFlow, ADamagedFileIsRefusedAndNeverChanged) {
  std::string longer = Full(1);
  longer.resize(201);
  std::string count = Full(96);
  for (const std::string& damaged : {longer, count, std::string("x"), std::string()}) {
    WriteFile(path, damaged);
    current.known = false;
    EXPECT_EQ(Add(1, {open}), (Texts{"open|打开音长统计数据文件|", kDamaged}));
    current = {true, path, 0, "a"};
    EXPECT_EQ(Add(1, {"yes"}).back(), kDamaged);
    EXPECT_EQ(ReadFile(path), damaged);
  }
  WriteFile(path, Full(1));
  current = {true, path, 1, "a"};
  EXPECT_EQ(Add(1, {"yes"}).back(), kNoGroup) << "the group is no longer there";
  current = {true, path, 0, "b"};
  EXPECT_EQ(Add(1, {"yes"}).back(), kNoGroup) << "it is another one";
  EXPECT_EQ(ReadFile(path), Full(1));
}

TEST_F(GroupFlow, AFailedWriteLeavesTheOldFile) {
  WriteFile(path, Full(3));
  const std::string before = ReadFile(path);
  const int result = testing::WithFileSizeLimit(100, [&] {
    const Texts log = Add(1, {open, "no", "ok:a"});
    return log.back() == kCannotOpen && !current.known ? 0 : 1;
  });
  EXPECT_EQ(result, 0);
  EXPECT_EQ(ReadFile(path), before);
  EXPECT_EQ(folder.Names(), Texts{"data.lgs"});
}

/// Answers the name only after another instance has added to the same file.
class SlowWindow : public FakeWindow {
 public:
  std::function<void()> meanwhile;
  bool AskInput(InputForm& form) override {
    if (meanwhile) std::exchange(meanwhile, nullptr)();
    return FakeWindow::AskInput(form);
  }
};

TEST_F(GroupFlow, TwoInstancesAtOneFileLoseNothing) {
  SlowWindow slow;
  CurrentGroup slowCurrent;
  const std::uint16_t value = 9;
  slow.answers = {open, "yes", "ok:slow"};
  slow.meanwhile = [&] { Add(1, {open, "yes", "ok:fast"}); };
  AddToGroups(slow, slowCurrent, DurationKind(), {&value, 1});
  Add(2, {"yes"});
  slow.answers = {"yes"};
  AddToGroups(slow, slowCurrent, DurationKind(), {&value, 1});
  const auto groups = Groups();
  ASSERT_EQ(groups.size(), 2u);
  EXPECT_EQ(groups[0].name + groups[1].name, "fastslow");
  EXPECT_EQ(groups[0].values, (std::vector<std::uint16_t>{1, 2}));
  EXPECT_EQ(groups[1].values, (std::vector<std::uint16_t>{9, 9}));
}

}  // namespace
}  // namespace parlowen
