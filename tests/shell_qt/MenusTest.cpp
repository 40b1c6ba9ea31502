// What stands in the menus that are made when they open, and what the entries for pictures and figures write.
#include <QAbstractButton>
#include <QApplication>
#include <QClipboard>
#include <QContextMenuEvent>
#include <QFile>
#include <QImage>
#include <QLineEdit>
#include <QMenu>
#include <QMessageBox>
#include <QRegularExpression>
#include <QTest>

#include "base/Format.h"
#include "shell/qt/FormDialog.h"
#include "shell/qt/Splash.h"
#include "shell/qt/ToolBarIcons.h"
#include "shell_qt/Doubles.h"
#include "shell_qt/PaintRecord.h"
#include "support/Kept.h"

namespace parlowen {
namespace {

const std::string kHere = PARLOWEN_SOURCE_DIR "/tests/shell_qt/";

class MenusTest : public WindowTest {
 protected:
  QMenu& Opened(const char* title) {
    QMenu* found = nullptr;
    for (auto* menu : window->findChildren<QMenu*>())
      if (menu->title() == title) found = menu;
    Q_EMIT found->aboutToShow();
    return *found;
  }
  void See(const QMenu& menu) {
    for (const QAction* action : menu.actions()) {
      seen += action->text().toStdString() + (action->isEnabled() ? " | " : " (grey) | ");
      if (action->menu() != nullptr) See(*action->menu());
    }
    seen += "\n";
  }
  /// Chooses an entry of the pictures and answers: a form with these values, or Escape without any, with 8 cm where it
  /// comes again, and files by the name. Then what was written, copied and remembered.
  void Choose(const char* entry, const char* file, const char* centimetres = "", QStringList clicks = {}) {
    BoxWatcher watcher([&](QWidget& box) {
      seen += box.windowTitle().toStdString() + "\n";
      if (auto* form = qobject_cast<FormDialog*>(&box)) {
        seen += PlacesIn(*form);
        if (*centimetres == '\0') return form->reject();
        form->Edit(1000)->setText(std::exchange(centimetres, "8"));
        for (auto* button : form->findChildren<QAbstractButton*>())
          if (clicks.removeAll(button->text()) > 0) button->click();
        form->accept();
      } else if (const auto* message = qobject_cast<QMessageBox*>(&box)) {
        seen += message->text().toStdString() + "\n";
        QTest::keyClick(&box, Qt::Key_Return);
      } else {
        box.findChild<QLineEdit*>("fileNameEdit")->setText(folder.filePath(file));
        QMetaObject::invokeMethod(&box, "accept");
      }
    });
    QApplication::clipboard()->clear();
    const QList<QAction*> actions = Opened("图形输出(&T)").findChildren<QAction*>();
    (*std::find_if(actions.begin(), actions.end(), [&](QAction* action) {
      return action->text() == entry;
    }))->trigger();
    QFile written(folder.filePath(file));
    const QByteArray bytes = written.open(QIODevice::ReadOnly) ? written.readAll() : QByteArray();
    static const QRegularExpression size("width=[^>]*|/MediaBox[^\n]*");
    seen += size.match(QString::fromLatin1(bytes)).captured().toStdString() + "\n";
    if (bytes.startsWith("<?xml"))
      seen += testing::SizeAndDigest(testing::WithoutDecimals(bytes.toStdString())) + "\n";
    const QImage copied = QApplication::clipboard()->image(), image = QImage::fromData(bytes, "PNG");
    seen +=
        Format("copied %d %d, PNG %d %d\n", copied.width(), copied.height(), image.width(), image.height());
    seen += preferences->Figure() + "\n";
  }
  std::string seen;
};

TEST_F(MenusTest, PicturesOfThePanesAndAFigureOfTheWindow) {
  const auto open = [this] { Open(SoundsFile("synthetic_palate_16000.nsp")); };
  constexpr auto kFigure = "整个窗口(&W)...";
  See(Opened("图形输出(&T)"));
  open();
  Choose(kFigure, "figure.pdf");
  Choose(kFigure, "figure.svg", "3", {"幅度/能量", "标注", "SVG"});  // too narrow
  Restart();
  open();
  Choose(kFigure, "figure.pdf", "16", {"谱图", "PDF"});
  Choose(kFigure, "no figure", "16", {"复制到剪贴板"});
  Choose("图形存为 SVG(&V)...", "pane.svg");
  Choose("图形存为 PNG，300 dpi(&G)...", "pane.png");
  seen += window->StatusShown().remove(folder.path()).toStdString() + "\n";
  Choose("图形存为 PNG，300 dpi(&G)...", "no such folder/pane.png");
  ASSERT_TRUE(window->Dispatch(41052));
  See(Opened("图形输出(&T)"));
  {
    BoxWatcher watcher([](QWidget& box) { QTest::keyClick(&box, Qt::Key_Return); });
    ASSERT_TRUE(window->Dispatch(40057));
  }
  See(Opened("图形输出(&T)"));
  for (const Pane pane : {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform, Pane::Chart}) {
    QTimer::singleShot(5, window.get(), [&] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      ASSERT_NE(menu, nullptr);
      See(*menu);
      menu->close();
    });
    QContextMenuEvent byKey(QContextMenuEvent::Keyboard, {}, {});
    QApplication::sendEvent(&window->PaneOf(pane), &byKey);
  }
  ExpectPainted(kHere + "pictures.shown", seen);
}

TEST_F(MenusTest, TheNewestFilesAreNumberedAndLongNamesElided) {
  constexpr auto kRecent = "最近的文件(&R)";
  See(Opened(kRecent));
  for (int i = 1; i <= 10; ++i)
    preferences->AddRecentFile(QString("/%1/a & b %2.wav").arg(QString(i * 8, 'x')).arg(i));
  See(Opened(kRecent));
  preferences->AddRecentFile(WriteRamp("opened.wav", 16000, 700));
  preferences->AddRecentFile("/newer.wav");
  Opened(kRecent).actions().value(1)->trigger();
  EXPECT_EQ(Document().sampleCount, 700);
  ExpectPainted(kHere + "recent.shown", seen);
}

TEST(IconsTest, TheProgramItsToolsAndTheStartPicture) {
  std::string painted = PaintedBy({64, 64}, PaintApplicationIcon) + PaintedBy({440, 220}, PaintSplash);
  for (int i = 0; i <= static_cast<int>(ToolIcon::NarrowBand); ++i) {
    const auto icon = static_cast<ToolIcon>(i);
    painted += PaintedBy({20, 20}, [&](QPainter& painter) { PaintToolIcon(painter, icon, Qt::black); });
    EXPECT_EQ(MakeToolIcon(icon, Qt::black).pixmap({20, 20}, 2).size(), QSize(40, 40));
  }
  EXPECT_EQ(MakeApplicationIcon().availableSizes().size(), 7);
  ExpectPainted(kHere + "icons.painted", painted);
}

}  // namespace
}  // namespace parlowen
