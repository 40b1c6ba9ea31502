#include "annotation/EditFollowing.h"

#include <gtest/gtest.h>

#include "annotation/MarkerEditing.h"
#include "document/Editing.h"
#include "document/RateConversion.h"

namespace parlowen {
namespace {

/// 10000 samples with their markers; edits go through the document, as the commands make them.
struct Edited {
  CommandStates states;
  SoundDocument document;
  MarkerState state;
  AnnotationState annotations;
  InsertedCharacters characters;

  Edited() {
    document.resetForNewSound(10000, 16000, states);
    state.sound = annotations.sound = characters.sound = document.Stamp();
  }
  void Mark(int band, std::initializer_list<int> positions, std::initializer_list<MarkerLabel> labels = {}) {
    const auto b = static_cast<std::size_t>(band);
    std::copy(positions.begin(), positions.end(), state.set.markerPos.begin() + 20 * band);
    state.set.markerCount[b] = static_cast<std::int16_t>(positions.size());
    for (const MarkerLabel& label : labels) AppendLabel(state.set, band, label);
  }
  template <typename Act>
  void Do(Act act) {
    FollowEdit({state, annotations, characters}, act(), document);
  }
  void Cut(int start, int end) {
    document.selectionStart = start;
    document.selectionEnd = end;
    Do([&] { return CutSelection(document); });
  }
  void Paste(int at) {
    document.insertPoint = at;
    Do([&] { return PasteClip(document); });
  }
  void Undo() {
    Do([&] { return UndoEdit(document); });
  }
  std::vector<int> Markers(int band) const {
    return {state.set.Markers(band).begin(), state.set.Markers(band).end()};
  }
  std::vector<MarkerLabel> Labels(int band) const {
    return {state.set.Labels(band).begin(), state.set.Labels(band).end()};
  }
};
using Ints = std::vector<int>;
using LabelList = std::vector<MarkerLabel>;

TEST(MarkersFollow, ACutTakesWhatStoodInItAndMovesWhatStoodBehind) {
  Edited sound;
  sound.Mark(0, {1000, 2000, 2500, 3000, 4000});
  sound.Mark(
      1, {1500, 2500, 6000},
      {{0, 1500, "before"}, {1500, 2500, "cut short"}, {2500, 2500, "point"}, {6000, 10000, "to the end"}});
  sound.Mark(2, {2200, 2800}, {{2200, 2800, "gone"}});
  const MarkerSet whole = sound.state.set;
  sound.Cut(2000, 3000);
  EXPECT_EQ(sound.Markers(0), Ints({1000, 2000, 3000}));
  EXPECT_EQ(sound.Markers(1), Ints({1500, 2000, 5000}));
  EXPECT_EQ(sound.Labels(1),
            LabelList({{0, 1500, "before"}, {1500, 2000, "cut short"}, {5000, 9000, "to the end"}}));
  EXPECT_EQ(sound.Markers(2), Ints());
  EXPECT_EQ(sound.Labels(2), LabelList());
  EXPECT_TRUE(sound.state.changed);
  sound.Undo();
  EXPECT_EQ(sound.state.set, whole);
}

TEST(MarkersFollow, APasteOpensAGapAndItsUndoClosesIt) {
  Edited sound;
  sound.Cut(0, 100);  // to have a clip; there are no markers yet
  EXPECT_FALSE(sound.state.changed);
  sound.Mark(0, {1000, 2000}, {{0, 1000, "head"}, {2000, 9900, "tail"}});
  sound.Paste(1000);
  EXPECT_EQ(sound.Markers(0), Ints({1100, 2100}));
  EXPECT_EQ(sound.Labels(0), LabelList({{0, 1100, "head"}, {2100, 10000, "tail"}}));
  sound.state.set.labels[0].text = "worked on";
  sound.Undo();
  EXPECT_EQ(sound.Markers(0), Ints({1000, 2000}));
  EXPECT_EQ(sound.Labels(0), LabelList({{0, 1000, "worked on"}, {2000, 9900, "tail"}}));
}

TEST(MarkersFollow, ARateConversionScalesPositions) {
  Edited sound;
  sound.Mark(3, {1001, 9999}, {{9999, 10000, "last"}});
  const Edit conversion = ConvertDocument(sound.document, 11025);
  sound.document.resetForNewSound(sound.document.sampleCount, 11025, sound.states);
  FollowEdit({sound.state, sound.annotations, sound.characters}, conversion, sound.document);
  // 1001·11025/16000 = 689.75; the end is trunc(10000·11025/16000) − 1 = 6889, and 6889.9 is behind it.
  EXPECT_EQ(sound.Markers(3), Ints({689, 6889}));
  EXPECT_EQ(sound.state.sound, sound.document.Stamp());
}

TEST(MarkersFollow, MarkersOfAnotherSoundAndEditsThatDidNothingLeaveThem) {
  Edited sound;
  sound.Mark(0, {5000});
  sound.Undo();  // there is none
  EXPECT_FALSE(sound.state.changed);
  sound.state.sound.number += 7;
  sound.Cut(0, 1000);
  EXPECT_EQ(sound.Markers(0), Ints({5000}));
}

}  // namespace
}  // namespace parlowen
