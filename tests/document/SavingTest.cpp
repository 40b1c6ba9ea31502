#include <gtest/gtest.h>

#include <array>

#include "document/Desk.h"
#include "document/NextDigit.h"
#include "support/Child.h"

namespace parlowen {
namespace {

namespace fs = std::filesystem;
using namespace testing;

const std::string kAskPitch = "ask|保存基频？|本文件的基频数据已求出，保存吗（Yes/No)?";
const std::string kBadName = "error|文件夹或文件名错误|文件夹或文件名不对，请重选";

/// The contour of a sound of ten frames, as a tail holds it.
std::vector<float> TenFrames() { return {-1.0f, 100, 0, 90.5f, 80, 0, 0, 70, 60, 50, 0, 0}; }

TEST(Saving, ASoundComesBackByteForByte) {
  WavBytes mono, stereo, voiced;
  mono.samples = {0, 1, -1, 32767, -32768, 255, 256, -256};
  stereo.samples = {1, -1, 2, -2, 32767, -32768};
  stereo.blockAlign = 4;
  voiced.samples = Ramp(1600);
  voiced.behind = PitchTail(TenFrames());
  for (const WavBytes* wav : {&mono, &stereo, &voiced}) {
    const ChannelMode mode = wav == &stereo ? ChannelMode::Two : ChannelMode::One;
    Desk desk;
    desk.Open(wav->Bytes(), mode);
    const std::string copy = desk.folder / "副 本7.wav";
    desk.window.answers = {"file:" + copy, "yes"};
    saveSound(desk.window, desk.document, true);
    EXPECT_EQ(desk.window.answers.empty(), wav == &voiced) << "the others have no contour to ask about";
    EXPECT_EQ(ReadFile(copy), wav->Bytes());
    EXPECT_EQ(desk.folder.Names().size(), 2u);
    const auto samples = desk.Samples(), samples2 = desk.Samples2();
    openPath(desk.window, desk.document, desk.states, copy, mode, false);
    EXPECT_EQ(desk.Samples(), samples);
    EXPECT_EQ(desk.Samples2(), samples2);
  }
}

TEST(Saving, OnlyACompleteContourIsOffered) {
  const struct {
    const char* what;
    int samples;
    std::vector<float> contour;
    int mode;
    bool asked;
  } cases[] = {
      {"frame 0 is not looked at", 1600, TenFrames(), 1, true},
      {"a frame without value", 1600, {5, 100, 0, 90, 80, -1, 0, 70, 60, 50}, 1, false},
      {"the last frame without value", 1600, {5, 100, 0, 90, 80, 0, 0, 70, 60, -1}, 1, false},
      {"behind the last frame", 1600, {5, 100, 0, 90, 80, 0, 0, 70, 60, 50, -1}, 1, true},
      {"two frames", 320, {5, 5}, 1, true},
      {"one frame", 319, {5, 5}, 1, false},
      {"two channels", 3200, TenFrames(), 2, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.what);
    WavBytes wav;
    wav.samples = Ramp(c.samples);
    wav.blockAlign = 2 * c.mode;
    wav.behind = PitchTail(c.contour);
    Desk desk;
    desk.Open(wav.Bytes(), c.mode == 2 ? ChannelMode::Two : ChannelMode::One);
    ASSERT_TRUE(desk.document.pitchPresent);
    saveSound(desk.window, desk.document, false);
    EXPECT_EQ(desk.window.Log(), c.asked ? Texts{kAskPitch} : Texts{});
  }
}

TEST(Saving, AFailureLeavesTheOldFileAndTheOldName) {
  Desk desk;
  desk.Load(Ramp(40000));
  const std::string old = desk.document.filePath, oldBytes = ReadFile(old);
  const std::string inAFile = desk.folder / "sound1.wav/x.wav";
  fs::create_directory(desk.folder / "folder.wav");
  // 7 when exactly the message came and nothing moved on.
  const auto refused = [&](const std::string& path) {
    desk.window.answers = {"file:" + path};
    saveSound(desk.window, desk.document, true);
    return desk.window.Log().back() == kBadName && desk.document.filePath == old &&
                   desk.window.Caption() == CaptionFor(old)
               ? 7
               : 0;
  };
  EXPECT_EQ(refused(inAFile), 7);
  EXPECT_EQ(refused(desk.folder / "folder.wav"), 7);
  EXPECT_EQ(refused(desk.folder / "missing/x.wav"), 7);
  EXPECT_EQ(testing::AsNobody([&] { return refused(desk.folder / "new.wav"); }), 7);
  EXPECT_EQ(testing::AsNobody([&] { return refused(old); }), 7);
  EXPECT_EQ(testing::WithFileSizeLimit(30000, [&] { return refused(old); }), 7);
  EXPECT_EQ(ReadFile(old), oldBytes);
  EXPECT_EQ(desk.folder.Names().size(), 2u);
}

TEST(NextDigit, TheNumberBeforeTheFirstDotGrows) {
  const std::array<std::string, 2> cases[] = {
      {"a09.wav", "a10.wav"},
      {"a007.wav", "a8.wav"},
      {"s.wav", "s1.wav"},
      {"/d/x9.WAV", "/d/x10.wav"},
      {"", "1.wav"},
      {"12", "13.wav"},
      {"a-5.wav", "a-6.wav"},
      {"a1.2.wav", "a2.wav"},
      {"a000.wav", "a1.wav"},
      {"/v1.5/a3.wav", "/v2.wav"},
      {"语音１.wav", "语音１1.wav"},
      {"a" + std::string(30, '9') + ".wav", "a1" + std::string(30, '0') + ".wav"},
  };
  for (const auto& [path, next] : cases) EXPECT_EQ(nextDigitPathOf(path), next) << path;
}

}  // namespace
}  // namespace parlowen
