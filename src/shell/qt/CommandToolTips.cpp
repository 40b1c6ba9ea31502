#include "shell/qt/CommandToolTips.h"

#include <algorithm>
#include <iterator>

#include "base/Format.h"
#include "document/SoundDocument.h"
#include "ui/CommandStates.h"

namespace parlowen {
namespace {

constexpr int kLeastPlayed = 51;  // samples

struct Need {
  int command;
  const char* text;
};
constexpr Need kNeeds[] = {
    {40027, "声音不长于一屏"},
    {40013, "声音不长于一屏"},
    {40014, "声音不长于一屏"},
    {272, "没有录音设备"},
    {40022, "没有录音设备"},
    {40112, "没有录音设备"},
    {274, "没有在录音"},
    {40025, "没有在放音"},
    {40103, "请先求出基频"},
    {40003, "先剪切或复制一段"},
    {40036, "没有可撤消的剪切或粘贴"},
    {40029, "先结束正在进行的统计"},
    {40030, "先进入某基频统计"},
    {40035, "先选择统计语料"},
    {40031, "先进入某基频统计"},
    {40032, "先进入某基频统计"},
    {40034, "先进入某基频统计"},
    {40037, "先进入某基频统计"},
    {40059, "先在元音图中加入点"},
    {40072, "先在元音图中加入点"},
    {40085, "先画元音图"},
    {40061, "先打开腭位数据文件"},
    {40049, "先打开腭位数据文件"},
    {40087, "先打开腭位数据文件"},
    {40088, "先打开腭位数据文件"},
    {40111, "先打开双声道文件"},
    {40113, "先打开双声道文件"},
    {40114, "先打开双声道文件"},
    {40015, "先用“区域选择”拖出一个区域"},
    {41030, "先求长时平均功率谱"},
    {41031, "先在元音图中加入点"},
    {41035, "先打开双声道文件"},
};
constexpr int kNeedSelection[] = {160,   40024, 40081, 40001, 40002, 40040, 40004, 40006, 40007,
                                  40074, 40050, 40052, 40056, 40067, 40068, 41026, 41029};
constexpr int kNeedContour[] = {40050, 40052, 41024, 41025, 41027};
constexpr int kNeedLowRate[] = {40081, 40056, 40067, 40068, 212,   40089, 40057, 40051, 40069, 40073, 40082,
                                40070, 40058, 40033, 40095, 40096, 40062, 40063, 40064, 40029, 41026, 41029};
constexpr int kPlaySelection[] = {160, 40024, 40081};
constexpr int kWithoutSound[] = {272, 40022, 40112, 274, 40025, 40111, 40113, 40114, 41035};

template <std::size_t N>
bool IsOneOf(const int (&commands)[N], int command) {
  return std::find(std::begin(commands), std::end(commands), command) != std::end(commands);
}

}  // namespace

QString MissingFor(int command, const SoundDocument& document, const CommandStates& states) {
  if (states.IsEnabled(command)) return {};
  if (document.sampleCount == 0 && !IsOneOf(kWithoutSound, command)) return "先打开声音文件";
  if (IsOneOf(kNeedLowRate, command) && document.sampleRate >= kHighRate) return "采样频率≥22100Hz，请先转换";
  if (IsOneOf(kNeedSelection, command) && !document.selectionDefined()) return "先用左、右键选定一段";
  if (IsOneOf(kPlaySelection, command) && document.SelectionLength() < kLeastPlayed)
    return "选定的段短于51个样点";
  if (IsOneOf(kNeedContour, command)) return "请先求出基频";
  const auto need = std::find_if(std::begin(kNeeds), std::end(kNeeds),
                                 [command](const Need& n) { return n.command == command; });
  return need != std::end(kNeeds) ? QString(need->text) : QString("现在不能使用");
}

QString UndoToolTip(const SoundDocument& document) {
  if (document.undoKind == 0 || document.sampleRate <= 0) return {};
  const double rate = document.sampleRate;
  return QString::fromStdString(Format("可撤消：%s %.2f 秒（%.2f 秒处）",
                                       document.undoKind == 1 ? "剪切" : "粘贴", document.undoLength / rate,
                                       document.undoPosition / rate));
}

QString PlainLabel(const char* label) { return QString(label).remove('&'); }

}  // namespace parlowen
