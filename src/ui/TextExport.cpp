#include "ui/TextExport.h"

#include "base/Files.h"
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Window.h"

namespace parlowen {
namespace {

std::string PathOf(const std::string& folder, const std::string& name) {
  return AbsolutePath(folder.empty() ? name : folder + "/" + name);
}

}  // namespace

int WriteTextExport(Window& window, const std::string& folder, const std::string& name,
                    std::string_view gbkText) {
  const ByteSpan bytes(reinterpret_cast<const std::uint8_t*>(gbkText.data()), gbkText.size());
  const int result = SaveFile(window, PathOf(folder, name), bytes);
  if (result < 0) window.Notify(messages::kCannotOpenListing, Icon::Error);
  return result;
}

void ShowTextExport(Window& window, const std::string& folder, const std::string& name) {
  window.OpenInEditor(PathOf(folder, name));
}

}  // namespace parlowen
