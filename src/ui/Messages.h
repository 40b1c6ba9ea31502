#pragma once
#include "ui/Text.h"

/// What more than one room says, in the same words.
namespace parlowen::messages {

// Buttons.
inline constexpr UiText kOk = "确定", kCancel = "取消", kSave = "保存(&S)", kDiscard = "放弃(&D)";
inline constexpr UiText kPlay = "放音", kCompare = "比较", kSaveData = "保存数据", kShowData = "显示数据";

// Units and names.
inline constexpr UiText kSeconds = "秒", kWarning = "警告";
inline constexpr UiText kSelectionStart = "起", kSelectionEnd = "止";

// Files.
inline constexpr UiText kCannotCreate = "不能建立文件！";
inline constexpr UiText kNoSuchFile = "文件不存在！";
inline constexpr UiText kCannotOpen = "文件打开错误";
inline constexpr UiText kCannotOpenListing = "文件打开错误！";
inline constexpr UiText kBadSaveName = "文件夹或文件名不对，请重选";
inline constexpr UiText kBadNameOrSpace = "文件夹或文件名不对（包含空格？），请重选";
inline constexpr UiText kBadNameCaption = "文件夹或文件名错误";
inline constexpr UiText kRestartOrAppend = "从头开始（Yes)?在已有数据中添加（No)？";
inline constexpr UiText kRestartOrAppendCaption = "从头更新数据？";
inline constexpr UiText kSaveFigures = "保存此图的数据吗（Yes/No）？", kSaveFiguresCaption = "保存数据？";
inline constexpr UiText kExportStereo = "导出立体声WAV";

// What is missing or does not fit.
inline constexpr UiText kMarkFirst = "请先用鼠标左、右键选定语音段";
inline constexpr UiText kWrongLength = "语音段太短或太长，请重新选定！";
inline constexpr UiText kNoContour = "请先求出基频！";
inline constexpr UiText kNoPitchInStretch = "所选段没有基频！";
inline constexpr UiText kNoTwoChannels = "没有双声道数据！";
inline constexpr UiText kTooMuchData = "数据太多，不能再加入！";
inline constexpr UiText kTooFewData = "数据太少，不能作图", kTooFewDataCaption = "数据不充分";
inline constexpr UiText kNoGbkCode = "有字符没有 GBK 编码，请改写";

}  // namespace parlowen::messages
