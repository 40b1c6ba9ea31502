#include "shell_qt/DesktopStage.h"

#include <gtest/gtest.h>

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QFileInfo>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>
#include <QTimer>
#include <QUrl>
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <iterator>
#include <utility>

#include "base/Files.h"
#include "base/Format.h"
#include "shell/DataFolder.h"
#include "shell/qt/FormDialog.h"
#include "shell/qt/OverviewStrip.h"
#include "shell/qt/PaneWidget.h"
#include "shell/qt/TimeAxisStrip.h"
#include "shell/qt/ToolWidget.h"
#include "shell_qt/PaintRecord.h"
#include "support/Kept.h"
#include "ui/Svg.h"

namespace parlowen {
namespace {

constexpr int kToolHeight = 640, kScriptLabels = 120, kChartRows = 770;

void PressEscape(QWidget& box) { QTest::keyClick(&box, Qt::Key_Escape); }

/// The button of that role of a message box; it says what the handler said.
void Answer(QWidget& widget, const std::string& text, QMessageBox::ButtonRole role) {
  auto* box = qobject_cast<QMessageBox*>(&widget);
  if (box == nullptr) {
    ADD_FAILURE() << "no message box for " << text;
    return PressEscape(widget);
  }
  EXPECT_EQ(box->text(), QString::fromStdString(text).remove('\r'));
  for (QAbstractButton* button : box->buttons())
    if (box->buttonRole(button) == role) return QTest::mouseClick(button, Qt::LeftButton);
  ADD_FAILURE() << "no button for " << text;
}

/// Types the values into the fields and presses OK.
void Enter(FormDialog& dialog, const InputForm& opened, const InputForm& filled) {
  EXPECT_EQ(dialog.windowTitle().toStdString(), opened.title);
  const auto radios = dialog.findChildren<QRadioButton*>();
  qsizetype radio = 0;
  for (std::size_t i = 0; i < filled.fields.size(); ++i) {
    const FormField& field = filled.fields[i];
    if (field.kind == FieldKind::Radio && field.checked) radios.value(radio)->click();
    radio += field.kind == FieldKind::Radio;
    if (field.kind != FieldKind::Text && field.kind != FieldKind::Number) continue;
    QLineEdit* edit = dialog.Edit(field.control);
    EXPECT_EQ(edit->text().toStdString(), opened.fields[i].value);
    edit->setText(QString::fromStdString(field.value));
  }
  QTest::keyClick(&dialog, Qt::Key_Return);
}

Qt::Key KeyOf(const std::string& name) {
  if (name.size() == 1) return static_cast<Qt::Key>(std::toupper(static_cast<unsigned char>(name[0])));
  return static_cast<Qt::Key>(QKeySequence(name == "PageUp"     ? "PgUp"
                                           : name == "PageDown" ? "PgDown"
                                                                : QString::fromStdString(name))[0]
                                  .key());
}

Qt::MouseButton ButtonOf(MouseButton button) {
  return button == MouseButton::Left ? Qt::LeftButton : Qt::RightButton;
}

}  // namespace

// --- The dialogs

AnsweredWindow::AnsweredWindow(QWidget& host, ActionGate& gate, Preferences& preferences,
                               std::ostream& events)
    : QtWindow(host, gate, preferences), ScriptTalk(events) {
  openExternally = [](const QUrl&) { return true; };
}

void AnsweredWindow::WhenOpen(std::function<void(QWidget&)> act) {
  QTimer::singleShot(0, this, [act = std::move(act)] {
    QWidget* box = QApplication::activeModalWidget();
    if (box == nullptr) return;
    act(*box);
    if (!box->isVisible()) return;
    ADD_FAILURE() << "still open: " << box->windowTitle().toStdString();
    PressEscape(*box);
  });
}

void AnsweredWindow::ShowMessage(const std::string& text, const std::string& caption, Icon icon) {
  PrintMessage(text, caption, icon);
  WhenOpen([&](QWidget& box) { Answer(box, text, QMessageBox::AcceptRole); });
  QtWindow::ShowMessage(text, caption, icon);
}

bool AnsweredWindow::AskYesNo(const std::string& text, const std::string& caption) {
  const bool yes = TakeYes();
  PrintQuestion(text, caption, yes);
  WhenOpen([&](QWidget& box) { Answer(box, text, yes ? QMessageBox::YesRole : QMessageBox::NoRole); });
  const bool answered = QtWindow::AskYesNo(text, caption);
  EXPECT_EQ(answered, yes);
  return answered;
}

int AnsweredWindow::Choose(const std::string& text, const std::string& caption,
                           std::span<const UiText> buttons, int byDefault, QWidget* parent) {
  const QString goOn = buttons[buttons.size() - 2].Get();
  if (!ended()) asked_ += text + " | " + goOn.toStdString() + "\n";
  WhenOpen([&](QWidget& widget) {
    auto& box = dynamic_cast<QMessageBox&>(widget);
    for (QAbstractButton* button : box.buttons())
      if (button->text() == goOn) return button->click();
  });
  return QtWindow::Choose(text, caption, buttons, byDefault, parent);
}

std::optional<FileChoice> AnsweredWindow::AskFile(const FileDialog& dialog, bool save) {
  const auto path = TakePath();
  PrintFileDialog(save ? "save" : "open", dialog, path);
  const QString typed = path ? QString::fromStdString(AbsolutePath(*path)) : "";
  // In a file dialog a folder is a place to go to, and quotes stand around names: neither can be chosen.
  if (QFileInfo(typed).isDir() || typed.contains('"')) return ChoiceOf(dialog, *path);
  WhenOpen([&](QWidget& box) {
    EXPECT_EQ(box.windowTitle().toStdString(), dialog.title);
    if (!path) return PressEscape(box);
    // Typing lets go of the proposed file's row where the field has the focus, which needs a window manager.
    for (auto* view : box.findChildren<QAbstractItemView*>()) view->clearSelection();
    box.findChild<QLineEdit*>("fileNameEdit")->setText(typed);
    QMetaObject::invokeMethod(&box, "accept");
  });
  return save ? QtWindow::AskSaveFile(dialog) : QtWindow::AskOpenFile(dialog);
}

bool AnsweredWindow::AskInput(InputForm& form) {
  const bool ofScript = !fillForm;
  const InputForm opened = form;
  InputForm filled = form;
  if (!ofScript) std::exchange(fillForm, {})(filled);
  const bool ok = !ofScript || TakeEntries(filled);
  if (ofScript) PrintInput(opened, ok);
  bool refused = false;
  WhenOpen([&](QWidget& box) {
    if (onForm) onForm(box);
    if (!ok) return PressEscape(box);
    Enter(dynamic_cast<FormDialog&>(box), opened, filled);
    refused = box.isVisible();
    if (refused) PressEscape(box);
  });
  const bool taken = QtWindow::AskInput(form);
  EXPECT_EQ(taken, ok && !refused);
  // Letters that no file can hold are refused by the dialog, from a script by the handler.
  if (refused) {
    form = filled;
    asked_ += form.title + " | refused\n";
  }
  return ok;
}

void AnsweredWindow::ShowStatus(const std::string& text) {
  PrintStatus(text);
  QtWindow::ShowStatus(text);
}

void AnsweredWindow::SetCaption(const std::string& text) {
  if (!Caption().empty() && text != Caption()) PrintCaption(text);
  QtWindow::SetCaption(text);
}

void AnsweredWindow::OpenInEditor(const std::string& path) {
  PrintEditor(path);
  QtWindow::OpenInEditor(path);
}

void AnsweredWindow::OpenToolWindow(std::unique_ptr<ToolWindow> tool) {
  CloseToolWindow(tool->Name());
  NoteOpened(*tool, false);
  QtWindow::OpenToolWindow(std::move(tool));
}

void AnsweredWindow::RunModal(ToolWindow& tool) {
  NoteOpened(tool, true);
  QTimer::singleShot(0, this, [this, &tool] {
    if (runModalSteps) runModalSteps();
    if (ToolWidget* widget = WidgetOf(tool)) widget->close();
  });
  QtWindow::RunModal(tool);
  NoteClosed(tool);
}

/// The desktop says nothing: the picture is in the clipboard.
void AnsweredWindow::CopyRegion(const PaneRegion& region) {
  PrintStatus("区域已复制到剪贴板");
  QtWindow::CopyRegion(region);
}

void AnsweredWindow::Quit() {
  End();
  QtWindow::Quit();
}

ToolWidget* AnsweredWindow::WidgetOf(const ToolWindow& tool) const {
  return InModal() ? qobject_cast<ToolWidget*>(QApplication::activeModalWidget())
                   : FindToolWindow(tool.Name());
}

// --- The hands

DesktopStage::DesktopStage(std::ostream& events, const QString& settings, int paneWidth, std::string story)
    : story_(std::move(story)),
      preferences_(settings),
      window_(DataFolder(), preferences_, {&speaker, &microphone},
              [&](QWidget& host, ActionGate& gate, Preferences& preferences) {
                auto dialogs = std::make_unique<AnsweredWindow>(host, gate, preferences, events);
                dialogs_ = dialogs.get();
                return dialogs;
              }) {
  dialogs_->onForm = [this](QWidget& form) {
    form.resize(form.sizeHint());  // left to itself it takes two thirds of the screen at most
    Keep("form " + form.windowTitle().toStdString(), PlacesIn(form));
  };
  // A script's view keeps its left edge.
  Station().view.keepsToSound = Station().view.followsPlay = false;
  qApp->installEventFilter(this);
  Station().view.chartScales = false;  // a script's chart keeps the coordinates of its points
  window_.show();
  QApplication::setActiveWindow(&window_);
  FitPanes(paneWidth);
}

DesktopStage::~DesktopStage() { qApp->removeEventFilter(this); }

/// The panes as large as a script's.
void DesktopStage::FitPanes(int paneWidth) {
  const PaneWidget& pane = window_.PaneOf(Pane::Analysis);
  const int height = static_cast<const QWidget&>(pane).sizeHint().height();
  for (int i = 0; i < 20; ++i) {
    QApplication::processEvents();
    const QSize missing(paneWidth - pane.PaneSize().width(), height - pane.PaneSize().height());
    if (missing.isNull()) return;
    window_.resize(window_.size() + missing);
  }
  EXPECT_EQ(pane.PaneSize(), QSize(paneWidth, height));
}

/// A tool's drawing as large as a script's, before it is shown for the first time: as wide as a pane, or as what
/// scrolls, or, where clicks count from a place of their own, as the tool would like to be.
bool DesktopStage::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::Polish)
    if (auto* widget = qobject_cast<ToolWidget*>(watched); widget != nullptr && dialogs_->CurrentTool()) {
      const ToolWindow& tool = *dialogs_->CurrentTool();
      const int whole = tool.WholeWidth(0);
      const int width = whole > 0                  ? whole
                        : tool.ClickOrigin().y > 0 ? tool.PreferredSize().x
                                                   : Station().document.paneWidth;
      widget->Prefer({width, kToolHeight});
      widget->Canvas()->setFixedSize(width, kToolHeight);
      widget->adjustSize();
    }
  return QObject::eventFilter(watched, event);
}

