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

}  // namespace parlowen
