#include "shell/qt/LossGuard.h"

#include <algorithm>
#include <iterator>

#include "annotation/MarkerSet.h"
#include "document/SoundDocument.h"

namespace parlowen {
namespace {

constexpr int kOpening[] = {110, 40093, 40078, 40060, 40110, 40116};
constexpr int kRecording[] = {272, 40022, 40112};
constexpr int kSavingAnnotations = 40079;
constexpr int kSaving[] = {120, 130, 40113, kSavingAnnotations};
constexpr int kOpeningChart[] = {40073, 40082};
constexpr int kSavingChart[] = {40072};
constexpr int kImportTextGrid = 41020, kImportLabels = 41022;

template <std::size_t N>
bool IsOneOf(const int (&commands)[N], int command) {
  return std::find(std::begin(commands), std::end(commands), command) != std::end(commands);
}

}  // namespace

bool LossGuard::Replaces(int command) { return IsOneOf(kOpening, command) || IsOneOf(kRecording, command); }

bool LossGuard::ReplacesChart(int command) { return IsOneOf(kOpeningChart, command); }

bool LossGuard::ReplacesMarkers(int command) {
  return command == kImportTextGrid || command == kImportLabels;
}

bool LossGuard::ReplacesAnnotations(int command) { return command == kImportTextGrid; }

LossGuard::LossGuard(const SoundDocument& document, const VowelChart& chart, const MarkerState& markers)
    : document_(document), chart_(chart), markers_(markers) {
  TakeSoundAsUnchanged();
}

bool LossGuard::SoundChanged() const { return document_.samplesVersion != unchangedVersion_; }

bool LossGuard::MarkersChanged() const {
  return markers_.changed && markers_.generation == document_.soundGeneration && markers_.set.HasMarkers();
}

bool LossGuard::ChartChanged() const {
  if (chart_.count == 0) return false;
  return !std::equal(chart_.points.begin(), chart_.points.begin() + chart_.count, unchangedPoints_.begin(),
                     unchangedPoints_.end(), [](const VowelPoint& a, const VowelPoint& b) {
                       return a.shape == b.shape && a.f1 == b.f1 && a.f2 == b.f2 && a.f3 == b.f3;
                     });
}

void LossGuard::CommandBegins(int setbacks) {
  generationBefore_ = document_.soundGeneration;
  setbacksBefore_ = setbacks;
}

void LossGuard::CommandEnded(int command, int setbacks) {
  const bool done = setbacks == setbacksBefore_;
  const bool opened = IsOneOf(kOpening, command) && document_.soundGeneration != generationBefore_;
  // An annotation file holds one channel.
  const bool savedWhole =
      IsOneOf(kSaving, command) && !(command == kSavingAnnotations && document_.twoChannel);
  if (opened || (savedWhole && done)) TakeSoundAsUnchanged();
  if ((IsOneOf(kOpeningChart, command) || IsOneOf(kSavingChart, command)) && done) TakeChartAsUnchanged();
}

bool LossGuard::FileOpened(bool chart, int setbacks) {
  const bool opened = chart ? setbacks == setbacksBefore_ : document_.soundGeneration != generationBefore_;
  if (opened) chart ? TakeChartAsUnchanged() : TakeSoundAsUnchanged();
  return opened;
}

void LossGuard::TakeSoundAsUnchanged() { unchangedVersion_ = document_.samplesVersion; }

void LossGuard::TakeChartAsUnchanged() {
  unchangedPoints_.assign(chart_.points.begin(), chart_.points.begin() + chart_.count);
}

}  // namespace parlowen
