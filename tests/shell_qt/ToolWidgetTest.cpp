#include "shell/qt/ToolWidget.h"

#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QImage>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>

#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

/// Writes down what it is told.
class Recorder : public ToolWindow {
 public:
  explicit Recorder(QStringList& log, std::string name = "recorder") : log_(log), name_(std::move(name)) {}
  ~Recorder() override { log_ += "gone"; }

  std::string Name() const override { return name_; }
  std::string Title() const override { return "记录"; }
  std::vector<ToolControl> Controls() const override {
    return {{1101, "甲", true}, {0, "乙", false}, {0, "重开", true}};
  }
  Picture Draw(int width, int height) const override { return {width, height, {}}; }
  void Click(Window& window, Point at, MouseButton button, bool shift) override {
    log_ += QString("click %1 %2 %3 %4")
                .arg(at.x)
                .arg(at.y)
                .arg(button == MouseButton::Left ? "L" : "R")
                .arg(shift);
    window.Repaint();
  }
  bool Key(Window&, const std::string& key) override {
    log_ += "key " + QString::fromStdString(key);
    return key == "D" || key == "Escape";
  }
  void Press(Window& window, const ToolControl& control) override {
    log_ += "press " + QString::number(control.number);
    // Takes its own place while it is still at work.
    if (control.text == "重开") window.OpenToolWindow(std::make_unique<Recorder>(log_, name_));
    log_ += "pressed";
  }
  void Drag(Window&, Point at) override { log_ += QString("drag %1 %2").arg(at.x).arg(at.y); }
  std::string Hover(Point at) const override { return QString("%1, %2").arg(at.x).arg(at.y).toStdString(); }
  std::string Text() const override { return log_.join('|').toStdString(); }
  std::optional<ToolScrollBar> ScrollBar() const override { return ToolScrollBar{30, 100, 20, 2, "移动"}; }
  void ScrollTo(Window&, int position) override { log_ += QString("to %1").arg(position); }
  void Scroll(Window&, int steps) override { log_ += "scroll " + QString::number(steps); }
  void Closed(Window&) override { log_ += "closed"; }

 private:
  QStringList& log_;
  std::string name_;
};

class ToolWidgetTest : public WindowTest {
 protected:
  ToolWidget* Open(const char* name = "recorder") {
    window->Dialogs().OpenToolWindow(std::make_unique<Recorder>(log, name));
    QApplication::processEvents();
    return window->Dialogs().FindToolWindow(name);
  }
  void TearDown() override {
    window->Dialogs().CloseAllToolWindows();  // they still write into the log
    WindowTest::TearDown();
  }
  QStringList log;
};

TEST_F(ToolWidgetTest, ClicksKeysButtonsAndWheelReachTheTool) {
  ToolWidget* widget = Open();
  ASSERT_NE(widget, nullptr);
  EXPECT_EQ(widget->windowTitle(), "记录");
  widget->Canvas()->resize(900, 520);  // as the tool prefers
  QTest::mouseClick(widget->Canvas(), Qt::LeftButton, {}, QPoint(30, 40));
  QTest::mouseClick(widget->Canvas(), Qt::RightButton, Qt::ShiftModifier, QPoint(31, 41));
  QTest::keyClick(widget->Canvas(), Qt::Key_D);
  widget->Button("甲")->click();
  EXPECT_FALSE(widget->Button("乙")->isEnabled());
  widget->Button("乙")->click();
  TurnWheel(*widget, {10, 10}, -240);
  EXPECT_EQ(log.join('|').toStdString(), "click 30 40 L 0|click 31 41 R 1|key D|press 1101|pressed|scroll 2");
  // Nothing of it is cut in the smallest window.
  EXPECT_EQ(widget->Canvas()->minimumSize(), QSize(540, 312));
  // Twice as large the drawing keeps its coordinates, and a picture of it its size.
  log.clear();
  widget->Canvas()->resize(1800, 1100);
  QTest::mouseClick(widget->Canvas(), Qt::LeftButton, {}, QPoint(61, 80));
  EXPECT_EQ(log.join('|').toStdString(), "click 30 40 L 0");
  EXPECT_EQ(widget->Shown().width, 900);
  EXPECT_EQ(widget->Shown().height, 550);
}

