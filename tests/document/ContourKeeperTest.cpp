#include <gtest/gtest.h>

#include <cmath>
#include <numeric>
#include <random>

#include "Desk.h"
#include "document/Editing.h"

namespace parlowen {
namespace {

using testing::Desk;

/// A sound whose contour has the value f + 1 in frame f, so that every value names where it came from.
struct Numbered : Desk {
  Numbered(int frames, int rate) {
    document.resetForNewSound(frames * rate / 100, rate, states);
    std::vector<float> periods(static_cast<std::size_t>(document.ContourLength()));
    std::iota(periods.begin(), periods.end(), 1.0f);
    document.TakePeriods(0, periods);
  }
  Edit Cut(int start, int end) {
    Mark(start, end);
    return CutCommand(window, document, states);
  }
  Edit Paste(int at, int length) {
    document.clipSamples.assign(static_cast<std::size_t>(length), 0);
    document.insertPoint = at;
    return PasteCommand(window, document, states);
  }
  Edit Undo() { return UndoCommand(window, document, states); }
  std::vector<float> Values(int first, int last) const {
    return {document.pitch.begin() + first, document.pitch.begin() + last + 1};
  }
};
using Floats = std::vector<float>;

TEST(Contour, FollowsEveryEditWithinHalfAFrameAndComesBackToTheBit) {
  for (const int rate : {16000, 11025, 8000}) {
    SCOPED_TRACE(rate);
    std::mt19937 random(7);
    Numbered desk(300, rate);
    SoundDocument& d = desk.document;
    // Where the sound of each value stands, in samples; −1 when it was cut out.
    std::vector<double> sound(300);
    for (std::size_t f = 0; f < sound.size(); ++f) sound[f] = (static_cast<double>(f) + 1) * rate / 100;
    for (int turn = 0; turn < 60; ++turn) {
      const auto any = [&](int below) { return static_cast<int>(random() % static_cast<unsigned>(below)); };
      const PitchContour pitch = d.pitch, backup = d.pitchBackup;
      const int at = any(d.sampleCount), length = 1 + any(rate / 5);
      const auto edit = [&] {
        return turn % 2 == 0 ? desk.Cut(at, std::min(at + length, d.sampleCount)) : desk.Paste(at, length);
      };
      edit();
      desk.Undo();
      ASSERT_EQ(d.pitch, pitch) << turn;
      ASSERT_EQ(d.pitchBackup, backup) << turn;
      const Edit done = edit();
      for (double& p : sound) {
        if (p >= done.at && p < done.at + done.removed) p = -1;
        if (p >= done.at + done.removed) p += done.inserted - done.removed;
      }
      for (int f = 0; f < d.ContourLength(); ++f) {
        const float value = d.pitch[static_cast<std::size_t>(f)];
        if (value == kUnvoiced) continue;
        EXPECT_NEAR(sound[static_cast<std::size_t>(value) - 1], (f + 1) * rate / 100.0, rate / 200.0);
        for (const int seam : {done.at, done.at + done.inserted})
          EXPECT_FALSE(f * rate < seam * 100 && seam * 100 < (f + 2) * rate) << "a window over the seam";
      }
    }
  }
}

TEST(Contour, LosesNothingButTheFramesOfTheStretchAndOfTheSeam) {
  // 160 samples a frame; frame 9 is centred at 1600.
  Numbered desk(40, 16000);
  desk.Cut(1600, 3200);
  EXPECT_EQ(desk.Values(7, 11), Floats({8, 9, 0, 21, 22}));
  EXPECT_EQ(desk.Values(28, 30), Floats({39, 40, 0})) << "what comes in from behind the end is unvoiced";
  desk.Paste(1600, 1600);
  EXPECT_EQ(desk.Values(7, 21), Floats({8, 9, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 21, 22}));
  // Three times 0.4 frames are 1.2: nothing, then one frame, then again none.
  Numbered slow(40, 16000);
  for (const Floats& around : {Floats({5, 0, 0, 8}), Floats({5, 0, 0, 9}), Floats({5, 0, 0, 9})}) {
    slow.Cut(1000, 1064);
    EXPECT_EQ(slow.Values(4, 7), around);
  }
}

TEST(Contour, KeepsWhatWasRepairedOrComputedBeforeAnUndo) {
  Numbered desk(40, 16000);
  desk.Cut(1600, 3200);
  desk.document.pitch[4] = 500;   // before the cut
  desk.document.pitch[9] = 501;   // over the seam, centred on it: it goes with the sound behind
  desk.document.pitch[20] = 502;  // behind it
  desk.Undo();
  EXPECT_EQ(desk.Values(3, 9), Floats({4, 500, 6, 7, 8, 9, 10}));
  EXPECT_EQ(desk.Values(18, 20), Floats({19, 501, 21}));
  EXPECT_EQ(desk.document.pitch[30], 502.0f);
  EXPECT_EQ(desk.document.pitchBackup[30], 31.0f);

  desk.Cut(1600, 3264);  // 10.4 frames
  desk.document.TakePeriods(8, Floats({600, 601, 602, 603, 604}));
  desk.Undo();  // 601 spoke of the two sides at once
  EXPECT_EQ(desk.Values(7, 11), Floats({8, 600, 10, 11, 12}));
  EXPECT_EQ(desk.Values(19, 23), Floats({501, 602, 603, 604, 24}));
  EXPECT_EQ(desk.document.pitchBackup[20], 602.0f);
}

TEST(Contour, EndsWithItsLastFrameAndIsNotMadeUp) {
  // 125.98 s at 1000 Hz: two frames more than a contour can have.
  Numbered desk(kUsableContourFrames + 100, 1000);
  const PitchContour whole = desk.document.pitch;
  desk.Cut(1000, 1500);
  EXPECT_EQ(desk.Values(12446, 12450), Floats({12497, 12498, 0, 0, 0}));
  desk.Undo();
  EXPECT_EQ(desk.document.pitch, whole);
  desk.Paste(0, 500);
  desk.Undo();
  EXPECT_EQ(desk.document.pitch, whole) << "the pushed-out end is back";

  PitchContour none;
  none.fill(kNoValue);
  desk.document.resetPitch();
  desk.Paste(5000, 500);
  desk.Cut(0, 100);
  EXPECT_EQ(desk.document.pitch, none);
}

TEST(Contour, GoesWhenARejectedFileLeavesAnotherRate) {
  for (const std::uint32_t rate : {16000u, 11025u}) {
    Numbered desk(40, 16000);
    testing::WavBytes wav;
    wav.rate = rate;
    wav.bits = 8;
    EXPECT_EQ(desk.Open(wav.Bytes()).size(), 1u);
    EXPECT_EQ(desk.document.pitchPresent, rate == 16000);
  }
}

}  // namespace
}  // namespace parlowen
