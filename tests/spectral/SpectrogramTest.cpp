#include "spectral/Spectrogram.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "document/Desk.h"
#include "dsp/AnalysisWindow.h"
#include "dsp/Decibel.h"
#include "dsp/FrameSpectrum.h"
#include "dsp/SignalTables.h"
#include "spectral/SpectrogramCommands.h"
#include "spectral/SpectrogramPicture.h"

namespace parlowen {
namespace {

constexpr SpectrogramKind kWide = SpectrogramKind::WideBand, kNarrow = SpectrogramKind::NarrowBand;

/// A loaded document of `count` samples, each `sample(i)`.
struct Sound : testing::Desk {
  template <typename Sample>
  Sound(int rate, int count, Sample sample) {
    InitSignalTables();
    for (int i = 0; i < count; ++i) document.samples[i] = static_cast<std::int16_t>(sample(i));
    document.resetForNewSound(count, rate, states);
  }
  SpectrogramMatrix Picture(SpectrogramKind kind) const {
    return ComputeSpectrogram(document, kind, SettingsOf(kind, document.sampleRate), StretchOf(document));
  }
};

auto Tone(double amplitude, double cyclesPerSample) {
  return [=](int i) { return std::lround(amplitude * std::sin(2 * std::numbers::pi * cyclesPerSample * i)); };
}
/// Syllables of 100 ms: noise-like, with silence between them and steep onsets.
auto Bursts(int rate) {
  return
      [=](std::int64_t i) { return i / (rate / 10) % 2 == 0 ? 0 : (i * 7919 % 4001 - 2000) * (1 + i % 5); };
}

int Grey(double contrast, double level) {
  return std::clamp(255 - static_cast<int>(std::floor(contrast * level)), 0, 255);
}

/// The picture of a selection, column by column from the rules alone.
std::vector<std::uint16_t> ExpectedGreys(const SoundDocument& d, SpectrogramKind kind, int start, int end) {
  const int rate = d.sampleRate, count = d.sampleCount;
  const int frame = kind == kNarrow ? std::min(512, rate / 39) : rate <= 12000 ? 32 : rate / 352;
  const double contrast = kind == kNarrow ? 3.8 : 4.7;
  const int perSecond = static_cast<int>(std::int64_t{d.paneWidth} * rate / (end - start));
  int peak = 1;
  for (int i = start; i < end; ++i) peak = std::max(peak, std::min(32767, std::abs(int{d.samples[i]})));
  const auto at = [&](int column) {
    return start + static_cast<int>(std::int64_t{column} * rate / perSecond);
  };
  const auto level = [&](int column) {
    double sum = 0;
    for (int i = 0; i < rate / 100; ++i)
      sum += at(column) + i < count ? std::pow(d.samples[at(column) + i], 2) : 0;
    return PowerToDb(sum / (rate / 100), 0);
  };
  std::vector<std::uint16_t> greys;
  for (int column = 0; column < d.paneWidth && at(column) <= end && at(column) + 4 + 2 * column <= count;
       ++column) {
    int window = frame;
    const double period = d.pitch[static_cast<std::size_t>(std::int64_t{at(column)} * 100 / rate)];
    const double frequency = period > 0 ? rate / period : 0;
    if (kind == kWide && frequency > 10) window = std::min(frame, static_cast<int>(rate / frequency));
    MakeAnalysisWindow(window, 0);
    double rise = 1;
    if (frame <= rate / 100 && perSecond >= 300) {
      const int later = std::max(column, perSecond / 300);
      rise = std::clamp(0.5 * (level(later) - level(later - perSecond / 300)), 1.0, 4.0);
    }
    FrameSpectrum spectrum;
    ComputeFrameSpectrum({d.samples.data(), count}, at(column), frame, 1, peak, spectrum, {rate, rise});
    for (const double decibels : spectrum)
      greys.push_back(static_cast<std::uint16_t>(Grey(contrast, decibels)));
  }
  return greys;
}

TEST(Spectrogram, EveryColumnOfASelectionFollowsTheRules) {
  const struct {
    int rate, count, start, end;
    const char* what;
  } cases[] = {
      {16000, 40000, 3000, 20000, "inside the sound"},
      {11025, 30000, 17, 29999, "steps of a fraction of a sample"},
      {8000, 9000, 800, 1600, "a tenth of a second: several columns a sample"},
      {22050, 30000, 0, 30000, "to the end of the sound: the margin cuts it"},
      {44100, 44100, 30000, 44100, "half the pane stays empty"},
      {8000, 20000, 500, 8684,
       "column 1023, at 500 + 1023·8000/1000, begins exactly at the end and is drawn"},
      {1000, 3000, 100, 2900, "the slowest rate"},
  };
  for (const auto& c : cases)
    for (const SpectrogramKind kind : {kWide, kNarrow}) {
      SCOPED_TRACE(std::string(c.what) + " " + SpectrogramKindName(kind));
      Sound sound(c.rate, c.count, Bursts(c.rate));
      for (int frame = 0; frame < 300; ++frame)  // voiced, unvoiced, without value, too slow
        sound.document.pitch[static_cast<std::size_t>(frame)] = static_cast<float>(std::array{
            c.rate / 400.0, 0.0, -1.0, c.rate / 10.0, c.rate / 1000.0}[static_cast<std::size_t>(frame % 5)]);
      sound.Select(c.start, c.end);
      const SpectrogramMatrix matrix = sound.Picture(kind);
      const auto expected = ExpectedGreys(sound.document, kind, c.start, c.end);
      ASSERT_EQ(matrix.columns, static_cast<int>(expected.size()) / 256);
      EXPECT_GT(matrix.columns, 300);
      for (std::size_t i = 0; i < expected.size(); ++i)
        ASSERT_EQ(matrix.greys[i], expected[i]) << "column " << i / 256 << " row " << i % 256;
    }
}

TEST(Spectrogram, FrameLengthsAtTheirBounds) {
  const struct {
    int rate, wide, narrow;
  } cases[] = {{8000, 32, 205},  {11025, 32, 282}, {12000, 32, 307}, {12001, 34, 307},
               {16000, 45, 410}, {19968, 56, 512}, {22050, 62, 512}, {44100, 125, 512}};
  for (const auto& c : cases) {
    EXPECT_EQ(SettingsOf(kWide, c.rate).frameLength, c.wide) << c.rate;
    EXPECT_EQ(SettingsOf(kNarrow, c.rate).frameLength, c.narrow) << c.rate;
  }
}

TEST(Spectrogram, AShortSelectionShowsASecondAndKeepsItsMarks) {
  Sound sound(16000, 48000, Tone(8000, 0.05));
  const struct {
    int start, end, shownEnd;
  } cases[] = {{1000, 2599, 17000},
               {1000, 2600, 2600},
               {1000, 1001, 17000},
               {47000, 47100, 48000},
               {47999, 48000, 48000}};
  for (const auto& c : cases) {
    sound.Select(c.start, c.end);
    const SpectrogramStretch stretch = StretchOf(sound.document);
    EXPECT_EQ(stretch.start, c.start);
    EXPECT_EQ(stretch.end, c.shownEnd) << c.end;
    EXPECT_EQ(stretch.columnsPerSecond, 1024LL * 16000 / (c.shownEnd - c.start));
    EXPECT_EQ(stretch.levelEnd, c.shownEnd) << "P and V are those of what is shown";
    EXPECT_EQ(sound.document.selectionEnd, c.end);
    EXPECT_LE(sound.Picture(kNarrow).columns, 1024);
  }
}

TEST(Spectrogram, WithoutASelectionItLiesUnderThePanes) {
  Sound sound(11025, 200000, Bursts(11025));
  SpectrogramStretch stretch = StretchOf(sound.document);
  EXPECT_TRUE(stretch.followsView);
  EXPECT_EQ(stretch.Pane(1024).left, 20);
  EXPECT_EQ(stretch.columnsPerSecond, 100);
  EXPECT_EQ(sound.Picture(kWide).columns, 1004);
  sound.document.viewStart = 199000;
  sound.document.setView(sound.states);
  // Columns start every 110.25 samples and end when start + 4 + 2·column passes 200000.
  EXPECT_EQ(sound.Picture(kWide).columns, 9);
  sound.document.samplesPerPixel = 16384;
  sound.document.setView(sound.states);
  EXPECT_EQ(StretchOf(sound.document).columnsPerSecond, 1) << "never 0";
}

TEST(Spectrogram, SoundsOfNothingAndOfLittleAreStood) {
  for (const int count : {0, 1, 3, 4, 5, 100}) {
    Sound sound(384000, count, [](int) { return -32768; });
    for (const SpectrogramKind kind : {kWide, kNarrow}) {
      EXPECT_EQ(sound.Picture(kind).columns, count >= 4 ? 1 : 0) << count;  // start + 4 must not pass the end
      sound.Select(0, count);
      EXPECT_LE(sound.Picture(kind).columns, count < 4 ? 0 : 48) << count;
      sound.document.ClearSelection();
    }
  }
}

TEST(Shading, GreysAreTruncatedAndClamped) {
  double levels[256] = {0, 0.2, 10, 9.99, 67.1, 67.2, 140, 1e300};
  std::uint16_t greys[256];
  ShadeColumn(levels, 3.8, greys);
  EXPECT_EQ(std::vector<int>(greys, greys + 9), (std::vector<int>{255, 255, 217, 218, 1, 0, 0, 0, 255}));
}

TEST(Shading, DarkenAndLightenMoveBySeventhsAndEighths) {
  for (int grey = 0; grey < 256; ++grey) {
    SpectrogramMatrix matrix{1, {static_cast<std::uint16_t>(grey)}};
    DarkenLightenMatrix(matrix, -1);
    EXPECT_EQ(matrix.greys[0], 255 - (255 - grey) * 7 / 8) << grey;
    matrix.greys[0] = static_cast<std::uint16_t>(grey);
    DarkenLightenMatrix(matrix, +1);
    EXPECT_EQ(matrix.greys[0], std::max(0, 255 - (255 - grey) * 8 / 7)) << grey;
  }
}

TEST(SpectrogramPicture, LowFrequenciesStandAtTheBottom) {
  Sound sound(22050, 22050, Tone(20000, 0.05));  // row 25 or 26
  testing::FakeWindow window;
  SpectrogramState shown;
  SpectrogramCommand(window, sound.document, shown, kNarrow);
  const Picture picture = SpectrogramPicture(shown, 22050, shown.stretch.Pane(1024), 1024, 330);
  const auto& image = std::get<GreyImageMark>(picture.marks.at(0));
  for (int row = 0; row < 256; ++row)
    EXPECT_EQ(image.pixels[static_cast<std::size_t>((255 - row) * image.columns + 40)],
              shown.matrix.Column(40)[row]);
}

}  // namespace
}  // namespace parlowen