TEST_F(ToolWidgetTest, ADragBeginsBeyondAShakyClickAndTheReadoutFollowsThePointer) {
  ToolWidget* widget = Open();
  QWidget& canvas = *widget->Canvas();
  canvas.resize(900, 520);
  const int shaky = QApplication::startDragDistance();
  QTest::mousePress(&canvas, Qt::RightButton, {}, {100, 50});
  QTest::mouseMove(&canvas, {200, 50});
  QTest::mouseRelease(&canvas, Qt::RightButton, {}, {200, 50});
  QTest::mousePress(&canvas, Qt::LeftButton, {}, {100, 50});
  for (const int far : {shaky, shaky + 1, 1}) QTest::mouseMove(&canvas, {100 + far, 50});
  QTest::mouseRelease(&canvas, Qt::LeftButton, {}, {101, 50});
  QTest::mousePress(&canvas, Qt::LeftButton, {}, {300, 50});
  QTest::mouseMove(&canvas, {301, 50});  // the next one begins anew
  QTest::mouseRelease(&canvas, Qt::LeftButton, {}, {301, 50});
  QMouseEvent move(QEvent::MouseMove, {200, 60}, canvas.mapToGlobal(QPointF(200, 60)), {}, {}, {});
  QApplication::sendEvent(&canvas, &move);
  EXPECT_EQ(
      log.join('|'),
      QString("click 100 50 R 0|click 100 50 L 0|drag %1 50|drag 101 50|click 300 50 L 0").arg(101 + shaky));
  QStringList texts;
  for (const auto* label : widget->findChildren<QLabel*>()) texts += label->text();
  EXPECT_TRUE(texts.contains("200, 60")) << texts.join('|').toStdString();

  // The bar stands where the tool says, and the tool hears where it was moved.
  auto* bar = widget->findChild<QScrollBar*>();
  for (const auto action : {QScrollBar::SliderSingleStepAdd, QScrollBar::SliderPageStepSub,
                            QScrollBar::SliderToMinimum, QScrollBar::SliderToMaximum})
    bar->triggerAction(action);
  EXPECT_EQ(log.mid(5), QStringList({"to 32", "to 10", "to 0", "to 100"}));
  EXPECT_EQ(bar->value(), 30);
}

TEST_F(ToolWidgetTest, TheMenuOfAToolCopiesItsPictureAndItsFigures) {
  ToolWidget* widget = Open();
  QWidget& canvas = *widget->Canvas();
  log += "figures";
  QClipboard& clipboard = *QApplication::clipboard();
  int opened = 0;
  QTimer chooser;
  QObject::connect(&chooser, &QTimer::timeout, [&] {
    auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
    if (menu == nullptr) return;
    (++opened == 1 ? menu->actions().first() : menu->actions().last())->trigger();
    menu->close();
  });
  chooser.start(5);
  const auto ask = [&](QContextMenuEvent&& event) { QApplication::sendEvent(&canvas, &event); };
  ask({QContextMenuEvent::Mouse, {}, {}});
  EXPECT_EQ(opened, 0) << "right clicks belong to the tool";
  ask({QContextMenuEvent::Mouse, {}, {}, Qt::ControlModifier});
  EXPECT_EQ(clipboard.image().size(),
            QSize(widget->Shown().width, widget->Shown().height) * widget->devicePixelRatioF());
  ask({QContextMenuEvent::Keyboard, {}, {}});
  EXPECT_EQ(clipboard.text(), "figures");
  QTest::keyClick(&canvas, Qt::Key_F10, Qt::ShiftModifier);
  EXPECT_EQ(opened, 3);
  clipboard.clear();
  QTest::keyClick(&canvas, Qt::Key_C, Qt::ControlModifier | Qt::ShiftModifier);
  EXPECT_EQ(clipboard.text(), "figures");
  EXPECT_EQ(log, QStringList("figures"));
}

TEST_F(ToolWidgetTest, OpeningANameAgainClosesTheFirstAlsoFromWithinItself) {
  Open();
  ToolWidget* second = Open();
  EXPECT_EQ(log, QStringList({"closed", "gone"}));
  log.clear();
  second->Button("重开")->click();
  QApplication::processEvents();
  EXPECT_EQ(log, QStringList({"press 0", "closed", "pressed", "gone"}));
  Open("other");
  ToolWidget* third = window->Dialogs().FindToolWindow("recorder");
  ASSERT_NE(third, nullptr);
  third->close();
  EXPECT_EQ(window->Dialogs().FindToolWindow("recorder"), nullptr);
  EXPECT_NE(window->Dialogs().FindToolWindow("other"), nullptr);
}

TEST_F(ToolWidgetTest, AModalToolActsWhileTheMainWindowWaits) {
  WindowTest::Open(WriteRamp("ramp.wav", 16000, 48000));
  Recorder tool(log);
  BoxWatcher watcher([&](QWidget& widget) {
    auto* modal = qobject_cast<ToolWidget*>(&widget);
    ASSERT_NE(modal, nullptr);
    modal->Button("甲")->click();
    EXPECT_FALSE(window->Dispatch(40026));
    QTest::keyClick(&Waveform(), Qt::Key_X);
    modal->close();
  });
  window->Dialogs().RunModal(tool);
  EXPECT_EQ(log, QStringList({"press 1101", "pressed", "closed"}));
}

}  // namespace
}  // namespace parlowen
