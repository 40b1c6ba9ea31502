#pragma once
#include <span>
#include <vector>

#include "ui/Needs.h"

namespace parlowen {

/// Rates from here on lose the formant, vowel and frame commands; 22050 Hz keeps them.
inline constexpr int kHighRate = 22100;
/// Samples of the shortest selection that is played.
inline constexpr int kLeastPlayed = 51;

/// What a command needs, by its number.
struct CommandRule {
  int number;
  Needs need;
};

/// Which commands can be chosen now. It is told facts, so that it can stand below the document; which facts a command
/// waits for is in the table of commands, whose rules it is given at the start.
class CommandStates {
 public:
  explicit CommandStates(std::vector<CommandRule> rules = {});

  bool IsEnabled(int command) const;
  std::vector<int> Enabled() const;  ///< ascending
  /// Why the command cannot be chosen now; "" while it can, or when there is no such command.
  UiText MissingFor(int command) const;

  /// A room says that a need of its own commands is met or no longer.
  void Tell(Need need, bool holds = true);
  bool Holds(Need need) const { return facts_.Has(need); }
  Needs Facts() const { return facts_; }
  /// Sets one command enabled or greyed, until a fact that it waits for changes.
  void enableCommand(int command, bool enable = true);

  /// After every load, recording and rate conversion. The clip stays.
  void onSoundLoaded(int sampleRate);
  /// Only the rows that depend on the rate, after it was changed in the settings.
  void onRateChanged(int sampleRate);

  struct SelectionFacts {
    bool defined = false;
    int length = 0;  ///< samples; counts only when defined
    int sampleRate = 0;
    bool pitchPresent = false;
  };
  /// After every change of the selection or the rate.
  void onSelectionChanged(const SelectionFacts& facts);
  /// After every change of the contour.
  void onContourChanged(const SelectionFacts& facts);
  /// Navigation needs a sound longer than the view.
  void onViewChanged(bool soundIsLonger);
  /// A mono or two-channel sound was loaded or recorded.
  void onTwoChannelChanged(bool twoChannel);

  /// Each applies its own list of states, whatever edges are set; the selection rules run at the next mark.
  void onCut();
  void onCopy();
  void onPaste();
  void onUndo();

  /// While a recording runs only its stop can be chosen; behind that the facts go on changing.
  void onRecording(bool running);

 private:
  struct Row {
    CommandRule rule;
    bool enabled;
  };
  const Row* Find(int command) const;

  std::vector<Row> rows_;  ///< ascending
  Needs facts_;
};

}  // namespace parlowen
