#include "shell/qt/MainWindow.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QFileInfo>
#include <QGridLayout>
#include <QKeyEvent>
#include <QMenuBar>
#include <QMimeData>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <QVBoxLayout>
#include <algorithm>
#include <cstdlib>
#include <span>
#include <utility>

#include "base/Arithmetic.h"
#include "base/Files.h"
#include "base/Format.h"
#include "document/SoundFileCommands.h"
#include "document/WavFile.h"
#include "shell/FigureChoice.h"
#include "shell/qt/ElidedLabel.h"
#include "shell/qt/FormDialog.h"
#include "shell/qt/KeyNames.h"
#include "shell/qt/LabelEditor.h"
#include "shell/qt/LevelMeter.h"
#include "shell/qt/MenuTexts.h"
#include "shell/qt/OverviewStrip.h"
#include "shell/qt/PaneSplitter.h"
#include "shell/qt/PaneWidget.h"
#include "shell/qt/PictureExport.h"
#include "shell/qt/PicturePainter.h"
#include "shell/qt/Preferences.h"
#include "shell/qt/RateBar.h"
#include "shell/qt/TimeAxisStrip.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr Pane kPanes[] = {Pane::Amplitude, Pane::Pitch, Pane::Analysis, Pane::Waveform, Pane::Labels};
constexpr UiText kRecentFiles = "最近的文件(&R)";
constexpr UiText kPictureOutput = "图形输出(&T)";
constexpr UiText kWholeWindow = "整个窗口(&W)...";
constexpr UiText kChartMenu = "元音图";
constexpr UiText kSelectEntry = "选定...(&S)";
constexpr UiText kZoomInEntry = "放大(&I)";
constexpr UiText kZoomOutEntry = "缩小(&O)";
constexpr UiText kShowSelectionEntry = "显示选定的段(&E)";
constexpr UiText kShowAllEntry = "显示整个声音(&W)";
constexpr UiText kFullScreenEntry = "全屏(&N)";
constexpr UiText kRecordingName = "录音";
constexpr UiText kCopyHoverEntry = "复制读数(&C)";
constexpr UiText kToolBar = "工具栏";
constexpr UiText kNoRecentFiles = "（无）";
constexpr int kPaneParts[] = {2, 3, 6, 3};  // heights 1 : 1.5 : 3 : 1.5, and no part for the labels
constexpr int kAnalysisPane = 2;            // its number; it gives the labels their height

constexpr UiText kSaved = "已保存：";
constexpr UiText kExportsMoved = "文件夹不能写入，文本数据写到 %s";
constexpr int kSoundMilliseconds = 30;  // between two positions of the cursor

using namespace commands;

constexpr UiText kOpenTool = "打开", kSaveTool = "保存", kRecordTool = "录音", kStopTool = "停止";
constexpr UiText kZoomOutTool = "缩小", kZoomOutHelp = "缩小 (S)", kZoomInTool = "放大",
                 kZoomInHelp = "放大 (X)";
constexpr UiText kPitchTool = "基频", kWideBandTool = "宽带", kNarrowBandTool = "窄带";
constexpr UiText kSelectTitle = "选定", kSamplesUnit = "样点";
constexpr UiText kHighestText = "起止秒Hg";  // letters and hanzi that reach furthest up and down
constexpr UiText kBetweenFiles = "；";

constexpr UiText kUnsavedCaption = "尚未保存";
constexpr UiText kUnsaved[] = {"声音已经改动，还没有保存。", "手工修改过的基频还没有保存。",
                               "标志已经改动，还没有保存。", "注释字符已经改动，还没有存为国际音标文件。",
                               "元音图已经改动，还没有保存。"};  // in the order of kWorks
constexpr UiText kUnsavedBoth = "声音已经改动，基频经过手工修改，都还没有保存。";
constexpr UiText kUnsavedForGood = "手工修改过的基频还没有保存。有些帧没有求过基频，不能随声音保存。";
constexpr UiText kSaveOrNot[] = {messages::kSave, messages::kDiscard, messages::kCancel};

constexpr UiText kReadMarkersAgain =
    "标志已经改动，还没有保存。继续使用现有标志，还是放弃改动、重新读入标志文件？";
constexpr UiText kKeepMarkers[] = {"继续使用(&K)", messages::kDiscard, messages::kCancel};

constexpr UiText kSaveCaption = "保存声音";
constexpr UiText kPartOfFile = "只调入了文件的一部分，保存将丢失其余部分。";
constexpr UiText kChangedFile = "文件在调入或保存以后又被改动，保存将丢失这些改动。\n%s";
constexpr UiText kOtherFile = "%s 已经存在，保存将替换它。";
constexpr UiText kReplaceFile[] = {"另存为(&A)...", "覆盖(&O)", messages::kCancel};

/// The keyboard's way to a menu; the names of the menus have none of their own. A submenu's letter is none of its
/// neighbours' in the menu.
constexpr char kMenuLetters[] = {'F', 'R', 'P', 'S', 'S', 'V', 'E', 'U', 'D', 'M', 'O', 'A', 'H', 'X', 'D'};

QString MenuTitle(Menu menu) {
  return QString("%1(&%2)").arg(MenuName(menu).Get()).arg(QChar(kMenuLetters[static_cast<int>(menu)]));
}