bool DesktopStage::Choose(int command) {
  QApplication::processEvents();  // what a recording that has just ended enables
  QAction* action = window_.ActionOf(command);
  if (action == nullptr || !action->isEnabled()) return false;
  action->trigger();
  return true;
}

/// By the dialog that takes samples, for a pixel can stand for many.
void DesktopStage::Select(int start, int end) {
  dialogs_->fillForm = [=](InputForm& form) {
    form.fields[0].value = std::to_string(start);
    form.fields[1].value = std::to_string(end);
    form.fields[2].checked = false;
    form.fields[3].checked = true;
  };
  for (QAction* action : window_.findChildren<QAction*>())
    if (action->shortcut() == QKeySequence("Ctrl+G")) action->trigger();
  dialogs_->fillForm = {};
}

/// The same place of a band in a label pane of another height than the script's. A pane that is not shown has none.
Point DesktopStage::InLabels(Point at) {
  if (!window_.PaneOf(Pane::Labels).isVisible()) Station().SetLabelsHeight(kScriptLabels);
  return {at.x, at.y * Station().view.labelsHeight / kScriptLabels};
}

void DesktopStage::Click(Pane pane, Point at, MouseButton button, bool shift) {
  if (pane == Pane::Labels) at = InLabels(at);
  PaneWidget& widget = window_.PaneOf(pane);
  // A picture has taken rows for its caption and its axis.
  if (pane == Pane::Analysis && widget.isVisible()) FitPanes(Station().document.paneWidth);
  const QPoint pixel = widget.DataArea().topLeft() + QPoint(at.x, at.y - widget.Top());
  // What is not on the screen cannot be clicked: a pane behind a chart, a pixel beside the pane.
  if (!widget.isVisible() || at.x < 0 || !widget.rect().contains(pixel))
    return Station().Click(pane, at, button, shift);
  // The two clicks that choose a region are one drag, whatever the second was over, unless something has ended it.
  PaneWidget* const dragged = std::exchange(dragged_, nullptr);
  if (Station().document.activity == Activity::RegionDrag) {
    if (dragged != nullptr) {
      const QPoint to = dragged->mapFromGlobal(widget.mapToGlobal(pixel));
      QTest::mouseMove(dragged, to);
      return QTest::mouseRelease(dragged, Qt::LeftButton, {}, to);
    }
    dragged_ = &widget;
    return QTest::mousePress(&widget, Qt::LeftButton, {}, pixel);
  }
  if (dragged != nullptr) QTest::mouseRelease(dragged, Qt::LeftButton);
  QTest::mouseClick(&widget, ButtonOf(button), shift ? Qt::ShiftModifier : Qt::NoModifier, pixel);
}

