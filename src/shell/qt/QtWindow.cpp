#include "shell/qt/QtWindow.h"

#include <QApplication>
#include <QComboBox>
#include <QDesktopServices>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QHeaderView>
#include <QMessageBox>
#include <QProgressDialog>
#include <QPushButton>
#include <QSplitter>
#include <QTreeView>
#include <QUrl>
#include <algorithm>

#include "annotation/IpaIndex.h"
#include "base/Files.h"
#include "base/Format.h"
#include "shell/qt/FormDialog.h"
#include "shell/qt/Placement.h"
#include "shell/qt/Preferences.h"
#include "shell/qt/TextWindow.h"
#include "shell/qt/ToolWidget.h"
#include "ui/Messages.h"
#include "ui/Text.h"

namespace parlowen {
namespace {

constexpr UiText kYes = "是(&Y)";
constexpr UiText kNo = "否(&N)";
constexpr UiText kLookIn = "查找范围:";
constexpr UiText kFileName = "文件名(&N):";
constexpr UiText kFileType = "文件类型:";
constexpr UiText kComputing = "正在计算...";
constexpr UiText kOpenButton = "打开(&O)";
constexpr UiText kDefaultErrorCaption = "错误";
constexpr int kProgressSteps = 1000;
constexpr UiText kExists = "%s 已经存在。\n要替换它吗？", kReplaceCaption = "替换文件";
constexpr UiText kReplaceOrNot[] = {"替换(&R)", messages::kCancel};

QMessageBox::Icon IconOf(Icon icon) {
  switch (icon) {
    case Icon::Info: return QMessageBox::Information;
    case Icon::Question: return QMessageBox::Question;
    case Icon::Warning: return QMessageBox::Warning;
    case Icon::Error: return QMessageBox::Critical;
    default: return QMessageBox::NoIcon;
  }
}

/// The carriage returns of the texts would show as gaps.
QString BoxText(const std::string& text) { return QString::fromStdString(text).remove('\r'); }

/// A filter as the file dialog wants it: what is shown, then the patterns in brackets, which it hides. A
/// pattern that wants a dot in every name means all files.
QString NameFilter(const FileKind& kind) {
  const QString pattern = kind.pattern;
  QStringList patterns = {pattern.toLower(), pattern.toUpper(), pattern};
  if (pattern == "*.*") patterns = {"*"};
  patterns.removeDuplicates();
  return QString(kind.label.Get()) + " (" + patterns.join(' ') + ")";
}

/// A box is made for its text; its caption should be readable too.
void MakeRoomForCaption(QMessageBox& box) {
  constexpr int kTitleBarButtons = 170;
  auto* grid = qobject_cast<QGridLayout*>(box.layout());
  if (grid == nullptr) return;
  const int width = box.fontMetrics().horizontalAdvance(box.windowTitle()) + kTitleBarButtons;
  grid->addItem(new QSpacerItem(width, 0), grid->rowCount(), 0, 1, grid->columnCount());
}

/// Sizes and dates whole, names take the rest.
void ShareColumns(QFileDialog& box) {
  box.resize(860, 540);
  if (auto* halves = box.findChild<QSplitter*>("splitter")) halves->setSizes({160, 680});
  if (auto* files = box.findChild<QTreeView*>("treeView")) {
    files->header()->setStretchLastSection(false);
    files->header()->setSectionResizeMode(QHeaderView::ResizeToContents);
    files->header()->setSectionResizeMode(0, QHeaderView::Stretch);
  }
}

/// The path that a handler gets when the user has typed or chosen `file`.
std::string PathOf(const FileDialog& dialog, const QString& file) {
  const std::string path = AbsolutePath(file.toStdString());
  const bool dotted = FileNameOf(path).find('.') != std::string::npos;
  return dialog.defaultExtension.empty() || dotted ? path : path + "." + dialog.defaultExtension;
}

/// The toolkit's own question is about the name that was typed, which need not be the one that is written.
class FileBox : public QFileDialog {
 public:
  using QFileDialog::QFileDialog;
  std::function<bool(const QString& file)> mayTake;

