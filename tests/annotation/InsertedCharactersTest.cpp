#include "annotation/InsertedCharacters.h"

#include <gtest/gtest.h>

#include "shell/Station.h"

namespace parlowen {
namespace {

using testing::Ramp;
using testing::Texts;

struct CharacterDesk : testing::Station {
  CharacterDesk() { Load(Ramp(200000)); }
  Texts Type(const std::string& text) {
    window.answers = {"ok:" + text};
    w.dispatchCommand(40053);
    return window.Log();
  }
  void Place(const std::string& text, Pane pane, Point at) {
    Type(text);
    w.Click(pane, at, MouseButton::Left, false);
  }
  /// The texts in a pane's whole picture as "text@x,y/height", without those of the panes themselves.
  Texts Shown(Pane pane, int height = 330) const {
    Texts shown;
    for (const Mark& mark : w.view.Whole(pane, 1024, height).marks)
      if (const auto* text = std::get_if<TextMark>(&mark); text != nullptr && text->face == Face::Ipa)
        shown.push_back(text->text + "@" + std::to_string(text->x) + "," + std::to_string(text->y) + "/" +
                        std::to_string(text->height));
    return shown;
  }
};

TEST(InsertedCharacters, KeepTheirTimeAndTheirRowInTheirPane) {
  CharacterDesk s;
  EXPECT_EQ(s.Type("元音"), Texts{"input|插入字符|输入插入的内容（最长9字符）："});
  EXPECT_EQ(s.w.document.activity, Activity::Characters);
  EXPECT_EQ(s.w.view.Hint(), kCharactersHint.Get());
  s.w.Click(Pane::Pitch, {120, 80}, MouseButton::Left, false);
  EXPECT_EQ(s.w.document.activity, Activity::Waveform);
  EXPECT_EQ(s.w.document.selectionStart, -1000) << "the click marks nothing";
  s.Place("ə", Pane::Waveform, {220, 400});
  // 16 px high: the baseline 6 rows under the middle.
  EXPECT_EQ(s.Shown(Pane::Pitch), Texts{"元音@120,86/16"});
  EXPECT_EQ(s.Shown(Pane::Waveform, 165), Texts{"ə@220,170/16"})
      << "a row that a lower pane lacks is its last";
  EXPECT_TRUE(s.Shown(Pane::Analysis).empty());
  s.w.view.ScrollTo(8000);  // 50 columns
  EXPECT_EQ(s.Shown(Pane::Pitch), Texts{"元音@70,86/16"});
  s.w.Key("X");
  EXPECT_EQ(s.Shown(Pane::Pitch), Texts{"元音@120,86/16"}) << "twice as far from the left edge";
  s.w.Select(0, 4000);
  s.w.dispatchCommand(40001);
  EXPECT_EQ(s.Shown(Pane::Pitch), Texts{"元音@70,86/16"}) << "4000 samples are 50 columns at this scale";
  s.w.view.ScrollTo(12001);
  EXPECT_TRUE(s.Shown(Pane::Pitch).empty());
}

TEST(InsertedCharacters, The101stIsRefusedAndAnotherSoundHasNone) {
  CharacterDesk s;
  for (int i = 0; i < 100; ++i) s.Place("a", Pane::Pitch, {100 + i, 50});
  EXPECT_EQ(s.w.characters.items.size(), 100u);
  EXPECT_EQ(s.Type("b"), Texts{"none|" + s.window.Caption() + "|字符数已满，不能再加！"});
  EXPECT_EQ(s.w.document.activity, Activity::Waveform);
  s.Load(Ramp(100));
  EXPECT_TRUE(s.w.characters.items.empty());
  s.Place("c", Pane::Pitch, {20, 50});
  EXPECT_EQ(s.Shown(Pane::Pitch).size(), 1u);
}

}  // namespace
}  // namespace parlowen
