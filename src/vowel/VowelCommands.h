#pragma once
#include <string>

#include "document/SoundDocument.h"
#include "ui/Window.h"
#include "vowel/VowelState.h"

namespace parlowen {

/// Tells the states what depends on the chart's points and on `activity`.
void UpdateVowelCommands(const VowelDesk& desk);

// The charts. False from a command that was refused or cancelled.

bool SegmentChartCommand(Window& window, const VowelDesk& desk);  ///< 40056
bool PointChartCommand(Window& window, const VowelDesk& desk);    ///< 40057
/// 40059: takes the last point away, or measures it again with a correction of its formants.
bool UndoPointCommand(Window& window, const VowelDesk& desk);
bool ChoosePointShapeCommand(Window& window, VowelState& vowels);                              ///< 40070
void ClearChartCommand(Window& window, const VowelDesk& desk);                                 ///< 40058
bool AverageVowelsCommand(Window& window, const SoundDocument& document, VowelState& vowels);  ///< 40085
bool TypePointCommand(Window& window, const VowelDesk& desk);                                  ///< 40062

/// A click in the amplitude pane at that sample while the point chart is shown.
void ClickVowel(Window& window, const VowelDesk& desk, int sample);

/// The keys of the point chart and the group plot, in capitals: M toggles numbers or names, L draws the chart
/// anew without averages, B returns from the plot to the chart. False when the key means nothing there.
bool VowelKey(Window& window, const VowelDesk& desk, const std::string& key);
/// Leaves the group plot for the chart, the chart for the panes.
void LeaveChart(Window& window, const VowelDesk& desk);

/// Pairs that may be typed: 150 ≤ F1 ≤ 1500, 420 ≤ F2 ≤ 4000 Hz, F1 < F2.
bool MayBeTyped(int f1, int f2);

// Files.

void SaveChartCommand(Window& window, VowelState& vowels);     ///< 40072
bool OpenChartCommand(Window& window, const VowelDesk& desk);  ///< 40073
/// The same for a file that was chosen otherwise.
bool OpenChartFile(Window& window, const VowelDesk& desk, const std::string& path);
/// 40082: reads a chart and lists it as "VchDt.txt" in `exportFolder`.
void ListChartCommand(Window& window, const VowelDesk& desk, const std::string& exportFolder);
void SaveFormantsCommand(Window& window, const SoundDocument& document);  ///< 40068
/// 40069: lists a formant file as "Formant.txt" in `exportFolder`.
void ListFormantsCommand(Window& window, const SoundDocument& document, const std::string& exportFolder);

}  // namespace parlowen