/// Long menus have a line before these.
bool BeginsGroup(int command) {
  constexpr int kFirst[] = {
      kOpenNextDigit,    kOpenIpa,           kQuit,           kPlayWhole,        kResynthesize,
      kRepairPitch,      kSaveSegmentPitch,  kFiveDegreePlot, kAddDuration,      kShowFrame,
      kLongTermSpectrum, kConsonantOneFrame, kSaveFormants,   kPointChart,       kShowAverageVowels,
      kSaveChart,        kAddPointByHand,    kPalateIndex,    kPalateStatistics, kSaveIpa,
      kOpenTwoChannels,  kSaveTwoChannels,   kAmplify,        kSaveSelection,    kFilterSegment,
      kInsertCharacters, kEditMarkers,       kChooseToneItem, kShowToneData,     kShowLabels,
      kImportLabelTrack, kExportPitchTier,   kExportPitchCsv, kExportStereoWav,  kExportTonesCsv};
  return std::find(std::begin(kFirst), std::end(kFirst), command) != std::end(kFirst);
}

/// Entries of the panes' own menus that save what is seen there.
std::vector<int> ExportCommands(Pane pane) {
  switch (pane) {
    case Pane::Pitch: return {commands::kSaveSegmentPitch};
    case Pane::Analysis: return {commands::kSaveFormants};
    case Pane::Waveform: return {commands::kSaveSelection};
    default: return {};
  }
}

/// Files of our kinds among what is dragged.
QStringList DroppedFiles(const QMimeData* data) {
  QStringList files;
  if (data == nullptr) return files;
  for (const QUrl& url : data->urls())
    if (const QString path = url.toLocalFile(); OpenedKindOf(path.toStdString()) != nullptr) files += path;
  return files;
}

}  // namespace

std::unique_ptr<QtWindow> MainWindow::MakeDialogs(QWidget& host, ActionGate& gate, Preferences& preferences) {
  return std::make_unique<QtWindow>(host, gate, preferences);
}

MainWindow::MainWindow(std::string dataFolder, Preferences& preferences, SoundDevices devices,
                       const DialogsMaker& makeDialogs)
    : preferences_(preferences),
      ownDialogs_(makeDialogs(*this, gate_, preferences)),
      dialogs_(*ownDialogs_),
      station_(dialogs_, std::move(dataFolder), devices),
      guard_(station_.document, station_.vowels.chart, station_.markers, station_.annotations) {
  setAcceptDrops(true);
  setContextMenuPolicy(Qt::NoContextMenu);
  MakeMenus();
  MakeToolBar();
  MakeCentre();
  MakeStatusBar();
  Connect();
  dialogs_.SetCaption(kProgramCaption);
  dialogs_.beforeModal = [this] { station_.player.stopPlayback(); };
  dialogs_.askInDrawing = [this](InputForm& form) {
    PaneWidget& pane = PaneOf(Pane::Labels);
    if (!pane.isVisible()) return FormDialog(form, this).exec() == QDialog::Accepted;
    const bool taken = LabelEditor(form, pane, PaneWidget::kGutter, centralWidget()).Ask();
    pane.setFocus();
    return taken;
  };
  dialogs_.nameFor = [this](const FileKind& kind) { return NameFor(kind); };
  station_.view.keepsToSound = true;
  station_.view.followsPlay = preferences_.FollowsPlay();
  station_.view.pitchSpan = preferences_.PitchSpan();
  station_.markers.paneShown = preferences_.LabelsShown();
  splitter_->ShowLabels(station_.markers.paneShown);
  splitter_->RestoreHeights(preferences_.Layout());
  resize(1280, 800);
  PaneOf(Pane::Waveform).setFocus();
  station_.spectrogram.ceiling = preferences_.Ceiling();
  station_.view.chartScales = true;
  RenewExportFolder();
  Renew();
}

MainWindow::~MainWindow() {
  dialogs_.CloseAllToolWindows();
  // The panes go after this window's own part, and the one that has the focus tells that it loses it.
  for (PaneWidget* pane : findChildren<PaneWidget*>()) pane->disconnect(this);
}

// --- Making

void MainWindow::MakeMenus() {
  std::map<Menu, QMenu*> menus;
  for (int i = 0; i <= static_cast<int>(Menu::Extension); ++i) {
    const Menu menu = static_cast<Menu>(i);
    if (menu == Menu::Tone) continue;
    menus[menu] = menuBar()->addMenu(MenuTitle(menu));
    menus[menu]->setToolTipsVisible(true);
  }
  for (const CommandRow& row : CommandTable()) {
    if (!menus.contains(row.menu)) {
      const Menu parent = row.menu == Menu::Tone ? Menu::Pitch : Menu::Extension;
      menus[row.menu] = menus[parent]->addMenu(MenuTitle(row.menu));
      menus[row.menu]->setToolTipsVisible(true);
    }
    QMenu& menu = *menus[row.menu];
    if (BeginsGroup(row.number)) menu.addSeparator();
    QAction* action = menu.addAction(WithUniqueMnemonic(QString::fromUtf8(row.label.Get()), menu));
    connect(action, &QAction::triggered, this, [this, number = row.number] { Dispatch(number); });
    action->setCheckable(row.isOn != nullptr);
    if (IsPaneKey(row.keys)) {
      action->setText(action->text() + '\t' + ShownKeys(row.keys));
    } else {
      action->setShortcut(QKeySequence(row.keys));
    }
    actions_[row.number] = action;
  }
  MakeExtensionMenu(*menus[Menu::Extension]);
}

