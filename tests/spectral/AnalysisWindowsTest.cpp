#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "dsp/SignalTables.h"
#include "spectral/ConsonantCommands.h"
#include "spectral/ConsonantFile.h"
#include "spectral/FrameCommands.h"
#include "spectral/FramePicture.h"
#include "spectral/LtaCommands.h"
#include "spectral/LtaFile.h"
#include "spectral/SpectrogramCommands.h"
#include "spectral/SpectrumWindow.h"
#include "spectral/Vowels.h"
#include "support/FakeWindow.h"
#include "support/TempFolder.h"

namespace parlowen {
namespace {

using testing::ReadFile;
using testing::TempFolder;
using testing::Texts;
using testing::WriteFile;

/// Keeps the windows that are opened.
class ToolKeeper : public testing::FakeWindow {
 public:
  void OpenToolWindow(std::unique_ptr<ToolWindow> opened) override {
    log.push_back("window|" + opened->Name() + "|" + opened->Title());
    if (tool) tool->Closed(*this);
    tool = std::move(opened);
  }
  void Close() { std::exchange(tool, nullptr)->Closed(*this); }
  std::unique_ptr<ToolWindow> tool;
};

struct Desk {
  Desk(const std::vector<std::int16_t>& samples, int rate) {
    InitSignalTables();
    std::copy(samples.begin(), samples.end(), document.samples.data());
    document.resetForNewSound(static_cast<int>(samples.size()), rate, states);
  }
  void Select(int start, int end) {
    document.selectionStart = start;
    document.selectionEnd = end;
  }
  /// Every string of the open window.
  std::string Drawn() const {
    std::string all;
    for (const Mark& mark : window.tool->Draw(1024, 640).marks)
      if (const auto* text = std::get_if<TextMark>(&mark)) all += text->text + "\n";
    return all;
  }
  bool Draws(const std::string& text) const { return Drawn().find(text + "\n") != std::string::npos; }
  CommandStates states;
  SoundDocument document;
  ToolKeeper window;
  LpcAnalyser analyser;
  FrameState frames;
  LtaState lta;
  ConsonantState consonant;
  TempFolder folder;
};

std::vector<std::int16_t> Vowel(int rate) { return testing::MakeVowel(testing::kNineVowels[0], rate, 125, rate); }

TEST(FrameWindow, ShowsItsFiguresAndFollowsTheSelection) {
  Desk desk(Vowel(16000), 16000);
  ShowFrameCommand(desk.window, desk.document, desk.frames, desk.analyser);   // the middle of the view
  EXPECT_EQ(desk.window.Log(), (Texts{"window|frame|帧参数"}));
  EXPECT_EQ(desk.document.activity, activities::kFrame);
  EXPECT_TRUE(desk.Draws("本帧位置 : 0.50秒（Fi, Bi 分别是第 i 个共振峰的频率和宽度，单位 Hz）"));
  desk.Select(4000, -1000);
  desk.document.pitch[25] = 128;
  FollowSelectedFrames(desk.window, desk.document, desk.frames, desk.analyser);
  EXPECT_DOUBLE_EQ(desk.frames.frame.time, 0.25);
  FrameParameters& frame = desk.frames.frame;
  EXPECT_NEAR(frame.f0Cepstral, 125, 2);
  frame.level = 71.26;
  frame.f0Cepstral = 124;
  frame.formants = {};
  frame.formants.count = 2;
  frame.formants.frequency = {781.9, 1250};
  frame.formants.bandwidth = {95.5, 1100.7};
  EXPECT_EQ(FrameLines(frame), (Texts{"黑色为 LPC 谱图，红色为窄带谱图", "本帧位置 : 0.25秒（Fi, Bi 分别是第 i 个共振峰的频率和宽度，单位 Hz）",
                                      "音强 E=71.3db  基频 F0=125/124Hz", "共振峰:", "F1=781   B1=   95", "F2=1250  B2= 1100"}));
  frame.f0 = 0;
  EXPECT_EQ(FrameLines(frame)[2], "音强 E=71.3db  基频 F0=124Hz");
  for (const auto& line : FrameLines(frame)) EXPECT_TRUE(desk.Draws(line)) << line;
  EXPECT_NE(desk.window.tool->Text().find("F1=781"), std::string::npos);
  desk.window.Close();
  EXPECT_EQ(desk.document.activity, activities::kWaveform);
  desk.Select(8000, 9000);
  FollowSelectedFrames(desk.window, desk.document, desk.frames, desk.analyser);
  EXPECT_DOUBLE_EQ(frame.time, 0.25) << "a closed window follows nothing";
}

TEST(ComparisonWindow, AsksAndListsBothFrames) {
  Desk desk(Vowel(8000), 8000);
  desk.Select(2000, -1000);
  CompareFramesCommand(desk.window, desk.document, desk.frames, desk.analyser);
  EXPECT_EQ(desk.window.Log(), (Texts{"status|请先用鼠标左、右键选定语音段"}));
  desk.Select(5000, 2000);   // either order
  desk.window.answers = {"yes"};
  CompareFramesCommand(desk.window, desk.document, desk.frames, desk.analyser);
  EXPECT_EQ(desk.window.Log(), (Texts{"ask|Parlowen(Tessiran)|是浊音(YES)?清音(NO)?", "window|compare|两帧的参数比较"}));
  EXPECT_TRUE(desk.frames.comparison.voiced);
  EXPECT_DOUBLE_EQ(desk.frames.comparison.a.time, 0.62);
  const auto kilohertz = [&] {
    int ticks = 0;
    for (const Mark& mark : desk.window.tool->Draw(1024, 640).marks)
      if (const auto* text = std::get_if<TextMark>(&mark)) ticks += text->text.size() == 1 && text->anchor == Anchor::Middle;
    return ticks;
  };
  EXPECT_EQ(kilohertz(), 3);
  ComparedFrame& a = desk.frames.comparison.a;
  a.frequency = {700.9, 1200, 0};
  a.bandwidth = {80, 123.4, 0};
  EXPECT_TRUE(desk.Draws("A 帧：T=0.62 秒       B 帧：T=0.25秒"));
  EXPECT_TRUE(desk.Draws("共振峰      F1      F2      F3        带宽：B1     B2     B3"));
  EXPECT_TRUE(desk.Draws("  A 帧：   700   1200      0 (Hz)         80     123      0 (Hz)"));
  desk.window.answers = {"no"};
  CompareFramesCommand(desk.window, desk.document, desk.frames, desk.analyser);
  EXPECT_FALSE(desk.frames.comparison.voiced);
  EXPECT_EQ(kilohertz(), 4);
  EXPECT_EQ(desk.document.activity, activities::kCompare) << "though the window open before has been closed";
  // Curves: point k at column 100 + 2k; A in green bars from the base, B in red.
  const Picture picture = ComparisonPicture(desk.frames, 1024, 640);
  int bars = 0;
  for (const Mark& mark : picture.marks)
    if (const auto* line = std::get_if<LineMark>(&mark); line != nullptr && line->colour == 0x00DC00) {
      EXPECT_EQ(line->from.x, 100 + 2 * bars);
      EXPECT_EQ(line->from.y, 600);
      ++bars;
    }
  EXPECT_EQ(bars, 256);
}

TEST(LtaWindow, ComputesSavesAndCompares) {
  Desk desk(Vowel(16000), 16000);
  desk.Select(2000, 10000);
  LongTermSpectrumCommand(desk.window, desk.document, desk.lta);
  EXPECT_EQ(desk.window.Log(), (Texts{"window|lta|帧参数（LTA 谱）/波形"}));
  EXPECT_EQ(desk.lta.frames, 199);   // p ≤ 10000 − 80, every 40 samples
  EXPECT_TRUE(desk.Draws("T=0.5"));
  const auto controls = desk.window.tool->Controls();
  ASSERT_EQ(controls.size(), 2u);
  const LtaSpectrum first = desk.lta.levels;

  desk.window.answers = {"cancel", "file:" + desk.folder.path() + "/no/such/place.lta", "file:" + (desk.folder / "a.lta")};
  EXPECT_EQ(RunLta(desk.window, desk.document, desk.lta, LtaMode::Save), 1);
  desk.window.tool->Press(desk.window, controls[0]);
  EXPECT_EQ(RunLta(desk.window, desk.document, desk.lta, LtaMode::Save), 0);
  EXPECT_EQ(desk.window.Log(), (Texts{"save|保存 lta 谱图数据文件|", "save|保存 lta 谱图数据文件|", "error|Parlowen(Tessiran)|不能建立文件！", "save|保存 lta 谱图数据文件|"}));
  EXPECT_EQ(ReadFile(desk.folder / "a.lta").size(), 2052u);

  desk.Select(3000, 4000);
  EXPECT_EQ(RunLta(desk.window, desk.document, desk.lta, LtaMode::Compute), 2);
  EXPECT_EQ(desk.lta.previous, first);
  desk.window.answers = {"file:" + (desk.folder / "a.lta"), "cancel", "file:" + (desk.folder / "none.lta")};
  desk.window.tool->Press(desk.window, controls[1]);
  ASSERT_TRUE(desk.lta.difference);
  EXPECT_GT(desk.lta.difference->deviation, 0.05);
  EXPECT_TRUE(desk.Draws("谱的差图（归一为0均值）"));
  EXPECT_EQ(RunLta(desk.window, desk.document, desk.lta, LtaMode::Compare), 1);
  EXPECT_EQ(RunLta(desk.window, desk.document, desk.lta, LtaMode::Compare), 1);
  EXPECT_EQ(desk.window.Log().back(), "error|Parlowen(Tessiran)|无此 lta 谱图数据文件！");
  EXPECT_EQ(desk.lta.previous, first);

  desk.Select(2000, 10000);
  RunLta(desk.window, desk.document, desk.lta, LtaMode::Compute);
  desk.window.answers = {"file:" + (desk.folder / "a.lta")};
  RunLta(desk.window, desk.document, desk.lta, LtaMode::Compare);
  EXPECT_TRUE(desk.Draws("均方差=0.00(db)"));
  EXPECT_TRUE(desk.Draws("最大差=0.0db"));
  EXPECT_TRUE(desk.Draws("在0Hz"));

  // Another rate: refused, but the loaded levels are there.
  Desk other(Vowel(8000), 8000);
  LongTermSpectrumCommand(other.window, other.document, other.lta);
  other.window.answers = {"file:" + (desk.folder / "a.lta")};
  EXPECT_EQ(RunLta(other.window, other.document, other.lta, LtaMode::Compare), 1);
  EXPECT_EQ(other.window.Log().back(), "none|Parlowen(Tessiran)|采样频率不一致，不能比较！");
  EXPECT_EQ(other.lta.previous, first);
  EXPECT_FALSE(other.lta.difference);
  // The same when the sound has changed under the open window.
  desk.document.sampleRate = 8000;
  desk.window.answers = {"file:" + (desk.folder / "a.lta")};
  EXPECT_EQ(RunLta(desk.window, desk.document, desk.lta, LtaMode::Compare), 1);
  EXPECT_EQ(desk.window.Log().back(), "none|Parlowen(Tessiran)|采样频率不一致，不能比较！");
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
  EXPECT_EQ(std::vector<int>(file.bytes().begin() + 2048, file.bytes().end()), (std::vector<int>{0x11, 0x2B, 0, 0}));
  EXPECT_EQ(std::vector<int>(file.bytes().begin() + 8, file.bytes().begin() + 16), (std::vector<int>{0, 0, 0, 0, 0, 0, 0xF8, 0xBF})) << "−1.5";
  auto bytes = file.bytes();
  EXPECT_EQ(ParseLta(bytes)->levels, record.levels);
  EXPECT_EQ(ParseLta(bytes)->sampleRate, 11025);
  bytes.push_back(9);
  EXPECT_TRUE(ParseLta(bytes)) << "what follows is not looked at";
  EXPECT_FALSE(ParseLta(ByteSpan(bytes).first(2051)));
  EXPECT_FALSE(ParseLta({}));
  for (const double bad : {std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    record.levels[255] = bad;
    ByteWriter spoilt;
    WriteLta(spoilt, record);
    EXPECT_FALSE(ParseLta(spoilt));
  }
}

TEST(ConsonantWindow, RefusesRatesAndRemarksOnLowCentres) {
  const auto noise = testing::Noise(6000, 6000);
  for (const auto& [rate, accepted] : {std::pair{11025, false}, {15999, false}, {16000, true}, {22050, true}, {22051, false}}) {
    Desk desk(noise, rate);
    desk.Select(1000, 3000);
    ConsonantFrameCommand(desk.window, desk.document, desk.consonant);
    EXPECT_EQ(desk.window.Log()[0], accepted ? "window|consonant|辅音的帧参数" : "none|Parlowen(Tessiran)|辅音分析的采样频率必须在 16000Hz--22050Hz 之间！") << rate;
    EXPECT_EQ(desk.consonant.shown, accepted);
  }
  Desk desk(noise, 16000);
  desk.Select(4999, -1000);   // 1001 samples before the end: the last place
  ConsonantFrameCommand(desk.window, desk.document, desk.consonant);
  const double gravity = desk.consonant.frame.gravity;
  EXPECT_GT(gravity, 9);
  EXPECT_EQ(desk.window.Log().size(), 1u) << "no remark";
  desk.Select(5000, -1000);
  ConsonantFrameCommand(desk.window, desk.document, desk.consonant);
  EXPECT_EQ(desk.consonant.frame.gravity, gravity) << "the previous values";
  desk.consonant.frame = {};
  desk.window.Log();
  ConsonantFrameCommand(desk.window, desk.document, desk.consonant);
  EXPECT_EQ(desk.window.Log().back(), "none|Parlowen(Tessiran)|谱图重心的频率偏低，可能不是清辅音！\n\r请在上方的幅度能量图中用鼠标左键选择辅音断面");

  desk.consonant.frame.bands.fill(1e6);
  desk.consonant.frame.gravity = 12.345;
  EXPECT_TRUE(desk.Draws("Band energy strengths graph (Band No. 2--24):"));
  EXPECT_TRUE(desk.Draws("Gravity: 12.35    Dispersion: 0.00    Mean_intensity(db)=0.00") || desk.Draws("Gravity: 12.34    Dispersion: 0.00    Mean_intensity(db)=0.00"));
  for (const auto& [share, height] : {std::pair{1.0, 120}, {0.1, 90}, {1e-3, 30}, {1e-4, 0}, {1e-9, 0}, {0.0, 0}}) EXPECT_EQ(BandBarHeight(share * 5e5, 5e5), height);
  EXPECT_EQ(BandBarHeight(0, 0), 0);
}

TEST(ConsonantWindow, AStretchIsSavedAndListed) {
  Desk desk(testing::Noise(9000, 6000), 16000);
  desk.Select(1000, 2279);
  desk.window.answers = {"yes", "file:" + (desk.folder / "s.con")};
  ConsonantStretchCommand(desk.window, desk.document, desk.consonant);
  EXPECT_EQ(desk.window.Log(), (Texts{"window|consonant|一段辅音的参数图", "ask|保存数据？|保存此图的数据吗（Yes/No）？", "save|保存辅音数据文件|"}));
  ASSERT_EQ(desk.consonant.stretch.size(), 7u);
  EXPECT_EQ(desk.document.activity, activities::kConsonant);
  const std::string bytes = ReadFile(desk.folder / "s.con");
  EXPECT_EQ(bytes.substr(0, 16), std::string("HEAD\x98\0\0\0\xE8\x03\0\0\xA0\0\0\0", 16));   // 8 + 32 + 7·16 behind, 1000, 160
  EXPECT_EQ(bytes.substr(16, 32), std::string("Gravity\0\0\0\0\0\0\0\0\0Dispersion\0\0\0\0\0\0", 32));

  desk.window.answers = {"file:" + (desk.folder / "s.con")};
  ListConsonantFileCommand(desk.window, desk.folder.path());
  EXPECT_EQ(desk.window.Log().back(), "editor|" + (desk.folder / "Cons.txt"));
  const std::string text = ReadFile(desk.folder / "Cons.txt");
  EXPECT_TRUE(text.starts_with("\r\n        Gravity     Dispersion \r\n\r\n "));
  EXPECT_EQ(text.size(), 2 + 31 + 2 + 7 * 32u);

  desk.window.answers = {"cancel", "file:" + (desk.folder / "none.con"), "file:" + desk.folder.path(), "file:" + (desk.folder / "bad.con")};
  WriteFile(desk.folder / "bad.con", bytes.substr(0, bytes.size() - 1));
  std::string refusals;
  for (int i = 0; i < 4; ++i) {
    ListConsonantFileCommand(desk.window, desk.folder.path());
    refusals += desk.window.Log().back() + " ";
  }
  EXPECT_EQ(refusals, "error|Parlowen(Tessiran)|无辅音数据文件！ error|Parlowen(Tessiran)|无辅音数据文件！ error|Parlowen(Tessiran)|文件打开错误！ error|Parlowen(Tessiran)|文件打开错误！ ");
  desk.window.answers = {"no"};
  ConsonantStretchCommand(desk.window, desk.document, desk.consonant);
  EXPECT_EQ(desk.window.Log().back(), "ask|保存数据？|保存此图的数据吗（Yes/No）？");
  desk.window.answers = {"yes", "file:" + desk.folder.path() + "/no/place.con"};
  ConsonantStretchCommand(desk.window, desk.document, desk.consonant);
  EXPECT_EQ(desk.window.Log().back(), "error|Parlowen(Tessiran)|不能建立文件！");
  EXPECT_FALSE(desk.Drawn().empty());
}

TEST(ConsonantFile, OneChangedByteIsNoticed) {
  ByteWriter file;
  WriteConsonants(file, {77, 160, {{12.5, 3}, {1e9, -1}}});
  const auto record = ParseConsonants(file);
  ASSERT_TRUE(record);
  EXPECT_EQ(record->start, 77);
  EXPECT_EQ(record->frames[1].dispersion, -1);
  EXPECT_EQ(ConsonantText(*record), "\r\n        Gravity     Dispersion \r\n\r\n          12.50           3.00\r\n  1000000000.00          -1.00");
  const struct {
    std::size_t place;
    std::uint8_t value;
    const char* why;
  } faults[] = {{0, 'h', "the tag"}, {4, 71, "a byte short"}, {4, 73, "a byte over"}, {7, 0x80, "a negative length"}, {6, 1, "a length beyond the file"}};
  for (const auto& fault : faults) {
    auto bytes = file.bytes();
    bytes[fault.place] = fault.value;
    EXPECT_FALSE(ParseConsonants(bytes)) << fault.why;
  }
  for (std::size_t length = 0; length < file.bytes().size(); ++length) EXPECT_FALSE(ParseConsonants(ByteSpan(file).first(length))) << length;
  ByteWriter empty;
  WriteConsonants(empty, {});
  EXPECT_EQ(ParseConsonants(empty)->frames.size(), 0u);
}

TEST(SpectrumWindow, KeysWorkOnThePictureOfThePane) {
  Desk desk(Vowel(16000), 16000);
  SpectrogramState shown;
  SpectrogramCommand(desk.window, desk.document, shown, SpectrogramKind::NarrowBand);
  for (const bool withWaveform : {true, false}) {
    ShowSpectrumCommand(desk.window, desk.document, shown, withWaveform);
    EXPECT_EQ(desk.window.Log().back(), withWaveform ? "window|spectrum|谱图窗口" : "window|spectrum|单谱图窗口");
    const std::string hint = "对正在画的谱图，F 键显示共振峰, D/L键: 加深／淡化谱图（对倒谱和立体图无效）";
    EXPECT_EQ(desk.Draws(hint), withWaveform);
    const auto before = shown.matrix.greys;
    EXPECT_TRUE(desk.window.tool->Key(desk.window, "l"));
    EXPECT_NE(shown.matrix.greys, before);
    EXPECT_TRUE(desk.window.tool->Key(desk.window, "F"));
    EXPECT_EQ(shown.formantsShown, withWaveform);
    EXPECT_FALSE(desk.window.tool->Key(desk.window, "Left"));
    EXPECT_EQ(desk.document.activity, activities::kSpectrum);
  }
  desk.window.Close();
  EXPECT_EQ(desk.document.activity, activities::kWaveform);
}

}  // namespace
}  // namespace parlowen
