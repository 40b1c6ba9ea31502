#include "shell_qt/Doubles.h"

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QTest>
#include <QWheelEvent>

#include "support/TempFolder.h"
#include "support/WavBytes.h"

namespace parlowen {

BoxWatcher::BoxWatcher(const QString& button)
    : BoxWatcher([button](QWidget& widget) {
        if (button.isEmpty()) return QTest::keyClick(&widget, Qt::Key_Escape);
        for (QAbstractButton* candidate : widget.findChildren<QAbstractButton*>())
          if (candidate->text() == button) return candidate->click();
        ADD_FAILURE() << "no button " << button.toStdString();
        QTest::keyClick(&widget, Qt::Key_Escape);
      }) {}

BoxWatcher::BoxWatcher(std::function<void(QWidget&)> act) : act_(std::move(act)) {
  QObject::connect(&timer_, &QTimer::timeout, [this] { Look(); });
  timer_.start(5);
}

void BoxWatcher::Look() {
  QWidget* widget = QApplication::activeModalWidget();
  if (widget == nullptr) seen_ = nullptr;
  if (widget == nullptr || widget == seen_ || !widget->isVisible()) return;
  seen_ = widget;
  if (const auto* box = qobject_cast<QMessageBox*>(widget)) {
    texts += box->text();
    captions += box->windowTitle();
  }
  QObject::connect(widget, &QObject::destroyed, &timer_, [this] { seen_ = nullptr; });
  act_(*widget);
}

void WindowTest::SetUp() {
  ASSERT_TRUE(folder.isValid());
  QObject::connect(&patience_, &QTimer::timeout, [this] { CloseForgottenBox(); });
  patience_.start(3000);
  Restart();
}

void WindowTest::Restart() {
  window.reset();
  preferences = std::make_unique<Preferences>(folder.filePath("settings.ini"));
  window = std::make_unique<MainWindow>(PARLOWEN_SOURCE_DIR "/data", *preferences);
  window->Dialogs().openExternally = [](const QUrl&) { return true; };
  window->resize(1024, 720);
  window->show();
  Activate();
  ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
}

void WindowTest::Activate() { QApplication::setActiveWindow(window.get()); }

/// A box that no test expected would wait for ever.
void WindowTest::CloseForgottenBox() {
  QWidget* modal = QApplication::activeModalWidget();
  if (modal != nullptr && modal == waiting_) {
    const auto* box = qobject_cast<QMessageBox*>(modal);
    ADD_FAILURE() << "nobody answered "
                  << (box != nullptr ? box->text() : modal->windowTitle()).toStdString();
    QTest::keyClick(modal, Qt::Key_Escape);
  }
  waiting_ = modal;
}

void WindowTest::TearDown() { window.reset(); }

QString WindowTest::WriteSound(const char* name, int rate, std::vector<std::int16_t> samples) {
  testing::WavBytes wav;
  wav.rate = static_cast<std::uint32_t>(rate);
  wav.samples = std::move(samples);
  return QString::fromStdString(testing::WriteFile(folder.filePath(name).toStdString(), wav.Bytes()));
}

QString WindowTest::WriteRamp(const char* name, int rate, int count) {
  std::vector<std::int16_t> samples;
  for (int i = 0; i < count; ++i) samples.push_back(static_cast<std::int16_t>(i % 8000 - 4000));
  return WriteSound(name, rate, std::move(samples));
}

void WindowTest::Open(const QString& path) {
  window->OpenFile(path);
  QApplication::processEvents();
}

void TurnWheel(QWidget& widget, QPoint at, int eighths, Qt::KeyboardModifiers modifiers) {
  QWheelEvent event(at, widget.mapToGlobal(at), {}, {0, eighths}, Qt::NoButton, modifiers, Qt::NoScrollPhase,
                    false);
  QApplication::sendEvent(&widget, &event);
}

}  // namespace parlowen
