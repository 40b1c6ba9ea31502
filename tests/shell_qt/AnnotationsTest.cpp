#include <QApplication>
#include <QLineEdit>
#include <QListWidget>
#include <QTest>

#include "shell/qt/FormDialog.h"
#include "shell/qt/IpaPalette.h"
#include "shell_qt/Doubles.h"

namespace parlowen {
namespace {

class AnnotationsTest : public WindowTest {};

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

}  // namespace
}  // namespace parlowen
