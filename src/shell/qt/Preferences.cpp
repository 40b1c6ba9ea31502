#include "shell/qt/Preferences.h"

#include <QDir>
#include <QStandardPaths>

namespace parlowen {
namespace {

constexpr const char* kFolder = "folder";
constexpr const char* kRecent = "recentFiles";
constexpr const char* kLayout = "paneHeights";
constexpr const char* kFigure = "figure";
constexpr const char* kCeiling = "frequencyCeiling";

QString UserSettingsFile() {
  return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) + "/parlowen/parlowen.ini";
}

}  // namespace

Preferences::Preferences(const QString& file)
    : settings_(file.isEmpty() ? UserSettingsFile() : file, QSettings::IniFormat) {}

QString Preferences::Folder() const {
  const QString folder = settings_.value(kFolder).toString();
  return !folder.isEmpty() && QDir(folder).exists() ? folder : DocumentsFolder();
}

QString Preferences::DocumentsFolder() {
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  return QDir(documents).exists() ? documents : QDir::homePath();
}

void Preferences::SetFolder(const QString& folder) { settings_.setValue(kFolder, folder); }

QStringList Preferences::RecentFiles() const { return settings_.value(kRecent).toStringList(); }

void Preferences::AddRecentFile(const QString& path) {
  QStringList files = RecentFiles();
  files.removeAll(path);
  files.prepend(path);
  while (files.size() > kMostRecentFiles) files.removeLast();
  settings_.setValue(kRecent, files);
}

QByteArray Preferences::Layout() const { return settings_.value(kLayout).toByteArray(); }

void Preferences::SetLayout(const QByteArray& state) { settings_.setValue(kLayout, state); }

std::string Preferences::Figure() const { return settings_.value(kFigure).toString().toStdString(); }

void Preferences::SetFigure(const std::string& choice) {
  settings_.setValue(kFigure, QString::fromStdString(choice));
}

int Preferences::Ceiling() const { return settings_.value(kCeiling).toInt(); }

void Preferences::SetCeiling(int hertz) { settings_.setValue(kCeiling, hertz); }

}  // namespace parlowen
