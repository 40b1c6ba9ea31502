#include "shell/qt/Preferences.h"

#include <QDir>
#include <QStandardPaths>

namespace parlowen {
namespace {

constexpr const char* kFolder = "folder";
constexpr const char* kRecent = "recentFiles";
constexpr const char* kLayout = "paneHeights";
constexpr const char* kLabels = "labelPane";
constexpr const char* kTools = "toolWindows/";
constexpr const char* kPitchSpan = "pitchSpan";
constexpr const char* kFollowPlay = "followPlay";
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

PitchSpanChoice Preferences::PitchSpan() const {
  using Kind = PitchSpanChoice::Kind;
  const QStringList parts = settings_.value(kPitchSpan).toStringList();
  if (parts.size() != 3) return {};
  const double low = parts[1].toDouble(), high = parts[2].toDouble();
  const int kind = parts[0].toInt();
  const bool usable =
      low >= kLowestPitchLimit && high <= kHighestPitchLimit && high >= low * kLeastPitchRatio;
  if (!usable || kind < 0 || kind > static_cast<int>(Kind::Own)) return {};
  return {static_cast<Kind>(kind), {low, high}};
}

void Preferences::SetPitchSpan(const PitchSpanChoice& choice) {
  settings_.setValue(kPitchSpan,
                     QStringList{QString::number(static_cast<int>(choice.kind)),
                                 QString::number(choice.own.lowest), QString::number(choice.own.highest)});
}

QByteArray Preferences::ToolPlace(const QString& name) const {
  return settings_.value(kTools + name).toByteArray();
}

void Preferences::SetToolPlace(const QString& name, const QByteArray& geometry) {
  settings_.setValue(kTools + name, geometry);
}

bool Preferences::FollowsPlay() const { return settings_.value(kFollowPlay, true).toBool(); }

void Preferences::SetFollowsPlay(bool follows) { settings_.setValue(kFollowPlay, follows); }

bool Preferences::LabelsShown() const { return settings_.value(kLabels, false).toBool(); }

void Preferences::SetLabelsShown(bool shown) { settings_.setValue(kLabels, shown); }

std::string Preferences::Figure() const { return settings_.value(kFigure).toString().toStdString(); }

void Preferences::SetFigure(const std::string& choice) {
  settings_.setValue(kFigure, QString::fromStdString(choice));
}

int Preferences::Ceiling() const { return settings_.value(kCeiling).toInt(); }

void Preferences::SetCeiling(int hertz) { settings_.setValue(kCeiling, hertz); }

}  // namespace parlowen
