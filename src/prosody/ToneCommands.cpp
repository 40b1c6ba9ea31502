#include "prosody/ToneCommands.h"

#include <algorithm>
#include <cmath>
#include <set>
#include <utility>

#include "base/Arithmetic.h"
#include "base/Files.h"
#include "base/Format.h"
#include "base/Gbk.h"
#include "base/IpaCodes.h"
#include "prosody/DegreeWindow.h"
#include "prosody/GroupFlow.h"
#include "prosody/ToneWindow.h"
#include "ui/FileKind.h"
#include "ui/Messages.h"
#include "ui/Saving.h"
#include "ui/Text.h"
#include "ui/TextExport.h"

namespace parlowen {
namespace {

constexpr UiText kDegreeTitle = "五度坐标";
constexpr UiText kLowest = "最低频率(Hz)", kHighest = "最高频率(Hz)";
constexpr UiText kBadLimits = "输入的频率值错误";

constexpr UiText kOpenTitle = "打开声调统计数据文件";
constexpr UiText kDamaged = "声调统计文件错误！";
constexpr UiText kNewRun = "新的统计（Yes)?继续已有的统计（No）？", kNewRunCaption = "新的统计？";
constexpr UiText kRunStatus = "声调统计：%s，%d组%d个";
constexpr UiText kAddTitle = "选择统计语料";
constexpr UiText kDropWeak = "去掉弱的头尾", kKeepAll = "保留全段";
constexpr UiText kNoName = "请输入组名！";
constexpr UiText kAdded = "%s：第%d个，共%d个", kRemoved = "已撤消 %s 第%d个",
                 kNothingToRemove = "没有已选语料";
constexpr UiText kNoItems = "没有统计数据！";
constexpr UiText kAxisStatus = "格局图坐标：%s";
constexpr UiText kAxisNames[kToneAxes] = {"T值", "D值", "半音", "Hz", "LZ值"};
constexpr UiText kLabelsAdded = "加入%d个，略过%d个";
constexpr UiText kRangeTitle = "范围", kRangeOfMeans = "各组均值的最小、最大", kRangeGiven = "指定(Hz)";
constexpr UiText kCompareTitle = "打开声调统计结果文件";
constexpr UiText kNoResult = "无此声调统计数据文件！";
constexpr UiText kPicked = "%s 第%d个 %s %.3f--%.3f秒";
constexpr FileText kReportName = "ToneStat.txt";

constexpr int kFirstField = 1000, kSecondField = 1008, kFirstButton = 1010, kSecondButton = 1011;
constexpr int kSecondChoice = 1;                        // of two radio buttons
constexpr int kLowestLimit = 20, kHighestLimit = 2000;  // Hz
constexpr std::size_t kGroupNameLength = 6;             // GBK bytes

// --- Forms

FormField Field(int control, FieldKind kind, UiText label, std::string value = {}) {
  FormField field;
  field.control = control;
  field.kind = kind;
  field.label = label;
  field.value = std::move(value);
  return field;
}

FormField Button(int control, UiText label, bool checked) {
  FormField field = Field(control, FieldKind::Radio, label);
  field.checked = checked;
  return field;
}

std::string LimitText(double hertz) { return std::isfinite(hertz) ? Format("%.0f", hertz) : std::string(); }

void AddLimitFields(InputForm& form, const ToneRange& range) {
  form.fields.push_back(Field(kFirstField, FieldKind::Number, kLowest, LimitText(range.lowHertz)));
  form.fields.push_back(Field(kSecondField, FieldKind::Number, kHighest, LimitText(range.highHertz)));
}

std::optional<int> WholeNumber(const std::string& text) {
  if (text.empty() || text.size() > 9 || text.find_first_not_of("0123456789") != std::string::npos) return {};
  return std::stoi(text);
}

std::optional<ToneRange> LimitsIn(const InputForm& form) {
  return ParseToneLimits(form.ValueOf(kFirstField), form.ValueOf(kSecondField));
}

FormField GroupField(const std::string& value) {
  FormField field = Field(kFirstField, FieldKind::Text, kGroupNameLabel, value);
  field.maxGbkBytes = static_cast<int>(kGroupNameLength);
  field.phonetic = true;
  return field;
}

std::string GroupGbk(const std::string& utf8) {
  return std::string(CutGbk(IpaToGbk(utf8), kGroupNameLength));
}

// --- The five-degree picture

/// Percentiles 2 and 98 of the sound's voiced frames.
ToneRange RangeOfSound(const SoundDocument& document) {
  std::vector<double> hertz;
  for (int frame = 0; frame < document.ContourLength(); ++frame)
    if (const float period = document.pitch[static_cast<std::size_t>(frame)]; period > 0)
      hertz.push_back(document.sampleRate / static_cast<double>(period));
  if (hertz.empty()) return {};
  std::sort(hertz.begin(), hertz.end());
  const auto percentile = [&](double share) {
    return hertz[static_cast<std::size_t>(share * static_cast<double>(hertz.size() - 1) + 0.5)];
  };
  return ToneRange::OfHertz(percentile(0.02), percentile(0.98));
}

bool RequireContourAndSelection(Window& window, const SoundDocument& document) {
  if (!document.pitchPresent) {
    window.Notify(messages::kNoContour);
    return false;
  }
  if (!document.selectionDefined()) {
    window.ShowStatus(messages::kMarkFirst);
    return false;
  }
  return true;
}

// --- The run

std::string SoundNameOf(const SoundDocument& document) {
  constexpr std::size_t kLongestName = 63;
  return std::string(CutGbk(ToGbk(FileNameOf(document.filePath)), kLongestName));
}

/// Sounds that were never saved all have the same name: which one the items from `first` on are of is kept beside them.
void NoteSound(ToneState& tones, const SoundDocument& document, std::size_t first) {
  if (!document.filePath.empty() || tones.unsavedSound == document.Stamp()) return;
  tones.unsavedSound = document.Stamp();
  tones.firstUnsaved = first;
}

/// True when the document is the sound that an item was taken from, as far as the item tells.
bool IsOfSound(const ToneState& tones, std::size_t index, const SoundDocument& document) {
  const ToneItem& item = tones.items[index];
  if (item.sound != SoundNameOf(document) || item.sampleRate != document.sampleRate) return false;
  return !item.sound.empty() || (index >= tones.firstUnsaved && tones.unsavedSound == document.Stamp());
}

/// The tone of a stretch as an item. Nothing when there is no pitch, or one that no file may hold.
std::optional<ToneItem> ToneItemOf(const SoundDocument& document, int start, int end, std::string gbkGroup,
                                   bool dropWeakEnds) {
  ToneCurveOptions options;
  options.dropWeakEnds = dropWeakEnds;
  const auto curve = FindToneCurve(document, start, end, options);
  if (!curve) return {};
  ToneItem item;
  item.group = std::move(gbkGroup);
  item.sound = SoundNameOf(document);
  item.sampleRate = document.sampleRate;
  item.start = start;
  item.end = end;
  item.first = curve->first;
  item.weakEndsDropped = dropWeakEnds;
  item.hertz.assign(curve->hertz.begin(), curve->hertz.end());
  if (!IsGoodItem(item)) return {};
  item.points = TonePointsOf(item.hertz);
  return item;
}

/// The run as its file holds it.
struct StoredRun {
  std::vector<ToneItem> items;
  bool held = false;      ///< the file holds these items and no others
  bool readable = false;  ///< the file, if there is one: what cannot be read is not written over
};

/// Another program may have the run open too, and every step is stored at once. What is missing in the file was removed;
/// but a file with nothing of ours is taken for one that was begun anew, and both runs go on in it. A file that is gone or
/// damaged holds nothing against ours.
StoredRun ReadRun(const ToneState& tones) {
  const auto bytes = ReadWholeFile(tones.path, kLargestToneFile);
  const bool readable = bytes || !FileExists(tones.path);
  if (!tones.written && bytes == tones.begunOver) return {tones.items, false, readable};
  auto items = bytes ? ParseToneItems(*bytes) : std::nullopt;
  if (!items) return {tones.items, false, readable};
  const auto isThere = [&items](const ToneItem& item) {
    return std::find(items->begin(), items->end(), item) != items->end();
  };
  const bool anew = std::none_of(tones.items.begin(), tones.items.end(), isThere);
  if (anew) items->insert(items->begin(), tones.items.begin(), tones.items.end());
  return {std::move(*items), !anew || tones.items.empty(), readable};
}

/// True where ours stand at their places, and what is new behind them is of sounds with a name.
bool HasOnlyGrown(const std::vector<ToneItem>& ours, const std::vector<ToneItem>& now) {
  return now.size() >= ours.size() && std::equal(ours.begin(), ours.end(), now.begin()) &&
         std::none_of(now.begin() + std::ssize(ours), now.end(),
                      [](const ToneItem& item) { return item.sound.empty(); });
}

/// A step of a run in a turn at its file: it begins with what the file holds and is stored, or changes nothing.
class RunStep {
 public:
  explicit RunStep(ToneState& tones)
      : tones_(tones),
        turn_(tones.path),
        run_(ReadRun(tones)),
        placesStay_(HasOnlyGrown(tones.items, run_.items)) {
    for (const ToneItem& item : run_.items) groups_.insert(item.group);
  }
  const std::vector<ToneItem>& Items() const { return run_.items; }

