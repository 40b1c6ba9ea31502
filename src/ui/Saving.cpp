#include "ui/Saving.h"

#include "base/Files.h"
#include "ui/Window.h"

namespace parlowen {
namespace {

int Said(Window& window, const std::string& path, int result) {
  if (result == 0) window.Saved(path);
  return result;
}

}  // namespace

int SaveFile(Window& window, const std::string& path, ByteSpan bytes) {
  return Said(window, path, ReplaceFile(path, bytes));
}

int SaveBehindFile(Window& window, const std::string& path, ByteSpan bytes) {
  return Said(window, path, AppendToFile(path, bytes));
}

}  // namespace parlowen
