#pragma once
#include <cstdint>
#include <string>

#include "audio/RecorderSettings.h"
#include "document/SoundDocument.h"
#include "shell/MainView.h"
#include "spectral/SpectrogramState.h"
#include "ui/CommandStates.h"
#include "ui/Window.h"

namespace parlowen {

/// Everything the program knows: the document, the results of the rooms, which commands can be chosen. Both
/// programs are one of these and a Window.
class Workstation {
 public:
  /// `dataFolder` holds the help pages.
  Workstation(Window& window, std::string dataFolder);

  /// Runs the command if it is enabled; false when it is greyed or unknown.
  bool dispatchCommand(int number);

  /// Loads a file that was dropped on the window or named at the start.
  void OpenFile(const std::string& path);

  // What the user does in the main window. Everything goes through here, whoever shows the window.
  void Select(int start, int end);
  void Click(Pane pane, Point at, MouseButton button, bool shift);
  /// A key by its name ("S", "Left", "F6", "Space"); false when it means nothing now.
  bool Key(const std::string& key);

  /// To be called after everything that may have changed the document: drops results of an old sound, renews
  /// what is derived from the samples and the view.
  void DocumentChanged();

  Window& window;
  SoundDocument document;
  CommandStates states;
  RecorderSettings recorder;
  SpectrogramState spectrogram;
  MainView view;
  std::string dataFolder;

 private:
  std::uint64_t seenGeneration_ = 0, seenSamples_ = 0;
  int seenCount_ = 0;
};

}  // namespace parlowen
