#include "shell/DataFolder.h"

#include <filesystem>

namespace parlowen {
namespace fs = std::filesystem;

std::string DataFolder() {
  std::error_code error;
  const fs::path program = fs::read_symlink("/proc/self/exe", error);
  if (!error) {
    const fs::path installed = program.parent_path().parent_path() / "share" / "parlowen";
    if (fs::is_directory(installed, error)) return installed.string();
  }
  return PARLOWEN_SOURCE_DATA;
}

std::string SampleSound() {
  constexpr const char* kName = "mandarin_mao_four_tones_male_16000.wav";
  const fs::path folder = DataFolder();
  std::error_code error;
  for (const fs::path& sounds : {folder / "sounds", folder.parent_path() / "sounds"})  // installed, source
    if (fs::is_regular_file(sounds / kName, error)) return (sounds / kName).string();
  return {};
}

}  // namespace parlowen
