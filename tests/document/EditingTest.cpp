#include <gtest/gtest.h>

#include "document/Desk.h"

namespace parlowen {
namespace {

using namespace testing;

using Samples = std::vector<std::int16_t>;

TEST(Editing, AmplifyDoublesOrClipsAndAttenuateTruncatesTowardZero) {
  const Samples values = {0, 1, -1, 3, -3, 16383, -16383, 16384, -16384, 32767, -32768};
  const Samples doubled = {0, 2, -2, 6, -6, 32766, -32766, 32767, -32768, 32767, -32768};
  const Samples halved = {0, 0, 0, 1, -1, 8191, -8191, 8192, -8192, 16383, -16384};
  Desk desk;
  const auto framed = [](Samples inner) {
    inner.insert(inner.begin(), 20000);
    inner.push_back(-20000);
    return inner;
  };
  desk.Load(framed(values));
  desk.Mark(1, static_cast<int>(values.size()) + 1);
  AmplifyCommand(desk.window, desk.document);
  EXPECT_EQ(desk.Samples(), framed(doubled)) << "the neighbours of the selection keep their values";
  EXPECT_EQ(desk.window.Log(), Texts{"warning|警告|数据太大，产生限幅失真"});
  EXPECT_EQ(desk.document.viewSamples[6], 32766) << "what is drawn follows";
  desk.Load(framed(values));
  desk.Mark(1, static_cast<int>(values.size()) + 1);
  AttenuateCommand(desk.window, desk.document);
  EXPECT_EQ(desk.Samples(), framed(halved));
  desk.Mark(9, 10);  // -8192 is doubled; -16384 counts as clipped although it fits
  for (const Texts& said : {Texts{}, Texts{"warning|警告|数据太大，产生限幅失真"}}) {
    AmplifyCommand(desk.window, desk.document);
    EXPECT_EQ(desk.window.Log(), said) << desk.document.samples[9];
  }
}

TEST(Editing, TheWholeSoundCanBeCutAndBroughtBack) {
  Desk desk;
  desk.Load(Ramp(300));
  SelectAllCommand(desk.window, desk.document, desk.states);
  CutCommand(desk.window, desk.document, desk.states);
  EXPECT_EQ(desk.document.sampleCount, 0);
  EXPECT_TRUE(desk.SilentBehindTheEnd());
  EXPECT_EQ(desk.document.viewLength, 0);
  SelectAllCommand(desk.window, desk.document, desk.states);
  EXPECT_FALSE(desk.states.Holds(Need::EditableSelection)) << "nothing of nothing is selected";
  desk.document.insertPoint = 1000000;
  PasteCommand(desk.window, desk.document, desk.states);
  EXPECT_EQ(desk.document.insertPoint, 0) << "clamped to the sound";
  EXPECT_EQ(desk.Samples(), Ramp(300));
  UndoCommand(desk.window, desk.document, desk.states);
  EXPECT_EQ(desk.document.sampleCount, 0);
  EXPECT_TRUE(desk.SilentBehindTheEnd());
}

TEST(Editing, APasteAtTheCapacityIsUndoneWhole) {
  const int count = kMaxSamples - 100;
  const Samples sound = Ramp(count), clip = Ramp(300, 7);
  Desk desk;
  desk.Load(sound);
  for (const int at : {0, count / 2, count - 50, count}) {
    SCOPED_TRACE(at);
    desk.document.clipSamples = clip;
    desk.document.insertPoint = at;
    PasteCommand(desk.window, desk.document, desk.states);
    ASSERT_EQ(desk.document.sampleCount, kMaxSamples);
    const int inserted = std::min(300, kMaxSamples - at);
    const Samples pasted = desk.Samples();
    EXPECT_TRUE(std::equal(sound.begin(), sound.begin() + at, pasted.begin()));
    EXPECT_TRUE(std::equal(clip.begin(), clip.begin() + inserted, pasted.begin() + at));
    EXPECT_TRUE(std::equal(pasted.begin() + at + inserted, pasted.end(), sound.begin() + at));
    EXPECT_TRUE(desk.SilentBehindTheEnd());
    UndoCommand(desk.window, desk.document, desk.states);
    EXPECT_TRUE(desk.Samples() == sound);
    EXPECT_TRUE(desk.SilentBehindTheEnd());
  }
  desk.document.insertPoint = 0;
  PasteCommand(desk.window, desk.document, desk.states);
  PasteCommand(desk.window, desk.document, desk.states);  // into a full document
  EXPECT_EQ(desk.document.sampleCount, kMaxSamples);
  EXPECT_EQ(desk.document.samples[300], clip[0]);
}

}  // namespace
}  // namespace parlowen
