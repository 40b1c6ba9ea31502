#include <gtest/gtest.h>

#include "shell/PanePictures.h"
#include "shell/Station.h"
#include "ui/Svg.h"

namespace parlowen {
namespace {

using testing::Ramp;
using testing::Station;

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
        s.w.view.TimeAxis(1024, 20);
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
  EXPECT_EQ(wave.points.size(), 200u) << "two points for each of the hundred columns";
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
  const auto pieces = Marks<PolylineMark>(picture);
  ASSERT_EQ(pieces.size(), 1u);
  EXPECT_EQ(pieces[0].points, (std::vector<Point>{{20, 165}, {21, 110}, {22, 0}}));
  const auto alone = Marks<BoxMark>(picture);
  ASSERT_EQ(alone.size(), 1u);
  EXPECT_EQ(alone[0].x, 27);
}

TEST(PanePictures, AnAxisHasRoomForItsLabelsAtEveryScale) {
  for (const double secondsPerColumn : {1e-5, 6.25e-5, 0.001, 0.01, 0.37, 16.384}) {
    const Picture axis = TimeAxisPicture(12.3, secondsPerColumn, 20, 1024, 20);
    const auto texts = Marks<TextMark>(axis);
    ASSERT_GE(texts.size(), 2u) << secondsPerColumn;
    for (std::size_t i = 0; i < texts.size(); ++i) {
      EXPECT_TRUE(i == 0 || texts[i].x - texts[i - 1].x >= 69) << secondsPerColumn;
      EXPECT_NEAR(std::stod(texts[i].text), 12.3 + (texts[i].x - 20) * secondsPerColumn, secondsPerColumn)
          << "the label tells its place";
    }
  }
}

}  // namespace
}  // namespace parlowen
