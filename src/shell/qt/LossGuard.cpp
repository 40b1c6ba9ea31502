#include "shell/qt/LossGuard.h"

#include <algorithm>

#include "annotation/MarkerSet.h"
#include "document/SoundDocument.h"

namespace parlowen {
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

bool LossGuard::CommandEnded(const CommandRow& command, int setbacks) {
  const bool done = setbacks == setbacksBefore_;
  const DoesSet does = command.does;
  const bool opened = does.Has(Does::OpenSound) && document_.soundGeneration != generationBefore_;
  const bool savesWhole =
      does.Has(Does::SaveSound) || (does.Has(Does::SaveFirstChannel) && !document_.twoChannel);
  if (opened || (savesWhole && done)) TakeSoundAsUnchanged();
  const bool openedChart = does.Has(Does::ReplaceChart) && done;
  if (openedChart || (does.Has(Does::SaveChart) && done)) TakeChartAsUnchanged();
  return opened || openedChart;
}

void LossGuard::TakeSoundAsUnchanged() { unchangedVersion_ = document_.samplesVersion; }

void LossGuard::TakeChartAsUnchanged() {
  unchangedPoints_.assign(chart_.points.begin(), chart_.points.begin() + chart_.count);
}

}  // namespace parlowen
