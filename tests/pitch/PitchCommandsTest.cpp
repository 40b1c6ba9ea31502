// The handlers with queued answers, and the repair of the contour.

#include <gtest/gtest.h>

#include "base/Gbk.h"
#include "dsp/SignalTables.h"
#include "pitch/PitchCommands.h"
#include "pitch/PitchPicture.h"
#include "pitch/Voices.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

using namespace testing;

/// Chooses the button of the next answer ("ok:2": the third) and can stop the work.
class PitchWindow : public FakeWindow {
 public:
  double stopAt = 2;
  bool AskInput(InputForm& form) override {
    log.push_back("input|" + form.title + "|" + std::to_string(form.CheckedIndex()));
    if (answers.empty()) return false;
    const std::string answer = answers.front();
    answers.pop_front();
    if (!answer.starts_with("ok:")) return false;
    for (std::size_t i = 0; i < form.fields.size(); ++i)
      form.fields[i].checked = std::to_string(i) == answer.substr(3);
    return true;
  }
  bool Progress(double share) override { return share < stopAt; }
};

struct Desk {
  explicit Desk(const Wave& wave, int rate = 16000) : document(Document(wave, rate, states)) {
    InitSignalTables();
  }
  void Select(int start, int end) {
    document->selectionStart = start;
    document->selectionEnd = end;
    states.onSelectionChanged(document->SelectionFacts());
  }
  double Frequency(std::size_t frame) const {
    return document->pitch[frame] > 0 ? document->sampleRate / static_cast<double>(document->pitch[frame])
                                      : 0.0;
  }
  PitchWindow window;
  CommandStates states;
  std::unique_ptr<SoundDocument> document;
  PitchState state;
  SpectrogramState spectrogram;
};

const Wave& Word() {
  static const Wave wave = Joined({Silence(16000, 0.3), Vowel(16000, 125, 0.6), Silence(16000, 0.3)});
  return wave;
}

TEST(PitchCommands, ExtractionFillsTheContourAndEnablesWhatNeedsIt) {
  Desk desk(Word());
  desk.Select(3200, 6400);
  PitchCommand(desk.window, *desk.document, desk.states, desk.state);
  EXPECT_NEAR(desk.Frequency(60), 125, 1);
  EXPECT_EQ(desk.document->pitch[0], 0.0f);
  for (std::size_t f = 120; f < kContourFrames; ++f) ASSERT_EQ(desk.document->pitch[f], 0.0f);
  EXPECT_EQ(desk.document->pitch, desk.document->pitchBackup);
  EXPECT_TRUE(desk.document->pitchPresent);
  for (const int command : {40103, 40050, 40052}) EXPECT_TRUE(desk.states.IsEnabled(command)) << command;
  EXPECT_TRUE(desk.window.Log().empty());
}

TEST(PitchCommands, AnEmptySoundIsLeftAlone) {
  Desk desk(Wave(100, 0.0));  // less than a frame
  PitchCommand(desk.window, *desk.document, desk.states, desk.state);
  PitchByCorrelationCommand(desk.window, *desk.document, desk.states, desk.state);
  EXPECT_FALSE(desk.document->pitchPresent);
  EXPECT_EQ(desk.document->pitch[0], kNoValue);
}

TEST(PitchCommands, AStopLeavesContourStatesAndSettingAsTheyWere) {
  for (const double stopAt : {0.0, 0.1}) {
    Desk desk(Word());
    desk.window.stopAt = stopAt;
    PitchCommand(desk.window, *desk.document, desk.states, desk.state);
    EXPECT_FALSE(desk.document->pitchPresent || desk.states.IsEnabled(40103));
    EXPECT_EQ(desk.document->pitch[60], kNoValue);
    desk.window.answers = {"ok:3"};
    PitchAgainCommand(desk.window, *desk.document, desk.states, desk.state);
    EXPECT_EQ(desk.state.range, PitchRange::Automatic);
    EXPECT_EQ(desk.document->pitch[60], kNoValue);
  }
}

