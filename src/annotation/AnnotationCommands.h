#pragma once
#include <span>
#include <string>

#include "annotation/Annotations.h"
#include "document/SoundDocument.h"
#include "ui/Text.h"
#include "ui/Window.h"

namespace parlowen {

inline constexpr UiText kAnnotationHint = "在分析窗中单击左键，在该处插入国际音标或其他字符；Esc：取消";

/// 40080: the next left click in the analysis pane inserts an annotation.
void BeginAnnotation(Window& window, SoundDocument& document);

/// That click, at a sample: asks for the text, then whether it is the sound's first (Yes empties the list),
/// and inserts. The tool ends here, whatever was answered.
void InsertAnnotation(Window& window, SoundDocument& document, AnnotationState& annotations, int sample);

/// 40079: channel 1 with its annotations, and the contour when it is complete and wanted. The document keeps
/// the name of its sound file. After a failure the old file is whole.
void SaveIpaCommand(Window& window, SoundDocument& document, AnnotationState& annotations);

/// 40078: asks for such a file and loads it.
void OpenIpaCommand(Window& window, SoundDocument& document, CommandStates& states,
                    AnnotationState& annotations);

/// Loads the file by the rules of WAV files: one that is refused for its format leaves its rate behind, else
/// nothing. Positions are brought into the sound; without a pitch block the contour is reset.
void OpenIpaFile(Window& window, SoundDocument& document, CommandStates& states, AnnotationState& annotations,
                 const std::string& path);

/// The annotations of this sound: none when those of another are still there.
std::span<const Annotation> AnnotationsOf(const AnnotationState& annotations, const SoundDocument& document);

}  // namespace parlowen
