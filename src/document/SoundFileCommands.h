#pragma once
#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "base/Files.h"
#include "document/SoundDocument.h"
#include "ui/Text.h"
#include "ui/Window.h"

namespace parlowen {

/// The longest path a file dialog gives back, in bytes.
inline constexpr std::size_t kLongestPath = 255;

enum class ChannelMode { One, Two };

/// Asks for a sound file and loads it. In two-channel mode only stereo files are taken, otherwise a stereo
/// file gives its left channel. A failed load leaves the document, but for the rate of a file whose rate is
/// usable. The second filter lets a file without "RIFF" in as raw samples.
void openInteractive(Window& window, SoundDocument& document, CommandStates& states, ChannelMode mode);

/// Loads the named file with the canonical 44-byte header, or as raw 16-bit mono when it has no "RIFF".
void openByName(Window& window, SoundDocument& document, CommandStates& states, const std::string& path);

/// The reading half of `openInteractive`, for a file that is already chosen (dropped, named at the start).
void openPath(Window& window, SoundDocument& document, CommandStates& states, const std::string& path,
              ChannelMode mode, bool rawAllowed);

/// Reads what lies behind the samples of a sound that has just been loaded, from a byte offset on (−1:
/// nothing can lie there), and sets the contour.
using TailReader = std::function<void(std::int64_t offset)>;

/// The same for one channel of an open file that has records of its own behind the samples; a rate that is
/// not usable makes it no WAV file.
void openWithRecords(Window& window, SoundDocument& document, CommandStates& states, const InputFile& file,
                     const std::string& path, const TailReader& readTail);

/// Writes the document; asks for a name when there is none or `saveAs` is set. A contour that is complete is
/// offered to go with it. After a failure the old file is whole.
void saveSound(Window& window, SoundDocument& document, bool saveAs);

/// Where a save without a dialog would write; "" when it would ask.
std::string PathToSave(const SoundDocument& document);

/// Asks under what name a sound is to be saved; ".wav" is appended when it is missing. A cancelled dialog and
/// a name that is too long are refused with a message.
std::optional<std::string> AskSoundName(Window& window, const std::string& title,
                                        const std::string& proposed);
inline constexpr UiText kSaveUnderOtherName = "文件换名存为...";

/// Whether the contour, which is complete, goes into the file.
std::optional<bool> AskToKeepPitch(Window& window);

/// The message of a sound file that could not be written.
void SayCannotSave(Window& window);

/// The dialog that asks for a whole second, prefilled with `seconds`; nothing when it was cancelled.
std::optional<int> AskStartSecond(Window& window, int seconds);

/// The main window's title over a file.
std::string CaptionFor(const std::string& path);
inline constexpr const char* kProgramCaption = "Parlowen(Tessiran)";

}  // namespace parlowen