TEST(PitchCommands, AgainChangesTheSelectionAloneAndKeepsTheSetting) {
  Desk desk(Word());
  PitchCommand(desk.window, *desk.document, desk.states, desk.state);
  desk.document->pitch.fill(99.0f);
  desk.document->pitchBackup.fill(98.0f);
  desk.Select(8000, 9600);  // frames 50..59
  desk.window.answers = {"ok:3"};
  PitchAgainCommand(desk.window, *desk.document, desk.states, desk.state);
  EXPECT_EQ(desk.window.Log(), Texts({"input|再求一次音高|0"}));
  EXPECT_EQ(desk.state.range, PitchRange::Low);
  for (std::size_t f = 0; f < 120; ++f) {
    const bool inside = f >= 50 && f < 60;
    EXPECT_EQ(desk.document->pitch[f] != 99.0f, inside) << f;
    EXPECT_EQ(desk.document->pitchBackup[f], inside ? desk.document->pitch[f] : 98.0f) << f;
  }
  EXPECT_NEAR(desk.Frequency(55), 125, 1);
  // Without a selection: everything, and the dialog remembers. 144-600 Hz has no room for 125 Hz.
  desk.document->ClearSelection();
  desk.window.answers = {"ok:1"};
  PitchAgainCommand(desk.window, *desk.document, desk.states, desk.state);
  EXPECT_EQ(desk.window.Log(), Texts({"input|再求一次音高|3"}));
  EXPECT_EQ(desk.document->pitch[0], 0.0f);
  EXPECT_NE(desk.document->pitch[55], 99.0f);
  EXPECT_EQ(desk.state.range, PitchRange::High);
  desk.window.answers = {"cancel"};
  PitchAgainCommand(desk.window, *desk.document, desk.states, desk.state);
  EXPECT_EQ(desk.state.range, PitchRange::High);
}

constexpr const char* kSave = "save|保存基频数据文件|";
constexpr const char* kQuestion = "ask|从头更新数据？|从头开始（Yes)?在已有数据中添加（No)？";

TEST(PitchCommands, SavingAsksRestartsAndAppends) {
  const TempFolder folder;
  Desk desk(Word());
  PitchCommand(desk.window, *desk.document, desk.states, desk.state);
  desk.Select(8000, 8199);
  EXPECT_EQ(SavePitchSegment(desk.window, *desk.document), 0);
  EXPECT_TRUE(desk.window.Log().empty());  // 199 samples: nothing at all
  desk.Select(8000, 8200);
  SavePitchSegment(desk.window, *desk.document);
  EXPECT_EQ(desk.window.Log(), Texts({kSave}));  // cancelled: no question
  const std::string path = folder / "a.pdt";
  for (const char* answer : {"yes", "no", "no"}) {
    desk.window.answers = {"file:" + path, answer};
    EXPECT_EQ(SavePitchSegment(desk.window, *desk.document), 0);
    EXPECT_EQ(desk.window.Log(), Texts({kSave, kQuestion}));
  }
  const std::string thrice = ReadFile(path);
  EXPECT_EQ(thrice.size(), 3u * 20);  // frames 50 and 51
  EXPECT_EQ(thrice.substr(0, 20), thrice.substr(40));
  desk.window.answers = {"file:" + path, "yes"};
  SavePitchSegment(desk.window, *desk.document);
  EXPECT_EQ(ReadFile(path), thrice.substr(0, 20));
  desk.window.answers = {"file:" + (folder / "new.pdt"), "no"};  // a missing file is made
  EXPECT_EQ(SavePitchSegment(desk.window, *desk.document), 0);
  EXPECT_EQ(ReadFile(folder / "new.pdt"), thrice.substr(0, 20));
}

