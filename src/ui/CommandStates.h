#pragma once
#include <initializer_list>
#include <set>
#include <vector>

namespace parlowen {

/// Rates from here on lose the formant, vowel and frame commands; 22050 Hz keeps them.
inline constexpr int kHighRate = 22100;

/// Which commands can be chosen now. It is told facts, so that it can stand below the document.
class CommandStates {
 public:
  /// Start of the program: open, quit, help, about, and what the services offer without a sound.
  CommandStates();

  bool IsEnabled(int command) const {
    return recording_ ? command == kStopRecording : enabled_.contains(command);
  }
  void enableCommand(int command, bool enable = true);
  void Enable(std::initializer_list<int> commands) {
    for (int c : commands) enableCommand(c);
  }
  void Grey(std::initializer_list<int> commands) {
    for (int c : commands) enableCommand(c, false);
  }
  std::vector<int> Enabled() const;  ///< ascending

  /// After every load, recording and rate conversion.
  void onSoundLoaded(int sampleRate, bool pitchStatisticsOpen = false);
  /// Only the groups that depend on the rate, after it was changed in the settings.
  void onRateChanged(int sampleRate, bool pitchStatisticsOpen = false);

  struct SelectionFacts {
    bool defined = false;
    int length = 0;  ///< samples; counts only when defined
    int sampleRate = 0;
    bool pitchPresent = false;
  };
  /// After every change of the selection or the rate.
  void onSelectionChanged(const SelectionFacts& facts);
  /// After every change of the contour: the rows that need one.
  void onContourChanged(const SelectionFacts& facts);
  /// Navigation needs a sound longer than the view.
  void onViewChanged(bool soundIsLonger);
  void onTwoChannelChanged(bool twoChannel);

  void onCut();
  void onCopy();
  void onPaste();
  void onUndo();

  /// While a recording runs only its stop can be chosen; behind that the states go on changing.
  void onRecording(bool running) { recording_ = running; }

 private:
  void EnableByRate(int sampleRate);
  static constexpr int kStopRecording = 274;
  std::set<int> enabled_;
  bool recording_ = false;
};

}  // namespace parlowen
