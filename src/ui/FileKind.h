#pragma once
#include <cstddef>
#include <string_view>

#include "ui/CommandNumbers.h"
#include "ui/Text.h"

namespace parlowen {

/// A kind of file, for everything that meets files by their names: dialogs, drops, the command line, the
/// questions about loss.
struct FileKind {
  UiText label;                ///< in the list of a file dialog
  const char* pattern = "";    ///< "*.wav": matched in either case
  const char* extension = "";  ///< "wav": what a name without one gets, as it is to be written
  /// Whether the desktop's save dialog asks before it takes the place of a file. Not where files of the kind
  /// are added to: there the handler asks itself.
  bool asksBeforeReplacing = true;
  /// The command that opens such a file when it is dropped, chosen among the recent ones or named at the
  /// start. It tells what is lost by that as well. 0: not opened so.
  int open = 0;
  std::string_view name{};  ///< for FileKindNamed
};

/// Every kind: a new one is one row. Where two rows have one extension, the first that is opened counts for
/// names.
inline constexpr FileKind kFileKinds[] = {
    {"声音文件(*.wav)", "*.wav", "wav", true, commands::kOpenSound, "wav"},
    {"无格式单声道16位声音文件(*.*)", "*.*", "", true, 0, "raw"},
    {"声音波形文件(*.wav)", "*.wav", "wav", true, 0, "saved wav"},
    {"声音数据文件(*.wav)", "*.wav", "wav", true, 0, "marked wav"},
    {"NSP文件(*.nsp)", "*.nsp", "nsp", true, commands::kOpenTwoChannelNsp, "nsp"},
    {"国际音标数据文件(*.ipa)", "*.ipa", "ipa", true, commands::kOpenIpa, "ipa"},
    {"国际音标文件(*.ipa)", "*.ipa", "ipa", true, 0, "saved ipa"},
    {"基频数据文件(*.pdt)", "*.pdt", "pdt", false, 0, "pdt"},
    {"共振峰数据文件(*.fmt)", "*.fmt", "fmt", false, 0, "fmt"},
    {"元音图数据文件(*.vch)", "*.vch", "vch", true, commands::kOpenChart, "vch"},
    {"元音统计数据文件(*.vls)", "*.vls", "vls", false, 0, "vls"},
    {"音长统计数据文件(*.lgs)", "*.lgs", "lgs", false, 0, "lgs"},
    {"声调统计数据文件(*.pit)", "*.pit", "pit", false, 0, "pit"},
    {"声调统计结果文件(*.bin)", "*.bin", "bin", true, 0, "bin"},
    {"语调数据文件(*.itn)", "*.itn", "itn", true, 0, "itn"},
    {"说话人调域文件(*.tnr)", "*.tnr", "tnr", false, 0, "tnr"},
    {"腭位统计数据文件(*.pal)", "*.pal", "pal", false, 0, "pal"},
    {"腭位帧(*.epg)", "*.epg", "", true, 0, "epg"},
    {"lta 谱图数据文件(*.lta)", "*.lta", "lta", true, 0, "lta"},
    {"Lta 谱图数据文件(*.lta)", "*.lta", "lta", true, 0, "saved lta"},
    {"辅音数据文件(*.con)", "*.con", "con", true, 0, "con"},
    {"鼻音能量比数据文件(*.nas)", "*.nas", "nas", true, 0, "nas"},
    {"TextGrid文件(*.TextGrid)", "*.TextGrid", "TextGrid", true, commands::kImportTextGrid, "TextGrid"},
    {"PitchTier文件(*.PitchTier)", "*.PitchTier", "PitchTier", true, 0, "PitchTier"},
    {"Pitch文件(*.Pitch)", "*.Pitch", "Pitch", true, 0, "Pitch"},
    {"Formant文件(*.Formant)", "*.Formant", "Formant", true, 0, "Formant"},
    {"标签轨文件(*.txt)", "*.txt", "txt", true, 0, "label track"},
    {"CSV文件(*.csv)", "*.csv", "csv", true, 0, "csv"},
    {"SVG 图形(*.svg)", "*.svg", "svg", true, 0, "svg"},
    {"PDF 文件(*.pdf)", "*.pdf", "pdf", true, 0, "pdf"},
    {"PNG 图像(*.png)", "*.png", "png", true, 0, "png"},
};

/// The row of that name; one that is not there does not compile.
consteval const FileKind& FileKindNamed(std::string_view name) {
  std::size_t at = 0;
  while (kFileKinds[at].name != name) ++at;  // behind the last row this is no constant expression
  return kFileKinds[at];
}

/// The kind that a file of this name is opened as, its ending taken in either case; null when it is not
/// opened by its name.
const FileKind* OpenedKindOf(std::string_view path);

}  // namespace parlowen
