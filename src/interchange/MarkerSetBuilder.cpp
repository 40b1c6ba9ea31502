#include "interchange/MarkerSetBuilder.h"

#include <algorithm>
#include <cmath>

#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "base/Utf8.h"

namespace parlowen {
namespace {

constexpr double kFarOutside = 1e12;       // samples
constexpr std::size_t kMostLooked = 1000;  // bytes of a text: far more than any that fits

}  // namespace

std::int64_t SampleAt(double seconds, int sampleRate) {
  return std::llround(std::clamp(seconds * sampleRate, -kFarOutside, kFarOutside));
}

std::string FittingText(std::string_view utf8, int maxBytes, ImportLosses& losses) {
  std::string text(CutUtf8(utf8, kMostLooked));
  // A line end is one blank, CRLF too.
  for (std::size_t at = 0; (at = text.find("\r\n", at)) != std::string::npos;) text.erase(at, 1);
  for (char& character : text)
    if (static_cast<unsigned char>(character) < ' ' || character == '\x7F') character = ' ';
  if (text.find_first_not_of(' ') == std::string::npos) return {};
  const std::string gbk = IpaToGbk(text);
  // No character's second byte is a question mark.
  if (std::count(gbk.begin(), gbk.end(), '?') != std::count(text.begin(), text.end(), '?')) ++losses.recoded;
  const std::string_view cut = CutGbk(gbk, static_cast<std::size_t>(maxBytes));
  if (cut.size() < gbk.size() || utf8.size() > kMostLooked) ++losses.shortened;
  return IpaFromGbk(cut);
}

bool MarkerSetBuilder::HasMarker(int band, int sample) const {
  const auto markers = set_.Markers(band);
  return std::find(markers.begin(), markers.end(), sample) != markers.end();
}

bool MarkerSetBuilder::IsInsideLabel(int band, int sample) const {
  const auto labels = set_.Labels(band);
  return std::any_of(labels.begin(), labels.end(), [sample](const MarkerLabel& label) {
    return label.start < sample && sample < label.end;
  });
}

bool MarkerSetBuilder::AddMarker(int band, int sample) {
  if (HasMarker(band, sample)) return true;
  if (IsFull(band)) return false;
  std::int16_t& count = set_.markerCount[Index(band)];
  std::int32_t* first = set_.markerPos.data() + band * kMarkersPerBand;
  first[count++] = sample;
  std::sort(first, first + count);
  return true;
}

bool MarkerSetBuilder::IsStretch(int band, int start, int end) const {
  if (start != 0 && !HasMarker(band, start)) return false;
  if (end != sampleCount_ && !HasMarker(band, end)) return false;
  const auto markers = set_.Markers(band);
  return std::none_of(markers.begin(), markers.end(),
                      [=](int marker) { return start < marker && marker < end; });
}

bool MarkerSetBuilder::AddLabel(int band, int start, int end, std::string text) {
  std::int16_t& count = set_.labelCount[Index(band)];
  if (count == kLabelsPerBand) return false;
  set_.labels[static_cast<std::size_t>(band * kLabelsPerBand + count++)] = {start, end, std::move(text)};
  return true;
}

}  // namespace parlowen
