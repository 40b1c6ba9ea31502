#include "measure/MeasureCommands.h"

#include "measure/MeasureRecording.h"
#include "measure/MeasuredSound.h"
#include "ui/Messages.h"
#include "ui/Saving.h"

namespace parlowen {
namespace {

constexpr UiText kTitle = "测量标注段";
constexpr UiText kNoLabels = "没有标注的语音段，不能测量！";

}  // namespace

void MeasureLabelsCommand(Window& window, const MarkerDesk& desk, PitchRange range) {
  const SoundDocument& document = desk.document;
  if (document.sampleCount < 1 || document.sampleRate < kSmallestRate) return;
  std::vector<MeasureRow> rows;
  for (LabelInterval& interval : IntervalsOfMarkers(MarkersOf(desk), document.sampleRate))
    rows.push_back({document.filePath, true, std::move(interval), document.sampleRate});
  if (rows.empty()) return window.Notify(kNoLabels);
  const auto path = AskCsvPath(window, kTitle, document.filePath, "_measures");
  if (!path) return;

  const MeasureSettings settings;
  if (!MeasureRows(document, range, settings, rows,
                   [&window](double share) { return window.Progress(share); }))
    return;
  window.Progress(1.0);
  const MeasureTable table(TableFormat::Csv, settings);
  std::string text = table.Head();
  for (const MeasureRow& row : rows) text += table.RowText(row);
  if (SaveFile(window, *path, {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()}) < 0)
    window.ShowError(messages::kBadSaveName, messages::kBadNameCaption);
}

}  // namespace parlowen