void MainWindow::MakeExtensionMenu(QMenu& menu) {
  if (!menu.isEmpty()) menu.addSeparator();
  const auto add = [&](UiText text, const char* keys, bool needsSelection, auto&& act) {
    QAction* action = menu.addAction(text.Get());
    action->setShortcut(QKeySequence(keys));
    connect(action, &QAction::triggered, this, [this, act] { gate_.Run(act); });
    ownActions_.push_back({action, needsSelection});
  };
  recentMenu_ = menu.addMenu(kRecentFiles.Get());
  connect(recentMenu_, &QMenu::aboutToShow, this, &MainWindow::RenewRecentFiles);
  QMenu* pictures = menu.addMenu(kPictureOutput.Get());
  connect(pictures, &QMenu::aboutToShow, this, [this, pictures] {
    pictures->clear();
    pictures->addAction(kWholeWindow.Get(), this, [this] { gate_.Run([this] { MakeFigure(); }); });
    pictures->addSeparator();
    for (std::size_t i = 0; i < std::size(kPanes); ++i)
      if (!panes_[i]->isHidden()) MakePictureMenu(*pictures->addMenu(PaneName(kPanes[i]).Get()), *panes_[i]);
    if (!chart_->isHidden()) MakePictureMenu(*pictures->addMenu(kChartMenu.Get()), *chart_);
  });
  menu.addSeparator();
  add(kSelectEntry, "Ctrl+G", false, [this] { AskSelection(); });
  add(kZoomInEntry, "Ctrl++", false, [this] { station_.Zoom(false); });
  add(kZoomOutEntry, "Ctrl+-", false, [this] { station_.Zoom(true); });
  add(kShowSelectionEntry, "Ctrl+E", true, [this] { station_.ZoomToSelection(); });
  add(kShowAllEntry, "Ctrl+0", false, [this] { station_.ZoomTo(0, station_.document.sampleCount); });
  menu.addSeparator();
  add(kCopyHoverEntry, "Ctrl+Shift+C", false, [this] { CopyHoverLine(); });
  menu.addSeparator();
  QAction* full = menu.addAction(kFullScreenEntry.Get());
  full->setShortcut(QKeySequence(Qt::Key_F11));
  connect(full, &QAction::triggered, this, [this] { setWindowState(windowState() ^ Qt::WindowFullScreen); });
}

void MainWindow::MakePictureMenu(QMenu& menu, PaneWidget& pane) {
  AddPictureActions(menu, dialogs_, gate_, 0, [&pane] { return pane.Shown(); });
}

void MainWindow::MakeToolBar() {
  QToolBar* bar = addToolBar(kToolBar.Get());
  bar->setObjectName("tools");
  bar->setMovable(false);
  bar->setFloatable(false);
  bar->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
  bar->setIconSize({20, 20});
  const QColor ink = palette().color(QPalette::ButtonText);
  const auto add = [&](ToolIcon icon, UiText name, std::vector<int> commands) {
    QAction* action = bar->addAction(MakeToolIcon(icon, ink), name.Get());
    connect(action, &QAction::triggered, this, [this, commands] {
      for (const int command : commands)
        if (station_.states.IsEnabled(command)) return void(Dispatch(command));
    });
    toolButtons_.push_back({std::move(commands), action, name.Get()});
  };
  const auto addZoom = [&](ToolIcon icon, UiText name, UiText toolTip, bool out) {
    QAction* action = bar->addAction(MakeToolIcon(icon, ink), name.Get());
    action->setToolTip(toolTip.Get());
    connect(action, &QAction::triggered, this, [this, out] { gate_.Run([&] { station_.Zoom(out); }); });
    ownActions_.push_back({action, false});
  };
  add(ToolIcon::Open, kOpenTool, {commands::kOpenSound});
  add(ToolIcon::Save, kSaveTool, {commands::kSaveSound});
  bar->addSeparator();
  add(ToolIcon::Record, kRecordTool, {commands::kRecordUntilSilence});
  add(ToolIcon::Play, messages::kPlay, {commands::kPlaySelection, commands::kPlayWhole});
  add(ToolIcon::Stop, kStopTool, {commands::kStopRecording, commands::kStopPlaying});
  bar->addSeparator();
  addZoom(ToolIcon::ZoomOut, kZoomOutTool, kZoomOutHelp, true);
  addZoom(ToolIcon::ZoomIn, kZoomInTool, kZoomInHelp, false);
  bar->addSeparator();
  add(ToolIcon::Pitch, kPitchTool, {commands::kFastPitch});
  add(ToolIcon::WideBand, kWideBandTool, {commands::kWideBand});
  add(ToolIcon::NarrowBand, kNarrowBandTool, {commands::kNarrowBand});
}

void MainWindow::MakeCentre() {
  auto* centre = new QWidget(this);
  auto* column = new QVBoxLayout(centre);
  column->setContentsMargins(4, 2, 4, 2);
  column->setSpacing(2);
  selectionLine_ = new ElidedLabel(centre);
  rateBar_ = new RateBar(centre);
  rateBar_->convert = [this](bool to16000) {
    dialogs_.answerNext = to16000;
    Dispatch(commands::kConvertRate);
    dialogs_.answerNext.reset();
  };
  column->addWidget(rateBar_);
  column->addWidget(selectionLine_);

  splitter_ = new PaneSplitter(centre);
  for (std::size_t i = 0; i < std::size(kPanes); ++i) {
    auto* pane = new PaneWidget(kPanes[i], station_, gate_, splitter_);
    panes_[i] = pane;
    if (kPanes[i] == Pane::Labels) {
      splitter_->AddLabels(pane, kAnalysisPane);
    } else {
      splitter_->AddPane(pane, kPaneParts[i]);
    }
  }
  chart_ = new PaneWidget(Pane::Chart, station_, gate_, splitter_);
  splitter_->AddChart(chart_);
  column->addWidget(splitter_, 1);
  axis_ = new TimeAxisStrip(station_.view, centre);
  column->addWidget(axis_);
  overview_ = new OverviewStrip(station_, gate_, centre);
  column->addWidget(overview_);
  setCentralWidget(centre);
}

