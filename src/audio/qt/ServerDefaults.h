#pragma once
#include <QByteArray>

namespace parlowen {

/// The names of the devices that the user has chosen in the system's sound settings, as PulseAudio (or what
/// speaks for it) knows them; empty when there is none or the sound library does not use it. The library's own
/// lists mark no microphone as the default one and do not follow a change of the default loudspeaker.
struct ServerDefaults {
  QByteArray output, input;

  bool Any() const { return !output.isEmpty() || !input.isEmpty(); }
};

/// Asks the server; waits until it answers. Starts none.
ServerDefaults AskServerDefaults();

}  // namespace parlowen
