#include <gtest/gtest.h>

#include <cmath>

#include "document/Desk.h"
#include "document/WavFile.h"
#include "support/Child.h"

namespace parlowen {
namespace {

namespace fs = std::filesystem;
using namespace testing;

const std::string kNoWav = "error||不是 wav 文件", kNot16Bits = "error||不是单/双声道16位 .wav 文件！",
                  kCannotOpen = "error||文件打开错误", kLongFile = "error||长文件，选择调入起点";
constexpr int kOldRate = 8000;

WavBytes Wav(const std::function<void(WavBytes&)>& change) {
  WavBytes wav;
  change(wav);
  return wav;
}
std::string Chunk(const std::string& tag, std::uint32_t size, const std::string& body) {
  return tag + Little(size, 4) + body;
}

struct HostileCase {
  const char* what;
  std::string bytes;
  std::string message;  ///< "" when the file loads
  int rate = 16000;     ///< afterwards
  int count = 10;       ///< of the loaded sound, every sample 1
};

std::vector<HostileCase> HostileFiles() {
  const std::string good = WavBytes().Bytes();
  std::vector<HostileCase> cases = {
      {"nothing wrong", good, ""},
      {"four gigabytes announced", Wav([](auto& w) { w.dataSize = 0xFFFFFFFF; }).Bytes(), ""},
      {"two gigabytes announced", Wav([](auto& w) { w.dataSize = w.riffSize = 0x80000000; }).Bytes(), ""},
      {"an odd data size", Wav([](auto& w) { w.dataSize = 7; }).Bytes(), "", 16000, 3},
      {"half a sample at the end", Wav([](auto& w) { w.dataSize = 21, w.behind = "x"; }).Bytes(), ""},
      {"no data", Wav([](auto& w) { w.samples.clear(); }).Bytes(), "", 16000, 0},
      {"data size 0 over samples", Wav([](auto& w) { w.dataSize = 0; }).Bytes(), "", 16000, 0},
      {"names that nobody reads", Wav([](auto& w) { w.wave = "AVI ", w.fmt = "xxxx"; }).Bytes(), ""},
      {"fields that nobody reads",
       Wav([](auto& w) { w.riffSize = 1, w.formatTag = 3, w.channels = 65535; }).Bytes(), ""},
      {"another byte order", Wav([](auto& w) { w.riff = "RIFX"; }).Bytes(), kNoWav, kOldRate},
      {"no bytes at all", "", kNoWav, kOldRate},
      {"43 bytes", good.substr(0, 43), kNoWav, kOldRate},
      {"44 bytes, ten samples announced", good.substr(0, 44), "", 16000, 0},
      {"a fact chunk", Wav([](auto& w) { w.between = Chunk("fact", 4, "abcd"); }).Bytes(), ""},
      {"an odd chunk with its pad",
       Wav([](auto& w) { w.between = Chunk("LIST", 5, std::string("abcde\0", 6)); }).Bytes(), ""},
      {"an odd chunk without one", Wav([](auto& w) { w.between = Chunk("LIST", 5, "abcde"); }).Bytes(), ""},
      {"an empty chunk", Wav([](auto& w) { w.between = Chunk("JUNK", 0, ""); }).Bytes(), ""},
      {"a chunk past the end", Wav([](auto& w) { w.between = Chunk("LIST", 1000, "abcd"); }).Bytes(), kNoWav,
       kOldRate},
      {"a chunk of four gigabytes",
       Wav([](auto& w) { w.between = Chunk("LIST", 0xFFFFFFFF, "abcd"); }).Bytes(), kNoWav, kOldRate},
      // The identifier is sought two bytes late; the size read there is 65536.
      {"a fmt size of 18 over 16 bytes", Wav([](auto& w) { w.fmtSize = 18; }).Bytes(), kNoWav, kOldRate},
  };
  for (const std::uint32_t rate : {0u, 999u, 384001u, 0x80000000u, 0xFFFFFFFFu})
    cases.push_back(
        {"an impossible rate", Wav([&](auto& w) { w.rate = rate; }).Bytes(), kNot16Bits, kOldRate});
  for (const int rate : {1000, 384000})
    cases.push_back({"a rate at the limit",
                     Wav([&](auto& w) { w.rate = static_cast<std::uint32_t>(rate); }).Bytes(), "", rate});
  for (const int bits : {0, 8, 24, 32, 64})
    cases.push_back({"not 16 bits", Wav([&](auto& w) { w.bits = bits; }).Bytes(), kNot16Bits});
  for (const int align : {0, 1, 3, 6, 8, 10, 65535})
    cases.push_back(
        {"neither one nor two channels", Wav([&](auto& w) { w.blockAlign = align; }).Bytes(), kNot16Bits});
  for (const std::uint32_t size : {0u, 15u, 0x7FFFFFFFu, 0xFFFFFFFFu})
    cases.push_back(
        {"an impossible fmt size", Wav([&](auto& w) { w.fmtSize = size; }).Bytes(), kNoWav, kOldRate});
  for (const std::size_t extra : {1u, 2u, 24u, 65520u})
    cases.push_back({"a longer fmt chunk", Wav([&](auto& w) { w.fmtExtra.assign(extra, 'x'); }).Bytes(), ""});
  cases.push_back({"a fmt chunk over its limit", Wav([](auto& w) { w.fmtExtra.assign(65521, 'x'); }).Bytes(),
                   kNoWav, kOldRate});
  return cases;
}

TEST(Reading, EveryFieldMayLie) {
  for (const HostileCase& c : HostileFiles()) {
    SCOPED_TRACE(c.what);
    Desk desk;
    desk.Load(Ramp(500), kOldRate);
    desk.Mark(10, 400);
    const std::string oldPath = desk.document.filePath, oldCaption = desk.window.Caption();
    const auto oldStates = desk.states.Facts();
    EXPECT_EQ(desk.Open(c.bytes, ChannelMode::One, "hostile.wav"),
              c.message.empty() ? Texts{} : Texts{c.message});
    EXPECT_EQ(desk.document.sampleRate, c.rate);
    EXPECT_TRUE(desk.SilentBehindTheEnd());
    if (c.message.empty()) {
      EXPECT_EQ(desk.Samples(), std::vector<std::int16_t>(static_cast<std::size_t>(c.count), 1));
      EXPECT_EQ(desk.document.filePath, desk.folder / "hostile.wav");
      EXPECT_FALSE(desk.document.selectionDefined());
      continue;
    }
    EXPECT_EQ(desk.Samples(), Ramp(500));
    EXPECT_EQ(desk.document.filePath, oldPath);
    EXPECT_EQ(desk.window.Caption(), oldCaption);
    EXPECT_EQ(desk.document.selectionEnd, 400);
    EXPECT_EQ(desk.states.Facts(), oldStates);
  }
}

TEST(Reading, TheTailOfAStereoFileLiesBehindItsLastWholeFrame) {
  Desk desk;
  desk.Open(Wav([](auto& w) {
              w.blockAlign = 4;
              w.samples.assign(6, 1);
              w.dataSize = 14;
              w.behind = PitchTail({0, 5, 6});
            }).Bytes(),
            ChannelMode::Two);
  EXPECT_EQ(desk.document.sampleCount, 3);
  EXPECT_EQ(desk.document.pitch[2], 6.0f);
}

TEST(Reading, OneChunkIsSkippedAndASecondOneIsReadAsData) {
  Desk desk;
  const std::string two =
      Wav([](auto& w) { w.between = Chunk("LIST", 2, "ab") + Chunk("fact", 4, Little(10, 4)); }).Bytes();
  EXPECT_EQ(desk.Open(two), Texts{});
  EXPECT_EQ(desk.Samples(), (std::vector<std::int16_t>{10, 0}));
  // The by-name reader seeks no chunk: offset 40 holds the size of whatever stands there.
  openByName(desk.window, desk.document, desk.states, WriteFile(desk.folder / "n", two));
  EXPECT_EQ(desk.Samples(), std::vector<std::int16_t>{'b' * 256 + 'a'});
  // Nor does it look at the fmt size.
  openByName(desk.window, desk.document, desk.states,
             WriteFile(desk.folder / "n", Wav([](auto& w) { w.fmtSize = 3; }).Bytes()));
  EXPECT_EQ(desk.document.sampleCount, 10);
  EXPECT_EQ(desk.window.Log(), Texts{});
}

TEST(Reading, PathsThatDoNotOpen) {
  Desk desk;
  const std::string good = WriteFile(desk.folder / "声音 文件 1.wav", WavBytes().Bytes());
  const auto open = [&](const std::string& path) {
    desk.window.answers = {"file:" + path};
    openInteractive(desk.window, desk.document, desk.states, ChannelMode::One);
    Texts log = desk.window.Log();
    log.erase(log.begin());
    return log;
  };
  const Texts badName = {"error|文件夹或文件名错误|文件夹或文件名不对"};
  fs::permissions(good, fs::perms(0600));
  EXPECT_EQ(testing::AsNobody([&] { return open(good) == Texts{kCannotOpen} ? 7 : 0; }), 7);
  EXPECT_EQ(open(good), Texts{});
  // 255 bytes are a path, 256 are not.
  std::string deep = desk.folder.path();
  while (deep.size() < 200) fs::create_directory(deep += "/" + std::string(40, 'd'));
  const std::string longest = deep + "/" + std::string(255 - deep.size() - 1, 'n');
  WriteFile(longest, WavBytes().Bytes());
  WriteFile(longest + "n", WavBytes().Bytes());
  EXPECT_EQ(open(longest), Texts{});
  EXPECT_EQ(open(longest + "n"), badName);
}

/// A sparse file of `dataBytes` behind the header; sample s·rate is s.
std::string LongFile(Desk& desk, std::uint32_t rate, std::uint64_t dataBytes, int seconds = 0) {
  WavBytes wav;
  wav.rate = rate;
  wav.dataSize = static_cast<std::uint32_t>(dataBytes);
  wav.samples.clear();
  const std::string path = WriteFile(desk.folder / "long.wav", wav.Bytes());
  fs::resize_file(path, 44 + dataBytes);
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  for (int s = 1; s < seconds; ++s) {
    file.seekp(44 + std::int64_t{s} * rate * 2);
    file << Little(static_cast<std::uint64_t>(s), 2);
  }
  return path;
}

TEST(Reading, TheCapacityLoadsWholeAndOneByteMoreAsks) {
  constexpr std::uint64_t kFull = std::uint64_t{kMaxSamples} * 2;
  for (const std::uint64_t bytes : {kFull, kFull + 1}) {
    Desk desk;
    openPath(desk.window, desk.document, desk.states, LongFile(desk, 16000, bytes, 98), ChannelMode::One,
             false);
    if (bytes == kFull) {
      EXPECT_EQ(desk.window.Log(), Texts{});
      EXPECT_EQ(desk.document.sampleCount, kMaxSamples);
      EXPECT_EQ(desk.document.samples[97 * 16000], 97);
    } else {
      EXPECT_EQ(desk.window.Log(), (Texts{kLongFile, "input| 选择所需的地点|输入该处的秒数（Max=）98"}));
      EXPECT_EQ(desk.document.sampleCount, 0) << "cancelled";
      EXPECT_EQ(desk.document.filePath, "");
      EXPECT_EQ(desk.document.sampleRate, 16000);
    }
  }
}

TEST(Reading, TheStartSecondOfALongFile) {
  const struct {
    const char* answer;
    int second, count;
  } cases[] = {{"0", 0, kMaxSamples},          {"-5", 0, kMaxSamples},   {"soon", 0, kMaxSamples},
               {"101", 101, kMaxSamples},      {"102", 102, 98 * 16000}, {"196", 196, 4 * 16000},
               {"197", 197, 3 * 16000},        {"198", 197, 3 * 16000},  {"200", 197, 3 * 16000},
               {"99999999999", 197, 3 * 16000}};
  for (const auto& c : cases) {
    SCOPED_TRACE(c.answer);
    Desk desk;
    const std::string path = LongFile(desk, 16000, 200 * 32000, 200);
    std::ofstream(path, std::ios::app | std::ios::binary) << PitchTail(std::vector<float>(12500, 50.0f));
    desk.window.answers = {std::string("ok:") + c.answer};
    openPath(desk.window, desk.document, desk.states, path, ChannelMode::One, false);
    EXPECT_EQ(desk.document.longFileSeconds, 200);
    EXPECT_EQ(desk.document.longFileStart, c.second * 16000);
    EXPECT_EQ(desk.document.sampleCount, c.count);
    EXPECT_EQ(desk.document.samples[0], c.second);
    EXPECT_EQ(desk.document.samples[2 * 16000], c.second + 2);
    EXPECT_FALSE(desk.document.pitchPresent) << "a part of a sound takes no contour";
    EXPECT_TRUE(desk.document.IsPartOfFile());
    EXPECT_EQ(desk.window.Log().size(), 2u);
    desk.Load(Ramp(5));
    EXPECT_EQ(desk.document.longFileSeconds + desk.document.longFileStart, 0);
  }
}

TEST(Reading, FilesOfHoursAndOfFourGigabytes) {
  Desk desk;
  desk.window.answers = {"ok:34990", "ok:999999"};
  openPath(desk.window, desk.document, desk.states, LongFile(desk, 1000, 70000000), ChannelMode::One, false);
  EXPECT_EQ(desk.window.Log().back(), "input| 选择所需的地点|输入该处的秒数（Max=）35000");
  EXPECT_EQ(desk.document.longFileSeconds, 32767);
  EXPECT_EQ(desk.document.longFileStart, 34990000);
  EXPECT_EQ(desk.document.sampleCount, 10000);
  // 2147483647 samples at 16000 Hz are 134217 whole seconds; less than four of them are loaded.
  openPath(desk.window, desk.document, desk.states, LongFile(desk, 16000, 0xFFFFFFFF), ChannelMode::One,
           false);
  EXPECT_EQ(desk.document.longFileStart, 134214 * 16000);
  EXPECT_EQ(desk.document.sampleCount, 2147483647 - 134214 * 16000);
}

TEST(Reading, APitchTailIsMadeHarmless) {
  const float inf = HUGE_VALF;
  const std::vector<float> values = {100.0f,   std::nanf(""), inf,   -inf, -0.25f, -7.0f,
                                     16000.0f, 16000.5f,      1e30f, 0.5f, 0,      0};
  const std::vector<float> expected = {100.0f, 0, 0, 0, -1.0f, -1.0f, 16000.0f, 0, 0, 0.5f, 0, 0};
  WavBytes wav;
  wav.samples = Ramp(1600);
  wav.behind = PitchTail(values);
  Desk desk;
  EXPECT_EQ(desk.Open(wav.Bytes()), Texts{});
  EXPECT_TRUE(desk.document.pitchPresent && desk.states.Holds(Need::Contour));
  EXPECT_EQ(std::vector<float>(desk.document.pitch.begin(), desk.document.pitch.begin() + 12), expected);
  EXPECT_EQ(std::vector<float>(desk.document.pitchBackup.begin(), desk.document.pitchBackup.begin() + 12),
            expected);
  EXPECT_EQ(desk.document.pitch[12], kNoValue);

  const std::string whole = PitchTail(std::vector<float>(12500, 50.0f));
  const struct {
    const char* what;
    std::string tail;
    bool present;
    float last;
  } cases[] = {
      {"65535 announced, few there", PitchTail(values, 65535), false, kNoValue},
      {"65535 announced, 12500 there", PitchTail(std::vector<float>(12500, 50.0f), 65535), true, 50.0f},
      {"12501 values", PitchTail(std::vector<float>(12501, 50.0f)), true, 50.0f},
      {"one byte short", whole.substr(0, whole.size() - 1), false, kNoValue},
      {"no zero behind the tag", "PCHx" + whole.substr(4), false, kNoValue},
      {"a tag alone", whole.substr(0, 5), false, kNoValue},
      {"no values", PitchTail({}), true, kNoValue},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    wav.behind = c.tail;
    desk.Open(wav.Bytes());
    EXPECT_EQ(desk.document.pitchPresent, c.present);
    EXPECT_EQ(desk.states.Holds(Need::Contour), c.present);
    EXPECT_EQ(desk.document.pitch[12499], c.last);
    EXPECT_EQ(desk.document.pitchBackup[12499], c.last);
  }
}

TEST(Reading, WhatASaveWouldTakeFromTheFileIsKnown) {
  const std::string contour = PitchTail(std::vector<float>(7, 50.0f));
  const std::string writer = Chunk("ISFT", 3, std::string("me\0", 4)), comment = Chunk("ICMT", 4, "good");
  const auto list = [](const std::string& notes) {
    return Chunk("LIST", static_cast<std::uint32_t>(notes.size() + 4), "INFO" + notes);
  };
  const auto behind = [](const std::string& bytes) {
    return Wav([&](auto& w) { w.behind = bytes; }).Bytes();
  };
  const auto stereo = [](const std::string& bytes) {
    return Wav([&](auto& w) { w.blockAlign = 4, w.behind = bytes; }).Bytes();
  };
  std::string many;
  for (int i = 0; i < 1001; ++i) many += Chunk("JUNK", 0, "");
  const struct {
    const char* what;
    std::string bytes;
    bool isPart;
    ChannelMode mode = ChannelMode::One;
  } cases[] = {
      {"samples", behind(""), false},
      {"a contour", behind(contour), false},
      {"what only fills", behind(list(writer) + Chunk("PAD ", 1, std::string(2, 0)) + std::string(40, 0)),
       false},
      {"an unknown record behind the contour", behind(contour + Chunk("abcd", 0, "")), true},
      {"a mark before the data", Wav([](auto& w) { w.between = Chunk("cue ", 4, "abcd"); }).Bytes(), true},
      {"zeros, then samples", behind(std::string(70000, 0) + "x"), true},
      {"nothing but empty chunks", behind(many), true},
      {"a comment", behind(list(writer + comment)), true},
      {"samples behind a size of 0", Wav([](auto& w) { w.dataSize = 0; }).Bytes(), true},
      {"two channels, one loaded", stereo(""), true},
      {"two channels", stereo(""), false, ChannelMode::Two},
      {"two channels and a contour", stereo(contour), true, ChannelMode::Two},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    Desk desk;
    desk.Open(c.bytes, c.mode);
    EXPECT_EQ(desk.document.IsPartOfFile(), c.isPart);
    if (desk.document.twoChannel) {
      desk.Mark(1, 2);
      desk.window.answers = {"yes"};
      CutCommand(desk.window, desk.document, desk.states);
      EXPECT_TRUE(desk.document.IsPartOfFile()) << "the second channel is given up in the document alone";
    }
    desk.window.answers = {"no"};
    saveSound(desk.window, desk.document, false);
    EXPECT_FALSE(desk.document.IsPartOfFile());
  }
}

TEST(Reading, RawSoundsLoseTheirEnds) {
  const std::vector<std::int16_t> samples = Ramp(100);
  WavBytes wav;
  wav.samples = samples;
  const std::string body = wav.Bytes().substr(44);
  const auto raw = [&](std::size_t bytes) { return std::string(44, 'r') + body.substr(0, bytes); };
  Desk desk;
  const auto byName = [&](const std::string& bytes) {
    openByName(desk.window, desk.document, desk.states, WriteFile(desk.folder / "raw.bin", bytes));
    return desk.window.Log();
  };
  EXPECT_EQ(byName(raw(200)), Texts{});
  EXPECT_EQ(desk.document.sampleRate, 11025) << "no rate was known";
  EXPECT_TRUE(desk.document.IsPartOfFile());
  EXPECT_EQ(desk.Samples(), std::vector<std::int16_t>(samples.begin(), samples.begin() + 76));
  desk.Load(Ramp(5), 8000);
  EXPECT_EQ(byName(raw(51)), Texts{});
  EXPECT_EQ(desk.Samples(), std::vector<std::int16_t>{1});
  EXPECT_EQ(desk.document.sampleRate, 8000);
  EXPECT_TRUE(desk.SilentBehindTheEnd());
  EXPECT_EQ(byName(raw(49)), Texts{kNoWav});
  EXPECT_EQ(byName(std::string(43, 'r')), Texts{kNoWav});
  EXPECT_EQ(desk.Samples(), std::vector<std::int16_t>{1});
  byName(raw(200));
  fs::resize_file(desk.folder / "raw.bin", 44 + 2 * std::uint64_t{kMaxSamples} + 100);
  openByName(desk.window, desk.document, desk.states, desk.folder / "raw.bin");
  EXPECT_EQ(desk.document.sampleCount, kMaxSamples - 24);
}

}  // namespace
}  // namespace parlowen
