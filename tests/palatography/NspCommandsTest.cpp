#include "palatography/NspCommands.h"

#include <gtest/gtest.h>

#include "document/Desk.h"
#include "palatography/NspBytes.h"

namespace parlowen {
namespace {

using namespace testing;
using Samples = std::vector<std::int16_t>;

struct NspDesk : Desk {
  PalateState palate;

  int OpenSpeech(const std::string& bytes, const std::string& name = "s9.nsp") {
    return ReadTwoChannelNsp(window, document, states, WriteFile(folder / name, bytes));
  }
  int OpenEpg(const std::string& bytes, const std::string& name = "s9.nsp") {
    return ReadEpgNsp(window, document, states, palate, WriteFile(folder / name, bytes));
  }
  std::vector<std::int16_t> First(int count) const {
    return {document.samples.data(), document.samples.data() + count};
  }
};

std::string SpeechFile(const std::string& chunks, std::uint32_t rate = 16000) {
  return NspBytes{.formLength = {}, .headerLength = {}, .rate = rate, .chunks = chunks}.TwoChannel();
}
std::string EpgFile(const std::string& chunks) {
  return NspBytes{.formLength = {}, .headerLength = {}, .chunks = chunks}.Epg(4);  // samples announced
}
const std::string kWholeEpg = EpgFile(Speech("SDA_", {5, 6, 7, 8}) + Preferences() + Chunk("PALA", "frames") +
                                      Marker("MKA_", 2, "t") + Marker("MKA_", 4, ""));

TEST(NspCommands, AnEpgFileEnablesThePalateCommandsUntilTheNextSound) {
  NspDesk desk;
  ASSERT_EQ(desk.OpenEpg(kWholeEpg), 1);
  EXPECT_EQ(desk.First(5), (Samples{5, 6, 7, 8, 0}));
  EXPECT_TRUE(desk.states.Holds(Need::PalateFile));
  EXPECT_TRUE(desk.states.Holds(Need::Sound)) << "the states of a loaded sound come first";
  EXPECT_TRUE(desk.palate.IsComplete());
  // Without palate frames, or with two preference records, the sound is loaded and the commands stay grey.
  const std::string speech = Speech("SDA_", {1, 2, 3, 4});
  for (const std::string& chunks : {speech + Preferences(), speech + Preferences() + Preferences(),
                                    speech + Chunk("PALA", "x"), speech}) {
    ASSERT_EQ(desk.OpenEpg(kWholeEpg), 1);
    ASSERT_EQ(desk.OpenEpg(EpgFile(chunks)), 1);
    EXPECT_EQ(desk.document.sampleCount, 4);
    EXPECT_FALSE(desk.states.Holds(Need::PalateFile));
  }
  ASSERT_EQ(desk.OpenEpg(kWholeEpg), 1);
  ASSERT_EQ(desk.OpenSpeech(SpeechFile(speech)), 1);
  EXPECT_FALSE(desk.states.Holds(Need::PalateFile));
}

TEST(NspCommands, ARefusalLeavesEverything) {
  NspDesk desk;
  ASSERT_EQ(desk.OpenEpg(kWholeEpg, "good3.nsp"), 1);
  const std::string caption = desk.window.Caption();
  const auto unchanged = [&] {
    return desk.document.sampleCount == 4 && desk.document.samples[0] == 5 &&
           desk.document.sampleRate == 16000 && desk.document.filePath == desk.folder / "good3.nsp" &&
           desk.window.Caption() == caption && desk.palate.recording.palate.size() == 6 &&
           desk.states.Holds(Need::PalateFile);
  };
  const std::string speech = Speech("SDA_", {1});
  const auto with = [&](auto change, bool epg) {
    NspBytes file{.formLength = {}, .headerLength = {}, .chunks = speech};
    change(file);
    return epg ? file.Epg(1) : file.TwoChannel();
  };
  const auto rate = [&](std::uint32_t hertz, bool epg) {
    return with([=](NspBytes& f) { f.rate = hertz; }, epg);
  };
  const std::string error = "error|" + caption + "|";  // under the window's title
  const Texts format = {error + "文件格式不对！"}, tooHigh = {error + "采样率太高！"},
              wrong = {error + "数据错误！"};
  const struct {
    const char* reason;
    bool epg;
    std::string bytes;
    Texts shown;
  } cases[] = {
      {"empty", false, "", {}},
      {"empty", true, "", {}},
      {"magic", false, with([](NspBytes& f) { f.magic = "FORMDS17"; }, false), {}},
      {"magic", true, with([](NspBytes& f) { f.magic = "formds16"; }, true), {}},
      {"magic alone", false, "FORMDS16", format},
      {"header id", false, EpgFile(speech), format},
      {"header id", true, SpeechFile(speech), {}},
      {"header length", false, with([](NspBytes& f) { f.headerLength = 101; }, false), format},
      {"header length", true, with([](NspBytes& f) { f.headerLength = 33; }, true), {}},
      {"rate", false, rate(32001, false), tooHigh},
      {"rate", true, rate(32001, true), tooHigh},
      {"no negative rate", false, rate(0xFFFFFFFF, false), tooHigh},
      {"not the low 16 bits", true, rate(0x10000 + 16000, true), tooHigh},
      {"small rate", false, rate(999, false), format},
      {"small rate", true, rate(999, true), {}},
      {"no speech", false, SpeechFile(""), format},
      {"no speech", true, EpgFile(Preferences()), {}},
      {"interleaved channels",
       true,
       EpgFile(speech + Speech("SDAB", {1, 2})),
       {error + "不支持双声道采样！"}},
      {"short preferences", true, EpgFile(speech + Chunk("PREF", std::string(391, 'p'))), wrong},
      {"long preferences", true, EpgFile(speech + Chunk("PREF", std::string(394, 'p'))), wrong},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.reason);
    EXPECT_EQ(c.epg ? desk.OpenEpg(c.bytes, "bad.nsp") : desk.OpenSpeech(c.bytes, "bad.nsp"), 0);
    EXPECT_EQ(desk.window.Log(), c.shown);
    EXPECT_TRUE(unchanged());
  }
  EXPECT_EQ(ReadTwoChannelNsp(desk.window, desk.document, desk.states, desk.folder / "none.nsp"), 0);
  EXPECT_EQ(ReadEpgNsp(desk.window, desk.document, desk.states, desk.palate, desk.folder.path()), 0);
  EXPECT_EQ(desk.window.Log(), (Texts{error + "文件打开错误", error + "文件打开错误"}));
  OpenTwoChannelNspCommand(desk.window, desk.document, desk.states);
  OpenEpgCommand(desk.window, desk.document, desk.states, desk.palate);
  EXPECT_EQ(desk.window.Log(), (Texts{"open|打开NSP双声道文件|", "open|打开腭位数据文件|"}))
      << "a cancel says nothing";
  EXPECT_TRUE(unchanged());
  for (const std::uint32_t good : {1000u, 32000u}) {
    EXPECT_EQ(desk.OpenSpeech(rate(good, false)), 1);
    EXPECT_EQ(desk.OpenEpg(rate(good, true)), 1);
  }
}

}  // namespace
}  // namespace parlowen
