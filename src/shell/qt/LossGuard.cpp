#include "shell/qt/LossGuard.h"

#include <algorithm>

#include "annotation/Annotations.h"
#include "annotation/MarkerSet.h"
#include "document/SoundDocument.h"
#include "document/SoundFileCommands.h"

namespace parlowen {
bool LossGuard::Replaces(const CommandRow& command, Work work) {
  const DoesSet does = command.does;
  const bool sound = does.Has(Does::OpenSound) || does.Has(Does::RecordSound);
  switch (work) {
    case Work::Sound: return sound;
    case Work::Contour: return sound || does.Has(Does::ReplaceContour);
    case Work::Markers: return sound || does.Has(Does::ReplaceMarkers);
    case Work::Annotations: return sound || does.Has(Does::ReplaceAnnotations);
    case Work::Chart: return does.Has(Does::ReplaceChart);
  }
  return false;
}

LossGuard::LossGuard(const SoundDocument& document, const VowelChart& chart, const MarkerState& markers,
                     const AnnotationState& annotations)
    : document_(document), chart_(chart), markers_(markers), annotations_(annotations) {
  TakeSoundAsUnchanged();
}

bool LossGuard::Unsaved(Work work) const {
  switch (work) {
    case Work::Sound:
      return document_.samplesVersion != unchangedVersion_ &&
             !(document_.sampleCount == 0 && document_.filePath.empty());
    case Work::Contour: return document_.HasRepairedContour();
    case Work::Markers:
      return markers_.changed && markers_.sound == document_.Stamp() && markers_.set.HasMarkers();
    case Work::Annotations: return annotations_.changed && annotations_.sound == document_.Stamp();
    case Work::Chart:
      return chart_.count > 0 && !std::equal(chart_.points.begin(), chart_.points.begin() + chart_.count,
                                             unchangedPoints_.begin(), unchangedPoints_.end(),
                                             [](const VowelPoint& a, const VowelPoint& b) {
                                               return a.shape == b.shape && a.f1 == b.f1 && a.f2 == b.f2 &&
                                                      a.f3 == b.f3;
                                             });
  }
  return false;
}

bool LossGuard::AnythingUnsaved() const {
  return std::any_of(std::begin(kWorks), std::end(kWorks), [this](Work work) { return Unsaved(work); });
}

LossGuard::SavingLoss LossGuard::LossBySaving() const {
  const std::string path = PathToSave(document_);
  const auto present = StampOf(path);
  if (path.empty() || !present) return SavingLoss::None;
  if (path != document_.filePath) return SavingLoss::AnotherSound;
  if (document_.IsPartOfFile()) return SavingLoss::RestOfFile;
  return present == stamp_ ? SavingLoss::None : SavingLoss::LaterChanges;
}

void LossGuard::CommandBegins(int setbacks, int filesSaved) {
  soundBefore_ = document_.Stamp();
  setbacksBefore_ = setbacks;
  filesSavedBefore_ = filesSaved;
}

bool LossGuard::CommandEnded(const CommandRow& command, int setbacks, int filesSaved) {
  const DoesSet does = command.does;
  const bool wrote = filesSaved != filesSavedBefore_;
  const bool opened = does.Has(Does::OpenSound) && document_.Stamp() != soundBefore_;
  const bool saved = does.Has(Does::SaveSound) && wrote;
  if (opened || saved) stamp_ = StampOf(document_.filePath);
  const bool savedElsewhere = does.Has(Does::SaveFirstChannel) && wrote && !document_.twoChannel;
  if (opened || saved || savedElsewhere) TakeSoundAsUnchanged();
  const bool openedChart = does.Has(Does::ReplaceChart) && setbacks == setbacksBefore_;
  if (openedChart || (does.Has(Does::SaveChart) && wrote)) TakeChartAsUnchanged();
  return opened || openedChart;
}

void LossGuard::TakeSoundAsUnchanged() { unchangedVersion_ = document_.samplesVersion; }

void LossGuard::TakeChartAsUnchanged() {
  unchangedPoints_.assign(chart_.points.begin(), chart_.points.begin() + chart_.count);
}

}  // namespace parlowen