/// Two lines: the hint needs all the width of a small screen; under it what the pointer shows and what was
/// reported.
void MainWindow::MakeStatusBar() {
  auto* lines = new QWidget(this);
  auto* grid = new QGridLayout(lines);
  grid->setContentsMargins(4, 0, 4, 2);
  grid->setVerticalSpacing(0);
  hint_ = new ElidedLabel(lines);
  hover_ = new ElidedLabel(lines);
  status_ = new ElidedLabel(lines, Qt::ElideMiddle);  // the end of a file's name matters most
  status_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
  QFont bold = font();
  bold.setBold(true);
  status_->setFont(bold);
  // One height with and without a text: the panes do not move when a line comes or goes.
  for (ElidedLabel* label : {hint_, hover_, status_}) {
    label->SetText(kHighestText.Get());
    label->setFixedHeight(label->sizeHint().height());
    label->SetText({});
  }
  grid->addWidget(hint_, 0, 0, 1, 2);
  grid->addWidget(hover_, 1, 0);
  grid->addWidget(status_, 1, 1);
  meter_ = new LevelMeter(lines);
  meter_->hide();
  grid->addWidget(meter_, 0, 2, 2, 1, Qt::AlignVCenter);
  grid->setColumnStretch(0, 1);  // a report takes what it needs, see TakePaneWidth
  statusBar()->setSizeGripEnabled(false);
  statusBar()->addWidget(lines, 1);
}

void MainWindow::Connect() {
  renewal_ = new QTimer(this);
  renewal_->setSingleShot(true);
  connect(renewal_, &QTimer::timeout, this, &MainWindow::Renew);
  gate_.perform = [this](const auto& action) { station_.Act(action); };
  connect(&gate_, &ActionGate::Began, this, [this] {
    said_.clear();
    saved_.clear();
    RenewExportFolder();
  });
  soundTimer_ = new QTimer(this);
  soundTimer_->setInterval(kSoundMilliseconds);
  connect(soundTimer_, &QTimer::timeout, this, &MainWindow::FollowSound);
  connect(&gate_, &ActionGate::Finished, this, [this](int level) {
    if (station_.player.playing() && !soundTimer_->isActive()) soundTimer_->start();  // in a modal window too
    if (level != 0) return;
    Renew();
    ShowExportNotice();
  });
  connect(&dialogs_, &QtWindow::CaptionChanged, this, &MainWindow::ShowCaption);
  connect(&dialogs_, &QtWindow::StatusShown, this, &MainWindow::ShowStatus);
  connect(&dialogs_, &QtWindow::FileSaved, this, &MainWindow::ShowSaved);
  connect(&dialogs_, &QtWindow::RepaintAsked, this, &MainWindow::RepaintPanes);
  connect(&dialogs_, &QtWindow::RegionCopied, this, &MainWindow::CopyRegionOf);
  connect(&dialogs_, &QtWindow::FileChosen, this, &MainWindow::ChooseExportFolder);
  // Not for a help page: an export was written before it is shown.
  connect(&dialogs_, &QtWindow::EditorAsked, this,
          [this] { exportNotice_ = exportsMoved_ && !saved_.isEmpty(); });
  connect(&dialogs_, &QtWindow::KeyUnused, this, &MainWindow::UseKey);
  // The handler that asks to quit is still running: the window closes when it has returned.
  connect(&dialogs_, &QtWindow::QuitAsked, this, &QWidget::close, Qt::QueuedConnection);
  std::vector<PaneWidget*> shown(panes_.begin(), panes_.end());
  shown.push_back(chart_);
  for (PaneWidget* pane : shown) {
    connect(pane, &PaneWidget::FocusMoved, this, [this] {
      if (renewal_ != nullptr) renewal_->start(0);
    });
    connect(pane, &PaneWidget::Hovered, this, &MainWindow::ShowHover);
    connect(pane, &PaneWidget::HoverLeft, this, &MainWindow::ClearHover);
    connect(pane, &PaneWidget::Resized, this, &MainWindow::TakePaneWidth);
    connect(pane, &PaneWidget::MenuAsked, this, &MainWindow::ShowPaneMenu);
  }
}

// --- Doing

PaneWidget& MainWindow::PaneOf(Pane pane) const {
  if (pane == Pane::Chart) return *chart_;
  const auto at = std::find(std::begin(kPanes), std::end(kPanes), pane);
  const auto index = at != std::end(kPanes) ? at - std::begin(kPanes) : 0;
  return *panes_[static_cast<std::size_t>(index)];
}

QAction* MainWindow::ActionOf(int command) const {
  const auto at = actions_.find(command);
  return at != actions_.end() ? at->second : nullptr;
}

