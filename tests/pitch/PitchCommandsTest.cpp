// The handlers with queued answers, and the repair of the contour.

#include <gtest/gtest.h>

#include "base/Gbk.h"
#include "document/Editing.h"
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
    EXPECT_FALSE(desk.document->pitchPresent || desk.states.Holds(Need::Contour));
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
}

TEST(PitchCommands, SavingRestartsOrAppends) {
  const TempFolder folder;
  Desk desk(Word());
  PitchCommand(desk.window, *desk.document, desk.states, desk.state);
  desk.Select(8000, 8200);
  const std::string path = folder / "a.pdt";
  const auto save = [&](const char* answer) {
    desk.window.answers = {"file:" + path, answer};
    SavePitchSegment(desk.window, *desk.document);
    return ReadFile(path);
  };
  const std::string once = save("no");  // a missing file is made
  EXPECT_EQ(once.size(), 20u);          // frames 50 and 51
  EXPECT_EQ(save("no"), once + once);
  EXPECT_EQ(save("yes"), once);
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
  WriteFile(data, std::string((8 << 20) + 1, 'x'));  // too large to be one
  desk.window.answers = {"file:" + data};
  EXPECT_EQ(ListPitchFile(desk.window, *desk.document, folder.path()), 1);
  EXPECT_EQ(desk.window.Log().back(), "error|Parlowen(Tessiran)|基频数据文件错误！");
  WriteFile(data, std::string());
  desk.window.answers = {"file:" + data};
  EXPECT_EQ(ListPitchFile(desk.window, *desk.document, folder.path()), 0);
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
  RepairMark(desk.window, *desk.document, repair, 50, 45);  // a drag to the left
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

TEST(PitchRepair, NothingOfAnotherContourIsLeftInHand) {
  using Change = void (*)(RepairDesk&);
  for (const Change change :
       {Change([](RepairDesk& d) { CutSelection(*d.document); }),
        Change([](RepairDesk& d) { d.document->TakePeriods(1, std::vector<float>{100}); }),
        Change([](RepairDesk& d) { d.document->resetPitch(); })}) {
    RepairDesk desk;
    PitchRepair& repair = desk.state.repair;
    RepairClick(desk.window, *desk.document, repair, {60, 200}, MouseButton::Left);
    RepairMark(desk.window, *desk.document, repair, 45, 50);
    RepairClick(desk.window, *desk.document, repair, {62, 200}, MouseButton::Left);
    desk.document->selectionStart = 1000;
    desk.document->selectionEnd = 2000;
    change(desk);
    const PitchContour changed = desk.document->pitch;
    for (const char* key : {"Z", "D", "R"}) RepairKey(desk.window, *desk.document, repair, key);
    EXPECT_EQ(desk.document->pitch, changed);
    EXPECT_FALSE(repair.lastPoint) << "the trace begins anew";
  }
}

TEST(PitchRepair, FrameZeroAndFramesBehindTheSoundStay) {
  RepairDesk desk;
  PitchRepair& repair = desk.state.repair;
  RepairMark(desk.window, *desk.document, repair, 0, 12499);
  RepairClick(desk.window, *desk.document, repair, {0, 100}, MouseButton::Left);
  RepairClick(desk.window, *desk.document, repair, {12499, 100}, MouseButton::Left);
  EXPECT_EQ(desk.document->pitch[0], 0.0f);
  EXPECT_EQ(desk.Frequency(119), 100);
  EXPECT_EQ(desk.document->pitch[120], 0.0f);
}

TEST(PitchRepair, ThePictureAndTheMouseAgreeOnFrequencies) {
  for (const RepairRows rows : {RepairRows::Frequencies, RepairRows::Quefrencies})
    for (const int height : {100, 256, 330, 513})
      for (const int shown : {49, 256})
        for (int y = 0; (height - y - 1) * shown > height; ++y)  // the lowest rows stand below 0
          EXPECT_EQ(RowOfFrequency(rows, FrequencyAtRow(rows, y, height, 16000, shown), height, 16000, shown),
                    y)
              << height << ", " << shown;
  // Row 32 of 256 stands for 1000 Hz, or for a period of 32 samples; its middle is 32.5 rows above the foot.
  EXPECT_NEAR(FrequencyAtRow(RepairRows::Frequencies, 256 - 1 - 32, 256, 16000), 1000, 1e-9);
  EXPECT_NEAR(FrequencyAtRow(RepairRows::Quefrencies, 256 - 1 - 32, 256, 16000), 500, 1e-9);
  EXPECT_NEAR(FrequencyAtRow(RepairRows::Quefrencies, 256 - 1 - 32, 256, 22050), 22050 / 32.0, 1e-9);
  EXPECT_NEAR(FrequencyAtRow(RepairRows::Quefrencies, 256 - 1 - 32, 256, 22051), 22051 / 64.0, 1e-9);
}

}  // namespace
}  // namespace parlowen
