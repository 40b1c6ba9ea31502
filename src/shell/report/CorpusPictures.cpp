#include "shell/report/CorpusPictures.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <set>
#include <utility>

#include "base/Format.h"

namespace parlowen {
namespace {

constexpr UiText kDurationTitle = "时长分布", kF0Title = "平均基频分布", kFormantTitle = "第一、第二共振峰";
constexpr UiText kSeconds = "秒", kHertz = "Hz", kPercent = "%", kF2Name = "F2(Hz)", kF1Name = "F1(Hz)";
constexpr UiText kNoValues = "没有数据", kNoTierName = "（无层名）", kOtherTiers = "其他层";
constexpr UiText kOutside = "图外 %zu 点";

constexpr PlotStyle kStyle{.text = 12, .name = 12, .tick = 5};
constexpr PlotBox kBox{60, 56, 520, 324};
constexpr int kDot = 4;
constexpr double kOutermost = 0.01;  // share of formants at either end that may lie outside the axes
constexpr int kLeastOfName = 5, kMostNames = 24, kLongestName = 12;

/// The first characters of a text, which is UTF-8.
std::string Shortened(const std::string& text) {
  std::size_t end = 0, characters = 0;
  for (; end < text.size(); ++end)
    if ((static_cast<unsigned char>(text[end]) & 0xC0) != 0x80 && ++characters > kLongestName) break;
  return end == text.size() ? text : text.substr(0, end) + "…";
}

std::string TierName(const CorpusValues& values, std::size_t index) {
  if (values.moreTiers && index + 1 == values.tiers.size()) return kOtherTiers;
  const std::string& name = values.tiers[index].name;
  return name.empty() ? std::string(kNoTierName) : Shortened(name);
}

Picture Frame(const UiText& title) {
  Picture picture{kCorpusPictureWidth, kCorpusPictureHeight, {}};
  picture.Add(TextMark{kBox.left, 24, title, colours::kText, 15});
  return picture;
}

/// What a tier's colour means, and how many rows it has there.
void AddKey(Picture& picture, const CorpusValues& values, std::size_t index, std::size_t rows) {
  const int x = kBox.Right() + 20, y = kBox.top + 12 + static_cast<int>(index) * 34;
  const Colour colour = CurveStyleOf(static_cast<int>(index)).colour;
  picture.Add(BoxMark{x, y - 8, 10, 10, colour});
  picture.Add(TextMark{x + 16, y, TierName(values, index), colours::kText, kStyle.name});
  picture.Add(
      TextMark{x + 16, y + 14, Format("n = %zu", rows), colours::kText, 10, Anchor::Left, Face::Figures});
}

Picture Distribution(const CorpusValues& values, const UiText& title, const UiText& unit,
                     std::vector<float> CorpusValues::Tier::*field) {
  Picture picture = Frame(title);
  std::vector<float> all;
  for (const CorpusValues::Tier& tier : values.tiers)
    all.insert(all.end(), (tier.*field).begin(), (tier.*field).end());
  PlotScale columns{0, 1, kBox.left, kBox.left + kBox.width};
  if (!ScaleAround(all, columns)) {
    picture.Add(TextMark{kBox.left, kBox.top + 20, kNoValues, colours::kText, kStyle.name});
    return picture;
  }
  // Few rows in narrow steps would be a row of needles.
  const int steps = all.size() < 300 ? 13 : all.size() < 3000 ? 26 : 52;
  double highest = 1;
  std::vector<std::vector<double>> shares;
  for (const CorpusValues::Tier& tier : values.tiers) {
    shares.push_back(SharesOf(tier.*field, columns, steps));
    highest = std::max(highest, *std::max_element(shares.back().begin(), shares.back().end()));
  }
  const PlotScale rows{0, highest * 1.05, kBox.Bottom(), kBox.top};
  AddLevelAxis(picture, RoundTicks(rows, 40), {kBox.left, kBox.Right(), kBox.left - 6}, kStyle);
  picture.Add(TextMark{kBox.left - 6, kBox.top - 8, kPercent, colours::kText, kStyle.name, Anchor::Right});
  AddColumnAxis(picture, columns, RoundTicks(columns, 40), kBox.Bottom() + 1, kStyle, unit);
  for (std::size_t t = 0; t < shares.size(); ++t) {
    AddKey(picture, values, t, (values.tiers[t].*field).size());
    if ((values.tiers[t].*field).empty()) continue;
    PolylineMark line{{{kBox.left, kBox.Bottom()}}, CurveStyleOf(static_cast<int>(t)).colour, 2};
    for (int k = 0; k < steps; ++k) {
      const int y = rows.PixelOf(shares[t][static_cast<std::size_t>(k)]);
      line.points.push_back({kBox.left + k * kBox.width / steps, y});
      line.points.push_back({kBox.left + (k + 1) * kBox.width / steps, y});
    }
    line.points.push_back({kBox.Right() + 1, kBox.Bottom()});
    picture.Add(std::move(line));
  }
  return picture;
}

/// From the multiple of `step` under the values to the one over them, the outermost left out.
PlotScale StepsAround(std::vector<float> values, double step, int from, int to) {
  std::sort(values.begin(), values.end());
  const auto out = static_cast<std::size_t>(kOutermost * static_cast<double>(values.size()) + 0.5);
  const double least = values[out], most = values[values.size() - 1 - out];
  return {std::floor(least / step) * step, (std::floor(most / step) + 1) * step, from, to};
}

float MedianOf(std::vector<float> values) {
  const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
  std::nth_element(values.begin(), middle, values.end());
  return *middle;
}

struct NamedPlace {
  std::string name;
  float f1 = 0, f2 = 0;
  std::size_t rows = 0;
};

/// Labels with enough rows, the most frequent first.
std::vector<NamedPlace> NamedPlaces(const CorpusValues& values) {
  std::vector<NamedPlace> places;
  for (const CorpusValues::Tier& tier : values.tiers) {
    std::vector<std::array<std::vector<float>, 2>> formants(tier.labels.size());
    for (const CorpusValues::Vowel& vowel : tier.vowels) {
      if (vowel.label < 0) continue;
      formants[static_cast<std::size_t>(vowel.label)][0].push_back(vowel.f1);
      formants[static_cast<std::size_t>(vowel.label)][1].push_back(vowel.f2);
    }
    for (std::size_t i = 0; i < formants.size(); ++i)
      if (formants[i][0].size() >= kLeastOfName)
        places.push_back({Shortened(tier.labels[i]), MedianOf(formants[i][0]), MedianOf(formants[i][1]),
                          formants[i][0].size()});
  }
  std::stable_sort(places.begin(), places.end(),
                   [](const NamedPlace& a, const NamedPlace& b) { return a.rows > b.rows; });
  if (places.size() > kMostNames) places.resize(kMostNames);
  return places;
}

}  // namespace

bool ScaleAround(std::span<const float> values, PlotScale& scale) {
  if (values.empty()) return false;
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  const auto power = [](double value) { return std::pow(10, std::floor(std::log10(value))); };
  double first = power(*least), last = 10 * power(*most);
  for (const double step : {2.0, 5.0})
    if (step * power(*least) <= *least) first = step * power(*least);
  for (const double step : {5.0, 2.0})
    if (step * power(*most) >= *most) last = step * power(*most);
  scale.first = first;
  scale.last = last > first ? last : 10 * first;
  scale.logarithmic = true;
  return true;
}

std::vector<double> SharesOf(std::span<const float> values, const PlotScale& scale, int steps) {
  std::vector<double> shares(static_cast<std::size_t>(steps));
  for (const float value : values) {
    const double place = scale.DistanceOf(value) * steps / std::abs(scale.to - scale.from);
    const int step = static_cast<int>(std::clamp(place, 0.0, steps - 1.0));
    shares[static_cast<std::size_t>(step)] += 100.0 / static_cast<double>(values.size());
  }
  return shares;
}

Picture DurationDistribution(const CorpusValues& values) {
  return Distribution(values, kDurationTitle, kSeconds, &CorpusValues::Tier::durations);
}

Picture F0Distribution(const CorpusValues& values) {
  return Distribution(values, kF0Title, kHertz, &CorpusValues::Tier::f0);
}

Picture FormantDistribution(const CorpusValues& values) {
  Picture picture = Frame(kFormantTitle);
  std::vector<float> f1, f2;
  for (const CorpusValues::Tier& tier : values.tiers)
    for (const CorpusValues::Vowel& vowel : tier.vowels) {
      f1.push_back(vowel.f1);
      f2.push_back(vowel.f2);
    }
  if (f1.empty()) {
    picture.Add(TextMark{kBox.left, kBox.top + 20, kNoValues, colours::kText, kStyle.name});
    return picture;
  }
  // As in the vowel chart: open vowels below, front ones left.
  const PlotScale columns = StepsAround(f2, 500, kBox.Right(), kBox.left);
  const PlotScale rows = StepsAround(f1, 200, kBox.top, kBox.Bottom());
  std::vector<Tick> across = RoundTicks(columns, 50);
  std::reverse(across.begin(), across.end());
  AddColumnAxis(picture, columns, across, kBox.Bottom() + 1, kStyle, kF2Name);
  AddLevelAxis(picture, RoundTicks(rows, 40), {kBox.left, kBox.Right(), kBox.left - 6}, kStyle);
  picture.Add(TextMark{kBox.left - 6, kBox.top - 8, kF1Name, colours::kText, kStyle.name, Anchor::Middle});
  std::set<std::pair<int, int>> taken;
  std::size_t outside = 0;
  for (std::size_t t = 0; t < values.tiers.size(); ++t) {
    AddKey(picture, values, t, values.tiers[t].vowels.size());
    for (const CorpusValues::Vowel& vowel : values.tiers[t].vowels) {
      if (!columns.Holds(vowel.f2) || !rows.Holds(vowel.f1)) {
        ++outside;
        continue;
      }
      const int x = columns.PixelOf(vowel.f2) / kDot * kDot, y = rows.PixelOf(vowel.f1) / kDot * kDot;
      if (!taken.insert({x, y}).second) continue;
      const Colour colour = CurveStyleOf(static_cast<int>(t)).colour;
      picture.Add(OvalMark{x, y, kDot, kDot, colour, true, colour});
    }
  }
  if (outside > 0)
    picture.Add(
        TextMark{kBox.Right() + 20, kBox.Bottom(), Format(kOutside.Get(), outside), colours::kText, 10});
  // All grounds before all names, so that close ones stay to be seen.
  std::vector<TextMark> names;
  for (const NamedPlace& place : NamedPlaces(values)) {
    if (!columns.Holds(place.f2) || !rows.Holds(place.f1)) continue;
    const int x = columns.PixelOf(place.f2), y = rows.PixelOf(place.f1);
    const int width = TextWidth(place.name, 14) + 6;
    picture.Add(BoxMark{x - width / 2, y - 11, width, 18, colours::kWhite, 0.6});
    names.push_back(TextMark{x, y + 3, place.name, colours::kText, 14, Anchor::Middle, Face::Ipa});
  }
  for (TextMark& name : names) picture.Add(std::move(name));
  return picture;
}

}  // namespace parlowen