  bool HasRoomFor(const std::string& gbkGroup) const {
    return run_.items.size() < kMostToneItems &&
           (groups_.contains(gbkGroup) || groups_.size() < kMostToneGroups);
  }
  void Add(ToneItem item) {
    groups_.insert(item.group);
    run_.items.push_back(std::move(item));
  }
  /// The item that stood at `index`: the last equal one up to there, else the first behind. Its place, or −1 when another
  /// program was first.
  int Remove(const ToneItem& item, int index) {
    int at = -1;
    for (int i = 0; i < std::ssize(run_.items); ++i)
      if (run_.items[static_cast<std::size_t>(i)] == item && (at < 0 || i <= index)) at = i;
    if (at >= 0) run_.items.erase(run_.items.begin() + at);
    return at;
  }
  /// What is said next keeps no other program waiting.
  void GiveUp() { turn_.End(); }
  /// Writes the items as the whole file and makes them the run's. False, and nothing changed, with its message.
  bool Store(Window& window) {
    const bool fits = Fits();
    const bool stored =
        fits && run_.readable && SaveFile(window, tones_.path, WriteToneItems(run_.items)) == 0;
    turn_.End();
    if (!fits) return window.Refuse(messages::kTooMuchData);
    if (!stored) return window.Refuse(kCannotOpenGroups, Icon::Error);
    // Which items are of the unnamed sound, and which one is picked, is known by their places.
    if (!placesStay_) {
      tones_.unsavedSound = {};
      tones_.picked = -1;
    }
    tones_.written = true;
    tones_.begunOver.reset();
    tones_.SetItems(std::move(run_.items));
    window.Repaint();
    return true;
  }
  /// Writes the results, and the run where its file does not hold it. Two runs that have no room in one file can be ended
  /// too: the results are of what is known here, and that the file holds less is told. False, and the run as it was, with
  /// its message.
  bool End(Window& window, const std::string& resultPath) {
    const bool fits = Fits();
    const bool storable = run_.held || !fits || (run_.readable && CanReplaceFile(tones_.path));
    const ToneStatistics statistics = PoolTones(fits ? run_.items : tones_.items, tones_.givenRange);
    const bool saved =
        storable && SaveFile(window, resultPath, WriteToneResult(ToneResultOf(statistics))) == 0;
    const bool stored =
        saved && (run_.held || !fits || SaveFile(window, tones_.path, WriteToneItems(run_.items)) == 0);
    turn_.End();
    if (storable && !saved) return window.Refuse(messages::kCannotCreate, Icon::Error);
    if (!stored) return window.Refuse(kCannotOpenGroups, Icon::Error);
    if (!fits) window.Notify(messages::kTooMuchData);
    return true;
  }

