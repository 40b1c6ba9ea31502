#pragma once
#include <cstdint>
#include <string>
#include <vector>

#include "annotation/Annotations.h"
#include "annotation/EditFollowing.h"
#include "annotation/InsertedCharacters.h"
#include "annotation/MarkerSet.h"
#include "annotation/MarkerWindow.h"
#include "articulation/ArticulationWindow.h"
#include "audio/Player.h"
#include "audio/Recorder.h"
#include "audio/RecorderSettings.h"
#include "audio/SoundDevice.h"
#include "channels/ChannelsState.h"
#include "channels/ChannelsWindow.h"
#include "document/SoundDocument.h"
#include "interchange/ExchangeCommands.h"
#include "palatography/PalateCommands.h"
#include "palatography/PalateState.h"
#include "pitch/PitchCommands.h"
#include "prosody/GroupFlow.h"
#include "prosody/IntonationState.h"
#include "prosody/ProsodyDesk.h"
#include "prosody/ToneState.h"
#include "shell/MainView.h"
#include "spectral/ConsonantCommands.h"
#include "spectral/FrameState.h"
#include "spectral/LtaCommands.h"
#include "spectral/SpectrogramState.h"
#include "synthesis/SynthesisState.h"
#include "ui/CommandStates.h"
#include "ui/Window.h"
#include "voice/GlottalCommands.h"
#include "vowel/VowelState.h"

namespace parlowen {

/// Everything the program knows: the document, the results of the rooms, which commands can be chosen. Both
/// programs are one of these and a Window.
class Workstation {
 public:
  /// `dataFolder` holds the help pages.
  Workstation(Window& window, std::string dataFolder, SoundDevices devices = {});

  /// Runs the command if it is enabled; false when it is greyed or unknown.
  bool dispatchCommand(int number);

  /// A saving command of the table, greyed or not: work that is about to be lost may be out of sight.
  bool Save(int number);

  /// Loads a file that was dropped on the window or named at the start: what `OpeningCommand` would do with
  /// it.
  void OpenFile(const std::string& path);
  /// The command that opens a file of this name; names of no kind of ours are taken to be sounds.
  static int OpeningCommand(const std::string& path);

  // What the user does in the main window. Everything goes through here, whoever shows the window.
  void Select(int start, int end);
  void Click(Pane pane, Point at, MouseButton button, bool shift);
  /// A key by its name ("S", "Left", "F6", "Space"); false when it means nothing now.
  bool Key(const std::string& key);

  /// To be called after everything that may have changed the document: drops results of an old sound, renews
  /// what is derived from the samples and the view.
  void DocumentChanged();

  /// To be told every edit: moves what keeps to the sound.
  void Follow(const Edit& edit);

  /// To be called when the selection may have moved: windows that speak of the marked frames follow it.
  void SelectionMoved();
  /// To be called when a microphone has come or gone: enables or greys the recordings.
  void InputDevicesChanged();
  /// Puts the cursor where the play is; false when nothing plays.
  bool MoveCursor();
  /// What the exchange with other programs works on.
  MarkerDesk MarkersToExchange();
  /// What the commands of the palates work on.
  PalateDesk PalatesToShow();
  /// Where a file of a fixed name is written: in `exportFolder`.
  std::string ExportPath(const std::string& name) const;

  Window& window;
  SoundDocument document;
  CommandStates states;
  RecorderSettings recorder;
  SpectrogramState spectrogram;
  PitchState pitch;
  LpcAnalyser lpc;
  FrameState frames;
  LtaState lta;
  ConsonantState consonant;
  PalateState palate;
  PalateView palateView;
  ChannelsState channels;
  /// Plays one channel; empty while there is no player.
  PlayChannel playChannel;
  GlottalState glottal;
  SynthesisState synthesis;
  /// Reads a melody of another program's file; empty where there is no reader.
  TargetReader readTarget;
  /// Plays a stretch between two markers.
  PlayStretch playStretch;
  ArticulationState articulation;
  /// Plays a file beside the document.
  PlaySoundFile playSoundFile;
  VowelState vowels;
  MarkerState markers;
  AnnotationState annotations;
  InsertedCharacters characters;
  MainView view;
  CurrentGroup durationGroup;
  DegreeState degree;
  ToneState tones;
  IntonationState intonation;
  std::string dataFolder;
  std::string exportFolder;  ///< where text exports and settings go; "" is the current directory
  /// What the windows of tones and intonation ask of the other rooms.
  ProsodyDesk prosody;
  Player player;
  Recorder recording;

 private:
  FirstBand ReadFirstBand();
  void UpdateDerived();
  /// Whatever carries the stamp of another sound goes.
  void DropOldResults();
  /// Tells the command states what no room tells them as it happens.
  void TellStates();

  bool PlayFile(const std::string& path);

  std::vector<std::int16_t> fileSamples_;  ///< of the file that is played
  SoundInput* input_;
  SoundStamp seenSound_;
  std::uint64_t seenSamples_ = 0;
};

}  // namespace parlowen
