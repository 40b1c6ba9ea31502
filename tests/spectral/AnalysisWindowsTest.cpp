#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "document/Desk.h"
#include "dsp/SignalTables.h"
#include "spectral/ConsonantCommands.h"
#include "spectral/ConsonantFile.h"
#include "spectral/FrameCommands.h"
#include "spectral/FramePicture.h"
#include "spectral/LtaCommands.h"
#include "spectral/LtaFile.h"
#include "support/Vowels.h"

namespace parlowen {
namespace {

using namespace testing;

struct Desk : testing::Desk {
  Desk(const std::vector<std::int16_t>& samples, int rate) {
    InitSignalTables();
    Take(samples, rate);
  }
  /// Every string of the open window.
  std::string Drawn() const {
    std::string all;
    for (const parlowen::Mark& mark : window.tool->Draw(1024, 640).marks)
      if (const auto* text = std::get_if<TextMark>(&mark)) all += text->text + "\n";
    return all;
  }
  LpcAnalyser analyser;
  FrameState frames;
  LtaState lta;
  ConsonantState consonant;
};

std::vector<std::int16_t> Vowel(int rate) {
  return testing::MakeVowel(testing::kNineVowels[0], rate, 125, rate);
}

TEST(FrameWindow, CutsItsFiguresAndFollowsWhileOpen) {
  Desk desk(Vowel(16000), 16000);
  ShowFrameCommand(desk.window, desk.document, desk.frames, desk.analyser);
  desk.Select(4000, -1000);
  desk.document.pitch[25] = 128;
  FollowSelectedFrames(desk.window, desk.document, desk.frames, desk.analyser);
  FrameParameters& frame = desk.frames.frame;
  EXPECT_DOUBLE_EQ(frame.time, 0.25);
  EXPECT_NEAR(frame.f0Cepstral, 125, 2);
  frame.level = 71.26;
  frame.f0Cepstral = 124;
  frame.formants = {};
  frame.formants.count = 2;
  frame.formants.frequency = {781.9, 1250};
  frame.formants.bandwidth = {95.5, 1100.7};
  EXPECT_EQ(FrameLines(frame),
            (Texts{"黑色为 LPC 谱图，红色为窄带谱图",
                   "本帧位置 : 0.25秒（Fi, Bi 分别是第 i 个共振峰的频率和宽度，单位 Hz）",
                   "音强 E=71.3db  基频 F0=125/124Hz", "共振峰:", "F1=781   B1=   95", "F2=1250  B2= 1100"}));
  desk.window.CloseTool();
  desk.Select(8000, 9000);
  FollowSelectedFrames(desk.window, desk.document, desk.frames, desk.analyser);
  EXPECT_DOUBLE_EQ(frame.time, 0.25) << "a closed window follows nothing";
}

TEST(LtaWindow, WhatDividesByZeroIsDrawnButNeverSaved) {
  Desk desk(Vowel(16000), 16000);
  desk.Select(100, 181);
  LongTermSpectrumCommand(desk.window, desk.document, desk.lta);
  EXPECT_EQ(desk.lta.frames, 1);
  EXPECT_FALSE(desk.Drawn().empty());
  desk.window.Log();
  EXPECT_EQ(RunLta(desk.window, desk.document, desk.lta, LtaMode::Save), 1);
  EXPECT_TRUE(desk.window.Log().empty());
  // A file with levels beyond all reason is drawn at the edge.
  desk.Select(100, 8000);
  RunLta(desk.window, desk.document, desk.lta, LtaMode::Compute);
  ByteWriter file;
  LtaRecord record{{}, 16000};
  record.levels.fill(-1e308);
  record.levels[7] = 1e308;
  WriteLta(file, record);
  WriteFile(desk.folder / "huge.lta", file.bytes());
  desk.window.answers = {"file:" + (desk.folder / "huge.lta")};
  EXPECT_EQ(RunLta(desk.window, desk.document, desk.lta, LtaMode::Compare), 0);
  EXPECT_FALSE(desk.Drawn().empty());
}

TEST(LtaFile, IsLevelsAndRateAndNothingElse) {
  LtaRecord record{{}, 11025};
  for (std::size_t k = 0; k < 256; ++k) record.levels[k] = 1.5 * static_cast<double>(k) - 3;
  ByteWriter file;
  WriteLta(file, record);
  ASSERT_EQ(file.bytes().size(), 2052u);
  EXPECT_EQ(std::vector<int>(file.bytes().begin() + 2048, file.bytes().end()),
            (std::vector<int>{0x11, 0x2B, 0, 0}));
  EXPECT_EQ(std::vector<int>(file.bytes().begin() + 8, file.bytes().begin() + 16),
            (std::vector<int>{0, 0, 0, 0, 0, 0, 0xF8, 0xBF}))
      << "−1.5";
  auto bytes = file.bytes();
  EXPECT_EQ(ParseLta(bytes)->levels, record.levels);
  EXPECT_EQ(ParseLta(bytes)->sampleRate, 11025);
  bytes.push_back(9);
  EXPECT_TRUE(ParseLta(bytes)) << "what follows is not looked at";
  EXPECT_FALSE(ParseLta(ByteSpan(bytes).first(2051)));
  EXPECT_FALSE(ParseLta({}));
  for (const double bad :
       {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    record.levels[255] = bad;
    ByteWriter spoilt;
    WriteLta(spoilt, record);
    EXPECT_FALSE(ParseLta(spoilt));
  }
}

TEST(ConsonantWindow, TakesRatesAndPlacesUpToTheirBounds) {
  const auto noise = testing::Noise(6000, 6000);
  for (const auto& [rate, accepted] :
       {std::pair{15999, false}, {16000, true}, {22050, true}, {22051, false}}) {
    Desk desk(noise, rate);
    desk.Select(1000, 3000);
    ConsonantFrameCommand(desk.window, desk.document, desk.consonant);
    EXPECT_EQ(desk.consonant.shown, accepted) << rate;
  }
  Desk desk(noise, 16000);
  desk.Select(4999, -1000);  // 1001 samples before the end: the last place
  ConsonantFrameCommand(desk.window, desk.document, desk.consonant);
  const double gravity = desk.consonant.frame.gravity;
  EXPECT_GT(gravity, 9);
  desk.Select(5000, -1000);
  ConsonantFrameCommand(desk.window, desk.document, desk.consonant);
  EXPECT_EQ(desk.consonant.frame.gravity, gravity) << "the previous values";
  for (const auto& [share, height] :
       {std::pair{1.0, 120}, {0.1, 90}, {1e-3, 30}, {1e-4, 0}, {1e-9, 0}, {0.0, 0}})
    EXPECT_EQ(BandBarHeight(share * 5e5, 5e5), height);
  EXPECT_EQ(BandBarHeight(0, 0), 0);
}

TEST(ConsonantFile, OneChangedByteIsNoticed) {
  ByteWriter file;
  WriteConsonants(file, {77, 160, {{12.5, 3}, {1e9, -1}}});
  const auto record = ParseConsonants(file);
  ASSERT_TRUE(record);
  EXPECT_EQ(record->start, 77);
  EXPECT_EQ(record->frames[1].dispersion, -1);
  EXPECT_EQ(
      ConsonantText(*record),
      "\r\n        Gravity     Dispersion \r\n\r\n          12.50           3.00\r\n  1000000000.00          -1.00");
  const struct {
    std::size_t place;
    std::uint8_t value;
    const char* why;
  } faults[] = {{0, 'h', "the tag"},
                {4, 71, "a byte short"},
                {4, 73, "a byte over"},
                {7, 0x80, "a negative length"},
                {6, 1, "a length beyond the file"}};
  for (const auto& fault : faults) {
    auto bytes = file.bytes();
    bytes[fault.place] = fault.value;
    EXPECT_FALSE(ParseConsonants(bytes)) << fault.why;
  }
  for (std::size_t length = 0; length < file.bytes().size(); ++length)
    EXPECT_FALSE(ParseConsonants(ByteSpan(file).first(length))) << length;
  ByteWriter empty;
  WriteConsonants(empty, {});
  EXPECT_EQ(ParseConsonants(empty)->frames.size(), 0u);
}

}  // namespace
}  // namespace parlowen