void DesktopStage::EditLabel(Point at) { Station().EditLabel(InLabels(at)); }

bool DesktopStage::KeyInLabels(const std::string& key) { return Station().KeyInLabels(key); }

void DesktopStage::ClickTool(ToolWindow& tool, Point at, MouseButton button, bool shift) {
  QWidget& canvas = *dialogs_->WidgetOf(tool)->Canvas();
  const QPoint pixel(at.x, at.y + tool.ClickOrigin().y);
  // A drawing can be narrower than what a script may click.
  if (!canvas.rect().contains(pixel))
    return Station().Act([&] { tool.Click(*dialogs_, {pixel.x(), pixel.y()}, button, shift); });
  QTest::mouseClick(&canvas, ButtonOf(button), shift ? Qt::ShiftModifier : Qt::NoModifier, pixel);
}

void DesktopStage::Key(const std::string& key) {
  ToolWindow* tool = dialogs_->CurrentTool();
  if (tool != nullptr && key == "Escape" && !dialogs_->InModal()) {
    // On the screen it closes a tool window that has no use for it; a script closes windows by `close`.
    bool used = false;
    Station().Act([&] { used = tool->Key(*dialogs_, key); });
    if (!used) Station().Key(key);
    return;
  }
  QWidget* target = tool != nullptr ? dialogs_->WidgetOf(*tool)->Canvas() : window_.focusWidget();
  QTest::keyClick(target != nullptr ? target : &window_, KeyOf(key));
}

