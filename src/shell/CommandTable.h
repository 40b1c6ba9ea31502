#pragma once
#include <span>

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

/// One command. The bracketed letters of a label are its mnemonic, as they stand.
struct CommandRow {
  int number;
  Menu menu;
  const char* label;
  /// Runs the command. Null for a function that is not there yet.
  void (*run)(Workstation&);
};

/// Every command in the order of the menus.
std::span<const CommandRow> CommandTable();

/// The row of a number, or null.
const CommandRow* FindCommand(int number);

/// Runs the row's function; one that is not there yet says so and changes nothing.
void RunCommand(Workstation& workstation, const CommandRow& row);

}  // namespace parlowen
