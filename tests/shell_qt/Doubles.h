#pragma once
#include <gtest/gtest.h>

#include <QStringList>
#include <QTemporaryDir>
#include <QTimer>
#include <functional>
#include <memory>

#include "shell/qt/MainWindow.h"
#include "shell/qt/PaneWidget.h"
#include "shell/qt/Preferences.h"

namespace parlowen {

/// Does one thing to every modal window that comes up, as long as it lives, and remembers what the boxes
/// said.
class BoxWatcher {
 public:
  /// Presses the button with that text in message boxes ("" for Escape).
  explicit BoxWatcher(const QString& button);
  /// Calls `act` once for each modal window.
  explicit BoxWatcher(std::function<void(QWidget&)> act);
  QStringList texts;  ///< of the message boxes
  QStringList captions;

 private:
  void Look();
  std::function<void(QWidget&)> act_;
  QTimer timer_;
  QWidget* seen_ = nullptr;
};

/// A main window of 1024 × 720 with its own settings and temporary folder.
class WindowTest : public ::testing::Test {
 protected:
  void SetUp() override;
  void TearDown() override;

  QString WriteSound(const char* name, int rate, std::vector<std::int16_t> samples);
  /// A mono sound: a quiet ramp, so that each sample has a value of its own.
  QString WriteRamp(const char* name, int rate, int count);
  void Open(const QString& path);
  Workstation& Station() { return window->Station(); }
  SoundDocument& Document() { return window->Station().document; }
  PaneWidget& Waveform() { return window->PaneOf(Pane::Waveform); }
  /// The widget's pixel over a column of the pane.
  static QPoint At(const PaneWidget& pane, int column) {
    return {PaneWidget::kGutter + column, pane.height() / 2};
  }
  void Restart();
  /// Brings the main window to the front again, where shortcuts act.
  void Activate();

  QTemporaryDir folder;
  std::unique_ptr<Preferences> preferences;
  std::unique_ptr<MainWindow> window;

 private:
  void CloseForgottenBox();
  QTimer patience_;
  QWidget* waiting_ = nullptr;
};

inline QString SoundsFile(const char* name) { return QString(PARLOWEN_SOURCE_DIR "/sounds/") + name; }

void TurnWheel(QWidget& widget, QPoint at, int eighths, Qt::KeyboardModifiers modifiers = Qt::NoModifier);

}  // namespace parlowen