void DesktopStage::Press(ToolWindow& tool, const ToolControl& control) {
  QPushButton* button = dialogs_->WidgetOf(tool)->Button(control.text);
  ASSERT_NE(button, nullptr) << control.text;
  button->click();
}

void DesktopStage::CloseTool() { dialogs_->WidgetOf(*dialogs_->CurrentTool())->close(); }

/// One pane after the other: what it shows is what it would show if it were painted anew.
void DesktopStage::LookAtAPane() {
  constexpr Pane kPanes[] = {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform, Pane::Chart};
  const Pane pane = kPanes[looks_++ % std::size(kPanes)];
  PaneWidget& widget = window_.PaneOf(pane);
  if (!widget.isVisible()) return;
  const QImage shown = widget.grab().toImage();
  widget.Invalidate();
  EXPECT_TRUE(shown == widget.grab().toImage()) << "pane " << static_cast<int>(pane) << " shows what was";
}

/// At the heights and widths of a script, at places that are no edge of anything.
void DesktopStage::PointAtAll() {
  const struct {
    Pane pane;
    const char* name;
    int height;
  } panes[] = {{Pane::Amplitude, "amplitude", 110},
               {Pane::Pitch, "pitch", 165},
               {Pane::Analysis, "analysis", 330},
               {Pane::Waveform, "waveform", 165},
               {Pane::Chart, "chart", 500}};
  constexpr Point kShares[] = {{17, 61}, {37, 23}, {71, 83}};  // percent of the width and the height
  const int width = Station().document.paneWidth;
  for (const auto& [pane, name, height] : panes)
    for (const Point share : kShares) {
      const Point at{width * share.x / 100, height * share.y / 100};
      const bool hidden = pane == Pane::Chart && !window_.PaneOf(pane).isVisible();
      seen_.See(Format("%s %d", name, share.x),
                hidden ? "" : Station().view.HoverLine(pane, at, height, " | "));
    }
  seen_.See("overview",
            testing::SizeAndDigest(testing::WithoutDecimals(ToSvg(Station().view.Overview(900, 40)))));
  const MainView& view = Station().view;
  std::string tips, marks;
  for (int x = 2; x < width; x += 9)
    for (int y = 6; y < kScriptLabels; y += 12)
      tips += view.LabelTipAt({x, y * view.labelsHeight / kScriptLabels}) + "\n";
  seen_.See("labels all", testing::SizeAndDigest(tips));
  if (window_.PaneOf(Pane::Chart).isVisible())
    for (int x = 3; x < width; x += 11)
      for (int y = 2; y < kChartRows; y += 11)
        marks += view.HoverLine(Pane::Chart, {x, y}, kChartRows, "") + "\n";
  seen_.See("chart all", testing::SizeAndDigest(marks));
  const ToolWindow* tool = dialogs_->CurrentTool();
  if (tool == nullptr) return;
  const std::string name = tool->Name();
  for (const Point share : kShares)
    seen_.See(Format("%s %d", name.c_str(), share.x),
              tool->Hover({width * share.x / 100, kToolHeight * share.y / 100}));
  std::string all;
  for (int y = 5; y < kToolHeight; y += 9)
    for (int x = 9; x < width; x += 11) all += tool->Hover({x, y}) + "\n";
  seen_.See(name + " all", testing::SizeAndDigest(all));
  const Point size = tool->PreferredSize(), origin = tool->ClickOrigin();
  seen_.See(name + " size", Format("%d×%d from %d,%d%s", size.x, size.y, origin.x, origin.y,
                                   tool->ScalesWithWindow() ? " scales" : ""));
  seen_.See(name, tool->Text() + tool->Instructions());
}

