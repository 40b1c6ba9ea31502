#pragma once
#include <cstdint>
#include <vector>

#include "shell/CommandTable.h"
#include "vowel/VowelChart.h"

namespace parlowen {

struct MarkerState;
class SoundDocument;

/// Knows whether the sound, its markers and the vowel chart were changed after they were opened or saved.
class LossGuard {
 public:
  LossGuard(const SoundDocument& document, const VowelChart& chart, const MarkerState& markers);

  bool SoundChanged() const;
  /// Without points there is nothing to lose. Coordinates do not count: they are chosen anew at will.
  bool ChartChanged() const;
  /// A set without markers cannot be saved: nothing is lost with it.
  bool MarkersChanged() const;
  /// To be called before and after every command, with the failures and cancelled file dialogs so far. A
  /// command that opens a sound leaves it unchanged when a new one is there; one that saves it, and those
  /// that open or save a chart, when nothing failed or was cancelled.
  void CommandBegins(int setbacks);
  /// True when a sound or chart was opened.
  bool CommandEnded(const CommandRow& command, int setbacks);

 private:
  void TakeSoundAsUnchanged();
  void TakeChartAsUnchanged();

  const SoundDocument& document_;
  const VowelChart& chart_;
  const MarkerState& markers_;
  std::uint64_t unchangedVersion_ = 0;
  std::vector<VowelPoint> unchangedPoints_;
  std::uint64_t generationBefore_ = 0;
  int setbacksBefore_ = 0;
};

}  // namespace parlowen
