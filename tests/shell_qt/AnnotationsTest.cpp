#include <QApplication>
#include <QFileDialog>
#include <QFileInfo>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>

#include "shell/qt/FormDialog.h"
#include "shell/qt/IpaPalette.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

class AnnotationsTest : public WindowTest {
 protected:
  /// Inserts a text with 40080, answering No to whether it is the first.
  void Annotate(const QString& text) {
    ASSERT_TRUE(window->Dispatch(40080));
    BoxWatcher watcher([&](QWidget& widget) {
      auto* dialog = qobject_cast<FormDialog*>(&widget);
      if (dialog == nullptr) return QTest::keyClick(&widget, Qt::Key_Escape);
      dialog->Edit(1028)->setText(text);
      dialog->accept();
    });
    PaneWidget& pane = window->PaneOf(Pane::Analysis);
    QTest::mouseClick(&pane, Qt::LeftButton, Qt::NoModifier, At(pane, 50));
  }
  bool SaveAs(const QString& path) {
    BoxWatcher watcher([&](QWidget& dialog) {
      if (qobject_cast<QFileDialog*>(&dialog) == nullptr || path.isEmpty())
        return QTest::keyClick(&dialog, Qt::Key_Escape);
      dialog.findChild<QLineEdit*>("fileNameEdit")->setText(path);
      QMetaObject::invokeMethod(&dialog, "accept");
    });
    return window->Dispatch(40079);
  }
};

TEST_F(AnnotationsTest, ThePaletteInsertsAtTheCursor) {
  FormField field;
  field.control = 1028;
  field.phonetic = true;
  field.value = "ab";
  InputForm form{"插入字符", {field}};
  FormDialog dialog(form, window.get());
  dialog.show();
  auto* palette = dialog.findChild<IpaPalette*>();
  ASSERT_NE(palette, nullptr);
  dialog.Edit(1028)->setCursorPosition(1);
  auto* all = qobject_cast<QListWidget*>(palette->widget(1));
  palette->setCurrentIndex(1);
  QApplication::processEvents();
  QTest::mouseClick(all->viewport(), Qt::LeftButton, Qt::NoModifier,
                    all->visualItemRect(all->item(51)).center());
  EXPECT_EQ(dialog.Edit(1028)->text(), "aɿb");
  auto* common = qobject_cast<QListWidget*>(palette->widget(0));
  palette->setCurrentIndex(0);
  common->setCurrentItem(common->findItems("tɕʰ", Qt::MatchExactly).value(0));
  ASSERT_NE(common->currentItem(), nullptr);
  QTest::keyClick(common, Qt::Key_Return);
  EXPECT_EQ(dialog.Edit(1028)->text(), "aɿtɕʰb");
  EXPECT_TRUE(dialog.isVisible()) << "Enter belongs to the symbol";
  form.fields[0].phonetic = false;
  EXPECT_EQ(FormDialog(form, window.get()).findChild<IpaPalette*>(), nullptr);
}

TEST_F(AnnotationsTest, UnsavedAnnotationsAreAskedAbout) {
  const QString first = WriteRamp("first.wav", 16000, 5000), second = WriteRamp("second.wav", 8000, 300);
  Open(first);
  Annotate("ŋa");
  ASSERT_EQ(Station().annotations.items.size(), 1u);
  {
    BoxWatcher no("取消");
    Open(second);
    EXPECT_FALSE(window->Dispatch(110));
    window->close();
    EXPECT_EQ(no.texts.size(), 3);
    EXPECT_TRUE(no.texts.value(0).contains("国际音标文件"));
    EXPECT_EQ(Document().sampleCount, 5000);
  }
  ASSERT_TRUE(window->Dispatch(120));  // a sound file does not hold them
  ASSERT_TRUE(SaveAs(""));
  EXPECT_TRUE(Station().annotations.changed) << "the dialog was cancelled";
  ASSERT_TRUE(SaveAs(folder.filePath("take")));
  EXPECT_TRUE(QFileInfo::exists(folder.filePath("take.ipa")));
  Open(second);  // nothing to lose: no question, or this would hang
  EXPECT_EQ(Document().sampleCount, 300);
  Open(folder.filePath("take.ipa"));
  EXPECT_EQ(Station().annotations.items.size(), 1u);
  EXPECT_EQ(preferences->RecentFiles().constFirst(), folder.filePath("take.ipa"));
}

}  // namespace
}  // namespace parlowen
