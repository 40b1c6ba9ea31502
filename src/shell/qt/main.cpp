#include <QApplication>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <clocale>

#include "audio/qt/QtLoudspeaker.h"
#include "audio/qt/QtMicrophone.h"
#include "audio/qt/SoundProcess.h"
#include "audio/qt/SoundWorker.h"
#include "shell/DataFolder.h"
#include "shell/qt/InterfaceTexts.h"
#include "shell/qt/MainWindow.h"
#include "shell/qt/Preferences.h"
#include "shell/qt/Splash.h"
#include "shell/qt/ToolBarIcons.h"
#include "ui/Messages.h"

namespace {

constexpr parlowen::UiText kSmallScreen = "显示器分辨率不低于1024*720!";
constexpr QSize kSmallestScreen(1024, 720);

}  // namespace

int main(int argc, char** argv) {
  if (const auto status = parlowen::RunSoundWorker(argc, argv)) return *status;
  QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");  // numbers in files and reports have a point in every country
  QApplication::setApplicationName("parlowen");
  QApplication::setWindowIcon(parlowen::MakeApplicationIcon());
  parlowen::InstallInterfaceTexts(application);

  parlowen::Preferences preferences;
  parlowen::SoundProcess sound;
  parlowen::QtLoudspeaker loudspeaker(sound);
  parlowen::QtMicrophone microphone(sound);
  parlowen::MainWindow window(parlowen::DataFolder(), preferences, {&loudspeaker, &microphone});
  QObject::connect(&microphone, &parlowen::QtMicrophone::PresenceChanged, &window,
                   &parlowen::MainWindow::InputDevicesChanged);
  parlowen::ShowSplash(window);
  window.showMaximized();

  const QSize screen = QGuiApplication::primaryScreen()->size();
  const QStringList arguments = QApplication::arguments();
  QTimer::singleShot(0, &window, [&] {
    if (screen.width() < kSmallestScreen.width() || screen.height() < kSmallestScreen.height())
      window.Dialogs().ShowMessage(kSmallScreen, parlowen::messages::kWarning, parlowen::Icon::Warning);
    QStringList files = arguments.mid(1);
    if (const std::string sample = parlowen::SampleSound(); files.isEmpty() && !sample.empty())
      files += QString::fromStdString(sample);
    window.OpenFiles(files);
  });
  return QApplication::exec();
}
