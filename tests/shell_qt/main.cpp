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
  // Every machine is to paint the same, on a screen or offscreen: boxes for letters, no scale and no theme of the user's.
  qputenv("FONTCONFIG_FILE", PARLOWEN_SOURCE_DIR "/tests/shell_qt/no_fonts.conf");
  for (const char* wish :
       {"QT_SCALE_FACTOR", "QT_SCREEN_SCALE_FACTORS", "QT_AUTO_SCREEN_SCALE_FACTOR",
        "QT_ENABLE_HIGHDPI_SCALING", "QT_SCALE_FACTOR_ROUNDING_POLICY", "QT_DEVICE_PIXEL_RATIO",
        "QT_USE_PHYSICAL_DPI", "QT_FONT_DPI", "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE",
        "XDG_CURRENT_DESKTOP", "XDG_SESSION_DESKTOP", "DESKTOP_SESSION", "KDE_FULL_SESSION",
        "KDE_SESSION_VERSION", "GNOME_DESKTOP_SESSION_ID"})
    qunsetenv(wish);
#endif
  QApplication application(argc, argv);
#ifdef PARLOWEN_WITHOUT_FONTS
  QApplication::setStyle("Fusion");
  QPalette palette = QApplication::style()->standardPalette();
  palette.setColor(QPalette::Highlight, Qt::transparent);  // the focus, which a window manager gives
  QApplication::setPalette(palette);
  QFont font("Sans Serif");
  font.setPixelSize(12);
  QApplication::setFont(font);
#endif
  std::setlocale(LC_NUMERIC, "C");
  QStandardPaths::setTestModeEnabled(true);
  return RUN_ALL_TESTS();
}
