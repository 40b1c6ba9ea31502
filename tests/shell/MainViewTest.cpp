#include <gtest/gtest.h>

#include "shell/Station.h"

namespace parlowen {
namespace {

using namespace testing;

constexpr auto kLeft = MouseButton::Left, kRight = MouseButton::Right;

TEST(MainView, AClickIsTheSampleThatItsFormulaSays) {
  Station s;
  s.Load(Ramp(400000), 11025);
  SoundDocument& d = s.w.document;
  s.w.view.ScrollTo(5000);
  const MainView& view = s.w.view;
  // Start scale: 110 samples a pixel in the waveform, 110.25 in the other panes.
  EXPECT_EQ(view.SampleAt(Pane::Waveform, 420), 5000 + 400 * 110);
  EXPECT_EQ(view.SampleAt(Pane::Amplitude, 423), 5000 + 403 * 11025 / 100);
  EXPECT_EQ(view.SampleAt(Pane::Pitch, 3), 5000) << "the margin counts as its edge";
  d.insertPoint = 77;
  EXPECT_EQ(view.SampleAt(Pane::Waveform, 30, true), 77 + 1100);
  EXPECT_EQ(view.SampleAt(Pane::Amplitude, 30, true), 5000 + 1102)
      << "only the waveform counts from the insert point";
  s.w.Key("s");
  for (const Pane pane : {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform})
    EXPECT_EQ(view.SampleAt(pane, 421), 5000 + 401 * 220);
  EXPECT_EQ(view.SampleAt(Pane::Waveform, 100000), 400000);
  for (const int x : {20, 21, 500, 1023})
    EXPECT_EQ(view.ColumnOf(Pane::Pitch, view.SampleAt(Pane::Pitch, x)), x);

  s.w.Select(10000, 30000);
  s.w.dispatchCommand(170);
  EXPECT_EQ(view.SampleAt(Pane::Analysis, 512), 20000) << "a stretch of its own fills the pane";
  EXPECT_EQ(view.SampleAt(Pane::Waveform, 421), 5000 + 401 * 220);
}

TEST(MainView, TheScaleDoublesAndHalvesWithinItsBounds) {
  Station s;
  s.Load(Ramp(400000), 22050);
  SoundDocument& d = s.w.document;
  const auto press = [&](const char* key, int times) {
    for (int i = 0; i < times; ++i) s.w.Key(key);
    return d.samplesPerPixel;
  };
  EXPECT_EQ(press("X", 3), 27);
  EXPECT_EQ(press("X", 20), 1);
  EXPECT_EQ(d.viewLength, 1004);
  EXPECT_EQ(press("S", 30), 16384);
  EXPECT_EQ(d.viewLength, 400000);
  EXPECT_FALSE(s.w.states.IsEnabled(40013));
  EXPECT_EQ(d.pixelsPerSecond, 100);
  d.activity = Activity::SegmentChart;
  EXPECT_FALSE(s.w.Key("S"));
  EXPECT_EQ(d.samplesPerPixel, 16384) << "only in the waveform mode";
}

TEST(MainView, ZoomingAtThePointerKeepsItsSample) {
  Station s;
  s.Load(Ramp(1000000), 16000);
  s.w.view.ScrollTo(400000);
  for (const bool out : {false, false, false, true, true}) {
    const int before = s.w.view.SampleAt(Pane::Waveform, 700);
    s.w.view.ZoomAt(Pane::Waveform, 700, out);
    EXPECT_NEAR(s.w.view.SampleAt(Pane::Waveform, 700), before, 1);
  }
  s.w.view.ZoomTo(500000, 510041);
  EXPECT_EQ(s.w.document.samplesPerPixel, 11) << "10 would show one sample less";
  EXPECT_EQ(s.w.document.viewStart, 500000);
  s.w.view.ZoomTo(5, 5);
  EXPECT_EQ(s.w.document.samplesPerPixel, 1);
}

TEST(MainView, ABrokenOffRegionForgetsItsCorner) {
  Station s;
  s.Load(Ramp(10000));
  s.w.dispatchCommand(40010);
  s.w.Click(Pane::Analysis, {300, 200}, kLeft, false);
  s.w.dispatchCommand(180);  // another tool
  EXPECT_EQ(s.w.document.activity, Activity::Waveform);
  s.w.dispatchCommand(40010);
  s.w.Click(Pane::Waveform, {1, 2}, kLeft, false);
  EXPECT_EQ(s.w.document.activity, Activity::RegionDrag);
}

TEST(MainView, MarksBeforeAnySoundDoNoHarm) {
  Station s;
  s.Click(Pane::Waveform, 500);
  EXPECT_EQ(s.w.document.selectionStart, -1000);
  EXPECT_FALSE(s.w.Key("Escape"));
  EXPECT_EQ(s.w.document.activity, Activity::Start) << "there is no tool to leave";
  s.w.OpenFile(s.folder / "missing.wav");
  s.Click(Pane::Waveform, 500);
  s.Click(Pane::Waveform, 900, kRight);
  EXPECT_FALSE(s.w.document.selectionDefined());
  for (const char* key : {"S", "X", "PageDown", "End", "Right", "D", "Space", "Escape"}) s.w.Key(key);
  EXPECT_EQ(s.w.view.SelectionLine(), "未选定语音段") << "a refused file opens nothing";
  EXPECT_EQ(s.w.view.HoverLine(Pane::Waveform, {500, 5}, 165, " "), "");
  EXPECT_EQ(s.w.document.viewLength, 0);
}

TEST(MainView, TheLinesUnderThePointerAndTheSelection) {
  Station s;
  s.Load(Ramp(16000), 16000, testing::PitchTail(std::vector<float>(102, 125.0f)));
  EXPECT_EQ(s.w.view.SelectionLine(), "未选定语音段");
  s.w.Select(1600, 9600);
  EXPECT_EQ(s.w.view.SelectionLine(),
            "起 0.100 s │ 0.500 s (2.000/s) │ 止 0.600 s      样点 1600 │ 8000 │ 9600");
  // 16000/125 = 128 Hz, an octave above 64 Hz. The frame holds 1601 … 1760: mean square 1681² + (160² −
  // 1)/12, 64.5 dB.
  EXPECT_EQ(s.w.view.HoverLine(Pane::Waveform, {30, 0}, 165, "\t"),
            "0.100 s\t样点 1600\t幅度 1601\t64.5 dB\tF0 128.0 Hz\t12.0 半音");
}

TEST(MainView, OnTheDesktopTheViewKeepsToTheSound) {
  Station s;
  MainView& view = s.w.view;
  SoundDocument& d = s.w.document;
  view.keepsToSound = true;
  s.Load(Ramp(200000));  // longer than 1004 columns of 160
  EXPECT_EQ(d.samplesPerPixel, 160);
  s.Load(Ramp(48000));  // 47.8 a column
  EXPECT_EQ(d.samplesPerPixel, 48);
  s.w.Key("S");
  EXPECT_EQ(d.samplesPerPixel, 48) << "no further out than the whole sound";
  s.w.SetPaneWidth(500);
  EXPECT_EQ(d.samplesPerPixel, 100) << "in a narrower window too";
  s.w.SetPaneWidth(1024);

  view.pointer = {Pane::Analysis, 520};
  const int pointed = view.SampleAt(Pane::Analysis, 520);
  s.w.Key("X");
  s.w.Key("X");
  EXPECT_EQ(d.samplesPerPixel, 12);
  EXPECT_EQ(view.SampleAt(Pane::Analysis, 520), pointed);
  view.pointer.reset();
  s.w.Select(pointed + 1200, pointed + 2400);  // in sight: its middle stays
  const int column = view.ColumnOf(Pane::Waveform, pointed + 1800);
  s.w.Zoom(false);
  EXPECT_EQ(view.ColumnOf(Pane::Waveform, pointed + 1800), column);
  s.w.Select(0, 100);  // out of sight: the middle of the view stays
  const int middle = d.viewStart + d.viewLength / 2;
  s.w.Zoom(true);
  EXPECT_NEAR(d.viewStart + d.viewLength / 2, middle, 12);
  for (int i = 0; i < 9; ++i) s.w.Zoom(true);
  EXPECT_EQ(d.samplesPerPixel, 48);
  EXPECT_EQ(d.viewStart, 0);
}

TEST(MainView, APlayThatLeavesTheViewTurnsThePage) {
  Station s;
  MainView& view = s.w.view;
  s.Load(Ramp(500000));
  const int page = s.w.document.FullViewLength();
  struct Case {
    bool follows;
    int before, now, start;  // of the view, pages of it from the start 0
  };
  for (const Case& c : {Case{true, page - 10, page + 20, page}, Case{true, page - 10, page - 1, 0},
                        Case{true, page - 10, 2 * page + 5, 2 * page}, Case{false, page - 10, page + 20, 0},
                        Case{true, page + 500, page + 600, 0}}) {
    view.followsPlay = c.follows;
    view.ScrollTo(0);
    view.cursor = c.now;
    view.FollowPlay(c.before);
    EXPECT_EQ(s.w.document.viewStart, c.start) << c.before << " " << c.now;
  }
}

TEST(MainView, ThePictureOfASelectionThatFillsTheViewSharesItsAxis) {
  Station s;
  s.Load(Ramp(200000));
  s.w.Select(20000, 40000);
  s.w.dispatchCommand(170);
  ASSERT_TRUE(s.w.view.AnalysisShowsOwnStretch());
  s.w.ZoomToSelection();
  ASSERT_FALSE(s.w.view.AnalysisShowsOwnStretch());
  for (const int x : {20, 300, 1000})
    EXPECT_EQ(s.w.view.SampleAt(Pane::Analysis, x), s.w.view.SampleAt(Pane::Waveform, x));
}

TEST(MainView, ACeilingChangesWhatIsShownAndNothingElse) {
  Station s;
  std::vector<std::int16_t> samples(44100);
  for (std::size_t i = 0; i < samples.size(); ++i) samples[i] = static_cast<std::int16_t>(i * i % 9973 * 3);
  s.Load(samples, 44100, testing::PitchTail(std::vector<float>(100, 441.0f)));
  s.w.dispatchCommand(180);
  const std::vector<std::uint16_t> greys = s.w.spectrogram.matrix.greys;
  // The rows up to the ceiling, row·44100/512 Hz, and the frequency in the middle of the pane's topmost pixel.
  const struct {
    const char* key;
    int rows;
    const char* top;
    const char* highestTick;
  } cases[] = {{"F", 256, "21964 Hz", "22 kHz"},
               {"C", 93, "7924 Hz", "8 kHz"},
               {"c", 59, "4996 Hz", "5 kHz"},
               {"C", 47, "3962 Hz", "4 kHz"},
               {"C", 256, "21964 Hz", "22 kHz"}};
  const auto expect = [&](int rows, const char* top, const char* highestTick) {
    const Picture base = s.w.view.Base(Pane::Analysis, 1024, 330);
    const auto& image = std::get<GreyImageMark>(base.marks.at(0));
    EXPECT_EQ(image.rows, rows);
    EXPECT_EQ(image.height, 330);
    EXPECT_EQ(image.pixels[40], greys[static_cast<std::size_t>(40 * 256 + rows - 1)]);
    EXPECT_NE(s.w.view.HoverLine(Pane::Analysis, {60, 0}, 330, " ").find(top), std::string::npos)
        << s.w.view.HoverLine(Pane::Analysis, {60, 0}, 330, " ");
    EXPECT_EQ(s.w.view.Ticks(Pane::Analysis, 330).back().label, highestTick);
  };
  for (const auto& c : cases) {
    s.w.Key(c.key);
    expect(c.rows, c.top, c.highestTick);
    EXPECT_EQ(s.w.spectrogram.matrix.greys, greys);
  }
  s.w.Select(0, 44100);
  s.w.dispatchCommand(40042);  // a repair: harmonics that one can aim at
  EXPECT_EQ(std::get<GreyImageMark>(s.w.view.Base(Pane::Analysis, 1024, 330).marks.at(0)).rows, 18);
  EXPECT_EQ(s.w.view.Ticks(Pane::Analysis, 330).back().label, "1500 Hz");
  s.w.Click(Pane::Analysis, {410, 220}, MouseButton::Left, false);
  const int frame = 410 * 44100 / 1024 / 441;
  EXPECT_NEAR(44100.0 / s.w.document.pitch[static_cast<std::size_t>(frame)],
              (109.5 * 18 / 330 - 0.5) * 44100 / 512, 1e-2)
      << "the click means what is shown";
  s.w.Key("Escape");
  EXPECT_EQ(std::get<GreyImageMark>(s.w.view.Base(Pane::Analysis, 1024, 330).marks.at(0)).rows, 256);
}

}  // namespace
}  // namespace parlowen
