#include "palatography/NspCommands.h"

#include <gtest/gtest.h>

#include "document/EditCommands.h"
#include "palatography/MarkerPicture.h"
#include "palatography/NspBytes.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

using namespace testing;
using Samples = std::vector<std::int16_t>;

constexpr int kPalateCommands[] = {40061, 40049, 40087, 40088};

struct Desk {
  FakeWindow window;
  CommandStates states;
  SoundDocument document;
  PalateState palate;
  TempFolder folder;

  int OpenSpeech(const std::string& bytes, const std::string& name = "s9.nsp") {
    return ReadTwoChannelNsp(window, document, states, WriteFile(folder / name, bytes));
  }
  int OpenEpg(const std::string& bytes, const std::string& name = "s9.nsp") {
    return ReadEpgNsp(window, document, states, palate, WriteFile(folder / name, bytes));
  }
  Samples First(int count) const { return {document.samples.data(), document.samples.data() + count}; }
  Samples Second(int count) const { return {document.samples2.data(), document.samples2.data() + count}; }
  int PalateCommandsEnabled() const {
    int enabled = 0;
    for (const int command : kPalateCommands) enabled += states.IsEnabled(command);
    return enabled;
  }
};

std::string SpeechFile(const std::string& chunks, std::uint32_t rate = 16000) {
  return NspBytes{.formLength = {}, .headerLength = {}, .rate = rate, .chunks = chunks}.TwoChannel();
}
std::string EpgFile(const std::string& chunks) {
  return NspBytes{.formLength = {}, .headerLength = {}, .chunks = chunks}.Epg(4);
}
const std::string kWholeEpg = EpgFile(Speech("SDA_", {5, 6, 7, 8}) + Preferences() + Chunk("PALA", "frames") +
                                      Marker("MKA_", 2, "t") + Marker("MKA_", 4, ""));

TEST(NspCommands, TwoChannelSpeechReplacesTheSound) {
  Desk desk;
  ASSERT_EQ(desk.OpenSpeech(SpeechFile(Speech("SDA_", Ramp(3000)) + Speech("SD_B", Ramp(3000)))), 1);
  EXPECT_TRUE(desk.document.twoChannel);
  EXPECT_TRUE(desk.states.IsEnabled(40111));
  MarkStart(desk.document, desk.states, 10);
  desk.document.pitchPresent = true;
  desk.document.longFileSeconds = 9;
  ASSERT_EQ(desk.OpenSpeech(SpeechFile(Speech("SDA_", {1, 2, 3}) + Speech("SD_B", {-1, -2}), 11025)), 1);
  EXPECT_EQ(desk.document.sampleCount, 2) << "the last chunk tells the length";
  EXPECT_EQ(desk.First(5), (Samples{1, 2, 0, 0, 0})) << "nothing of the sound before";
  EXPECT_EQ(desk.Second(5), (Samples{-1, -2, 0, 0, 0}));
  EXPECT_EQ(desk.document.sampleRate, 11025);
  EXPECT_EQ(desk.document.selectionStart, kNoSelection);
  EXPECT_FALSE(desk.document.pitchPresent);
  EXPECT_EQ(desk.document.longFileSeconds, 0);
  EXPECT_EQ(desk.document.filePath, desk.folder / "s9.nsp");
  EXPECT_EQ(desk.window.Caption(), "Parlowen(Tessiran) -- " + desk.folder.path() + "/s9.nsp");
  EXPECT_TRUE(desk.window.Log().empty());
}

TEST(NspCommands, OneChannelMakesAMonoDocument) {
  Desk desk;
  ASSERT_EQ(desk.OpenSpeech(SpeechFile(Speech("SDA_", Ramp(9)) + Speech("SD_B", Ramp(9)))), 1);
  ASSERT_EQ(desk.OpenSpeech(SpeechFile(Speech("SD_B", {4, 5, 6}))), 1);
  EXPECT_FALSE(desk.document.twoChannel);
  EXPECT_FALSE(desk.states.IsEnabled(40111));
  EXPECT_EQ(desk.First(9), Samples(9, 0));
  EXPECT_EQ(desk.Second(9), (Samples{4, 5, 6, 0, 0, 0, 0, 0, 0}));
  ASSERT_EQ(desk.OpenSpeech(SpeechFile(Speech("SDA_", {7, 8}) + Speech("SDA_", {9, 9}))), 1);
  EXPECT_FALSE(desk.document.twoChannel) << "one channel twice is still one";
}