bool MainWindow::Dispatch(int command) {
  const CommandRow* row = FindCommand(command);
  if (row == nullptr || !station_.states.IsEnabled(command)) return false;
  bool done = false;
  gate_.Run([&] {
    if (!MayLoseFor(*row) || (command == kEditMarkers && !MayReadMarkers())) return;
    status_->SetText({});
    done = RunCommand(command, &Workstation::dispatchCommand);
  });
  return done;
}

bool MainWindow::RunCommand(int command, bool (Workstation::*run)(int)) {
  if (command == kSaveSound) command = SavingCommand();
  const CommandRow* row = FindCommand(command);
  if (row == nullptr) return false;
  const int setbacks = dialogs_.Setbacks(), filesSaved = dialogs_.FilesSaved();
  const QString folder = fileFolder_;
  guard_.CommandBegins(setbacks, filesSaved);
  const bool done = (station_.*run)(command);
  const bool opened = guard_.CommandEnded(*row, dialogs_.Setbacks(), dialogs_.FilesSaved());
  // The folder of a file that was refused is not that of the last one loaded or saved.
  if (dialogs_.Setbacks() != setbacks && dialogs_.FilesSaved() == filesSaved && !opened) fileFolder_ = folder;
  RenewExportFolder();
  SoundFileSeen();
  return done;
}

void MainWindow::OpenFile(const QString& path) {
  gate_.Run([&] {
    if (station_.recording.running()) return;
    const std::string file = AbsolutePath(path.toStdString());
    const CommandRow* row = FindCommand(Workstation::OpeningCommand(file));
    if (row == nullptr || !MayLoseFor(*row)) return;
    status_->SetText({});
    guard_.CommandBegins(dialogs_.Setbacks(), dialogs_.FilesSaved());
    station_.OpenFile(file);
    if (guard_.CommandEnded(*row, dialogs_.Setbacks(), dialogs_.FilesSaved()))
      FileSeen(QString::fromStdString(file));
  });
}

void MainWindow::OpenFiles(const QStringList& paths) {
  for (qsizetype i = paths.size() - 1; i > 0; --i)
    preferences_.AddRecentFile(QFileInfo(paths[i]).absoluteFilePath());
  if (!paths.isEmpty()) OpenFile(paths.constFirst());
}

/// The sound's name with the kind's ending; for a sound, the next name of its series.
std::string MainWindow::NameFor(const FileKind& kind) const {
  const SoundDocument& document = station_.document;
  if (*kind.extension == '\0') return {};
  if (document.filePath.empty())
    return document.sampleCount > 0 ? std::string(kRecordingName) + "." + kind.extension : std::string();
  if (std::string_view(kind.extension) == FileKindNamed("wav").extension)
    return FileNameOf(document.nextDigitPath);
  const QFileInfo sound(QString::fromStdString(document.filePath));
  return sound.completeBaseName().toStdString() + "." + kind.extension;
}

void MainWindow::SoundFileSeen() {
  const std::string path = station_.document.filePath;
  if (std::exchange(seenPath_, path) == path) return;
  if (!path.empty()) FileSeen(QString::fromStdString(path));
}

void MainWindow::FileSeen(const QString& file) {
  seenPath_ = station_.document.filePath;
  preferences_.AddRecentFile(file);
  preferences_.SetFolder(QFileInfo(file).absolutePath());
  ChooseExportFolder(file);
}

void MainWindow::ChooseExportFolder(const QString& file) {
  fileFolder_ = QFileInfo(file).absolutePath();
  RenewExportFolder();
}

/// Exports stand beside the file that was loaded or saved last. A folder can vanish or lose its permission at
/// any time.
void MainWindow::RenewExportFolder() {
  const QFileInfo folder(fileFolder_);
  const bool moved = !fileFolder_.isEmpty() && !(folder.isDir() && folder.isWritable());
  exportNotice_ = exportNotice_ || (moved && !exportsMoved_);
  exportsMoved_ = moved;
  const bool documents = moved || fileFolder_.isEmpty();
  station_.exportFolder = (documents ? Preferences::DocumentsFolder() : fileFolder_).toStdString();
}

void MainWindow::ShowExportNotice() {
  if (!std::exchange(exportNotice_, false) || !exportsMoved_) return;
  said_ = QString::fromStdString(Format(kExportsMoved.Get(), station_.exportFolder.c_str()));
  RenewStatus();
}

bool MainWindow::MayLoseFor(const CommandRow& command) {
  return MayLose([&command](Work work) { return LossGuard::Replaces(command, work); });
}

bool MainWindow::MayLose(const std::function<bool(Work)>& isLost) {
  const auto asksAbout = [&](Work work) { return isLost(work) && guard_.Unsaved(work); };
  bool contourGiven = false;
  for (const Work work : kWorks) {
    if (!asksAbout(work) || (work == Work::Contour && contourGiven)) continue;
    // One file holds both: one question.
    const bool both = work == Work::Sound && asksAbout(Work::Contour);
    const bool canSave = work != Work::Contour || HasComputedContour(station_.document);
    const UiText text = both ? kUnsavedBoth : canSave ? kUnsaved[static_cast<int>(work)] : kUnsavedForGood;
    const std::span<const UiText> buttons =
        canSave ? std::span(kSaveOrNot) : std::span(kSaveOrNot).subspan(1);
    // The first that loses nothing is the default.
    const int answer = dialogs_.Choose(text, kUnsavedCaption, buttons, canSave ? 0 : 1) + (canSave ? 0 : 1);
    if (answer > 1 || (answer == 0 && !Save(work))) return false;
    contourGiven = both && answer == 1;
  }
  return true;
}