/// A widget that is hidden shows nothing.
void DesktopStage::Record(const std::string& where, QWidget& widget, const std::string& behind) {
  Keep(where, widget.isVisible() ? PaintedBy(widget) + behind : "");
}

void DesktopStage::Keep(const std::string& where, const std::string& text) {
  painted_.See(where, text.empty() ? "" : testing::SizeAndDigest(text));
  const char* folder = std::getenv("PARLOWEN_RECORDS");
  if (folder == nullptr) return;
  std::string name = Format("%s %06zu %s", story_.c_str(), records_++, where.c_str());
  std::replace(name.begin(), name.end(), '/', '_');
  std::filesystem::create_directories(folder);
  testing::WriteFile(Format("%s/%s", folder, name.c_str()), text);
}

/// The pointer over a place of the tool window or, without one, of the waveform, or of what pitch is repaired in, wherever
/// it was before.
void DesktopStage::PointAtAPlace() {
  const auto tell = [](QWidget& widget, QEvent&& event) { QApplication::sendEvent(&widget, &event); };
  const bool repair = Station().document.activity == Activity::PitchRepair;
  PaneWidget& pane = window_.PaneOf(repair ? Pane::Analysis : Pane::Waveform);
  tell(pane, QEvent(QEvent::Leave));
  const ToolWindow* tool = dialogs_->CurrentTool();
  QWidget* shown = &pane;
  if (tool != nullptr)
    shown = dialogs_->WidgetOf(*tool) != nullptr ? dialogs_->WidgetOf(*tool)->Canvas() : nullptr;
  if (shown == nullptr || !shown->isVisible() || dragged_ != nullptr) return;
  const QPointF at(0.37 * shown->width(), 0.23 * shown->height());
  tell(*shown, QMouseEvent(QEvent::MouseMove, at, shown->mapToGlobal(at), Qt::NoButton, Qt::NoButton, {}));
}

