#include "annotation/AnnotationCommands.h"

#include <gtest/gtest.h>

#include <limits>

#include "shell/Station.h"
#include "support/Child.h"

namespace parlowen {
namespace {

using namespace testing;

constexpr int kInsert = 40080, kSave = 40079, kCharacters = 40053;

const std::string kBadName = "error|文件夹或文件名错误|文件夹或文件名不对（包含空格？），请重选";

struct AnnotationDesk : testing::Station {
  SoundDocument& document = w.document;

  Texts Do(int command, std::deque<std::string> answers = {}) {
    window.answers = std::move(answers);
    EXPECT_TRUE(w.dispatchCommand(command));
    EXPECT_TRUE(window.answers.empty());
    return window.Log();
  }
  Texts Insert(int x, std::deque<std::string> answers) {
    EXPECT_TRUE(w.dispatchCommand(kInsert));
    window.answers = std::move(answers);
    Click(Pane::Analysis, x);
    EXPECT_TRUE(window.answers.empty());
    return window.Log();
  }
  std::vector<std::string> Items() const {
    std::vector<std::string> items;
    for (const Annotation& annotation : AnnotationsOf(w.annotations, w.document))
      items.push_back(annotation.text + "@" + std::to_string(annotation.position));
    return items;
  }
  void Put(std::vector<Annotation> items) {
    w.annotations = {};
    w.annotations.items = std::move(items);
    w.annotations.sound = document.Stamp();
  }
  void FillWith(int count) {
    Put(std::vector<Annotation>(static_cast<std::size_t>(count), Annotation{"a", 1}));
  }
};

TEST(InsertingAnnotations, The501stIsRefused) {
  AnnotationDesk s;
  s.Load(Ramp(16000));
  s.FillWith(499);
  s.Insert(30, {"ok:b", "no"});
  EXPECT_EQ(s.Items().size(), 500u);
  EXPECT_EQ(s.Insert(30, {"ok:c", "no"}).back(), "none|" + s.window.Caption() + "|标志数已满，不能再加！");
  EXPECT_EQ(s.Items().size(), 500u);
  s.Insert(30, {"ok:c", "yes"});
  EXPECT_EQ(s.Items(), Texts{"c@1600"}) << "an emptied list has room";
}

TEST(InsertedCharacters, The101stIsRefusedAndAnotherSoundHasNone) {
  AnnotationDesk s;
  s.Load(Ramp(200000));
  for (int i = 0; i < 100; ++i) {
    s.Do(kCharacters, {"ok:a"});
    s.w.Click(Pane::Pitch, {100 + i, 50}, MouseButton::Left, false);
  }
  EXPECT_EQ(s.w.characters.items.size(), 100u);
  EXPECT_EQ(s.Do(kCharacters), Texts{"none|" + s.window.Caption() + "|字符数已满，不能再加！"});
  EXPECT_EQ(s.w.document.activity, Activity::Waveform);
  s.Load(Ramp(100));
  EXPECT_TRUE(s.w.characters.items.empty());
}

TEST(SavingIpaFiles, AFailureLeavesTheOldFile) {
  AnnotationDesk s;
  s.Load(Ramp(1600), 16000, PitchTail(std::vector<float>(12, 80.0f)));
  s.FillWith(1);
  s.w.annotations.changed = true;
  const std::string old = WriteFile(s.folder / "old.ipa", std::string("old"));
  EXPECT_EQ(s.Do(kSave, {"file:" + (s.folder / std::string(250, 'n'))}).back(), kBadName)
      << "before the question";
  const auto full = [&] {
    return s.Do(kSave, {"file:" + old, "yes"}).back() == kBadName && s.w.annotations.changed ? 7 : 0;
  };
  EXPECT_EQ(testing::WithFileSizeLimit(1000, full), 7);
  EXPECT_EQ(ReadFile(old), "old");
  EXPECT_EQ(s.folder.Names().size(), 2u);
}

/// A sound of 1000 samples at 8000 Hz with these records behind them.
std::string IpaFileOf(const std::string& records) {
  WavBytes wav;
  wav.samples = Ramp(1000, 7);
  wav.rate = 8000;
  wav.behind = records;
  return wav.Bytes();
}

std::string Record(const std::string& text, std::int32_t position) {
  return std::string("IPA\0", 4) + text + std::string(10 - text.size(), '\0') +
         Little(static_cast<std::uint32_t>(position), 4);
}

TEST(OpeningIpaFiles, PositionsAndPeriodsAreBroughtIntoTheSound) {
  AnnotationDesk s;
  s.Load(Ramp(50000));
  const float nan = std::numeric_limits<float>::quiet_NaN();
  s.w.OpenFile(
      WriteFile(s.folder / "take3.IPA", IpaFileOf(Record("a", 999) + Record("b", -1) + Record("c", 1001) +
                                                  PitchTail({50, 0, -7, nan, 8001, 8000}))));
  EXPECT_EQ(s.document.sampleCount, 1000);
  EXPECT_EQ(s.document.samples[1000], 0) << "silence behind the end";
  EXPECT_EQ(s.Items(), (Texts{"a@999", "b@0", "c@1000"}));
  const std::vector<float> contour = {50, 0, -1, 0, 0, 8000, -1};
  EXPECT_TRUE(std::equal(contour.begin(), contour.end(), s.document.pitch.begin()));
  EXPECT_EQ(s.document.pitchBackup, s.document.pitch);
  EXPECT_TRUE(s.document.pitchPresent);
  s.w.OpenFile(WriteFile(s.folder / "plain.ipa", IpaFileOf("")));
  EXPECT_TRUE(s.Items().empty());
  EXPECT_FALSE(s.document.pitchPresent);
  EXPECT_EQ(s.document.pitch[0], kNoValue);
}

}  // namespace
}  // namespace parlowen
