#include <gtest/gtest.h>

#include "shell/PanePictures.h"
#include "shell/Station.h"
#include "ui/Svg.h"

namespace parlowen {
namespace {

using namespace testing;

template <typename M>
std::vector<M> Marks(const Picture& picture) {
  std::vector<M> found;
  for (const Mark& mark : picture.marks)
    if (const M* one = std::get_if<M>(&mark)) found.push_back(*one);
  return found;
}

TEST(PanePictures, EveryPaneIsDrawnAtEverySizeAndScale) {
  for (const int count : {0, 1, 500, 300000})
    for (const std::uint32_t rate : {1000u, 16000u, 384000u}) {
      Station s;
      s.Load(std::vector<std::int16_t>(static_cast<std::size_t>(count), -32768), rate,
             testing::PitchTail({1, 5, 100, 0, 0}));
      for (const int samplesPerPixel : {0, 1, 3, 16384}) {
        if (samplesPerPixel > 0) s.w.document.samplesPerPixel = samplesPerPixel;
        s.w.document.setView(s.w.states);
        if (count > 0) s.w.Select(0, count);
        s.w.dispatchCommand(samplesPerPixel % 2 == 0 ? 170 : 180);
        for (const Pane pane : {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform})
          for (const auto& [width, height] : {std::pair{1024, 330}, {300, 100}, {21, 2}, {1, 1}}) {
            const Picture picture = s.w.view.Whole(pane, width, height);
            EXPECT_EQ(picture.width, width);
            EXPECT_GT(ToSvg(picture).size(), 100u);
            s.w.view.HoverLine(pane, {width - 1, height + 5}, height, " ");
          }
        s.w.view.Overview(900, 40);
      }
    }
}

TEST(PanePictures, TheWaveformTouchesTheExtremesOfEveryColumn) {
  std::vector<std::int16_t> samples(16000, 0);
  samples[160 * 7 + 3] = 30000;  // column 7, frame 7
  samples[160 * 7 + 90] = -20000;
  Station s;
  s.Load(samples);
  const auto wave = Marks<PolylineMark>(s.w.view.Base(Pane::Waveform, 1024, 165)).at(0);
  EXPECT_EQ(wave.points.size(), 101u)
      << "a point for each of the hundred columns, two where it is not silent";
  std::vector<int> rows;
  for (const Point point : wave.points)
    if (point.x == 27) rows.push_back(point.y);
  std::sort(rows.begin(), rows.end());
  EXPECT_EQ(rows, (std::vector<int>{82 - 30000 * 80 / 32768, 82 + 20000 * 80 / 32768}));
  for (const Point point : wave.points) EXPECT_TRUE(point.x == 27 || point.y == 82);
  // A bar of the amplitude pane in that column alone, and its energy: 10·log10((30000² + 20000²)/160) = 69.1
  // dB.
  const Picture amplitude = s.w.view.Base(Pane::Amplitude, 1024, 110);
  const auto bars = Marks<PolygonMark>(amplitude).at(0);
  for (const Point point : bars.points)
    EXPECT_TRUE(point.y >= 109 || point.x == 27 || point.x == 28) << point.x;
  const auto energy = Marks<PolylineMark>(amplitude).at(0);
  EXPECT_EQ(energy.points.at(7).y, 109 - static_cast<int>(69.098 * 109 / 90));
  EXPECT_EQ(energy.points.at(8).y, 109);
}

TEST(PanePictures, PitchIsALineFrom64To512HertzWithoutUnvoicedFrames) {
  Station s;
  // 64, 128, 512 Hz; unvoiced; no value; 63 and 513 Hz lie outside; one frame alone.
  s.Load(Ramp(1600), 16000, testing::PitchTail({250, 125, 31.25f, 0, -1, 254, 31.1f, 125, 0, 0}));
  const Picture picture = s.w.view.Base(Pane::Pitch, 1024, 166);
  // Octaves apart, none is joined to another. A dot is two pixels high, from one above its row on.
  std::vector<Point> dots;
  for (const BoxMark& dot : Marks<BoxMark>(picture)) dots.push_back({dot.x, dot.y});
  ASSERT_EQ(dots.size(), 4u);
  EXPECT_EQ(dots, (std::vector<Point>{{20, 164}, {21, 109}, {22, -1}, {27, 109}}));
}

TEST(PanePictures, PitchIsALineUpToHalfAnOctaveAndItsRangeIsTheSpeakersOrChosen) {
  Station s;
  // 200, 267, 160 (four semitones a step and more), 226, 320 Hz, the last half an octave above the one before.
  s.Load(Ramp(1600), 16000, testing::PitchTail({80, 60, 100, 71, 50.3f, 0, 0, 0, 0, 0}));
  const auto pieces = Marks<PolylineMark>(s.w.view.Base(Pane::Pitch, 1024, 166));
  ASSERT_EQ(pieces.size(), 2u);
  EXPECT_EQ(pieces[0].points.size(), 2u);
  EXPECT_EQ(pieces[1].points.size(), 3u);
  s.w.view.pitchSpan.kind = PitchSpanChoice::Kind::Speaker;
  const PitchSpan speaker = ShownPitchSpan(s.w.view.pitchSpan, s.w.document);
  EXPECT_NEAR(speaker.lowest, 160 / std::exp2(2 / 12.0), 10);
  EXPECT_NEAR(speaker.highest, 267 * std::exp2(2 / 12.0), 18) << "the 98th percentile of five is the fourth";
  s.w.view.pitchSpan = {PitchSpanChoice::Kind::Own, {100, 200}};
  for (const Tick& tick : s.w.view.Ticks(Pane::Pitch, 240)) {
    const double frequency = 100 * std::exp2((239 - tick.at) / 239.0);
    const bool hertz = tick.label.ends_with("Hz");
    EXPECT_NEAR(hertz ? tick.value : 64 * std::exp2(tick.value / 12), frequency, 0.5) << tick.label;
  }
}

/// Columns of the analysis pane in which its picture has something dark.
std::vector<int> DarkColumns(const Station& s) {
  std::vector<int> dark;
  for (const auto& image : Marks<GreyImageMark>(s.w.view.Base(Pane::Analysis, 1024, 330)))
    for (int column = 0; column < image.columns; ++column)
      for (int row = 0; row < 256; ++row)
        if (image.pixels[static_cast<std::size_t>(row * image.columns + column)] < 128) {
          dark.push_back(image.x + column);
          break;
        }
  return dark;
}

TEST(PanePictures, WhatIsDrawnIsWhatIsClicked) {
  // A burst of sound far from the start: every pane shows it in the column whose click means its first sample.
  const struct {
    int rate, seconds, command;
    bool selected;
    const char* zoom;
  } cases[] = {{16000, 80, 180, false, "SSS"}, {11025, 80, 180, false, "SSS"}, {16000, 80, 180, true, ""},
               {22050, 60, 170, true, ""},     {11025, 9, 180, false, ""},     {16000, 3, 40066, true, ""},
               {16000, 3, 40066, false, ""},   {16000, 3, 180, false, "XXXX"}};
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.rate) + " " + std::to_string(c.command) + c.zoom);
    std::vector<std::int16_t> samples(static_cast<std::size_t>(c.rate * c.seconds));
    const int at = c.rate * c.seconds - c.rate * 4 / 10;
    for (int i = 0; i < c.rate / 10; ++i)
      samples[static_cast<std::size_t>(at + i)] = static_cast<std::int16_t>(i % 2 == 0 ? 20000 : -20000);
    Station s;
    s.Load(samples, static_cast<std::uint32_t>(c.rate));
    for (const char* key = c.zoom; *key != 0; ++key) s.w.Key(std::string(1, *key));
    if (c.selected) s.w.Select(0, c.rate * c.seconds);
    s.w.dispatchCommand(c.command);
    s.w.view.ScrollTo(at - 1000);
    const auto dark = DarkColumns(s);
    ASSERT_FALSE(dark.empty());
    // The frame that first reaches the sound begins up to 512 samples before it.
    const double perColumn = s.w.view.ScaleOf(Pane::Analysis).SamplesPerColumn();
    const int before = static_cast<int>(512 / perColumn) + 2;
    EXPECT_LE(dark.front(), s.w.view.ColumnOf(Pane::Analysis, at) + 1);
    EXPECT_GE(dark.front(), s.w.view.ColumnOf(Pane::Analysis, at) - before);
    EXPECT_EQ(s.w.view.AnalysisShowsOwnStretch(), c.selected);
    const auto wave = Marks<PolylineMark>(s.w.view.Base(Pane::Waveform, 1024, 165)).at(0);
    const auto loud = std::find_if(wave.points.begin(), wave.points.end(), [](Point p) { return p.y != 82; });
    ASSERT_NE(loud, wave.points.end());
    EXPECT_EQ(loud->x, s.w.view.ColumnOf(Pane::Waveform, at));
    const int clicked = s.w.view.SampleAt(Pane::Waveform, loud->x);
    EXPECT_LE(clicked, at);
    EXPECT_GT(clicked, at - s.w.document.samplesPerPixel);
    s.Click(Pane::Waveform, loud->x);
    EXPECT_EQ(Marks<LineMark>(s.w.view.Overlay(Pane::Waveform, 1024, 165)).at(0).from.x, loud->x);
  }
}

}  // namespace
}  // namespace parlowen
