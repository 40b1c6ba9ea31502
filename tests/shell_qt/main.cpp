#include <gtest/gtest.h>

#include <QApplication>
#include <QStandardPaths>
#include <clocale>

int main(int argc, char** argv) {
  testing::InitGoogleTest(&argc, argv);
  if (GTEST_FLAG_GET(list_tests)) return RUN_ALL_TESTS();
  if (qEnvironmentVariableIsEmpty("DISPLAY") && qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
    qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  std::setlocale(LC_NUMERIC, "C");
  QStandardPaths::setTestModeEnabled(true);
  return RUN_ALL_TESTS();
}
