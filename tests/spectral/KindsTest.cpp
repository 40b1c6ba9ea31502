#include <gtest/gtest.h>

#include "document/Desk.h"
#include "document/LevelMeasures.h"
#include "dsp/AnalysisWindow.h"
#include "dsp/Decibel.h"
#include "dsp/SignalTables.h"
#include "spectral/Cepstrum.h"
#include "spectral/Formants.h"
#include "spectral/Spectrogram.h"
#include "spectral/SpectrogramCommands.h"
#include "spectral/SpectrogramPicture.h"
#include "spectral/SpectrumWindow.h"
#include "support/Vowels.h"

namespace parlowen {
namespace {

using Kind = SpectrogramKind;

/// An [a] of a rate, half a second of it marked from sample 1000 on.
struct Sound : testing::Desk {
  explicit Sound(int rate, int count = 0) {
    InitSignalTables();
    Take(testing::MakeVowel(testing::kNineVowels[0], rate, 120, count > 0 ? count : rate), rate);
    Select(1000, 1000 + rate / 2);
  }
  const SpectrogramState& Draw(Kind kind, bool threeDimensional = false) {
    SpectrogramCommand(window, document, shown, kind, {threeDimensional, &analyser});
    return shown;
  }
  SpectrogramState shown;
  LpcAnalyser analyser;
};

int Grey(double contrast, double level) {
  return std::clamp(255 - static_cast<int>(contrast * level), 0, 255);
}

float LoudestLevel(const SoundDocument& d) {
  float loudest = 0;
  for (int i = 0; i < (d.selectionEnd - d.selectionStart) * 100 / d.sampleRate; ++i) {
    double sum = 0;
    const int at = d.selectionStart + i * d.sampleRate / 100, length = d.sampleRate / 100;
    for (int n = at; n < at + length; ++n) sum += double(d.samples[n]) * d.samples[n];
    loudest = std::max(loudest, static_cast<float>(PowerToDb(sum / length, 0)));
  }
  return loudest;
}

TEST(Kinds, ColumnsAreTheFramesOfTheirAnalysis) {
  for (const int rate : {8000, 11025, 16000, 22050, 44100})
    for (const Kind kind : {Kind::Lpc, Kind::Homomorphic, Kind::Cepstrum, Kind::Formants}) {
      SCOPED_TRACE(std::to_string(rate) + " " + SpectrogramKindName(kind));
      Sound sound(rate);
      const SpectrogramState& shown = sound.Draw(kind);
      const SoundDocument& d = sound.document;
      const int peak = SegmentPeakLevel(d.Samples(), d.selectionStart, d.selectionEnd);
      const int length = std::min(512, kind == Kind::Cepstrum ? rate / 30 : rate / 40);
      const int perSecond = static_cast<int>(std::int64_t{1024} * rate / (rate / 2));
      EXPECT_GT(shown.matrix.columns, 900);
      MakeAnalysisWindow(length, 0);
      for (int column = 0; column < shown.matrix.columns; column += 37) {
        const int start = 1000 + static_cast<int>(std::int64_t{column} * rate / perSecond);
        double levels[512];
        double contrast = 3.8;
        LpcAnalyser analyser;
        if (kind == Kind::Homomorphic) {
          HomomorphicLevels(d.Samples(), start, length, {rate, peak}, levels);
        } else if (kind == Kind::Cepstrum) {
          CepstralAnalysis(d.Samples(), start, length, CepstralMode::Cepstrum, {rate, peak}, levels);
          contrast = 50;
        } else {
          LpcEnvelope(d.Samples(), start, length, true, 16, {rate, peak}, analyser, levels);
          contrast = (kind == Kind::Lpc ? 4.2 : 4.6) - 0.005 * double(LoudestLevel(d));
        }
        std::vector<int> expected(256, 255);
        if (kind == Kind::Formants) {
          const FormantFrame formants = PickFormants(levels, 256, rate);
          for (std::size_t i = 0; i < 5 && static_cast<int>(i) < formants.count; ++i) {
            const int f = static_cast<int>(formants.frequency[i] * 512 / rate),
                      w = static_cast<int>(formants.bandwidth[i] * 256 / rate);
            for (int row = std::max(0, f - w); row <= std::min(255, f + w); ++row)
              expected[static_cast<std::size_t>(row)] = Grey(contrast, levels[f]);
          }
        } else {
          for (std::size_t row = 0; row < 256; ++row) expected[row] = Grey(contrast, levels[row]);
        }
        const std::uint16_t* greys = shown.matrix.Column(column);
        ASSERT_EQ(std::vector<int>(greys, greys + 256), expected) << column;
      }
    }
}

TEST(Kinds, TheContrastStaysThatOfTheCommand) {
  Sound sound(16000);
  sound.Draw(Kind::Lpc);
  const double before = sound.shown.contrast;
  for (int i = 0; i < 16000; ++i)
    sound.document.samples[i] = static_cast<std::int16_t>(sound.document.samples[i] / 8);
  RedrawSpectrogram(sound.document, sound.shown);
  EXPECT_EQ(sound.shown.contrast, before);
  sound.Draw(Kind::Lpc);
  EXPECT_NEAR(sound.shown.contrast, before + 0.005 * 18.06, 1e-3);
}

TEST(Kinds, TheAnalyserKeepsTheLoudestFrame) {
  // Where no column predicts, the coefficients are those of order 12 of the loudest 10 ms; frame 50 for the
  // first eleven.
  Sound sound(8000, 24000);
  sound.Select(1000, 17000);
  for (const auto& [loud, frame] : {std::pair{30, 30}, {11, 11}, {10, 50}, {0, 50}}) {
    for (int i = 0; i < 24000; ++i)
      sound.document.samples[i] = static_cast<std::int16_t>(i * 7919 % 2001 - 1000);
    for (int i = 0; i < 80; ++i)
      sound.document.samples[1000 + loud * 80 + i] = static_cast<std::int16_t>(i * 104729 % 9001 - 4500);
    sound.Draw(Kind::NarrowBand);
    LpcAnalyser expected;
    double levels[256];
    LpcEnvelope(sound.document.Samples(), 1000 + frame * 80, 205, true, 12, {8000, 4500}, expected, levels);
    EXPECT_EQ(sound.analyser.order, 12);
    EXPECT_EQ(sound.analyser.coefficients, expected.coefficients) << loud;
  }
}

TEST(ThreeDimensions, NothingIsDrawnBehindAnEarlierFrame) {
  SpectrogramState state;
  state.shown = true;
  state.ridges.assign(100, {});
  for (auto& ridge : state.ridges) ridge.fill(2);                            // a row
  for (std::size_t row = 100; row < 140; ++row) state.ridges[0][row] = 100;  // a wall of 80 rows in front
  const Picture picture = RidgePicture(state, 1024, 330);
  int highest = 330;
  for (const Mark& mark : picture.marks) {
    const auto& line = std::get<PolylineMark>(mark);
    for (const Point& point : line.points) {
      EXPECT_LT(point.x, 1024);
      highest = std::min(highest, point.y);
      // Rows 101..138 of the front frame stand at columns 323..434; what is behind them must be higher than
      // the wall.
      const bool overTheWall = &mark != &picture.marks[0] && point.x > 323 && point.x < 434;
      EXPECT_TRUE(!overTheWall || point.y < 330 - 20 - 80) << point.x;
    }
  }
  EXPECT_EQ(highest, 330 - 20 - 99 - 1);
  state.ridges.assign(100, {});
  EXPECT_TRUE(RidgePicture(state, 1024, 330).marks.empty()) << "the ground is not drawn";
}

TEST(FormantDots, LieWhereTheFormantPictureHasThem) {
  Sound sound(16000);
  const auto formantsOf = [&](int column) {
    std::vector<int> rows;
    for (const FormantDot& dot : sound.shown.formants)
      if (dot.column == column) rows.push_back(dot.row);
    return rows;
  };
  sound.Draw(Kind::NarrowBand);
  ToggleFormants(sound.window, sound.document, sound.shown);
  ASSERT_TRUE(sound.shown.formantsShown);
  const auto rows = formantsOf(200);
  ASSERT_GE(rows.size(), 3u);
  EXPECT_NEAR(rows[0] * 31.25, 760, 60);
  EXPECT_NEAR(rows[1] * 31.25, 1280, 60);
  RedrawSpectrogram(sound.document, sound.shown);
  EXPECT_EQ(formantsOf(200), rows) << "they stay over a picture that is drawn anew";
  ToggleFormants(sound.window, sound.document, sound.shown);
  EXPECT_TRUE(sound.shown.formants.empty());
  sound.Draw(Kind::Formants);
  const std::uint16_t* greys = sound.shown.matrix.Column(200);
  for (const int row : rows) EXPECT_LT(greys[row], 255);
  sound.Draw(Kind::Cepstrum);
  ToggleFormants(sound.window, sound.document, sound.shown);
  EXPECT_FALSE(sound.shown.formantsShown);
}

TEST(Kinds, SilenceAndNothingAreWhite) {
  for (const int count : {16000, 300, 0}) {
    Sound sound(16000, 16000);
    std::fill_n(sound.document.samples.data(), 16000, std::int16_t{0});
    sound.document.resetForNewSound(count, 16000, sound.states);
    for (const Kind kind : {Kind::WideBand, Kind::NarrowBand, Kind::Lpc, Kind::Homomorphic, Kind::Cepstrum,
                            Kind::Formants, Kind::FilterBank})
      for (const bool threeDimensional : {false, true}) {
        const auto& greys = sound.Draw(kind, threeDimensional).matrix.greys;
        EXPECT_TRUE(std::all_of(greys.begin(), greys.end(), [](int grey) { return grey == 255; }))
            << SpectrogramKindName(kind) << count;
        SpectrumWindowPicture(sound.document, sound.shown, true, 1024, 640);
      }
    EXPECT_TRUE(sound.window.Log().empty());
  }
}

}  // namespace
}  // namespace parlowen
