#include "palatography/PalateCommands.h"

#include <gtest/gtest.h>

#include "document/Desk.h"
#include "palatography/NspBytes.h"
#include "palatography/NspCommands.h"
#include "palatography/PalatePicture.h"

namespace parlowen {
namespace {

using namespace testing;

/// A second of silence at 8000 Hz with `palate` as its frames.
struct Frames : Desk {
  PalateState palate;
  PalateView view;
  std::string exports;
  std::function<void(Window&, int, int)> play;
  PalateDesk desk{document, palate, view, exports, play};

  explicit Frames(const std::string& frames) {
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

TEST(PalateCommands, RefuseDamagedFrames) {
  for (const std::string& frames : {std::string(), std::string(801, 'x'), std::string(7, 'x')}) {
    Frames d(frames);
    ShowPalateCommand(d.window, d.desk, true);
    EXPECT_TRUE(d.Has("error|" + d.window.Caption() + "|数据错误！"));
    PalateStatisticsCommand(d.window, d.desk);
    EXPECT_TRUE(d.Has("数据错误！"));
    EXPECT_FALSE(d.view.framesOpen);
  }
}

TEST(PalateCommands, NothingIsAddedToAFullFile) {
  Frames d(kFrames);
  d.Select(1000, 2000);
  const std::string path = d.folder / "a.pal";
  const auto save = [&](const char* restart) {
    d.window.answers = {"yes", "file:" + path, restart};
    PalateStatisticsCommand(d.window, d.desk);
  };
  save("yes");
  EXPECT_EQ(d.view.statistics.records[0].frames, 12) << "frames 13 .. 24 begin there";
  std::string full;
  for (std::size_t i = 0; i < kMostPalateRecords; ++i) full += ReadFile(path);
  WriteFile(path, full);
  save("no");
  EXPECT_TRUE(d.Has("数据太多，不能再加入！"));
  EXPECT_EQ(ReadFile(path), full);
}

TEST(PalateCommands, AClickTakesTheFrameThatIsDrawnThere) {
  Frames d(kFrames);
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
