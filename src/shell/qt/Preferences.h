#pragma once
#include <QByteArray>
#include <QSettings>
#include <QStringList>
#include <string>

#include "shell/PitchSpan.h"

namespace parlowen {

/// What the desktop remembers from one run to the next. The settings of a recording are not among it.
class Preferences {
 public:
  /// Kept in `file`, or in the user's settings when it is empty.
  explicit Preferences(const QString& file = {});

  static QString DocumentsFolder();  ///< the user's; without one the home folder
  QString Folder() const;            ///< of the last file dialog; at first the user's documents
  void SetFolder(const QString& folder);
  QStringList RecentFiles() const;  ///< newest first, at most kMostRecentFiles
  void AddRecentFile(const QString& path);
  QByteArray Layout() const;  ///< the heights of the panes
  void SetLayout(const QByteArray& state);
  PitchSpanChoice PitchSpan() const;
  void SetPitchSpan(const PitchSpanChoice& choice);
  QByteArray ToolPlace(const QString& name) const;  ///< of a tool window; empty before the first
  void SetToolPlace(const QString& name, const QByteArray& geometry);
  bool FollowsPlay() const;
  void SetFollowsPlay(bool follows);
  bool LabelsShown() const;
  void SetLabelsShown(bool shown);

  std::string Figure() const;  ///< the last figure of the whole window, as FigureChoiceText
  void SetFigure(const std::string& choice);
  int Ceiling() const;  ///< Hz up to which pictures are shown; 0: all
  void SetCeiling(int hertz);

  static constexpr int kMostRecentFiles = 9;

 private:
  QSettings settings_;
};

}  // namespace parlowen