TEST(PitchCommands, AFileThatCannotBeWrittenIsReported) {
  const TempFolder folder;
  Desk desk(Word());
  PitchCommand(desk.window, *desk.document, desk.states, desk.state);
  desk.Select(8000, 9000);
  desk.window.SetCaption("title");
  for (const bool restart : {true, false}) {
    desk.window.answers = {"file:" + (folder / "missing/a.pdt"), restart ? "yes" : "no"};
    EXPECT_EQ(SavePitchSegment(desk.window, *desk.document), -1);
    EXPECT_EQ(desk.window.Log().back(), restart ? "error|title|不能建立文件！" : "error|title|文件不存在！");
  }
}

TEST(PitchCommands, ListingWritesPitchTxt) {
  const TempFolder folder;
  Desk desk(Word());
  PitchCommand(desk.window, *desk.document, desk.states, desk.state);
  const std::string data = folder / "a.pdt", listing = folder / "Pitch.txt";
  for (const int start : {8000, 9600}) {
    desk.Select(start, start + 1600);
    desk.window.answers = {"file:" + data, start == 8000 ? "yes" : "no"};
    SavePitchSegment(desk.window, *desk.document);
  }
  desk.window.Log();
  desk.window.answers = {"file:" + data};
  EXPECT_EQ(ListPitchFile(desk.window, *desk.document, folder.path()), 0);
  EXPECT_EQ(desk.window.Log(), Texts({"open|打开基频数据文件|"}));
  const std::string text = FromGbk(ReadFile(listing));
  EXPECT_TRUE(
      text.starts_with("\r\n          第1段：T=0.50秒--0.60秒\r\n\r\nT(秒)    频率(Hz) 半音调    T(秒)    "
                       "频率(Hz) 半音调 \r\n0.50     12"));
  EXPECT_NE(text.find(" \r\n          第2段：T=0.60秒--0.70秒\r\n"),
            std::string::npos);  // 11 frames: an odd end

  // A broken tail: its message, and the records before it stay listed.
  WriteFile(data, ReadFile(data).substr(0, 56) + "HEAPxxxx");
  desk.window.answers = {"file:" + data};
  EXPECT_EQ(ListPitchFile(desk.window, *desk.document, folder.path()), 1);
  EXPECT_EQ(desk.window.Log().back(), "error|Parlowen(Tessiran)|基频数据文件错误！");
  EXPECT_EQ(FromGbk(ReadFile(listing)), text.substr(0, text.find("\r\n          第2段")));
  WriteFile(data, std::string("RIFF0000"));
  desk.window.answers = {"file:" + data};
  EXPECT_EQ(ListPitchFile(desk.window, *desk.document, folder.path()), 1);
  EXPECT_EQ(ReadFile(listing), "");
  WriteFile(data, std::string());
  desk.window.answers = {"file:" + data};
  EXPECT_EQ(ListPitchFile(desk.window, *desk.document, folder.path()), 0);
}

TEST(PitchCommands, ListingRefusesBeforeItWrites) {
  const TempFolder folder;
  Desk desk(Word());
  EXPECT_EQ(ListPitchFile(desk.window, *desk.document, folder.path()), 1);  // cancelled
  desk.window.answers = {"file:" + (folder / "none.pdt")};
  EXPECT_EQ(ListPitchFile(desk.window, *desk.document, folder.path()), 1);
  EXPECT_EQ(desk.window.Log().back(), "error|Parlowen(Tessiran)|无基频数据文件！");
  desk.window.answers = {"file:" + WriteFile(folder / "a.pdt", std::string())};
  EXPECT_EQ(ListPitchFile(desk.window, *desk.document, folder / "nowhere"), 1);
  EXPECT_EQ(desk.window.Log().back(), "error|Parlowen(Tessiran)|文件打开错误！");
  EXPECT_EQ(folder.Names(), Texts({"a.pdt"}));
}

// --- Repair