/// True when it is saved afterwards.
bool MainWindow::Save(Work work) {
  switch (work) {
    case Work::Sound: RunCommand(kSaveSound, &Workstation::Save); break;
    // A file with two channels has no room for a contour.
    case Work::Contour:
      RunCommand(station_.document.twoChannel ? kSaveIpa : kSaveSound, &Workstation::Save);
      break;
    case Work::Markers: SaveMarkers(dialogs_, station_.document, station_.markers); break;
    case Work::Annotations: RunCommand(kSaveIpa, &Workstation::Save); break;
    case Work::Chart: RunCommand(kSaveChart, &Workstation::Save); break;
  }
  return !guard_.Unsaved(work);
}

/// The command that saves the sound without taking from its file what the user wants to keep; 0 for none.
int MainWindow::SavingCommand() {
  const LossGuard::SavingLoss loss = guard_.LossBySaving();
  if (loss == LossGuard::SavingLoss::None) return kSaveSound;
  const UiText text = loss == LossGuard::SavingLoss::RestOfFile     ? kPartOfFile
                      : loss == LossGuard::SavingLoss::LaterChanges ? kChangedFile
                                                                    : kOtherFile;
  const std::string path = PathToSave(station_.document);
  constexpr int kCommands[] = {kSaveSoundAs, kSaveSound, 0};
  return kCommands[dialogs_.Choose(Format(text.Get(), path.c_str()), kSaveCaption, kReplaceFile, 0)];
}

/// The marker window begins with the file's markers, unless the user would rather go on with changed ones.
bool MainWindow::MayReadMarkers() {
  if (!guard_.Unsaved(Work::Markers)) return true;
  const int answer = dialogs_.Choose(kReadMarkersAgain, kUnsavedCaption, kKeepMarkers, 0);
  if (answer == 0) ShowMarkers(dialogs_, station_.document, station_.markers, station_.playStretch);
  return answer == 1;
}

void MainWindow::InputDevicesChanged() {
  station_.InputDevicesChanged();
  Renew();
}

bool MainWindow::UseKey(const std::string& key) {
  // A menu's key that a tool window had no use for: not past the questions about loss.
  for (const CommandRow& row : CommandTable())
    if (row.keys == key && !IsPaneKey(row.keys)) return Dispatch(row.number);
  bool used = false;
  gate_.Run([&] { used = station_.Key(key); });
  return used;
}

void MainWindow::keyPressEvent(QKeyEvent* event) {
  const std::string key = KeyName(*event);
  if (key.empty() || !UseKey(key)) QMainWindow::keyPressEvent(event);
}

void MainWindow::closeEvent(QCloseEvent* event) {
  const Recorder& recording = station_.recording;
  if (recording.running() && !recording.listensOnly() && !std::exchange(closing_, true)) {
    // What was spoken so far is unsaved work; it is complete with the next block.
    station_.recording.stopRecording();
    return event->ignore();
  }
  closing_ = false;
  bool mayClose = false;
  gate_.Run([&] { mayClose = MayLose([](Work) { return true; }); });
  if (!mayClose) return event->ignore();
  preferences_.SetLayout(splitter_->ChosenHeights());
  dialogs_.CloseAllToolWindows();
  event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
  if (gate_.Depth() == 0 && !DroppedFiles(event->mimeData()).isEmpty()) event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
  const QStringList files = DroppedFiles(event->mimeData());
  if (files.isEmpty()) return;
  event->acceptProposedAction();
  // Whoever dropped them waits until this returns; a question must not keep it waiting.
  QTimer::singleShot(0, this, [this, files] { OpenFiles(files); });
}

void MainWindow::AskSelection() {
  const SoundDocument& document = station_.document;
  const double rate = std::max(1, document.sampleRate);
  const bool defined = document.selectionDefined();
  const int start = defined ? document.selectionStart : document.viewStart;
  const int end = defined ? document.selectionEnd : document.viewStart + document.viewLength;
  const double first = document.PartStart() / rate;  // seconds count from the file's start
  const auto edge = [&](int control, UiText label, int at) {
    FormField field;
    field.control = control;
    field.kind = FieldKind::Number;
    field.label = label;
    field.value = QString::number(first + at / rate, 'f', 4).toStdString();
    return field;
  };
  const auto unitChoice = [](UiText label, bool checked) {
    FormField field;
    field.kind = FieldKind::Radio;
    field.label = label;
    field.checked = checked;
    return field;
  };
  InputForm form;
  form.title = kSelectTitle;
  form.fields = {edge(1000, messages::kSelectionStart, start), edge(1001, messages::kSelectionEnd, end),
                 unitChoice(messages::kSeconds, true), unitChoice(kSamplesUnit, false)};
  if (!dialogs_.AskInput(form)) return;
  const bool seconds = form.CheckedIndex() == 0;
  const auto sample = [&](int control) {
    const double typed = QString::fromStdString(form.ValueOf(control)).toDouble();
    const double value = (seconds ? (typed - first) * rate : typed) + 0.5;
    return std::clamp(TruncateToInt32(value), 0, document.sampleCount);
  };
  station_.Select(sample(1000), sample(1001));
}

