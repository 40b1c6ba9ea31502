#pragma once
#include <optional>

namespace parlowen {

/// The argument that makes a program the sound process of another (SoundProcess.h).
inline constexpr const char* kSoundWorkerArgument = "--sound-worker";

/// To be called first in main(): the exit status when this is a sound process, which has then done its work,
/// else nothing. It obeys the messages on standard input with the system's default devices and ends with it.
std::optional<int> RunSoundWorker(int argc, char** argv);

}  // namespace parlowen
