#include "ui/CommandStates.h"

#include <algorithm>

namespace parlowen {
namespace {

constexpr UiText kRecordingRuns = "正在录音";

}  // namespace

CommandStates::CommandStates(std::vector<CommandRule> rules) {
  facts_.Set(Need::NoStatistics, true);
  std::sort(rules.begin(), rules.end(),
            [](const CommandRule& a, const CommandRule& b) { return a.number < b.number; });
  for (const CommandRule& rule : rules) rows_.push_back({rule, facts_.Has(rule.need)});
}

const CommandStates::Row* CommandStates::Find(int command) const {
  const auto at = std::lower_bound(rows_.begin(), rows_.end(), command,
                                   [](const Row& row, int number) { return row.rule.number < number; });
  return at != rows_.end() && at->rule.number == command ? &*at : nullptr;
}

bool CommandStates::IsEnabled(int command) const {
  const Row* row = Find(command);
  return row != nullptr && row->enabled && (!Holds(Need::Recording) || row->rule.need.Has(Need::Recording));
}

std::vector<int> CommandStates::Enabled() const {
  std::vector<int> enabled;
  for (const Row& row : rows_)
    if (IsEnabled(row.rule.number)) enabled.push_back(row.rule.number);
  return enabled;
}

UiText CommandStates::MissingFor(int command) const {
  const Row* row = Find(command);
  if (row == nullptr || IsEnabled(command)) return {};
  for (int i = 0; i < static_cast<int>(Need::kCount); ++i)
    if (const Need need{i}; row->rule.need.Has(need) && !Holds(need)) return ReasonOf(need);
  return kRecordingRuns;
}

void CommandStates::Tell(Need need, bool holds) {
  facts_.Set(need, holds);
  for (const Row& row : rows_)
    if (row.rule.need.Has(need)) enableCommand(row.rule.number, facts_.Has(row.rule.need));
  if (need == Need::Statistics) Tell(Need::NoStatistics, !holds);
}

void CommandStates::enableCommand(int command, bool enable) {
  for (Row& row : rows_)
    if (row.rule.number == command) row.enabled = enable;
}

void CommandStates::onSoundLoaded(int sampleRate) {
  Tell(Need::Sound);
  onRateChanged(sampleRate);
  for (const Need need : {Need::Selection, Need::EditableSelection, Need::ClearableSelection,
                          Need::PlayableSelection, Need::Undo, Need::PalateFile, Need::Region})
    Tell(need, false);
}

void CommandStates::onRateChanged(int sampleRate) {
  const bool low = sampleRate < kHighRate;
  Tell(Need::LowRate, low);
  if (low) Tell(Need::LowRateOnce);
}

void CommandStates::onSelectionChanged(const SelectionFacts& facts) {
  for (const Need need : {Need::Selection, Need::EditableSelection, Need::ClearableSelection})
    Tell(need, facts.defined);
  Tell(Need::PlayableSelection, facts.defined && facts.length >= kLeastPlayed);
  Tell(Need::MarkedAtLowRate, facts.sampleRate < kHighRate);
  onContourChanged(facts);
}

void CommandStates::onContourChanged(const SelectionFacts& facts) { Tell(Need::Contour, facts.pitchPresent); }

void CommandStates::onViewChanged(bool soundIsLonger) { Tell(Need::LongSound, soundIsLonger); }

void CommandStates::onTwoChannelChanged(bool twoChannel) { Tell(Need::TwoChannelFile, twoChannel); }

void CommandStates::onCut() {
  Tell(Need::Clip);
  Tell(Need::Undo);
  Tell(Need::EditableSelection, false);
  Tell(Need::ClearableSelection, false);
}

void CommandStates::onCopy() { Tell(Need::Clip); }

void CommandStates::onPaste() {
  Tell(Need::EditableSelection, false);
  Tell(Need::ClearableSelection);
  Tell(Need::Undo);
}

void CommandStates::onUndo() { Tell(Need::Undo, false); }

void CommandStates::onRecording(bool running) { Tell(Need::Recording, running); }

}  // namespace parlowen