void MainWindow::MakeFigure() {
  FigureChoice choice = FigureChoiceFrom(preferences_.Figure());
  InputForm form = FigureForm(choice);
  for (;;) {
    if (!dialogs_.AskInput(form)) return;
    const auto wrong = TakeFigureForm(form, choice);
    if (!wrong) break;
    dialogs_.ShowError(*wrong, form.title);
  }
  preferences_.SetFigure(FigureChoiceText(choice));
  std::vector<MainView::PaneRows> rows;
  for (const Pane pane : choice.panes) {
    if (pane == Pane::Labels) station_.ReadLabels();
    const PaneWidget& shown = PaneOf(pane);
    rows.push_back({pane, shown.isHidden() ? shown.sizeHint().height() : shown.PaneSize().height()});
  }
  constexpr double kCentimetresPerInch = 2.54;
  const int width = station_.document.paneWidth;
  const int text = FigureText(width, CentimetresOf(choice.points), choice.centimetres);
  const Picture figure = station_.view.Figure(rows, width, text);
  const double pixelsPerInch = figure.WholeWidth() * kCentimetresPerInch / choice.centimetres;
  if (choice.output == FigureOutput::Copy) return CopyPicture(figure, kPrintDotsPerInch / pixelsPerInch);
  AskAndSavePicture(dialogs_, figure, static_cast<PictureFormat>(choice.output), pixelsPerInch);
}

void MainWindow::CopyRegionOf(const PaneRegion& region) {
  const PaneWidget& pane = PaneOf(region.pane);
  const double scale = devicePixelRatioF();
  // The frame around the region is no part of it.
  QRect area = QRect(QPoint(region.from.x, region.from.y), QPoint(region.to.x, region.to.y))
                   .normalized()
                   .adjusted(1, 1, -1, -1);
  if (area.isEmpty()) return;
  const Picture shown = pane.Shown();
  area.translate(shown.around.left, shown.around.top);
  const QImage whole = RenderPicture(shown, scale);
  QApplication::clipboard()->setImage(
      whole.copy(QRectF(area.x() * scale, area.y() * scale, area.width() * scale, area.height() * scale)
                     .toAlignedRect()));
}

void MainWindow::CopyHoverLine() {
  if (hoverPane_ == nullptr) return;
  const std::string line = station_.view.HoverLine(hoverPane_->pane(), {hoverAt_.x(), hoverAt_.y()},
                                                   hoverPane_->RowsToBottom(), "\t");
  if (!line.empty()) QApplication::clipboard()->setText(QString::fromStdString(line));
}

// --- Showing

void MainWindow::RepaintPanes(std::optional<Pane> pane) {
  for (PaneWidget* widget : panes_)
    if (widget != nullptr && (!pane || *pane == widget->pane() || *pane == Pane::Chart)) widget->Invalidate();
  if (chart_ != nullptr) chart_->Invalidate();
  if (renewal_ != nullptr) renewal_->start(0);
}

void MainWindow::ShowCaption(const QString& caption) {
  // "[*]" is where the mark of unsaved changes goes; in a name it is doubled.
  setWindowTitle(QString(caption).replace("[*]", "[*][*]") + "[*]");
}

/// A file that was written is named beside what the command says, whichever comes first.
void MainWindow::ShowStatus(const QString& text) {
  said_ = text;
  if (gate_.Depth() == 0) saved_.clear();  // the end of a play or a recording: of no action
  RenewStatus();
}

void MainWindow::ShowSaved(const QString& path) {
  saved_ += path;
  RenewStatus();
}

void MainWindow::RenewStatus() {
  QStringList parts;
  if (!said_.isEmpty()) parts += said_;
  if (!saved_.isEmpty()) parts += kSaved.Get() + saved_.join(kBetweenFiles.Get());
  status_->SetText(parts.join("  "));
}

void MainWindow::TakePaneWidth() {
  station_.SetPaneWidth(panes_[0]->PaneSize().width());
  MakeRoomForLabels();
  status_->setMaximumWidth(width() * 3 / 5);  // the readout of the pointer needs the rest
}

/// On a small screen all five panes find room, and the lines under them, when the overview gives some of its own.
void MainWindow::MakeRoomForLabels() {
  constexpr int kRoomy = 780;
  const int room = std::min(height(), screen()->availableSize().height());
  overview_->SetLow(station_.markers.paneShown && room < kRoomy);
}

void MainWindow::ShowChart(bool shown) {
  if (shown != chart_->isHidden()) return;
  const bool hadFocus = centralWidget()->isAncestorOf(focusWidget());
  splitter_->ShowChart(shown);
  axis_->setVisible(!shown);
  hoverPane_ = nullptr;
  if (hadFocus) (shown ? *chart_ : PaneOf(Pane::Waveform)).setFocus();
}

/// Moves the cursor and the meter while something is played or recorded.
void MainWindow::FollowSound() {
  const bool playing = station_.MoveCursor();
  for (PaneWidget* pane : panes_) pane->FollowCursor();
  overview_->update();
  dialogs_.UpdatePlay();
  const Recorder& recording = station_.recording;
  if (recording.running() == meter_->isHidden()) {
    meter_->Clear();
    meter_->setVisible(recording.running());
  }
  if (recording.running() && recording.blocks() != metered_) {
    metered_ = recording.blocks();
    meter_->SetLevels(recording.Levels());
  }
  if (closing_ && !recording.running()) QTimer::singleShot(0, this, &QWidget::close);
  if (!playing && !recording.running()) soundTimer_->stop();
}

