#pragma once
#include <span>
#include <string_view>
#include <vector>

#include "ui/CommandNumbers.h"
#include "ui/CommandStates.h"

namespace parlowen {

class Workstation;

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
const char* MenuName(Menu menu);

/// What choosing a command means for everything else.
enum class Does {
  StopPlay,          ///< a running play ends before it: it takes another sound in or changes this one
  EndTool,           ///< it is a tool, and ends the one before it
  DrawInPanes,       ///< a chart over the three lower panes gives way to what it draws there
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

/// One command, whole.
struct CommandRow {
  int number;
  Menu menu;
  UiText label;      ///< as it stands in the menu; the bracketed letter is its mnemonic
  const char* keys;  ///< "Ctrl+O", "F5"; "" for none
  DoesSet does;
  Needs need;  ///< when it can be chosen, and what to say when it cannot
  /// Runs the command. Null for a function that is not there yet.
  void (*run)(Workstation&);
};

/// Every command in the order of the menus.
std::span<const CommandRow> CommandTable();

/// The row of a number, or null.
const CommandRow* FindCommand(int number);

/// The row whose key is a function key pressed alone ("F6"), or null. Keys with Ctrl are the menu's.
const CommandRow* CommandOfKey(std::string_view key);

/// What every command needs, for CommandStates.
std::vector<CommandRule> CommandRules();

/// Runs the row's function; one that is not there yet says so and changes nothing.
void RunCommand(Workstation& workstation, const CommandRow& row);

}  // namespace parlowen
