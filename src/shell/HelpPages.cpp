#include "shell/HelpPages.h"

#include "base/Files.h"
#include "base/Format.h"
#include "document/SoundDocument.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kNoHelp = "不能调入帮助";
constexpr UiText kAbout = "Parlowen(Tessiran) %s\n语音分析工作站\n\n界面：Qt 6 Widgets（LGPL）";

const char* PageOf(Activity activity) {
  switch (activity) {
    case Activity::Intonation: return "tones.html";
    case Activity::RegionDrag:
    case Activity::RegionChosen: return "region.html";
    case Activity::GlottalWave: return "spectrum.html";
    case Activity::Annotation: return "palate.html";
    case Activity::Characters: return "marking.html";
    default: return "index.html";
  }
}

}  // namespace

void OpenHelp(Window& window, const std::string& dataFolder, Activity activity) {
  const std::string page = dataFolder + "/help/zh/" + PageOf(activity);
  if (!InputFile(page).isOpen()) return window.Notify(kNoHelp, Icon::Error);
  window.OpenInEditor(page);
}

std::string AboutText() { return Format(kAbout.Get(), PARLOWEN_VERSION); }

}  // namespace parlowen