TEST(NspCommands, AnEpgFileEnablesThePalateCommandsUntilTheNextSound) {
  Desk desk;
  ASSERT_EQ(desk.OpenEpg(kWholeEpg), 1);
  EXPECT_EQ(desk.First(5), (Samples{5, 6, 7, 8, 0}));
  EXPECT_EQ(desk.PalateCommandsEnabled(), 4);
  EXPECT_TRUE(desk.states.IsEnabled(220)) << "the states of a loaded sound come first";
  EXPECT_TRUE(desk.palate.IsComplete());
  // Without palate frames, or with two preference records, the sound is loaded and the commands stay grey.
  const std::string speech = Speech("SDA_", {1, 2, 3, 4});
  for (const std::string& chunks : {speech + Preferences(), speech + Preferences() + Preferences(), speech + Chunk("PALA", "x"), speech}) {
    ASSERT_EQ(desk.OpenEpg(kWholeEpg), 1);
    ASSERT_EQ(desk.OpenEpg(EpgFile(chunks)), 1);
    EXPECT_EQ(desk.document.sampleCount, 4);
    EXPECT_EQ(desk.PalateCommandsEnabled(), 0);
  }
  ASSERT_EQ(desk.OpenEpg(kWholeEpg), 1);
  ASSERT_EQ(desk.OpenSpeech(SpeechFile(speech)), 1);
  EXPECT_EQ(desk.PalateCommandsEnabled(), 0);
}

TEST(NspCommands, ARefusalLeavesEverything) {
  Desk desk;
  ASSERT_EQ(desk.OpenEpg(kWholeEpg, "good3.nsp"), 1);
  const std::string caption = desk.window.Caption();
  const auto unchanged = [&] {
    return desk.document.sampleCount == 4 && desk.document.samples[0] == 5 && desk.document.sampleRate == 16000 &&
           desk.document.filePath == desk.folder / "good3.nsp" && desk.window.Caption() == caption &&
           desk.palate.recording.palate.size() == 6 && desk.PalateCommandsEnabled() == 4;
  };
  const std::string speech = Speech("SDA_", {1});
  const struct {
    const char* reason;
    bool epg;
    std::string bytes;
    Texts shown;
  } cases[] = {
      {"another kind of file", false, std::string(200, 'R'), {}},
      {"another kind of file", true, std::string(200, 'R'), {}},
      {"header id", false, EpgFile(speech), {"error||文件格式不对！"}},
      {"header id", true, SpeechFile(speech), {}},
      {"rate", false, SpeechFile(speech, 32001), {"error||采样率太高！"}},
      {"rate", true, NspBytes{.formLength = {}, .headerLength = {}, .rate = 32001, .chunks = speech}.Epg(1), {"error||采样率太高！"}},
      {"small rate", false, SpeechFile(speech, 999), {"error||文件格式不对！"}},
      {"interleaved channels", true, EpgFile(speech + Speech("SDAB", {1, 2})), {"error||不支持双声道采样！"}},
      {"preferences", true, EpgFile(speech + Chunk("PREF", "short")), {"error||数据错误！"}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.reason);
    EXPECT_EQ(c.epg ? desk.OpenEpg(c.bytes, "bad.nsp") : desk.OpenSpeech(c.bytes, "bad.nsp"), 0);
    EXPECT_EQ(desk.window.Log(), c.shown);
    EXPECT_TRUE(unchanged());
  }
  EXPECT_EQ(ReadTwoChannelNsp(desk.window, desk.document, desk.states, desk.folder / "none.nsp"), 0);
  EXPECT_EQ(ReadEpgNsp(desk.window, desk.document, desk.states, desk.palate, desk.folder.path()), 0);
  EXPECT_EQ(desk.window.Log(), (Texts{"error||文件打开错误", "error||文件打开错误"}));
  OpenTwoChannelNspCommand(desk.window, desk.document, desk.states);
  OpenEpgCommand(desk.window, desk.document, desk.states, desk.palate);
  EXPECT_EQ(desk.window.Log(), (Texts{"open|打开NSP双声道文件|", "open|打开腭位数据文件|"})) << "a cancel says nothing";
  EXPECT_TRUE(unchanged());
}

TEST(NspCommands, MarkersAreDrawnWhileTheSamplesAreTheFiles) {
  Desk desk;
  ASSERT_EQ(desk.OpenEpg(kWholeEpg), 1);
  const auto drawn = [&] {
    Picture picture{100, 50, {}};
    AddEpgMarkers(picture, desk.palate, desk.document, 20, [](int sample) { return 18 + sample; });
    return picture.marks;
  };
  const auto marks = drawn();   // sample 2 at column 20, 4 at column 22 and without a label
  ASSERT_EQ(marks.size(), 3u);
  EXPECT_EQ(std::get<LineMark>(marks[0]).from.x, 20);
  EXPECT_EQ(std::get<TextMark>(marks[1]).text, "t");
  EXPECT_EQ(std::get<LineMark>(marks[2]).from.x, 22);
  MarkStart(desk.document, desk.states, 0);
  MarkEnd(desk.document, desk.states, 2);
  CutCommand(desk.window, desk.document, desk.states);
  EXPECT_TRUE(drawn().empty()) << "they would stand at the wrong places";
  UndoCommand(desk.window, desk.document, desk.states);
  EXPECT_EQ(drawn().size(), 3u);
  ASSERT_EQ(desk.OpenSpeech(SpeechFile(Speech("SDA_", {5, 6, 7, 8}))), 1);
  EXPECT_TRUE(drawn().empty()) << "another sound of the same length";
}

}  // namespace
}  // namespace parlowen
