#pragma once
#include <span>
#include <vector>

#include "ui/CommandNumbers.h"
#include "ui/CommandStates.h"
#include "ui/Text.h"

namespace parlowen {

struct Rooms;

/// The menus of the main window, in their order. `Tone` is a submenu of `Pitch`, `Exchange` of `Extension`.
enum class Menu {
  File,
  Sound,
  Pitch,
  Tone,
  Spectrum,
  Vowel,
  Palate,
  TwoChannel,
  Edit,
  Marking,
  Settings,
  Region,
  Help,
  Extension,
  Exchange
};

/// The menu's own name, e.g. "文件".
UiText MenuName(Menu menu);

/// What choosing a command means for everything else.
enum class Does {
  StopPlay,          ///< a running play ends before it: it takes another sound in or changes this one
  EndTool,           ///< it is a tool, and ends the one before it once it has done something
  DrawInPanes,       ///< a chart over the three lower panes gives way to what it has drawn there
  OpenSound,         ///< a file's sound takes the place of the present one: what was not saved is asked about
  RecordSound,       ///< a recording does; it is not saved yet
  SaveSound,         ///< the sound is saved whole
  SaveFirstChannel,  ///< channel 1 is saved, with the annotations
  ReplaceContour,    ///< the sound's contour is computed anew, or thrown away
  ReplaceChart,      ///< a file's vowel chart takes the place of the present one
  SaveChart,
  ReplaceMarkers,  ///< a file's markers take the place of the present ones
  ReplaceAnnotations
};
using DoesSet = FlagSet<Does>;
constexpr DoesSet operator|(Does a, Does b) { return DoesSet(a) | DoesSet(b); }

/// What a row runs: an act that is done whenever it is chosen, or one that says whether it was done. Tools say so, for
/// one that is refused or cancelled ends no other.
class CommandHandler {
 public:
  using Act = void (*)(Rooms&);
  using Try = bool (*)(Rooms&);
  constexpr CommandHandler(Act act) : act_(act) {}      // NOLINT: rows name their function
  constexpr CommandHandler(Try tryIt) : try_(tryIt) {}  // NOLINT

  /// False when nothing was done.
  bool Run(Rooms& rooms) const;

 private:
  Act act_ = nullptr;
  Try try_ = nullptr;
};

/// One command, whole.
struct CommandRow {
  int number;
  Menu menu;
  UiText label;  ///< as it stands in the menu; the bracketed letter is its mnemonic
  /// "Ctrl+O", "F5", "T"; "" for none. Several rows may have one: the first that is enabled is meant. Space is the
  /// exception: it plays what is marked, else everything, and stops.
  const char* keys;
  DoesSet does;
  Needs need;  ///< when it can be chosen, and what to say when it cannot
  CommandHandler run;
  /// Of an option: whether it is on, for the tick beside it. Null for the others.
  bool (*isOn)(const Rooms&) = nullptr;
};

/// Every command in the order of the menus.
std::span<const CommandRow> CommandTable();

/// The row of a number, or null.
const CommandRow* FindCommand(int number);

/// What every command needs, for CommandStates.
std::vector<CommandRule> CommandRules();

}  // namespace parlowen