void MainWindow::TakeOptions() {
  const bool shown = station_.markers.paneShown;
  MakeRoomForLabels();
  splitter_->ShowLabels(shown);
  if (shown != preferences_.LabelsShown()) preferences_.SetLabelsShown(shown);
  const bool follows = station_.view.followsPlay;
  if (follows != preferences_.FollowsPlay()) preferences_.SetFollowsPlay(follows);
  const PitchSpanChoice& range = station_.view.pitchSpan;
  if (!(range == preferences_.PitchSpan())) preferences_.SetPitchSpan(range);
}

void MainWindow::Renew() {
  ShowChart(station_.view.ChartShown());
  TakeOptions();
  if (!soundTimer_->isActive() && (station_.player.playing() || station_.recording.running()))
    soundTimer_->start();
  rateBar_->Follow(station_.document);
  if (station_.spectrogram.ceiling != preferences_.Ceiling())
    preferences_.SetCeiling(station_.spectrogram.ceiling);
  selectionLine_->SetText(QString::fromStdString(station_.view.SelectionLine()));
  const bool labelling = PaneOf(Pane::Labels).hasFocus() && station_.document.activity <= Activity::Waveform;
  hint_->SetText(labelling ? kLabelHint.Get() : QString::fromStdString(station_.view.Hint()));
  if (status_->Text() == hint_->Text()) status_->SetText({});  // a tool that announces itself
  axis_->update();
  overview_->update();
  setWindowModified(guard_.AnythingUnsaved());
  RenewActions();
  if (hoverPane_ != nullptr) ShowHover(hoverPane_, hoverAt_);
}

void MainWindow::RenewActions() {
  const CommandStates& states = station_.states;
  const SoundDocument& document = station_.document;
  for (const auto& [number, action] : actions_) {
    action->setEnabled(states.IsEnabled(number));
    if (const CommandRow* row = FindCommand(number); row->isOn != nullptr)
      action->setChecked(row->isOn(station_));
    action->setToolTip(number == commands::kUndo && action->isEnabled()
                           ? UndoToolTip(document)
                           : QString::fromUtf8(states.MissingFor(number).Get()));
  }
  for (const ToolButton& button : toolButtons_) {
    const auto enabled = std::find_if(button.commands.begin(), button.commands.end(),
                                      [&](int command) { return states.IsEnabled(command); });
    const bool can = enabled != button.commands.end();
    const QAction* entry = ActionOf(can ? *enabled : button.commands.back());
    if (entry == nullptr) continue;
    button.action->setEnabled(can);
    const CommandRow& row = *FindCommand(can ? *enabled : button.commands.back());
    QString toolTip = PlainLabel(row.label.Get());
    if (*row.keys != '\0') toolTip += "  " + ShownKeys(row.keys);
    if (!can) toolTip += "\n" + entry->toolTip();
    button.action->setToolTip(toolTip);
  }
  const bool sound = document.sampleCount > 0;
  for (const OwnAction& own : ownActions_)
    own.action->setEnabled(sound && (!own.needsSelection || document.selectionDefined()));
}

void MainWindow::ShowHover(PaneWidget* pane, QPoint at) {
  hoverPane_ = pane;
  hoverAt_ = at;
  MainView& view = station_.view;
  view.pointer.reset();
  if (pane != chart_) view.pointer = {pane->pane(), at.x()};
  const int sample = view.SampleAt(pane->pane(), at.x());
  const bool sound = station_.document.sampleCount > 0;
  const bool overTime = pane != chart_ || at.y() < kChartStripBottom;
  for (PaneWidget* other : panes_) {
    std::optional<int> column;
    if (sound && overTime) column = other == pane ? at.x() : view.ColumnOf(other->pane(), sample);
    other->ShowHover(column);
  }
  hover_->SetText(
      QString::fromStdString(view.HoverLine(pane->pane(), {at.x(), at.y()}, pane->RowsToBottom(), "  ")));
}

void MainWindow::ClearHover() {
  station_.view.pointer.reset();
  for (PaneWidget* pane : panes_) pane->ShowHover({});
  if (station_.pitch.repair.pointer) PaneOf(Pane::Analysis).update();
  station_.PointAtRepair({});
  // The line stays, so that it can be copied from the menu.
}

void MainWindow::ShowPaneMenu(PaneWidget* pane, QPoint global) {
  if (gate_.Depth() != 0) return;
  QMenu menu(this);
  menu.setToolTipsVisible(true);
  MakePictureMenu(menu, *pane);
  const std::vector<int> exports = ExportCommands(pane->pane());
  if (!exports.empty()) menu.addSeparator();
  for (const int command : exports)
    if (QAction* action = ActionOf(command)) menu.addAction(action);
  menu.exec(global);
}

void MainWindow::RenewRecentFiles() {
  recentMenu_->clear();
  int number = 0;
  for (const QString& path : preferences_.RecentFiles()) {
    const QString shown = fontMetrics().elidedText(path, Qt::ElideMiddle, 500).replace('&', "&&");
    QAction* action = recentMenu_->addAction(QString("&%1  %2").arg(++number).arg(shown));
    connect(action, &QAction::triggered, this, [this, path] { OpenFile(path); });
  }
  if (number == 0) recentMenu_->addAction(kNoRecentFiles.Get())->setEnabled(false);
}

QString MainWindow::HintShown() const { return hint_->Text(); }
QString MainWindow::HoverShown() const { return hover_->Text(); }
QString MainWindow::StatusShown() const { return status_->Text(); }
QString MainWindow::SelectionShown() const { return selectionLine_->Text(); }

}  // namespace parlowen