struct RepairDesk : Desk {
  RepairDesk() : Desk(Word()) {
    document->pitch.fill(0);
    for (std::size_t f = 40; f < 80; ++f) document->pitch[f] = 160;  // 100 Hz
    document->pitchBackup = document->pitch;
    document->pitchPresent = true;
  }
};

TEST(PitchRepair, NeedsAContourAndASelection) {
  Desk desk(Word());
  RepairPitchCommand(desk.window, *desk.document, desk.spectrogram, desk.state);
  EXPECT_EQ(desk.window.Log(), Texts({"none|Parlowen(Tessiran)|请先求出基频！"}));
  desk.document->pitchPresent = true;
  RepairPitchCommand(desk.window, *desk.document, desk.spectrogram, desk.state);
  EXPECT_EQ(desk.window.Log(), Texts({"status|请先用鼠标左、右键选定语音段"}));
  EXPECT_EQ(desk.document->activity, activities::kWaveform);
  desk.Select(4800, 14400);
  RepairPitchCommand(desk.window, *desk.document, desk.spectrogram, desk.state);
  EXPECT_EQ(desk.document->activity, activities::kPitchRepair);
  EXPECT_TRUE(desk.spectrogram.shown);
  EXPECT_EQ(desk.spectrogram.kind, SpectrogramKind::NarrowBand);
}

TEST(PitchRepair, ATraceIsLinearInTheLogarithmAndOverVoicedFramesOnly) {
  RepairDesk desk;
  PitchRepair& repair = desk.state.repair;
  RepairKey(desk.window, *desk.document, repair, "4");
  EXPECT_EQ(desk.window.Log(), Texts({"status|谐波号=4"}));
  RepairClick(desk.window, *desk.document, repair, {60, 400}, MouseButton::Left);
  EXPECT_NEAR(desk.Frequency(60), 100, 1e-3);
  RepairClick(desk.window, *desk.document, repair, {30, 1600},
              MouseButton::Left);              // backwards, past the voiced run
  EXPECT_NEAR(desk.Frequency(45), 200, 1e-3);  // half way between 100 and 400 Hz
  EXPECT_EQ(desk.Frequency(39), 0);
  EXPECT_NEAR(desk.Frequency(61), 100, 1e-3);
  RepairClick(desk.window, *desk.document, repair, {0, 0}, MouseButton::Right);  // ends the trace
  RepairClick(desk.window, *desk.document, repair, {70, 800}, MouseButton::Left);
  EXPECT_NEAR(desk.Frequency(70), 200, 1e-3);
  EXPECT_NEAR(desk.Frequency(69), 100, 1e-3);
  EXPECT_TRUE(desk.window.Log().empty());
  RepairClick(desk.window, *desk.document, repair, {0, 0}, MouseButton::Right);
  RepairClick(desk.window, *desk.document, repair, {100, 800}, MouseButton::Left);  // unvoiced
  EXPECT_EQ(desk.window.Log(), Texts({"status|只能修改浊音段"}));
  for (int i = 0; i < 3; ++i) RepairKey(desk.window, *desk.document, repair, "Z");
  EXPECT_EQ(desk.document->pitch, desk.document->pitchBackup);
}

