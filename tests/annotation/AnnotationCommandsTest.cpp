#include "annotation/AnnotationCommands.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>

#include "shell/Station.h"
#include "support/Child.h"

namespace parlowen {
namespace {

using testing::Little;
using testing::PitchTail;
using testing::Ramp;
using testing::ReadFile;
using testing::Texts;
using testing::WavBytes;
using testing::WriteFile;

constexpr auto kRight = MouseButton::Right;
constexpr int kInsert = 40080, kSave = 40079, kOpen = 40078;

const std::string kSaveDialog = "save|保存国际音标文件|";
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

TEST(InsertingAnnotations, OnlyALeftClickIntoTheAnalysisPaneInserts) {
  AnnotationDesk s;
  s.Load(Ramp(16000));
  s.Do(kInsert);
  EXPECT_EQ(s.document.activity, Activity::Annotation);
  EXPECT_EQ(s.w.view.Hint(), kAnnotationHint.Get());
  s.Click(Pane::Waveform, 30);
  s.Click(Pane::Analysis, 40, kRight);
  EXPECT_EQ(s.document.selectionStart, 1600);
  EXPECT_EQ(s.document.selectionEnd, 3200);
  EXPECT_EQ(s.document.activity, Activity::Annotation) << "marking goes on meanwhile";
  EXPECT_TRUE(s.w.Key("Escape"));
  EXPECT_EQ(s.document.activity, Activity::Waveform);
  s.Do(kInsert);
  s.Do(kSave, {"cancel"});
  EXPECT_EQ(s.document.activity, Activity::Annotation) << "saving is no tool";
  s.Do(170);
  EXPECT_EQ(s.document.activity, Activity::Waveform) << "another tool ends it";
  s.Click(Pane::Analysis, 50);
  EXPECT_TRUE(s.window.Log().empty());
  EXPECT_TRUE(s.Items().empty());
}

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

TEST(Annotations, GoWithTheirSoundAlone) {
  AnnotationDesk s;
  s.Load(Ramp(44100), 44100);
  s.FillWith(2);
  s.w.annotations.items[1].position = 22051;
  s.Do(40102, {"yes"});
  ASSERT_EQ(s.document.sampleRate, 16000);
  EXPECT_EQ(s.Items(), (Texts{"a@0", "a@8000"})) << "a conversion keeps their times";
  s.w.OpenFile(s.folder / "missing.wav");
  EXPECT_EQ(s.Items().size(), 2u);
  s.window.Log();
  s.Load(Ramp(500));
  EXPECT_TRUE(s.Items().empty());
  EXPECT_FALSE(s.w.annotations.changed);
}

TEST(Annotations, MoveWithTheSpeechThatTheyWerePutOn) {
  AnnotationDesk s;
  s.Load(Ramp(10000));
  const std::vector<Annotation> all = {{"z", 9000}, {"b", 3000}, {"c", 3500}, {"d", 4000}, {"a", 100}};
  const Texts whole = {"z@9000", "b@3000", "c@3500", "d@4000", "a@100"};
  s.Put(all);
  s.w.Select(3000, 4000);
  s.Do(40001);
  const Texts cut = {"z@8000", "b@3000", "d@3000", "a@100"};
  EXPECT_EQ(s.Items(), cut) << "what was cut out is gone, its edges are not";
  EXPECT_TRUE(s.w.annotations.changed);
  s.w.Select(0, 500);
  s.Do(40006);  // the samples change, not their places
  EXPECT_EQ(s.Items(), cut);
  s.Do(40036);
  EXPECT_EQ(s.Items(), whole);
  s.w.Select(3000, 4000);
  s.Do(40001);
  s.Insert(20, {"ok:n", "no"});
  s.Do(40036);
  EXPECT_EQ(s.Items(), (Texts{"z@9000", "b@4000", "d@4000", "a@100", "n@0"}))
      << "worked on in between: moved back only";
  s.Put(all);
  s.document.insertPoint = 3500;
  s.Do(40003);
  EXPECT_EQ(s.Items(), (Texts{"z@10000", "b@3000", "c@4500", "d@5000", "a@100"}));
  s.Do(40036);
  EXPECT_EQ(s.Items(), whole);
}

// --- Files

TEST(SavingIpaFiles, ARefusalOrAFailureLeavesTheOldFile) {
  AnnotationDesk s;
  std::vector<float> contour(12, 80.0f);
  s.Load(Ramp(1600), 16000, PitchTail(contour));
  s.FillWith(1);
  s.w.annotations.changed = true;
  const std::string old = s.folder / "old.ipa";
  WriteFile(old, std::string("old"));
  EXPECT_EQ(s.Do(kSave), Texts{kSaveDialog + (s.folder / "sound1.ipa")}) << "a cancelled dialog says nothing";
  EXPECT_EQ(s.Do(kSave, {"file:" + (s.folder / "no folder/a.ipa")}).back(), kBadName)
      << "before the question";
  EXPECT_EQ(s.Do(kSave, {"file:" + (s.folder / std::string(250, 'n'))}).back(), kBadName);
  const auto full = [&] {
    return s.Do(kSave, {"file:" + old, "yes"}).back() == kBadName && s.w.annotations.changed ? 7 : 0;
  };
  EXPECT_EQ(testing::WithFileSizeLimit(1000, full), 7);
  EXPECT_EQ(ReadFile(old), "old");
  EXPECT_TRUE(s.w.annotations.changed);
  EXPECT_EQ(s.folder.Names().size(), 2u);
}

/// A sound of 1000 samples with these records behind them.
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

TEST(OpeningIpaFiles, TheSoundItsAnnotationsAndItsContourAreThere) {
  AnnotationDesk s;
  s.Load(Ramp(50000), 16000);
  s.FillWith(3);
  s.w.Select(100, 200);
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const std::string path =
      WriteFile(s.folder / "take3.IPA", IpaFileOf(Record("a", 999) + Record("b", -1) + Record("c", 1001) +
                                                  PitchTail({50, 0, -7, nan, 8001, 8000})));
  EXPECT_EQ(s.Do(kOpen, {"file:" + path}), Texts{"open|打开国际音标数据文件|"});
  EXPECT_EQ(s.document.sampleCount, 1000);
  EXPECT_EQ(s.document.sampleRate, 8000);
  EXPECT_EQ(s.document.samples[999], 1006);
  EXPECT_EQ(s.document.samples[1000], 0) << "silence behind the end";
  EXPECT_EQ(s.Items(), (Texts{"a@999", "b@0", "c@1000"})) << "positions lie in the sound";
  EXPECT_FALSE(s.document.selectionDefined());
  EXPECT_EQ(s.document.filePath, path);
  EXPECT_EQ(s.document.nextDigitPath, s.folder / "take4.wav");
  EXPECT_EQ(s.window.Caption(), "Parlowen(Tessiran) -- " + path);
  const std::vector<float> contour = {50, 0, -1, 0, 0, 8000, -1};
  EXPECT_TRUE(std::equal(contour.begin(), contour.end(), s.document.pitch.begin()));
  EXPECT_EQ(s.document.pitchBackup, s.document.pitch);
  EXPECT_TRUE(s.document.pitchPresent);
  EXPECT_TRUE(s.w.states.IsEnabled(40103));

  s.w.OpenFile(WriteFile(s.folder / "plain.ipa", IpaFileOf("")));
  EXPECT_TRUE(s.Items().empty());
  EXPECT_FALSE(s.document.pitchPresent);
  EXPECT_TRUE(std::all_of(s.document.pitch.begin(), s.document.pitch.end(),
                          [](float value) { return value == kNoValue; }));
  EXPECT_FALSE(s.w.states.IsEnabled(40103));
}

TEST(OpeningIpaFiles, ARefusedFileLeavesTheSoundAsItWasAndAtMostItsRate) {
  AnnotationDesk s;
  s.Load(Ramp(5000), 16000);
  s.FillWith(3);
  s.w.Select(100, 200);
  const auto broken = [](const std::function<void(WavBytes&)>& change) {
    WavBytes wav;
    wav.rate = 8000;
    change(wav);
    return wav.Bytes() + Record("a", 1);
  };
  const std::string noWav = "error||不是 wav 文件", notSixteen = "error||不是单/双声道16位 .wav 文件！";
  const struct {
    const char* what;
    std::string bytes, refusal;
  } cases[] = {
      {"43 bytes", IpaFileOf("").substr(0, 43), noWav},
      {"999 Hz", broken([](WavBytes& wav) { wav.rate = 999; }), noWav},
      {"8 bits", broken([](WavBytes& wav) { wav.bits = 8; }), notSixteen},
  };
  const auto unchanged = [&] {
    return s.document.sampleCount == 5000 && s.document.filePath == s.folder / "sound1.wav" &&
           s.document.samples[4999] == 5000 && s.Items().size() == 3 && s.document.selectionEnd == 200 &&
           s.document.activity == Activity::Waveform;
  };
  for (const auto& c : cases) {
    const std::string path = WriteFile(s.folder / "broken.ipa", c.bytes);
    EXPECT_EQ(s.Do(kOpen, {"file:" + path}).back(), c.refusal) << c.what;
    EXPECT_TRUE(unchanged()) << c.what;
    EXPECT_EQ(s.document.sampleRate, c.refusal == notSixteen ? 8000 : 16000) << c.what;  // as of a WAV file
  }
  EXPECT_EQ(s.Do(kOpen, {"file:" + (s.folder / "missing.ipa")}).back(),
            "error|" + s.window.Caption() + "|无此国际音标数据文件！");
  EXPECT_EQ(s.Do(kOpen).size(), 1u) << "a cancelled dialog says nothing";
  EXPECT_TRUE(unchanged());
}

}  // namespace
}  // namespace parlowen
