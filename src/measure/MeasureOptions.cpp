#include "measure/MeasureOptions.h"

#include <algorithm>
#include <charconv>
#include <functional>
#include <iterator>

namespace parlowen {
namespace {

constexpr std::string_view kRanges[] = {"auto", "144-600", "96-400", "64-280"};  // in the order of PitchRange

bool ReadPoints(const std::string& text, int& points) {
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), points);
  return error == std::errc() && end == text.data() + text.size() && points >= kFewestPoints &&
         points <= kMostPoints;
}

bool ReadRange(const std::string& text, std::optional<PitchRange>& range) {
  const auto found = std::find(std::begin(kRanges), std::end(kRanges), text);
  if (found == std::end(kRanges)) return false;
  range = static_cast<PitchRange>(found - std::begin(kRanges));
  return true;
}

/// Names with commas or blanks between them.
bool ReadMeasures(std::string_view text, MeasureSet& measures) {
  measures = 0;
  while (!text.empty()) {
    const std::size_t end = std::min(text.find_first_of(", "), text.size());
    const auto found = std::find(std::begin(kMeasureGroups), std::end(kMeasureGroups), text.substr(0, end));
    if (end > 0 && found == std::end(kMeasureGroups)) return false;
    if (end > 0) measures |= 1u << (found - std::begin(kMeasureGroups));
    text.remove_prefix(std::min(end + 1, text.size()));
  }
  return measures != 0;
}

struct Option {
  std::string_view name;
  const char* need;  ///< what a value has to be
  std::function<bool(const std::string&)> take;
};

}  // namespace

std::string ReadMeasureOptions(std::span<const char* const> arguments, MeasureOptions& options) {
  MeasureJob& job = options.job;
  const auto oneOf = [](const std::string& value, const char* first, const char* second, auto take) {
    if (value != first && value != second) return false;
    take(value == second);
    return true;
  };
  const Option known[] = {
      {"--labels", "a file", [&](const auto& value) { return !(job.labels = value).empty(); }},
      {"--tier", "a name", [&](const auto& value) { return job.tiers.push_back(value), true; }},
      {"--points", "a number from 2 to 100",
       [&](const auto& value) { return ReadPoints(value, job.settings.points); }},
      {"--range", "auto, 144-600, 96-400 or 64-280",
       [&](const auto& value) { return ReadRange(value, job.range); }},
      {"--measures", "some of time,level,pitch,formants,voice,consonant",
       [&](const auto& value) { return ReadMeasures(value, job.settings.measures); }},
      {"--channel", "1 or 2",
       [&](const auto& value) {
         return oneOf(value, "1", "2", [&](bool second) { job.channel = second ? 2 : 1; });
       }},
      {"--format", "csv or jsonl",
       [&](const auto& value) {
         return oneOf(value, "csv", "jsonl", [&](bool second) {
           options.format = second ? TableFormat::JsonLines : TableFormat::Csv;
         });
       }},
      {"--output", "a file", [&](const auto& value) { return !(options.output = value).empty(); }},
  };
  bool optionsEnded = false;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    const std::string argument = arguments[i];
    if (optionsEnded || argument.size() < 2 || argument[0] != '-') {
      options.recordings.push_back(argument);
      continue;
    }
    if (argument == "--") {
      optionsEnded = true;
      continue;
    }
    if (argument == "--help" || argument == "-h") options.help = true;
    if (argument == "--version") options.version = true;
    if (options.help || options.version) return {};
    const std::size_t equals = argument.find('=');
    const std::string name = argument.substr(0, equals);
    const auto option =
        std::find_if(std::begin(known), std::end(known), [&](const Option& o) { return o.name == name; });
    if (option == std::end(known)) return "unknown option " + name;
    const bool joined = equals != std::string::npos;
    if ((!joined && i + 1 == arguments.size()) ||
        !option->take(joined ? argument.substr(equals + 1) : arguments[++i]))
      return name + " needs " + option->need;
  }
  if (options.recordings.empty()) return "no recording";
  if (!job.labels.empty() && options.recordings.size() > 1) return "--labels belongs to one recording";
  return {};
}

}  // namespace parlowen
