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

/// Everything the program knows: the document, the results of the rooms, which commands can be chosen. The handlers of
/// the command table work on it.
struct Rooms {
  /// `rules` are the table's, for the command states; `dataFolder` holds the help pages.
  Rooms(Window& window, std::string dataFolder, SoundDevices devices, std::vector<CommandRule> rules);

  /// To be told every edit: moves what keeps to the sound.
  void Follow(const Edit& edit);
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
  /// Plays a stretch between two markers; the second without a box where there is no device.
  PlayStretch playStretch, playInPassing;
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
  bool PlayFile(const std::string& path);

  std::vector<std::int16_t> fileSamples_;  ///< of the file that is played
};

}  // namespace parlowen