 protected:
  void accept() override {
    const QStringList files = selectedFiles();
    // A folder's name is no choice: the dialog goes there.
    const bool chosen = !files.isEmpty() && !QFileInfo(files.constFirst()).isDir();
    if (!chosen || !mayTake || mayTake(files.constFirst())) QFileDialog::accept();
  }
};

}  // namespace

QtWindow::QtWindow(QWidget& host, ActionGate& gate, Preferences& preferences)
    : openExternally([](const QUrl& url) { return QDesktopServices::openUrl(url); }),
      host_(host),
      gate_(gate),
      preferences_(preferences) {
  connect(&gate_, &ActionGate::Began, this, [this] { sinceAction_.start(); });
  connect(&gate_, &ActionGate::Finished, this, &QtWindow::ActionEnded);
}

QtWindow::~QtWindow() { CloseAllToolWindows(); }

void QtWindow::BeforeModal() const {
  if (beforeModal) beforeModal();
}

QWidget* QtWindow::DialogParent() const {
  if (!modalTools_.empty()) return modalTools_.back();
  QWidget* active = QApplication::activeWindow();
  const bool ours =
      std::any_of(tools_.begin(), tools_.end(), [&](const OpenTool& open) { return open.widget == active; });
  return ours ? active : &host_;
}

void QtWindow::ActionEnded(int level) {
  delete progress_;
  if (level == 0) closedTools_.clear();
}

void QtWindow::ShowMessage(const std::string& text, const std::string& caption, Icon icon) {
  if (icon == Icon::Error) ++setbacks_;
  BeforeModal();
  const ActionGate::Hold hold(gate_);
  QMessageBox box(DialogParent());
  box.setIcon(IconOf(icon));
  const std::string& fallback = icon == Icon::Error ? std::string(kDefaultErrorCaption) : caption_;
  box.setWindowTitle(QString::fromStdString(caption.empty() ? fallback : caption));
  box.setTextFormat(Qt::PlainText);
  box.setText(BoxText(text));
  box.addButton(messages::kOk.Get(), QMessageBox::AcceptRole);
  MakeRoomForCaption(box);
  box.exec();
}

int QtWindow::Choose(const std::string& text, const std::string& caption, std::span<const UiText> buttons,
                     int byDefault, QWidget* parent) {
  BeforeModal();
  const ActionGate::Hold hold(gate_);
  QMessageBox box(parent != nullptr ? parent : DialogParent());
  box.setIcon(QMessageBox::Question);
  box.setWindowTitle(QString::fromStdString(caption));
  box.setTextFormat(Qt::PlainText);
  box.setText(BoxText(text));
  std::vector<QAbstractButton*> made;
  for (const UiText& label : buttons) {
    // One role for all: others would be put into the order of the platform.
    QPushButton* button = box.addButton(label.Get(), QMessageBox::ActionRole);
    if (std::ssize(made) == byDefault) box.setDefaultButton(button);
    made.push_back(button);
  }
  box.setEscapeButton(made.back());
  MakeRoomForCaption(box);
  box.exec();
  return static_cast<int>(std::find(made.begin(), made.end(), box.clickedButton()) - made.begin());
}

bool QtWindow::MayReplace(const std::string& path, QWidget* parent) {
  if (!QFileInfo::exists(QString::fromStdString(path))) return true;
  return Choose(Format(kExists.Get(), path.c_str()), kReplaceCaption, kReplaceOrNot, 1, parent) == 0;
}

bool QtWindow::AskYesNo(const std::string& text, const std::string& caption) {
  if (answerNext) return *std::exchange(answerNext, {});
  BeforeModal();
  const ActionGate::Hold hold(gate_);
  QMessageBox box(DialogParent());
  box.setIcon(QMessageBox::Question);
  box.setWindowTitle(QString::fromStdString(caption.empty() ? caption_ : caption));
  box.setTextFormat(Qt::PlainText);
  box.setText(BoxText(text));
  QPushButton* yes = box.addButton(kYes.Get(), QMessageBox::YesRole);
  QPushButton* no = box.addButton(kNo.Get(), QMessageBox::NoRole);
  box.setDefaultButton(yes);
  box.setEscapeButton(no);
  MakeRoomForCaption(box);
  box.exec();
  return box.clickedButton() == yes;
}

std::optional<FileChoice> QtWindow::AskFile(const FileDialog& dialog, bool save) {
  BeforeModal();
  const ActionGate::Hold hold(gate_);
  FileBox box(DialogParent(), QString::fromStdString(dialog.title), preferences_.Folder());
  box.setOption(QFileDialog::DontUseNativeDialog);
  box.setOption(QFileDialog::DontConfirmOverwrite);
  box.setOption(QFileDialog::HideNameFilterDetails);
  // A refusal of a missing file is the reader's; some files are opened in order to be made.
  box.setFileMode(QFileDialog::AnyFile);
  box.setAcceptMode(save ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
  QStringList filters;
  for (const FileKind& kind : dialog.kinds) filters += NameFilter(kind);
  if (!filters.isEmpty()) box.setNameFilters(filters);
  if (save && !dialog.kinds.empty() && dialog.kinds.front().asksBeforeReplacing)
    box.mayTake = [&](const QString& file) {
      const std::string path = PathOf(dialog, file);
      return MayReplace(dialog.nameWritten != nullptr ? dialog.nameWritten(path) : path, &box);
    };
  box.setLabelText(QFileDialog::Accept, (save ? messages::kSave : kOpenButton).Get());
  box.setLabelText(QFileDialog::Reject, messages::kCancel.Get());
  box.setLabelText(QFileDialog::LookIn, kLookIn.Get());
  box.setLabelText(QFileDialog::FileName, kFileName.Get());
  box.setLabelText(QFileDialog::FileType, kFileType.Get());
  ShareColumns(box);
  std::string name = dialog.proposed;
  if (name.empty() && save && !dialog.kinds.empty() && nameFor) name = nameFor(dialog.kinds.front());
  if (!name.empty()) {
    const QFileInfo proposed(QString::fromStdString(name));
    if (proposed.isAbsolute() && proposed.dir().exists()) box.setDirectory(proposed.dir());
    box.selectFile(proposed.fileName());
  }
  if (box.exec() != QDialog::Accepted || box.selectedFiles().isEmpty()) {
    ++setbacks_;
    return {};
  }
  const QString chosen = box.selectedFiles().constFirst();
  preferences_.SetFolder(QFileInfo(chosen).absolutePath());
  Q_EMIT FileChosen(chosen);
  FileChoice choice;
  choice.path = PathOf(dialog, chosen);
  // Two filters may look the same without their details: the place in the list tells them apart.
  const auto* list = box.findChild<QComboBox*>("fileTypeCombo");
  choice.filter = list != nullptr ? std::max(0, list->currentIndex()) : 0;
  return choice;
}

std::optional<FileChoice> QtWindow::AskOpenFile(const FileDialog& dialog) { return AskFile(dialog, false); }

std::optional<FileChoice> QtWindow::AskSaveFile(const FileDialog& dialog) { return AskFile(dialog, true); }

bool QtWindow::AskInput(InputForm& form) {
  const bool inDrawing = form.place != nullptr && askInDrawing;
  // What is labelled may go on playing.
  if (!inDrawing) BeforeModal();
  const ActionGate::Hold hold(gate_);
  if (inDrawing) return askInDrawing(form);
  FormDialog dialog(form, DialogParent());
  return dialog.exec() == QDialog::Accepted;
}

void QtWindow::ShowStatus(const std::string& text) { Q_EMIT StatusShown(QString::fromStdString(text)); }

void QtWindow::SetCaption(const std::string& text) {
  caption_ = text;
  Q_EMIT CaptionChanged(QString::fromStdString(text));
}

void QtWindow::Saved(const std::string& path) {
  ++filesSaved_;
  Q_EMIT FileSaved(QString::fromStdString(AbsolutePath(path)));
}

void QtWindow::OpenInEditor(const std::string& path) {
  Q_EMIT EditorAsked();
  // A help page may come with the section to show behind a '#'.
  QString file = QString::fromStdString(path), fragment;
  if (const qsizetype hash = file.lastIndexOf('#'); hash > 0 && !QFileInfo::exists(file)) {
    fragment = file.mid(hash + 1);
    file.truncate(hash);
  }
  QUrl url = QUrl::fromLocalFile(file);
  if (!fragment.isEmpty()) url.setFragment(fragment);
  // No other program knows the phonetic codes of the index.
  const bool external = QFileInfo(file).fileName() != kIpaIndexName;
  if (external && openExternally && openExternally(url)) return;
  const QString suffix = QFileInfo(file).suffix().toLower();
  const bool html = suffix == "html" || suffix == "htm";
  // A text beside the plot that it belongs to.
  const QWidget& plot = tools_.empty() ? host_ : *tools_.back().widget;
  QWidget* shown = html ? MakeHelpWindow(file, fragment, &host_) : MakeTextWindow(file, &host_);
  if (shown == nullptr) return ShowError(messages::kCannotOpen);
  PlaceBeside(*shown, plot);  // before it is shown, so that its frame finds room too
  shown->show();
}

void QtWindow::Repaint(std::optional<Pane> pane) {
  Q_EMIT RepaintAsked(pane);
  for (const OpenTool& open : tools_) open.widget->Renew();
  for (ToolWidget* widget : modalTools_) widget->Renew();
}

ToolWidget* QtWindow::FindToolWindow(const std::string& name) const {
  for (const OpenTool& open : tools_)
    if (open.tool->Name() == name) return open.widget;
  return nullptr;
}

void QtWindow::OpenToolWindow(std::unique_ptr<ToolWindow> tool) {
  if (!tool) return;
  CloseToolWindow(tool->Name());
  auto* widget = new ToolWidget(*tool, *this, gate_, 0, &host_);
  connect(widget, &QDialog::finished, this, [this, widget] { ToolClosed(widget); });
  connect(widget, &ToolWidget::KeyUnused, this, &QtWindow::KeyUnused);
  const QByteArray place = preferences_.ToolPlace(QString::fromStdString(tool->Name()));
  if (place.isEmpty() || !widget->restoreGeometry(place)) PlaceBeside(*widget, host_);
  tools_.push_back({std::move(tool), widget});
  widget->show();
}

bool QtWindow::CloseToolWindow(const std::string& name) {
  ToolWidget* widget = FindToolWindow(name);
  if (widget == nullptr) return false;
  widget->CloseNow();
  return true;
}

void QtWindow::UpdatePlay() const {
  for (const OpenTool& open : tools_) open.widget->UpdatePlay();
  for (const ToolWidget* widget : modalTools_) widget->UpdatePlay();
}

void QtWindow::CloseAllToolWindows() {
  while (!tools_.empty()) tools_.back().widget->CloseNow();
}

void QtWindow::ToolClosed(ToolWidget* widget) {
  const auto at =
      std::find_if(tools_.begin(), tools_.end(), [&](const OpenTool& open) { return open.widget == widget; });
  if (at == tools_.end()) return;
  std::unique_ptr<ToolWindow> tool = std::move(at->tool);
  preferences_.SetToolPlace(QString::fromStdString(tool->Name()), widget->saveGeometry());
  tools_.erase(at);
  widget->Detach();
  widget->deleteLater();
  const bool outermost = gate_.Depth() == 0;
  if (outermost) {
    gate_.Run([&] { tool->Closed(*this); });
  } else {
    tool->Closed(*this);
  }
  AfterClosed(*tool);
  if (!outermost) closedTools_.push_back(std::move(tool));
}

void QtWindow::RunModal(ToolWindow& tool) {
  BeforeModal();
  const ActionGate::Hold hold(gate_);
  ToolWidget widget(tool, *this, gate_, gate_.Depth(), DialogParent());
  modalTools_.push_back(&widget);
  widget.exec();
  modalTools_.pop_back();
  widget.Detach();
  tool.Closed(*this);
}

bool QtWindow::Progress(double share) {
  if (!progress_) {
    if (share >= 1.0 || !sinceAction_.isValid() || sinceAction_.elapsed() < quietMilliseconds) return true;
    progress_ =
        new QProgressDialog(kComputing.Get(), messages::kCancel.Get(), 0, kProgressSteps, DialogParent());
    progress_->setWindowTitle(QString::fromStdString(caption_));
    progress_->setWindowModality(Qt::ApplicationModal);
    progress_->setMinimumDuration(0);
    progress_->setAutoClose(false);
    progress_->setAutoReset(false);
    progress_->show();
  }
  progress_->setValue(static_cast<int>(std::clamp(share, 0.0, 1.0) * kProgressSteps));
  QApplication::processEvents();
  const bool goOn = progress_ && !progress_->wasCanceled();
  if (!goOn || share >= 1.0) delete progress_;
  return goOn;
}

void QtWindow::CopyRegion(const PaneRegion& region) { Q_EMIT RegionCopied(region); }

void QtWindow::Quit() { Q_EMIT QuitAsked(); }

}  // namespace parlowen
