#pragma once
#include <QMainWindow>
#include <QPointer>
#include <array>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "shell/CommandTable.h"
#include "shell/Workstation.h"
#include "shell/qt/ActionGate.h"
#include "shell/qt/LossGuard.h"
#include "shell/qt/QtWindow.h"
#include "shell/qt/ToolBarIcons.h"

class QLabel;
class QMenu;
class QTimer;

namespace parlowen {

class ElidedLabel;
class LevelMeter;
class OverviewStrip;
class PaneSplitter;
class PaneWidget;
class Preferences;
class RateBar;
class TimeAxisStrip;

/// The window of the desktop program: menus, tool bar, panes, strips. It shows a workstation and hands on to
/// it what the user does.
class MainWindow : public QMainWindow {
  Q_OBJECT
 public:
  /// Makes the window that the handlers ask.
  using DialogsMaker =
      std::function<std::unique_ptr<QtWindow>(QWidget& host, ActionGate& gate, Preferences& preferences)>;
  static std::unique_ptr<QtWindow> MakeDialogs(QWidget& host, ActionGate& gate, Preferences& preferences);

  MainWindow(std::string dataFolder, Preferences& preferences, SoundDevices devices = {},
             const DialogsMaker& makeDialogs = MakeDialogs);
  ~MainWindow() override;

  /// Runs a command of the table, after asking about what it would lose; false when it is greyed or something
  /// else is open.
  bool Dispatch(int command);
  /// Opens a file that was dropped, chosen among the recent ones or named at the start.
  void OpenFile(const QString& path);
  /// Opens the first and puts the others among the recent files.
  void OpenFiles(const QStringList& paths);
  /// A microphone has come or gone.
  void InputDevicesChanged();

  Workstation& Station() { return station_; }
  QtWindow& Dialogs() { return dialogs_; }
  PaneWidget& PaneOf(Pane pane) const;
  QAction* ActionOf(int command) const;  ///< the entry of the menu, or null
  QString HintShown() const;
  QString HoverShown() const;
  QString SelectionShown() const;
  QString StatusShown() const;
  const LevelMeter& Meter() const { return *meter_; }

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void closeEvent(QCloseEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dropEvent(QDropEvent* event) override;

 private:
  struct ToolButton {
    std::vector<int> commands;  ///< the first that is enabled is run
    QAction* action;
    QString name;
  };
  struct OwnAction {
    QAction* action;
    bool needsSelection;
  };

  void MakeMenus();
  void MakeExtensionMenu(QMenu& menu);
  void MakePictureMenu(QMenu& menu, PaneWidget& pane);
  void MakeToolBar();
  void MakeCentre();
  void MakeStatusBar();
  void Connect();

  void ShowCaption(const QString& caption);
  void ShowStatus(const QString& text);
  void ShowSaved(const QString& path);
  void RenewStatus();
  void RepaintPanes(std::optional<Pane> pane);
  void TakePaneWidth();
  void Renew();
  void RenewActions();
  void ShowHover(PaneWidget* pane, QPoint at);
  void ClearHover();
  void ShowPaneMenu(PaneWidget* pane, QPoint global);
  void CopyRegionOf(const PaneRegion& region);
  void CopyHoverLine();
  void AskSelection();
  /// The panes over one axis as a figure, as the user wants it.
  void MakeFigure();
  void RenewRecentFiles();
  std::string NameFor(const FileKind& kind) const;
  void SoundFileSeen();
  void FileSeen(const QString& file);
  void FollowSound();
  /// Inside an action. A save that would take something from the sound's file may become another command, or
  /// none.
  bool RunCommand(int command, bool (Workstation::*run)(int));
  /// Asks about each unsaved work that is lost; false when the user would rather not, or when a save that was
  /// wanted did not come about.
  bool MayLose(const std::function<bool(Work)>& isLost);
  bool MayLoseFor(const CommandRow& command);
  bool Save(Work work);
  int SavingCommand();
  bool MayReadMarkers();
  void ChooseExportFolder(const QString& file);
  void RenewExportFolder();
  void ShowExportNotice();
  void MakeRoomForLabels();
  void ShowChart(bool shown);
  /// What the commands of the options have changed: shown and remembered.
  void TakeOptions();
  bool UseKey(const std::string& key);

  Preferences& preferences_;
  ActionGate gate_;
  const std::unique_ptr<QtWindow> ownDialogs_;
  QtWindow& dialogs_;
  Workstation station_;
  LossGuard guard_;

  std::map<int, QAction*> actions_;
  std::vector<ToolButton> toolButtons_;
  std::vector<OwnAction> ownActions_;
  QMenu* recentMenu_ = nullptr;
  ElidedLabel* selectionLine_ = nullptr;
  ElidedLabel* status_ = nullptr;
  ElidedLabel* hint_ = nullptr;
  ElidedLabel* hover_ = nullptr;
  LevelMeter* meter_ = nullptr;
  RateBar* rateBar_ = nullptr;
  PaneSplitter* splitter_ = nullptr;
  std::array<PaneWidget*, 5> panes_{};
  PaneWidget* chart_ = nullptr;  ///< stands over the three lower panes at times
  TimeAxisStrip* axis_ = nullptr;
  OverviewStrip* overview_ = nullptr;
  QTimer* renewal_ = nullptr;     ///< gathers repaints asked for outside of an action
  QTimer* soundTimer_ = nullptr;  ///< runs while something is played or recorded
  int metered_ = 0;               ///< blocks of the recording that the meter has seen
  PaneWidget* hoverPane_ = nullptr;
  QPoint hoverAt_;
  QString said_;       ///< by the present action, or since
  QStringList saved_;  ///< files that it wrote
  std::string seenPath_;
  QString fileFolder_;         ///< of the last loaded or saved file; "" before the first
  bool closing_ = false;       ///< as soon as the recording has ended
  bool exportsMoved_ = false;  ///< text exports go elsewhere, for that folder cannot be written to
  bool exportNotice_ = false;  ///< the status line has yet to say so
};

}  // namespace parlowen
