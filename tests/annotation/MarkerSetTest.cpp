#include "annotation/MarkerEditing.h"

#include <gtest/gtest.h>

namespace parlowen {
namespace {

/// A sound of 100000 samples: 100 samples a column at d = 1.
struct Bands {
  MarkerSet set;
  MarkerView view;

  MarkerScale Scale() const { return {view, 100000}; }
  MarkerPoint At(int band, int column) const { return {band, column, Scale().SampleAt(column)}; }
  std::string Add(int band, int column) { return Said(AddMarker(set, Scale(), At(band, column))); }
  std::string Unlabel(int band, int column) { return Said(DeleteLabel(set, Scale(), At(band, column))); }
  std::string Label(int band, int column, const char* text = "a") {
    const LabelPlace place = PlaceOfLabel(set, Scale(), At(band, column));
    if (place.refusal) return *place.refusal;
    AppendLabel(set, band, {place.stretch.start, place.stretch.end, text});
    return "";
  }
  std::vector<int> Markers(int band) const { return {set.Markers(band).begin(), set.Markers(band).end()}; }
  /// "start-end text" of each label.
  std::vector<std::string> Labels(int band) const {
    std::vector<std::string> list;
    for (const MarkerLabel& label : set.Labels(band))
      list.push_back(std::to_string(label.start) + "-" + std::to_string(label.end) + " " + label.text);
    return list;
  }
  /// The refusal, "" for a change, "nothing" for neither.
  static std::string Said(const MarkerOutcome& outcome) {
    if (outcome.refusal) return *outcome.refusal;
    return outcome.changed ? "" : "nothing";
  }
};
using Ints = std::vector<int>;
using Texts = std::vector<std::string>;

TEST(MarkerGeometry, ColumnsAndSamplesAreTruncated) {
  const int rows[][2] = {{0, 0}, {40, 0}, {41, 1}, {80, 1}, {81, 2}, {120, 2}, {121, 3}, {160, 3}, {900, 3}};
  for (const auto& [row, band] : rows) EXPECT_EQ(BandOfRow(row), band) << row;

  const MarkerScale uneven({.start = 1000, .zoom = 4}, 47540);  // 11.885 samples a column
  EXPECT_DOUBLE_EQ(uneven.samplesPerPixel, 11.885);
  EXPECT_EQ(uneven.SampleAt(23), 1035);  // 1000 + 35.655
  EXPECT_EQ(uneven.Column(1035), 22);    // 35/11.885 = 2.94: the truncated sample stands a column earlier
  EXPECT_EQ(uneven.Column(989), 20);     // less than a column before the view
  EXPECT_EQ(uneven.Column(988), 19);
  EXPECT_EQ(uneven.SampleAt(19), 1000);  // the margin counts as its edge
  EXPECT_EQ(uneven.SampleAt(9000), 47540);

  const MarkerScale empty({}, 0);
  EXPECT_EQ(empty.Column(5), 20);
  EXPECT_EQ(empty.SampleAt(500), 0);
}

TEST(MarkerGeometry, ZoomStopsAtAThreeHundredthOfASecondAndAtTheWholeSound) {
  // At 16000 Hz a column must have 16000/300 = 53 samples before it may be halved.
  MarkerView view{.start = 77};
  EXPECT_FALSE(ShrinkMarkerView(view));
  EXPECT_TRUE(ExpandMarkerView(view, 53000, 16000));
  EXPECT_EQ(view.zoom, 2);
  EXPECT_EQ(view.start, 0);
  EXPECT_FALSE(ExpandMarkerView(view, 53000, 16000));
  view.start = 500;
  EXPECT_TRUE(ShrinkMarkerView(view));
  EXPECT_EQ(view.start, 0);
  EXPECT_FALSE(ExpandMarkerView(view, 52999, 16000));

  view.zoom = 4;
  ScrollMarkersTo(view, 1 << 30, 10002);
  EXPECT_EQ(view.start, 10002 - 2500);
  ScrollMarkersTo(view, -5, 10002);
  EXPECT_EQ(view.start, 0);
}

TEST(MarkerEditing, AMarkerIsRefusedOnePixelFromAnotherAndBeyondTwenty) {
  Bands bands;
  EXPECT_EQ(bands.Add(0, 220), "");
  EXPECT_EQ(bands.Add(0, 221), "此处已有标志，不能加！");
  EXPECT_EQ(bands.Add(0, 219), "此处已有标志，不能加！");
  EXPECT_EQ(bands.Add(0, 222), "");
  EXPECT_EQ(bands.Add(0, 218), "");
  EXPECT_EQ(bands.Markers(0), Ints({19800, 20000, 20200}));  // sorted
  EXPECT_EQ(bands.Add(1, 221), "");                          // another band
  for (int i = 3; i < 20; ++i) EXPECT_EQ(bands.Add(0, 220 + 10 * i), "");
  EXPECT_EQ(bands.Add(0, 220), "标志数已达20，不能再加！");  // before the refusal of a near one
  EXPECT_EQ(bands.Add(2, 500), "");
  EXPECT_EQ(bands.set.markerCount, (std::array<std::int16_t, 4>{20, 1, 1, 0}));
}

TEST(MarkerEditing, ALabelBelongsToAMarkerWithinThreePixelsElseToTheStretch) {
  Bands bands;
  EXPECT_EQ(bands.Label(0, 100), "没有标志，不能加标注！");
  for (const int column : {120, 220}) bands.Add(0, column);
  bands.Add(1, 150);  // of no account in the first band
  for (const int column : {117, 118, 122, 123, 217, 223}) EXPECT_EQ(bands.Label(0, column), "");
  EXPECT_EQ(bands.Labels(0), Texts({"0-10000 a", "10000-10000 a", "10000-10000 a", "10000-20000 a",
                                    "10000-20000 a", "20000-100000 a"}));
  // Two within reach: the nearer one.
  bands.Add(2, 300);
  bands.Add(2, 302);
  bands.Label(2, 302, "second");
  EXPECT_EQ(bands.Labels(2), Texts({"28200-28200 second"}));
  for (int i = 1; i < 20; ++i) EXPECT_EQ(bands.Label(2, 500), "");
  EXPECT_EQ(bands.Label(2, 500), "标志数已达20，不能再加！");
  EXPECT_FALSE(AppendLabel(bands.set, 2, {1, 2, "x"}));
}

TEST(MarkerEditing, DeletingALabelTakesThePointFirstThenTheStretch) {
  Bands bands;
  EXPECT_EQ(bands.Unlabel(0, 100), "没有标注文字！不能删");
  for (const int column : {120, 220}) bands.Add(0, column);
  bands.Label(0, 150, "one");
  bands.Label(0, 150, "two");
  bands.Label(0, 120, "point");
  EXPECT_EQ(bands.Unlabel(0, 60), "nothing");
  EXPECT_EQ(bands.Unlabel(0, 122), "");  // in the stretch, but on the marker
  EXPECT_EQ(bands.Labels(0), Texts({"10000-20000 one", "10000-20000 two"}));
  EXPECT_EQ(bands.Unlabel(0, 122), "");
  EXPECT_EQ(bands.Labels(0), Texts({"10000-20000 two"}));
  EXPECT_EQ(bands.set.labels[1], MarkerLabel{});
  EXPECT_EQ(bands.Unlabel(0, 220), "nothing");  // the right edge is outside
  EXPECT_EQ(bands.Unlabel(0, 219), "");
  EXPECT_EQ(bands.Unlabel(0, 150), "没有标注文字！不能删");
  bands.Label(0, 1020, "last");  // a click on the sound's end means the stretch up to it
  EXPECT_EQ(bands.Labels(0), Texts({"20000-100000 last"}));
  EXPECT_EQ(bands.Unlabel(0, 1020), "");
}

}  // namespace
}  // namespace parlowen
