#include "ui/Needs.h"

#include <iterator>

namespace parlowen {
namespace {

constexpr UiText kNoSound = "先打开声音文件", kNoTwoChannels = "先打开双声道文件",
                 kHighRateSound = "采样频率≥22100Hz，请先转换", kNothingMarked = "先用左、右键选定一段",
                 kNoPoints = "先在元音图中加入点";

/// In the order of Need.
constexpr UiText kReasons[] = {
    "没有在录音",
    "没有在放音",
    "没有录音设备",
    kNoTwoChannels,
    kNoTwoChannels,
    "先打开腭位数据文件",
    kNoSound,
    kNoSound,
    kHighRateSound,
    kHighRateSound,
    kHighRateSound,
    kNothingMarked,
    kNothingMarked,
    kNothingMarked,
    "选定的段短于51个样点",
    "请先求出基频",
    "声音不长于一屏",
    "先剪切或复制一段",
    "没有可撤消的剪切或粘贴",
    "先用“区域选择”拖出一个区域",
    "先画元音图",
    kNoPoints,
    kNoPoints,
    "先结束正在进行的统计",
    "先进入某基频统计",
    "先画语谱图",
    "先打开腭位数据文件或导入腭位帧",
    "先求长时平均功率谱",
    "先估计声门波",
    "先选择统计语料",
    "先做语调分析",
};
static_assert(std::size(kReasons) == static_cast<std::size_t>(Need::kCount));

}  // namespace

UiText ReasonOf(Need need) { return kReasons[static_cast<std::size_t>(need)]; }

}  // namespace parlowen