TEST(PitchRepair, MarkedFramesAreUnvoicedDoubledHalvedAndRestored) {
  RepairDesk desk;
  PitchRepair& repair = desk.state.repair;
  const auto key = [&](const char* name) {
    EXPECT_TRUE(RepairKey(desk.window, *desk.document, repair, name));
  };
  key("D");
  key("Up");
  EXPECT_EQ(desk.window.Log(), Texts({"status|只能修改浊音段", "status|只能修改浊音段"}));
  RepairMark(desk.window, repair, 50, 45);  // a drag to the left
  key("Up");
  EXPECT_EQ(desk.Frequency(45), 200);
  EXPECT_EQ(desk.Frequency(50), 200);
  EXPECT_EQ(desk.Frequency(44), 100);
  EXPECT_EQ(desk.Frequency(51), 100);
  key("Down");
  key("Down");
  EXPECT_EQ(desk.Frequency(47), 50);
  key("Down");  // 25 Hz is no pitch: the frames stay
  EXPECT_EQ(desk.Frequency(47), 50);
  key("d");
  EXPECT_EQ(desk.document->pitch[47], 0.0f);
  // Marked frames may be given a pitch although they have none.
  RepairClick(desk.window, *desk.document, repair, {46, 150}, MouseButton::Left);
  EXPECT_NEAR(desk.Frequency(46), 150, 1e-3);
  key("R");
  EXPECT_EQ(desk.document->pitch, desk.document->pitchBackup);
  key("Z");
  EXPECT_NEAR(desk.Frequency(46), 150, 1e-3);
  EXPECT_EQ(desk.document->pitch[47], 0.0f);
  EXPECT_FALSE(RepairKey(desk.window, *desk.document, repair, "S"));
}

TEST(PitchRepair, FrameZeroAndFramesBehindTheSoundStay) {
  RepairDesk desk;
  PitchRepair& repair = desk.state.repair;
  RepairMark(desk.window, repair, 0, 12499);
  RepairClick(desk.window, *desk.document, repair, {0, 100}, MouseButton::Left);
  RepairClick(desk.window, *desk.document, repair, {12499, 100}, MouseButton::Left);
  EXPECT_EQ(desk.document->pitch[0], 0.0f);
  EXPECT_EQ(desk.Frequency(119), 100);
  EXPECT_EQ(desk.document->pitch[120], 0.0f);
}

TEST(PitchRepair, ThePictureAndTheMouseAgreeOnFrequencies) {
  for (const RepairRows rows : {RepairRows::Frequencies, RepairRows::Quefrencies})
    for (const int height : {100, 256, 330, 513})
      for (int y = 0; y < height - 3; ++y)  // the lowest rows stand below 0
        EXPECT_EQ(RowOfFrequency(rows, FrequencyAtRow(rows, y, height, 16000), height, 16000), y) << height;
  // Row 32 of 256 stands for 1000 Hz, or for a period of 32 samples; its middle is 32.5 rows above the foot.
  EXPECT_NEAR(FrequencyAtRow(RepairRows::Frequencies, 256 - 1 - 32, 256, 16000), 1000, 1e-9);
  EXPECT_NEAR(FrequencyAtRow(RepairRows::Quefrencies, 256 - 1 - 32, 256, 16000), 500, 1e-9);
  EXPECT_NEAR(FrequencyAtRow(RepairRows::Quefrencies, 256 - 1 - 32, 256, 22050), 22050 / 32.0, 1e-9);
  EXPECT_NEAR(FrequencyAtRow(RepairRows::Quefrencies, 256 - 1 - 32, 256, 22051), 22051 / 64.0, 1e-9);
}

TEST(PitchRepair, TheCombStandsOnTheHarmonicsOfTheFramesPitch) {
  RepairDesk desk;
  desk.state.repair.pointer = RepairPoint{60, 900};
  const Picture picture = PitchRepairPicture(
      *desk.document, desk.state.repair, [](int sample) { return sample / 160; }, 200, 800);
  std::vector<int> teeth;
  for (const Mark& mark : picture.marks)
    if (const auto* line = std::get_if<LineMark>(&mark)) {
      teeth.push_back(line->from.y);
      EXPECT_EQ((line->from.x + line->to.x) / 2, 60);
    }
  ASSERT_EQ(teeth.size(), 79u);  // 100 .. 7900 Hz
  for (std::size_t k = 0; k < teeth.size(); ++k)
    EXPECT_EQ(teeth[k],
              RowOfFrequency(RepairRows::Frequencies, 100.0 * (static_cast<double>(k) + 1), 800, 16000));
}

}  // namespace
}  // namespace parlowen
