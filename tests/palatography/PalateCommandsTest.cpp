#include "palatography/PalateCommands.h"

#include <gtest/gtest.h>

#include "palatography/NspBytes.h"
#include "palatography/NspCommands.h"
#include "palatography/PalatePicture.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

using namespace testing;

/// A second of silence at 8000 Hz with `palate` as its frames.
struct Desk {
  FakeWindow window;
  CommandStates states;
  SoundDocument document;
  PalateState palate;
  PalateView view;
  TempFolder folder;
  std::string exports;
  std::function<void(Window&, int, int)> play;
  PalateDesk desk{document, palate, view, exports, play};

  explicit Desk(const std::string& frames) {
    NspBytes file;
    file.rate = 8000;
    file.chunks = Speech("SDA_", std::vector<std::int16_t>(8000)) + Preferences() + Chunk("PALA", frames);
    ReadEpgNsp(window, document, states, palate, WriteFile(folder / "p.nsp", file.Epg(8000)));
    window.Log();
  }
  bool Has(const std::string& text) {
    const Texts log = window.Log();
    return std::any_of(log.begin(), log.end(),
                       [&](const std::string& line) { return line.find(text) != std::string::npos; });
  }
};

const std::string kFrames(800, '\x18');  // 100 frames, contact in the middle of every row

TEST(PalateCommands, RefuseDamagedFramesAndAnEditedSound) {
  for (const std::string& frames : {std::string(), std::string(801, 'x'), std::string(7, 'x')}) {
    Desk d(frames);
    ShowPalateCommand(d.window, d.desk, true);
    EXPECT_TRUE(d.Has("error|" + d.window.Caption() + "|数据错误！"));
    PalateStatisticsCommand(d.window, d.desk);
    EXPECT_TRUE(d.Has("数据错误！"));
  }
  Desk d(kFrames);
  PalateStatisticsCommand(d.window, d.desk);
  EXPECT_TRUE(d.Has("none|语音段未正确定义|请用鼠标左、右键定义要进行统计的段"));
  d.document.sampleCount = 7999;
  ShowPalateCommand(d.window, d.desk, false);
  EXPECT_TRUE(d.Has("波形已改变，腭位数据不再对应！"));
  EXPECT_FALSE(d.view.framesOpen);
  EXPECT_EQ(TimingOf(d.palate, d.document).frames, 0);
}

TEST(PalateCommands, ASavedStretchNeverDamagesTheFileItIsAddedTo) {
  Desk d(kFrames);
  d.document.selectionStart = 1000;
  d.document.selectionEnd = 2000;
  const std::string path = d.folder / "a.pal";
  const auto save = [&](const char* restart) {
    d.window.answers = {"yes", "file:" + path, restart};
    PalateStatisticsCommand(d.window, d.desk);
  };
  save("no");  // a file that is not there takes a first record
  save("no");
  EXPECT_EQ(ReadFile(path).size(), 2 * kPalateRecordBytes);
  EXPECT_EQ(d.view.statistics.records[0].frames, 12) << "frames 13 .. 24 begin there";
  save("yes");
  const std::string one = ReadFile(path);
  EXPECT_EQ(one.size(), kPalateRecordBytes);
  const std::string other = "not such a file";
  WriteFile(path, other);
  d.window.Log();
  save("no");
  EXPECT_TRUE(d.Has("无此腭位统计数据文件！"));
  EXPECT_EQ(ReadFile(path), other);
  std::string full;
  for (std::size_t i = 0; i < kMostPalateRecords; ++i) full += one;
  WriteFile(path, full);
  save("no");
  EXPECT_TRUE(d.Has("数据太多，不能再加入！"));
  EXPECT_EQ(ReadFile(path).size(), full.size());
}

TEST(PalateCommands, ImportedFramesStandBesideTheSound) {
  Desk d("");
  d.states.Tell(Need::PalateFile, false);
  const std::string path = d.folder / "other.epg";
  std::string frames;
  for (int i = 0; i < 300; ++i) frames += "head" + std::string(8, static_cast<char>(i % 2 == 0 ? 0x18 : 0));
  WriteFile(path, frames);
  d.window.answers = {"file:" + path, "ok:9", "ok:1001", "ok:100"};
  ImportContactFramesCommand(d.window, d.document, d.states, d.palate);
  const Texts log = d.window.Log();
  EXPECT_EQ(std::count(log.begin(), log.end(), "none|" + d.window.Caption() + "|输入的帧数错误！"), 2);
  // 3600 bytes are whole frames of 8 as well: 450, of which a second has 100.
  EXPECT_EQ(TimingOf(d.palate, d.document).frames, 100);
  EXPECT_EQ(TimingOf(d.palate, d.document).rate, 100) << "as it was told, not as many as fill the sound";
  EXPECT_EQ(d.palate.recording.palate.size(), 800u);
  EXPECT_TRUE(d.states.Holds(Need::PalateFile));
  WriteFile(path, frames + "12345");
  d.window.answers = {"file:" + path, "ok:100"};
  ImportContactFramesCommand(d.window, d.document, d.states, d.palate);
  EXPECT_TRUE(d.Has("数据错误！"));
  EXPECT_EQ(TimingOf(d.palate, d.document).frames, 100) << "the frames before stay";
  const auto twelve = ParseContactFrames(AsBytes(frames), 12);
  ASSERT_EQ(twelve->size(), 300u);
  EXPECT_EQ((*twelve)[0][0], 0x18);
  EXPECT_EQ((*twelve)[1][7], 0);
}

TEST(PalateCommands, AClickTakesTheFrameThatIsDrawnThere) {
  Desk d(kFrames);
  const ContactTiming timing = TimingOf(d.palate, d.document);
  for (const int width : {1024, 500, 300}) {
    const PalateLayout layout(d.document, timing, width);
    for (int frame = 0; frame < 100; ++frame) {
      // The column that a frame begins in may still show the end of the one before.
      const int x = layout.ColumnOf(timing.Start(frame));
      EXPECT_NEAR(layout.FrameAt({x, 380}), frame, 1) << width;
      EXPECT_EQ(layout.FrameAt({x + 1, 20}) >= frame, true) << width;
    }
    EXPECT_EQ(layout.FrameAt({0, 100}), 0);
    EXPECT_EQ(layout.FrameAt({width, 100}), 99);
    // Every k-th palatogram, so that all of them fit left of the large one.
    const int step = layout.PalatogramStep(), places = (width - 200) / 48;
    EXPECT_LE((99 / step) * 48 + 20 + 40, width - 160);
    EXPECT_GE(step, (100 + places - 1) / places);
    EXPECT_EQ(layout.FrameAt({20 + 48, 401}), step);
    EXPECT_EQ(layout.FrameAt({20 + 40, 401}), -1) << "between two of them";
    EXPECT_EQ(layout.FrameAt({20, 395}), -1);
  }
}

}  // namespace
}  // namespace parlowen
