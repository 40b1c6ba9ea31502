#include "shell/headless/ProsodyValues.h"

#include "base/Files.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"

namespace parlowen {
namespace {

template <typename Range>
std::string NumbersJson(const Range& values) {
  return JsonList(values, [](double value) { return ShortestNumber(value); });
}

std::string HertzJson(const TonePoints& semitones) {
  return NumbersJson(ToneScale{ToneAxis::Hertz, {}, {}}.Of(semitones));
}

std::string GroupJson(const ToneState& tones, const ToneGroup& group) {
  const ToneScale scale = tones.Scale();
  TonePoints low, high;
  for (std::size_t p = 0; p < kTonePoints; ++p) {
    low[p] = group.mean[p] - group.deviation[p];
    high[p] = group.mean[p] + group.deviation[p];
  }
  return JsonObject()
      .Text("name", IpaFromGbk(group.name))
      .Integer("items", static_cast<long long>(group.items.size()))
      .Number("ms", group.milliseconds)
      .Number("msSd", group.millisecondsDeviation)
      .Text("digits", tones.statistics.DigitsOf(group))
      .Raw("points", NumbersJson(scale.Of(group.mean)))
      .Raw("low", NumbersJson(scale.Of(low)))
      .Raw("high", NumbersJson(scale.Of(high)))
      .Done();
}

std::string ItemJson(const ToneItem& item) {
  return JsonObject()
      .Text("group", IpaFromGbk(item.group))
      .Text("sound", FromGbk(item.sound))
      .Integer("start", item.start)
      .Integer("end", item.end)
      .Integer("first", item.first)
      .Number("ms", item.Milliseconds())
      .Raw("hz", HertzJson(item.points))
      .Done();
}

std::string LineJson(const std::optional<IntonationLine>& line) {
  return line ? NumbersJson(std::to_array({line->slope, line->atStart})) : std::string("null");
}

std::string UnitJson(const IntonationUnit& unit) {
  return JsonObject()
      .Text("name", unit.name)
      .Integer("start", unit.start)
      .Integer("end", unit.end)
      .Integer("frames", unit.frames)
      .Number("time", unit.time)
      .Number("duration", unit.duration)
      .Number("top", unit.top)
      .Number("base", unit.base)
      .Number("range", unit.range)
      .Number("mean", unit.mean)
      .Number("qTop", unit.qTop)
      .Number("qBase", unit.qBase)
      .Number("durationRatio", unit.durationRatio)
      .Number("energyRatio", unit.energyRatio)
      .Done();
}

}  // namespace

void DegreeValue(const DegreeState& degree, JsonObject& event) {
  event.Number("min", degree.range.lowHertz)
      .Number("max", degree.range.highHertz)
      .Raw("curves", JsonList(degree.curves, [&](const DegreeCurve& curve) {
             const TonePoints t = ToneTs(curve.points, degree.range);
             return JsonObject()
                 .Integer("start", curve.start)
                 .Integer("end", curve.end)
                 .Integer("first", curve.first)
                 .Number("ms", curve.milliseconds)
                 .Raw("hz", HertzJson(curve.points))
                 .Raw("t", NumbersJson(t))
                 .Text("digits", ToneDigits(t))
                 .Done();
           }));
}

void TonesValue(const ToneState& tones, JsonObject& event) {
  constexpr const char* kAxes[kToneAxes] = {"T", "D", "st", "Hz", "LZ"};
  constexpr const char* kModes[] = {"", "pattern", "group"};
  const bool group = tones.view == ToneView::Group;
  event.Integer("open", tones.open)
      .Text("file", tones.open ? FileNameOf(tones.path) : std::string())
      .Text("axis", kAxes[static_cast<int>(tones.axis)])
      .Number("min", tones.statistics.range.lowHertz)
      .Number("max", tones.statistics.range.highHertz)
      .Text("mode", kModes[static_cast<int>(tones.view)])
      .Text("group", group ? IpaFromGbk(tones.group) : std::string())
      .Integer("picked", tones.picked)
      .Raw("groups",
           JsonList(tones.statistics.groups, [&](const ToneGroup& each) { return GroupJson(tones, each); }))
      .Raw("items", JsonList(tones.items, ItemJson));
}

void IntonationValue(const IntonationState& state, JsonObject& event) {
  const Intonation intonation = state.result.value_or(Intonation{});
  const SemitoneSpan domain = intonation.Domain();
  event.Raw("start", state.result ? IntegerText(intonation.start) : "null")
      .Raw("end", state.result ? IntegerText(intonation.end) : "null")
      .Number("min", intonation.sentence.low)
      .Number("max", intonation.sentence.high)
      .Raw("domain", NumbersJson(std::to_array({domain.low, domain.high})))
      .Raw("topLine", LineJson(intonation.topLine))
      .Raw("baseLine", LineJson(intonation.baseLine))
      .Raw("units", JsonList(intonation.units, UnitJson))
      .Raw("points", JsonList(intonation.closeCopy, [](const MelodyPoint& point) {
             return NumbersJson(std::to_array({point.Seconds(), point.semitones}));
           }));
}

}  // namespace parlowen
