#include "articulation/ArticulationPicture.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/Arithmetic.h"
#include "base/Format.h"
#include "ui/Text.h"

// The drawing, from the back to the front:
//   1. the head's outline from forehead to neck, its lower part with the jaw, its lips as far out as they go;
//   2. the passages of the air: nose, mouth and pharynx down to the larynx;
//   3. the tongue;
//   4. hard palate, velum, jaw bone, teeth, lips, epiglottis;
//   5. the blue outline of an estimate, the sign of the voice, the way of the air;
//   6. the lips from the front.

namespace parlowen {
namespace {

constexpr UiText kInitialsTitle = "声母", kFinalsTitle = "韵母";
constexpr UiText kStepLine = "第 %d 步，共 %d 步";
constexpr UiText kFromStretch = "由选定段估计：声道长 %.1f cm，近于 [%s]";
constexpr UiText kFormantLine = "F1 %.0f  F2 %.0f  F3 %.0f  F4 %.0f Hz";
constexpr UiText kLipsEnd = "唇", kGlottisEnd = "声门", kNoAreas = "不能估计截面积";
constexpr UiText kNasalCavity = "鼻腔", kHardPalate = "硬腭", kVelum = "软腭", kTongueName = "舌",
                 kPharynx = "咽";

constexpr int kCellWidth = 60, kCellHeight = 28, kCellColumns = 6, kCellsLeft = 10;
constexpr int kInitialsTop = 40, kFinalsTop = 190;
constexpr int kDrawingLeft = 400, kDrawingSize = 400;
constexpr int kIpaBaseline = 434, kTextBaseline = 432, kEstimateBaseline = 462, kLineHeight = 20;
constexpr int kTubeLeft = 820, kTubeTop = 70, kTubeWidth = 60, kSectionHeight = 34;

// The lines that the tongue's nine points move on: walls at 9, floor at 0.
constexpr Point kWall[] = {{318, 318}, {322, 266}, {320, 214}, {298, 163}, {256, 137},
                           {208, 132}, {166, 148}, {140, 176}, {120, 200}};
constexpr Point kFloor[] = {{266, 322}, {260, 290}, {254, 266}, {246, 250}, {234, 242},
                            {216, 240}, {196, 246}, {176, 254}, {160, 260}};
/// The body of the tongue closes through the floor of the mouth.
constexpr Point kTongueRoot[] = {{152, 282}, {196, 306}, {244, 336}};
constexpr int kStepsASpan = 6;

constexpr int kJawPerOpening = 5, kOutPerProtrusion = 3;
constexpr double kInToTeeth = 9;
constexpr Point kFrontLips = {60, 350};

struct Place {
  double x = 0, y = 0;
};

/// A point of the uniform Catmull-Rom curve through p0 .. p3, a share t behind p1.
Place CurveAt(Place p0, Place p1, Place p2, Place p3, double t) {
  const auto along = [t](double a, double b, double c, double d) {
    return 0.5 *
           (2 * b + (c - a) * t + (2 * a - 5 * b + 4 * c - d) * t * t + (3 * b - a - 3 * c + d) * t * t * t);
  };
  return {along(p0.x, p1.x, p2.x, p3.x), along(p0.y, p1.y, p2.y, p3.y)};
}

/// The curve through all points, `stepsOf` steps a span; `at` gives a point of any number, also beside the ends.
template <typename At, typename StepsOf, typename Cut>
std::vector<Point> CurveThrough(int spans, At at, StepsOf stepsOf, Cut cut) {
  std::vector<Point> line;
  for (int span = 0; span < spans; ++span) {
    const int steps = stepsOf(at(span), at(span + 1));
    for (int step = 0; step < steps; ++step)
      line.push_back(cut(
          CurveAt(at(span - 1), at(span), at(span + 1), at(span + 2), static_cast<double>(step) / steps)));
  }
  return line;
}

// The outlines that nothing is measured on: points some eight pixels apart, or rounding would show as waves.
int FreeSteps(Place from, Place to) {
  return std::max(1, TruncateToInt32(std::hypot(to.x - from.x, to.y - from.y) / 8));
}
Point Rounded(Place place) { return {TruncateToInt32(place.x + 0.5), TruncateToInt32(place.y + 0.5)}; }

std::vector<Point> SmoothLine(const std::vector<Place>& points) {
  const int last = static_cast<int>(points.size()) - 1;
  const auto at = [&](int i) { return points[static_cast<std::size_t>(std::clamp(i, 0, last))]; };
  std::vector<Point> line = CurveThrough(last, at, FreeSteps, Rounded);
  line.push_back(Rounded(points.back()));
  return line;
}

std::vector<Point> SmoothRing(const std::vector<Place>& points) {
  const int count = static_cast<int>(points.size());
  const auto at = [&](int i) { return points[static_cast<std::size_t>((i + count) % count)]; };
  return CurveThrough(count, at, FreeSteps, Rounded);
}

void Append(std::vector<Point>& points, const std::vector<Point>& more) {
  points.insert(points.end(), more.begin(), more.end());
}

/// A filled shape with its outline.
void AddShape(Picture& picture, std::vector<Point> ring, Colour fill, Colour outline, int width = 1) {
  picture.Add(PolygonMark{ring, fill});
  ring.push_back(ring.front());
  picture.Add(PolylineMark{std::move(ring), outline, width});
}

/// How far jaw and lips have moved, in pixels.
struct Reach {
  explicit Reach(const Articulation& articulation)
      : jaw(kJawPerOpening * articulation.lips.opening),
        out(kOutPerProtrusion * articulation.lips.protrusion),
        in(articulation.lipToTeeth ? kInToTeeth : 0) {}
  double jaw, out;
  double in;  ///< the lower lip drawn in against the teeth
  /// A point that goes with the jaw, wholly or by a share.
  Place Low(double x, double y, double share = 1) const { return {x, y + share * jaw}; }
  Place UpperLip(double x, double y) const { return {x - out, y}; }
  Place LowerLip(double x, double y) const { return {x - out + in, y + jaw - in / 3}; }
};

std::vector<Point> UpperLipOf(const Reach& reach) {
  return SmoothRing({{92, 158},
                     reach.UpperLip(82, 176),
                     reach.UpperLip(76, 190),
                     reach.UpperLip(78, 202),
                     reach.UpperLip(88, 206),
                     {102, 203},
                     {106, 188},
                     {104, 168}});
}

std::vector<Point> LowerLipOf(const Reach& reach, bool toTeeth) {
  return SmoothRing({reach.LowerLip(88, 207), reach.LowerLip(78, 212), reach.LowerLip(77, 222),
                     reach.LowerLip(84, 236), reach.Low(100, 250), reach.Low(107, 238),
                     reach.Low(toTeeth ? 109 : 104, toTeeth ? 210 : 216)});
}

void AddHead(Picture& picture, const Reach& reach) {
  // The lips cover where both lines end.
  const auto upper = SmoothLine({{122, 8},
                                 {112, 34},
                                 {104, 56},
                                 {90, 82},
                                 {70, 110},
                                 {54, 130},
                                 {54, 142},
                                 {68, 148},
                                 {88, 151},
                                 {93, 159}});
  const auto lower = SmoothLine({reach.Low(101, 249),
                                 reach.Low(103, 268),
                                 reach.Low(108, 286),
                                 reach.Low(124, 300),
                                 reach.Low(160, 314, 0.9),
                                 reach.Low(206, 332, 0.6),
                                 reach.Low(246, 356, 0.3),
                                 {258, 374},
                                 {262, 394}});
  std::vector<Point> head = upper;
  head.push_back({104, 206});
  Append(head, lower);
  head.push_back({392, 394});
  head.push_back({392, 8});
  picture.Add(PolygonMark{std::move(head), colours::kHead});
  picture.Add(PolylineMark{upper, colours::kHeadLine, 2});
  picture.Add(PolylineMark{lower, colours::kHeadLine, 2});
}

void AddAir(Picture& picture, const Reach& reach, Point tongueRoot) {
  // The nose, from the nostril round the top to the pharynx and back along the palate's upper side.
  const auto nose = SmoothRing({{70, 147},
                                {74, 132},
                                {92, 100},
                                {116, 72},
                                {156, 56},
                                {216, 52},
                                {276, 60},
                                {312, 84},
                                {323, 120},
                                {322, 160},
                                {300, 150},
                                {256, 116},
                                {208, 106},
                                {166, 112},
                                {130, 132},
                                {104, 148},
                                {86, 150}});
  picture.Add(PolygonMark{nose, colours::kAir});
  for (const auto& shell :
       {std::vector<Place>{{134, 104}, {158, 96}, {200, 91}, {240, 93}, {246, 86}, {220, 80}},
        std::vector<Place>{{152, 78}, {184, 72}, {226, 70}, {246, 73}, {240, 64}, {216, 62}}})
    picture.Add(PolylineMark{SmoothLine(shell), colours::kHeadLine, 1});
  // The mouth from lip to lip, the pharynx, the larynx.
  const auto lipsUp = reach.UpperLip(80, 204), lipsDown = reach.LowerLip(80, 210);
  std::vector<Point> mouth;
  for (const Place place : {lipsUp,
                            {104, 202},
                            {121, 190},
                            {140, 176},
                            {166, 148},
                            {208, 132},
                            {256, 128},
                            {300, 130},
                            {322, 130},
                            {322, 340},
                            {319, 362},
                            {316, 394},
                            {284, 394},
                            {282, 366},
                            {276, 350},
                            Place{tongueRoot.x - 4.0, tongueRoot.y + 2.0},
                            {152, 282},
                            reach.Low(146, 272, 0.5),
                            reach.Low(130, 254),
                            reach.Low(112, 236),
                            lipsDown})
    mouth.push_back({TruncateToInt32(place.x), TruncateToInt32(place.y)});
  picture.Add(PolygonMark{mouth, colours::kAir});
  picture.Add(PolylineMark{{{322, 120}, {322, 340}, {319, 362}, {316, 394}}, colours::kHeadLine, 2});
  picture.Add(PolylineMark{SmoothLine({{276, 350}, {282, 366}, {284, 394}}), colours::kHeadLine, 2});
}

void AddTongue(Picture& picture, const TongueShape& tongue) {
  std::vector<Point> body = TongueContour(tongue);
  const std::vector<Point> surface = body;
  body.insert(body.end(), std::begin(kTongueRoot), std::end(kTongueRoot));
  AddShape(picture, std::move(body), colours::kTongue, colours::kTongueLine);
  picture.Add(PolylineMark{surface, colours::kTongueLine, 2});
}

void AddPalate(Picture& picture, bool velumDown) {
  // Upper jaw and hard palate along the wall, the nose above it.
  const auto palate = SmoothRing({{106, 178},
                                  {108, 194},
                                  {122, 192},
                                  {140, 176},
                                  {166, 148},
                                  {208, 132},
                                  {256, 137},
                                  {258, 112},
                                  {208, 104},
                                  {166, 110},
                                  {130, 130},
                                  {106, 150}});
  AddShape(picture, palate, colours::kPalateTissue, colours::kHeadLine);
  const auto bone = SmoothRing({{116, 176},
                                {132, 166},
                                {160, 140},
                                {206, 125},
                                {248, 129},
                                {246, 116},
                                {206, 109},
                                {166, 116},
                                {134, 138},
                                {114, 156}});
  AddShape(picture, bone, colours::kBone, colours::kBoneLine);
  const auto velum = velumDown ? SmoothRing({{256, 112},
                                             {274, 124},
                                             {290, 141},
                                             {301, 158},
                                             {307, 178},
                                             {308, 198},
                                             {303, 206},
                                             {298, 199},
                                             {299, 182},
                                             {298, 163},
                                             {278, 148},
                                             {256, 137}})
                               : SmoothRing({{256, 112},
                                             {282, 107},
                                             {306, 116},
                                             {321, 130},
                                             {322, 148},
                                             {313, 160},
                                             {309, 182},
                                             {304, 191},
                                             {299, 183},
                                             {298, 163},
                                             {278, 148},
                                             {256, 137}});
  AddShape(picture, velum, colours::kPalateTissue, colours::kHeadLine, 2);
}

void AddJawAndTeeth(Picture& picture, const Reach& reach) {
  const auto bone =
      SmoothRing({reach.Low(112, 248), reach.Low(127, 246), reach.Low(133, 262), reach.Low(131, 282),
                  reach.Low(120, 291), reach.Low(111, 280), reach.Low(109, 262)});
  AddShape(picture, bone, colours::kBone, colours::kBoneLine);
  const auto upper = SmoothRing({{107, 182}, {121, 186}, {119, 202}, {111, 217}, {107, 212}, {105, 198}});
  AddShape(picture, upper, colours::kTooth, colours::kBoneLine);
  const auto lower = SmoothRing({reach.Low(112, 252), reach.Low(109, 234), reach.Low(113, 219),
                                 reach.Low(117, 221), reach.Low(123, 236), reach.Low(125, 250)});
  AddShape(picture, lower, colours::kTooth, colours::kBoneLine);
}

void AddEpiglottis(Picture& picture, const TongueShape& tongue) {
  const Point root = TongueContour(tongue).front();
  const double x = root.x, y = root.y;
  const auto leaf = SmoothRing(
      {{276, 350}, {x + 2, y + 4}, {x + 7, y - 18}, {x + 12, y - 16}, {x + 10, y + 8}, {284, 356}});
  AddShape(picture, leaf, colours::kPalateTissue, colours::kHeadLine);
}

/// Vocal folds that vibrate are a wave, others two lines apart.
void AddVoice(Picture& picture, bool voiced) {
  if (!voiced) {
    picture.Add(LineMark{{284, 378}, {292, 378}, colours::kTongueLine, 3});
    picture.Add(LineMark{{309, 378}, {317, 378}, colours::kTongueLine, 3});
    return;
  }
  PolylineMark wave{{}, colours::kTongueLine, 2};
  for (int i = 0; i <= 8; ++i) wave.points.push_back({284 + 4 * i, i % 2 == 0 ? 374 : 382});
  picture.Add(std::move(wave));
}

/// The tongue touches somewhere and no air passes at its sides.
bool IsClosed(const Articulation& articulation) {
  return !articulation.lateral && std::any_of(articulation.tongue.begin(), articulation.tongue.end(),
                                              [](double height) { return height >= 9; });
}

/// Where the air leaves: an arrow before the nose when the velum is down, else one before open lips.
void AddAirflow(Picture& picture, const Articulation& articulation, const Reach& reach) {
  const auto arrow = [&](Point from, Point to, Point left, Point right) {
    picture.Add(LineMark{from, to, colours::kAirflow, 2});
    picture.Add(PolylineMark{{left, to, right}, colours::kAirflow, 2});
  };
  if (articulation.velumDown) {
    arrow({68, 152}, {48, 170}, {50, 160}, {58, 170});
  } else if (articulation.lips.opening > 0 && !IsClosed(articulation)) {
    const int x = TruncateToInt32(66 - reach.out), y = TruncateToInt32(207 + reach.jaw / 2);
    arrow({x, y}, {x - 24, y}, {x - 17, y - 6}, {x - 17, y + 6});
  }
}

OvalMark FrontOval(int width, int height, Colour fill, Colour outline, bool filled) {
  return {kFrontLips.x - width / 2, kFrontLips.y - height / 2, width, height, fill, filled, outline};
}

void AddFrontLips(Picture& picture, const LipShape& lips, bool filled, Colour outline) {
  picture.Add(FrontOval(TruncateToInt32(46 + 6 * lips.width), TruncateToInt32(24 + 6 * lips.opening),
                        colours::kLips, outline, filled));
  picture.Add(FrontOval(TruncateToInt32(30 + 6 * lips.width), TruncateToInt32(6 * lips.opening),
                        colours::kMouthInside, outline, filled));
}

void AddNames(Picture& picture, bool velumDown) {
  const auto name = [&](int x, int y, UiText text) {
    picture.Add(TextMark{x, y, text, colours::kPartName, 11, Anchor::Middle});
  };
  name(282, 88, kNasalCavity);
  name(194, 124, kHardPalate);
  name(346, 158, kVelum);
  picture.Add(LineMark{{332, 154}, {velumDown ? 304 : 314, 154}, colours::kPartName});
  name(206, 284, kTongueName);
  name(338, 244, kPharynx);
}

void AddCell(Picture& picture, const MandarinSound& sound, int left, int top, bool chosen) {
  BoxMark box{left, top, kCellWidth, kCellHeight, chosen ? colours::kSelection : colours::kWhite};
  box.outlined = true;
  box.outline = chosen ? colours::kViewEdge : colours::kGrid;
  picture.Add(box);
  // The apical vowels are written as i; what tells them apart is their sign.
  const std::string key = sound.key;
  const std::string label = key == "i1" || key == "i2" ? "-i[" + std::string(sound.ipa) + "]" : key;
  picture.Add(
      TextMark{left + kCellWidth / 2, top + 19, label, colours::kText, 14, Anchor::Middle, Face::Ipa});
}

Point CellOf(int sound) {
  const int i = sound < kInitials ? sound : sound - kInitials;
  return {kCellsLeft + kCellWidth * (i % kCellColumns),
          (sound < kInitials ? kInitialsTop : kFinalsTop) + kCellHeight * (i / kCellColumns)};
}

void AddTube(Picture& picture, const TractEstimate& estimate) {
  const int middle = kTubeLeft + kTubeWidth / 2;
  picture.Add(TextMark{middle, kTubeTop - 8, kLipsEnd, colours::kText, 12, Anchor::Middle});
  const int foot = kTubeTop + static_cast<int>(kTubeSections) * kSectionHeight;
  picture.Add(TextMark{middle, foot + 16, kGlottisEnd, colours::kText, 12, Anchor::Middle});
  if (!estimate.areas) {
    picture.Add(TextMark{kTubeLeft, foot + 36, kNoAreas, colours::kText, 12});
    return;
  }
  for (std::size_t i = 0; i < kTubeSections; ++i) {
    const double area = (*estimate.areas)[kTubeSections - 1 - i];
    const int width = std::max(1, TruncateToInt32(area * kTubeWidth));
    BoxMark section{middle - width / 2, kTubeTop + static_cast<int>(i) * kSectionHeight, width,
                    kSectionHeight, colours::kTube};
    section.outlined = true;
    section.outline = colours::kEstimate;
    picture.Add(section);
  }
}

}  // namespace

std::vector<Point> TongueContour(const TongueShape& tongue) {
  const auto at = [&](int number) -> Place {
    const auto i = static_cast<std::size_t>(std::clamp(number, 0, static_cast<int>(kTongueLines) - 1));
    return {kFloor[i].x + (kWall[i].x - kFloor[i].x) * tongue[i] / 9,
            kFloor[i].y + (kWall[i].y - kFloor[i].y) * tongue[i] / 9};
  };
  const auto cut = [](Place place) { return Point{TruncateToInt32(place.x), TruncateToInt32(place.y)}; };
  constexpr int kLast = static_cast<int>(kTongueLines) - 1;
  std::vector<Point> line = CurveThrough(
      kLast, at, [](Place, Place) { return kStepsASpan; }, cut);
  line.push_back(cut(at(kLast)));
  return line;
}

Picture HeadPicture(const Articulation& articulation, bool voiced, const TractEstimate* estimate) {
  Picture picture{kDrawingSize, kDrawingSize, {}};
  const Reach reach(articulation);
  AddHead(picture, reach);
  AddAir(picture, reach, TongueContour(articulation.tongue).front());
  AddEpiglottis(picture, articulation.tongue);
  AddTongue(picture, articulation.tongue);
  AddPalate(picture, articulation.velumDown);
  AddJawAndTeeth(picture, reach);
  AddShape(picture, UpperLipOf(reach), colours::kLips, colours::kLipLine);
  AddShape(picture, LowerLipOf(reach, articulation.lipToTeeth), colours::kLips, colours::kLipLine);
  AddVoice(picture, voiced);
  AddAirflow(picture, articulation, reach);
  AddNames(picture, articulation.velumDown);
  AddFrontLips(picture, articulation.lips, true, colours::kLipLine);
  if (estimate != nullptr) {
    picture.Add(PolylineMark{TongueContour(estimate->tongue), colours::kEstimate, 2});
    AddFrontLips(picture, estimate->lips, false, colours::kEstimate);
  }
  return picture;
}

Picture ArticulationPicture(const ArticulationState& state, int width, int height) {
  Picture picture{width, height, {}};
  const MandarinSound& sound = state.Sound();
  picture.Add(TextMark{kCellsLeft, kInitialsTop - 10, kInitialsTitle, colours::kText, 14});
  picture.Add(TextMark{kCellsLeft, kFinalsTop - 10, kFinalsTitle, colours::kText, 14});
  for (int i = 0; i < kMandarinSounds; ++i)
    AddCell(picture, MandarinSounds()[static_cast<std::size_t>(i)], CellOf(i).x, CellOf(i).y,
            i == state.sound);
  const int last = LastStepOf(sound);
  if (last > 0)
    picture.Add(TextMark{kCellsLeft, kFinalsTop + 7 * kCellHeight + 24,
                         Format(kStepLine.Get(), state.step, last), colours::kText, 13});
  const TractEstimate* estimate = state.estimate ? &*state.estimate : nullptr;
  picture.AddAt(HeadPicture(ArticulationAt(sound, state.step), sound.voiced, estimate), kDrawingLeft, 0);
  picture.Add(TextMark{kDrawingLeft + 10, kIpaBaseline, "[" + std::string(sound.ipa) + "]", colours::kText,
                       26, Anchor::Left, Face::Ipa});
  picture.Add(TextMark{kDrawingLeft + 120, kTextBaseline, sound.description, colours::kText, 16});
  if (estimate == nullptr) return picture;
  picture.Add(TextMark{kDrawingLeft + 10, kEstimateBaseline,
                       Format(kFromStretch.Get(), estimate->length, estimate->nearest.c_str()),
                       colours::kEstimate, 13});
  const FourFormants& f = estimate->formants;
  picture.Add(TextMark{kDrawingLeft + 10, kEstimateBaseline + kLineHeight,
                       Format(kFormantLine.Get(), f[0], f[1], f[2], f[3]), colours::kEstimate, 13});
  AddTube(picture, *estimate);
  return picture;
}

int SoundUnder(Point at) {
  for (int i = 0; i < kMandarinSounds; ++i) {
    const Point cell = CellOf(i);
    if (at.x >= cell.x && at.x < cell.x + kCellWidth && at.y >= cell.y && at.y < cell.y + kCellHeight)
      return i;
  }
  return -1;
}

}  // namespace parlowen
