#include <gtest/gtest.h>

#include <QApplication>
#include <QFont>
#include <QPalette>
#include <QStandardPaths>
#include <QStyle>
#include <clocale>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
#ifdef PARLOWEN_WITHOUT_FONTS
  // Boxes for letters, of the same width on every machine.
  qputenv("FONTCONFIG_FILE", PARLOWEN_SOURCE_DIR "/tests/shell_qt/no_fonts.conf");
#endif
  QApplication application(argc, argv);
#ifdef PARLOWEN_WITHOUT_FONTS
  QApplication::setStyle("Fusion");
  QPalette palette = QApplication::style()->standardPalette();
  palette.setColor(QPalette::Highlight, Qt::transparent);  // where the focus is, the window manager decides
  QApplication::setPalette(palette);
  QFont font;
  font.setPixelSize(12);
  QApplication::setFont(font);
#endif
  std::setlocale(LC_NUMERIC, "C");
  QStandardPaths::setTestModeEnabled(true);
  return RUN_ALL_TESTS();
}