void DesktopStage::RecordAll() {
  PointAtAPlace();
  constexpr std::pair<Pane, const char*> kPanes[] = {
      {Pane::Amplitude, "amplitude"}, {Pane::Pitch, "pitch"}, {Pane::Analysis, "analysis"},
      {Pane::Waveform, "waveform"},   {Pane::Chart, "chart"}, {Pane::Labels, "labels"}};
  for (const auto& [pane, name] : kPanes) {
    // What lies below the cursor is a pixmap to the painter, so it is recorded beside it.
    PaneWidget& widget = window_.PaneOf(pane);
    Record(name, widget, PaintedBy(widget.Shown()));
  }
  Record("overview", *window_.findChild<OverviewStrip*>());
  Record("axis", *window_.findChild<TimeAxisStrip*>());
  QWidget* shown = &window_;
  std::string of;
  const ToolWindow* tool = dialogs_->CurrentTool();
  if (ToolWidget* widget = tool != nullptr ? dialogs_->WidgetOf(*tool) : nullptr; widget != nullptr) {
    Record(tool->Name(), *widget->Canvas());
    shown = widget;
    of = tool->Name() + " ";
  }
  std::string entries;
  for (const QAction* action : window_.findChildren<QAction*>())
    if (!action->text().contains('/'))  // recent files have their places in their names
      entries += (action->text() + (action->isEnabled() ? " " : " (grey) ") + action->toolTip() + "\n")
                     .toStdString();
  Keep("entries", entries);
  painted_.See("title",
               shown->windowTitle().toStdString() + (window_.isWindowModified() ? " (unsaved)" : ""));
  int number = 0;
  for (const QWidget* child : shown->findChildren<QWidget*>()) {
    const std::string where = of + Format("text %d", ++number);
    painted_.See(where, child->isVisible() ? TextOn(*child) : "");
  }
}

void DesktopStage::Settle() {
  const auto atRest = [this] {
    const ToolWindow* tool = dialogs_->CurrentTool();
    return tool == nullptr || tool->TickMilliseconds() <= 0;
  };
  EXPECT_TRUE(QTest::qWaitFor(atRest, 20000));
  // What a window manager does when a tool window has closed.
  if (dialogs_->CurrentTool() == nullptr) QApplication::setActiveWindow(&window_);
  QApplication::processEvents();
  for (const CommandRow& row : CommandTable())
    EXPECT_EQ(window_.ActionOf(row.number)->isEnabled(), Station().states.IsEnabled(row.number))
        << row.number;
  LookAtAPane();
  PointAtAll();
  RecordAll();
}

}  // namespace parlowen