 private:
  /// False where two runs have become too much for one file.
  bool Fits() const {
    std::set<std::string> groups;
    for (const ToneItem& item : run_.items) groups.insert(item.group);
    return run_.items.size() <= kMostToneItems && groups.size() <= kMostToneGroups &&
           ToneItemBytes(run_.items) <= kLargestToneFile;
  }

  ToneState& tones_;
  FileTurn turn_;
  StoredRun run_;
  const bool placesStay_;
  std::set<std::string> groups_;
};

std::string GroupText(const std::string& gbk) { return IpaFromGbk(gbk); }

void SayRun(Window& window, const ToneState& tones) {
  window.ShowStatus(Format(kRunStatus.Get(), FileNameOf(tones.path).c_str(),
                           static_cast<int>(tones.statistics.groups.size()),
                           static_cast<int>(tones.items.size())));
}

/// The axis has to be defined for a picture.
bool RequirePicture(Window& window, const ToneState& tones) {
  if (tones.items.empty()) {
    window.Notify(kNoItems);
    return false;
  }
  if (!tones.Scale().IsDefined()) {
    window.ShowMessage(messages::kTooFewData, messages::kTooFewDataCaption, Icon::None);
    return false;
  }
  return true;
}

void ShowTones(Window& window, const ProsodyDesk& desk, ToneState& tones, ToneView view, std::string group) {
  // A window that is open closes first, and forgets its view.
  window.OpenToolWindow(std::make_unique<ToneWindow>(desk, tones));
  tones.view = view;
  tones.group = std::move(group);
  tones.picked = -1;
  window.Repaint();
}

/// "results/run.PIT" → "results/run.bin".
std::string ResultPath(const std::string& path) {
  constexpr std::size_t kEnding = 4;
  return (HasEnding(path, ".pit") ? path.substr(0, path.size() - kEnding) : path) + ".bin";
}

/// The group that a label names: "T" and its last character where that is 0..5, else its beginning.
std::string GroupOfLabel(const std::string& utf8) {
  const char last = utf8.empty() ? ' ' : utf8.back();
  return last >= '0' && last <= '5' ? std::string("T") + last : GroupGbk(utf8);
}

}  // namespace

std::optional<ToneRange> ParseToneLimits(const std::string& low, const std::string& high) {
  const auto lowest = WholeNumber(low), highest = WholeNumber(high);
  if (!lowest || !highest || *lowest < kLowestLimit || *highest > kHighestLimit) return {};
  const ToneRange range = ToneRange::OfHertz(*lowest, *highest);
  return range.Spans() ? std::optional(range) : std::nullopt;
}

bool DegreeCommand(Window& window, const ProsodyDesk& desk, DegreeState& degree, const ToneState& tones) {
  const SoundDocument& document = desk.document;
  if (!RequireContourAndSelection(window, document)) return false;
  const bool ofRun = tones.open && !tones.items.empty();
  InputForm form{kDegreeTitle, {}};
  AddLimitFields(form, degree.open ? degree.range : ofRun ? tones.statistics.range : RangeOfSound(document));
  std::optional<ToneRange> range;
  while (!range) {
    if (!window.AskInput(form)) return false;
    range = LimitsIn(form);
    if (!range) window.Notify(kBadLimits);
  }
  const int start = document.selectionStart, end = document.selectionEnd;
  const auto curve = FindToneCurve(document, start, end);
  if (!curve) return window.Refuse(messages::kNoPitchInStretch);
  if (!degree.open) {
    window.OpenToolWindow(std::make_unique<DegreeWindow>(desk, degree));
    degree.open = true;
  }
  degree.range = *range;
  if (degree.curves.size() == kMostDegreeCurves) degree.curves.erase(degree.curves.begin());
  degree.curves.push_back({start, end, curve->first, curve->Milliseconds(), TonePointsOf(curve->hertz)});
  window.Repaint();
  return true;
}

bool BeginTonesCommand(Window& window, ToneState& tones) {
  const auto choice =
      window.AskOpenFile({kOpenTitle, {FileKindNamed("pit")}, FileKindNamed("pit").extension});
  if (!choice || choice->path.empty()) return false;
  std::vector<ToneItem> items;
  bool written = false;
  std::optional<std::vector<std::uint8_t>> begunOver;
  if (FileExists(choice->path)) {
    begunOver = ReadWholeFile(choice->path, kLargestToneFile);
    if (!begunOver || !CanReplaceFile(choice->path)) return window.Refuse(kCannotOpenGroups, Icon::Error);
    auto present = ParseToneItems(*begunOver);
    if (!present) return window.Refuse(kDamaged, Icon::Error);
    // Of a new run the old file stays until the first item is written.
    if (!window.AskYesNo(kNewRun, kNewRunCaption)) {
      items = std::move(*present);
      written = true;
    }
  } else if (!CanReplaceFile(choice->path)) {
    return window.Refuse(kCannotOpenGroups, Icon::Error);
  }
  tones.open = true;
  tones.path = choice->path;
  tones.written = written;
  tones.begunOver = std::move(begunOver);
  tones.unsavedSound = {};
  tones.compared.reset();
  tones.SetItems(std::move(items));
  SayRun(window, tones);
  return true;
}

void AddToneCommand(Window& window, const ProsodyDesk& desk, ToneState& tones) {
  const SoundDocument& document = desk.document;
  if (!RequireContourAndSelection(window, document)) return;
  // Another program may have removed some.
  if (tones.items.size() >= kMostToneItems && ReadRun(tones).items.size() >= kMostToneItems)
    return window.Notify(messages::kTooMuchData);
  InputForm form{kAddTitle,
                 {GroupField(tones.groupName), Button(kFirstButton, kDropWeak, tones.dropWeakEnds),
                  Button(kSecondButton, kKeepAll, !tones.dropWeakEnds)}};
  while (true) {
    if (!window.AskInput(form)) return;
    const std::string& name = form.ValueOf(kFirstField);
    if (!name.empty() && HasIpaCodes(name)) break;
    window.Notify(name.empty() ? kNoName : messages::kNoGbkCode);
  }
  tones.groupName = form.ValueOf(kFirstField);
  tones.dropWeakEnds = form.CheckedIndex() != kSecondChoice;
  const std::string group = GroupGbk(tones.groupName);
  auto item = ToneItemOf(document, document.selectionStart, document.selectionEnd, group, tones.dropWeakEnds);
  RunStep step(tones);
  const bool fits = step.HasRoomFor(group);
  if (!fits || !item) {
    step.GiveUp();
    return window.Notify(fits ? messages::kNoPitchInStretch : messages::kTooMuchData);
  }
  step.Add(std::move(*item));
  if (!step.Store(window)) return;
  NoteSound(tones, document, tones.items.size() - 1);
  const int last = static_cast<int>(tones.items.size()) - 1;
  window.ShowStatus(
      Format(kAdded.Get(), GroupText(group).c_str(), NumberInGroup(tones.items, last), last + 1));
}

void RemoveToneCommand(Window& window, ToneState& tones) {
  if (tones.items.empty()) return window.ShowStatus(kNothingToRemove);
  const bool picked = tones.view == ToneView::Group && tones.picked >= 0;
  const int index = picked ? tones.picked : static_cast<int>(tones.items.size()) - 1;
  const ToneItem item = tones.items[static_cast<std::size_t>(index)];
  const std::string group = item.group;
  const int number = NumberInGroup(tones.items, index);
  RunStep step(tones);
  const int at = step.Remove(item, index);
  if (!step.Store(window)) return;
  if (at >= 0 && static_cast<std::size_t>(at) < tones.firstUnsaved) --tones.firstUnsaved;
  tones.picked = -1;
  window.ShowStatus(Format(kRemoved.Get(), GroupText(group).c_str(), number));
}

void EndTonesCommand(Window& window, ToneState& tones) {
  if (!tones.items.empty() && !RunStep(tones).End(window, ResultPath(tones.path))) return;
  window.CloseToolWindow("tones");
  tones.open = tones.written = false;
  tones.path.clear();
  tones.begunOver.reset();
  tones.compared.reset();
  tones.SetItems({});
}

void ReportTonesCommand(Window& window, const ProsodyDesk& desk, const ToneState& tones) {
  if (tones.items.empty()) return window.Notify(kNoItems);
  if (WriteTextExport(window, desk.exportFolder, kReportName, ToneReport(tones.items, tones.statistics)) == 0)
    ShowTextExport(window, desk.exportFolder, kReportName);
}

void NextToneAxisCommand(Window& window, ToneState& tones) {
  tones.axis = static_cast<ToneAxis>((static_cast<int>(tones.axis) + 1) % kToneAxes);
  window.ShowStatus(Format(kAxisStatus.Get(), kAxisNames[static_cast<int>(tones.axis)].Get()));
  window.Repaint();
}

bool TonePatternCommand(Window& window, const ProsodyDesk& desk, ToneState& tones) {
  if (!RequirePicture(window, tones)) return false;
  ShowTones(window, desk, tones, ToneView::Pattern, {});
  return true;
}

bool ToneGroupCommand(Window& window, const ProsodyDesk& desk, ToneState& tones) {
  if (!RequirePicture(window, tones)) return false;
  InputForm form{kGroupNameTitle, {GroupField(GroupText(tones.statistics.groups.front().name))}};
  while (true) {
    if (!window.AskInput(form)) return false;
    if (HasIpaCodes(form.ValueOf(kFirstField))) break;
    window.Notify(messages::kNoGbkCode);
  }
  const std::string group = GroupGbk(form.ValueOf(kFirstField));
  if (tones.statistics.GroupNamed(group) < 0) return window.Refuse(kNoSuchGroup);
  ShowTones(window, desk, tones, ToneView::Group, group);
  return true;
}

void AddLabelledTones(Window& window, const ProsodyDesk& desk, ToneState& tones) {
  if (!desk.document.pitchPresent) return window.Notify(messages::kNoContour);
  const std::vector<LabelledStretch> labels = desk.firstBand().labels;
  std::vector<ToneItem> found;
  for (const LabelledStretch& label : labels) {
    std::string group = GroupOfLabel(label.text);
    if (group.empty()) continue;
    auto item = ToneItemOf(desk.document, label.start, label.end, std::move(group), tones.dropWeakEnds);
    if (item) found.push_back(std::move(*item));
  }
  RunStep step(tones);
  const std::size_t before = step.Items().size();
  for (ToneItem& item : found)
    if (step.HasRoomFor(item.group)) step.Add(std::move(item));
  const int added = static_cast<int>(step.Items().size() - before);
  if (added == 0) {
    step.GiveUp();
  } else if (!step.Store(window)) {
    return;
  } else {
    NoteSound(tones, desk.document, before);
  }
  window.ShowStatus(Format(kLabelsAdded.Get(), added, static_cast<int>(labels.size()) - added));
}

void AskToneRange(Window& window, ToneState& tones) {
  InputForm form{kRangeTitle,
                 {Button(kFirstButton, kRangeOfMeans, !tones.givenRange),
                  Button(kSecondButton, kRangeGiven, tones.givenRange.has_value())}};
  AddLimitFields(form, tones.statistics.range);
  while (true) {
    if (!window.AskInput(form)) return;
    if (form.CheckedIndex() != kSecondChoice) {
      tones.SetGivenRange({});
      break;
    }
    if (const auto range = LimitsIn(form)) {
      tones.SetGivenRange(range);
      break;
    }
    window.Notify(kBadLimits);
  }
  window.Repaint();
}

void CompareTones(Window& window, ToneState& tones) {
  const auto choice =
      window.AskOpenFile({kCompareTitle, {FileKindNamed("bin")}, FileKindNamed("bin").extension});
  if (!choice || choice->path.empty()) return;
  const auto bytes = ReadWholeFile(choice->path, kLargestToneFile);
  auto result = bytes ? ParseToneResult(*bytes) : std::nullopt;
  if (!result) return window.Notify(kNoResult, Icon::Error);
  tones.compared = std::move(result);
  window.Repaint();
}

void PickTone(Window& window, const ProsodyDesk& desk, ToneState& tones, int picked) {
  tones.picked = picked;
  window.Repaint();
  if (picked < 0 || tones.view != ToneView::Group) return;
  const ToneItem& item = tones.items[static_cast<std::size_t>(picked)];
  const double rate = item.sampleRate;
  window.ShowStatus(Format(kPicked.Get(), GroupText(item.group).c_str(), NumberInGroup(tones.items, picked),
                           FromGbk(item.sound).c_str(), item.start / rate, item.end / rate));
  if (IsOfSound(tones, static_cast<std::size_t>(picked), desk.document) &&
      item.end <= desk.document.sampleCount)
    desk.mark(item.start, item.end);
}

}  // namespace parlowen
