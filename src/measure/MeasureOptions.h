#pragma once
#include <span>
#include <string>
#include <vector>

#include "measure/MeasureRecording.h"

namespace parlowen {

/// The command line of parlowen-measure.
struct MeasureOptions {
  std::vector<std::string> recordings;
  MeasureJob job{};  ///< all but the recording
  TableFormat format = TableFormat::Csv;
  std::string output{};  ///< "": standard output
  bool help = false, version = false;
};

inline constexpr const char* kMeasureUsage =
    "Usage: parlowen-measure [options] RECORDING...\n"
    "Prints a table with a row for every labelled interval of the recordings (WAV, 16 bits).\n\n"
    "  --labels FILE     the labels of the one recording; else the file beside it with the same name:\n"
    "                    .TextGrid, .lbl, .txt; without one a row for the whole recording\n"
    "  --tier NAME       only this tier; may be repeated\n"
    "  --points N        points of the pitch contour, 2..100 (default 11)\n"
    "  --range RANGE     auto, 144-600, 96-400 or 64-280 (Hz); without it a contour that was saved with the\n"
    "                    recording is used, else auto\n"
    "  --measures LIST   of time,level,pitch,formants,voice,consonant (default all)\n"
    "  --channel 1|2     of a stereo recording (default 1)\n"
    "  --format FORMAT   csv (default) or jsonl\n"
    "  --output FILE     instead of standard output\n"
    "  --help            this text\n"
    "  --version         the version\n\n"
    "Exit status: 0 all recordings are done, 1 a recording could not be read, 2 a wrong option,\n"
    "3 the table could not be written.\n";

/// Reads the arguments behind the program's name; a value follows its option or stands behind "=", "--" ends
/// the options. Returns what is wrong with them, "" when nothing is.
std::string ReadMeasureOptions(std::span<const char* const> arguments, MeasureOptions& options);

}  // namespace parlowen
