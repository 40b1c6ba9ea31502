#include "shell/CommandTable.h"

#include <algorithm>

#include "annotation/AnnotationCommands.h"
#include "annotation/EditFollowing.h"
#include "annotation/InsertedCharacters.h"
#include "annotation/IpaIndex.h"
#include "audio/SettingsCommand.h"
#include "channels/ChannelsWindow.h"
#include "document/ConversionCommands.h"
#include "document/EditCommands.h"
#include "document/SoundFileCommands.h"
#include "interchange/ExchangeCommands.h"
#include "palatography/NspCommands.h"
#include "pitch/PitchCommands.h"
#include "prosody/DurationCommands.h"
#include "shell/HelpPages.h"
#include "shell/Workstation.h"
#include "spectral/FrameCommands.h"
#include "spectral/SpectrogramCommands.h"
#include "spectral/SpectrumWindow.h"
#include "synthesis/SynthesisCommands.h"
#include "vowel/VowelCommands.h"
#include "vowel/VowelGroupCommands.h"

namespace parlowen {
namespace {

constexpr const char* kNotFinished = "本功能尚未完成";

void NotFinished(Workstation& w) { w.window.Notify(kNotFinished); }

// --- File

void OpenSound(Workstation& w) { openInteractive(w.window, w.document, w.states, ChannelMode::One); }
void SaveSound(Workstation& w) { saveSound(w.window, w.document, false); }
void SaveSoundAs(Workstation& w) { saveSound(w.window, w.document, true); }
void OpenNextDigit(Workstation& w) {
  openByName(w.window, w.document, w.states, std::string(w.document.nextDigitPath));
}
void Quit(Workstation& w) { w.window.Quit(); }

void GoToPlace(Workstation& w) {
  const auto second = AskStartSecond(w.window, w.document.sampleCount / std::max(1, w.document.sampleRate));
  if (second) w.view.ScrollTo(std::int64_t{*second} * w.document.sampleRate);
}
void NextScreen(Workstation& w) { w.view.ScrollBy(w.document.FullViewLength()); }
void PreviousScreen(Workstation& w) { w.view.ScrollBy(-std::int64_t{w.document.FullViewLength()}); }

// --- Sound

void RecordUntilSilence(Workstation& w) { w.recording.startRecording(RecordingStop::AfterSilence); }
void RecordUntilStopped(Workstation& w) { w.recording.startRecording(RecordingStop::ByHand); }
void RecordTwoChannels(Workstation& w) { w.recording.startRecording(RecordingStop::AfterSilence, 2); }
void StopRecording(Workstation& w) { w.recording.stopRecording(); }
void PlayWhole(Workstation& w) {
  w.player.startPlayback(0, w.document.sampleCount, PlayMode::Forward, w.document.samples.data());
}
void PlaySelection(Workstation& w) {
  w.player.startPlayback(w.document.selectionStart, w.document.selectionEnd, PlayMode::Forward,
                         w.document.samples.data());
}
void PlayReversed(Workstation& w) {
  w.player.startPlayback(w.document.selectionStart, w.document.selectionEnd, PlayMode::Reverse,
                         w.document.samples.data());
}
void Resynthesize(Workstation& w) {
  StartResynthesis(w.window, {w.document, w.synthesis, w.player, w.exportFolder, w.readTarget});
}
void StopPlaying(Workstation& w) { w.player.stopPlayback(); }
void Settings(Workstation& w) {
  SettingsCommand(w.window, w.document, w.states, w.recorder, w.ExportPath("Thresh.dat"));
}
void TestGain(Workstation& w) { w.recording.runGainTest(w.ExportPath("Thrsh.dat")); }

// --- Pitch

void FastPitchOfAll(Workstation& w) { PitchCommand(w.window, w.document, w.states, w.pitch); }
void TrackedPitchOfAll(Workstation& w) { PitchByCorrelationCommand(w.window, w.document, w.states, w.pitch); }
void PitchAgain(Workstation& w) { PitchAgainCommand(w.window, w.document, w.states, w.pitch); }
void RepairPitch(Workstation& w) { RepairPitchCommand(w.window, w.document, w.spectrogram, w.pitch); }
void RepairPitchOverCepstrum(Workstation& w) {
  RepairPitchCommand(w.window, w.document, w.spectrogram, w.pitch, SpectrogramKind::Cepstrum);
}
void SaveSegmentPitch(Workstation& w) { SavePitchSegment(w.window, w.document); }
void ListSavedPitch(Workstation& w) {
  if (ListPitchFile(w.window, w.document, w.exportFolder) == 0)
    w.window.OpenInEditor(PitchListingPath(w.exportFolder));
}

// --- Durations

void AddDuration(Workstation& w) { AddDurationCommand(w.window, w.document, w.durationGroup); }
void ShowDurations(Workstation& w) { ShowDurationsCommand(w.window, w.exportFolder); }

// --- Spectrum

template <SpectrogramKind kind>
void DrawSpectrogram(Workstation& w) {
  SpectrogramCommand(w.window, w.document, w.spectrogram, kind, {w.recorder.spectrogramShading == 0, &w.lpc});
}

void ShowFrame(Workstation& w) { ShowFrameCommand(w.window, w.document, w.frames, w.lpc); }
void CompareTwoFrames(Workstation& w) { CompareFramesCommand(w.window, w.document, w.frames, w.lpc); }
void LongTermSpectrum(Workstation& w) { LongTermSpectrumCommand(w.window, w.document, w.lta); }
void ConsonantOneFrame(Workstation& w) { ConsonantFrameCommand(w.window, w.document, w.consonant); }
void ConsonantSegment(Workstation& w) { ConsonantStretchCommand(w.window, w.document, w.consonant); }
void ListConsonants(Workstation& w) { ListConsonantFileCommand(w.window, w.exportFolder); }
void SpectrumWithWaveform(Workstation& w) { ShowSpectrumCommand(w.window, w.document, w.spectrogram, true); }
void SpectrumAlone(Workstation& w) { ShowSpectrumCommand(w.window, w.document, w.spectrogram, false); }

// --- Vowels

void SegmentVowels(Workstation& w) { SegmentChartCommand(w.window, w.document, w.states, w.vowels); }
void SaveFormants(Workstation& w) { SaveFormantsCommand(w.window, w.document); }
void ListFormants(Workstation& w) { ListFormantsCommand(w.window, w.document, w.exportFolder); }
void PointChart(Workstation& w) { PointChartCommand(w.window, w.document, w.states, w.vowels); }
void UndoPoint(Workstation& w) { UndoPointCommand(w.window, w.document, w.states, w.vowels); }
void ChoosePointShape(Workstation& w) { ChoosePointShapeCommand(w.window, w.vowels); }
void ClearChart(Workstation& w) { ClearChartCommand(w.window, w.document, w.states, w.vowels); }
void ShowAverageVowels(Workstation& w) { AverageVowelsCommand(w.window, w.document, w.vowels); }
void SaveChart(Workstation& w) { SaveChartCommand(w.window, w.vowels); }
void OpenChart(Workstation& w) { OpenChartCommand(w.window, w.document, w.states, w.vowels); }
void ListChart(Workstation& w) { ListChartCommand(w.window, w.document, w.states, w.vowels, w.exportFolder); }
void AddPointByHand(Workstation& w) { TypePointCommand(w.window, w.document, w.states, w.vowels); }
void AddPointToGroup(Workstation& w) { AddPointToGroupCommand(w.window, w.document, w.vowels); }
void ShowVowelGroups(Workstation& w) {
  ShowVowelGroupsCommand(w.window, w.document, w.states, w.vowels, w.exportFolder);
}

// --- Editing and marking

void Cut(Workstation& w) { CutCommand(w.window, w.document, w.states); }
void Copy(Workstation& w) { CopyCommand(w.document, w.states); }
void Paste(Workstation& w) { PasteCommand(w.window, w.document, w.states); }
void Undo(Workstation& w) { UndoCommand(w.window, w.document, w.states); }
void Amplify(Workstation& w) { AmplifyCommand(w.window, w.document); }
void Attenuate(Workstation& w) { AttenuateCommand(w.window, w.document); }
void SaveSelection(Workstation& w) { SaveSelectionCommand(w.window, w.document); }
void EditMarkers(Workstation& w) { OpenMarkerWindow(w.window, w.document, w.markers, w.playStretch); }
void FilterSegment(Workstation& w) { FilterSegmentCommand(w.window, w.document); }
void ConvertRate(Workstation& w) {
  const EditPlace before = EditPlaceOf(w.document);
  ConvertRateCommand(w.window, w.document, w.states);
  FollowConversion({w.markers, w.annotations, w.characters}, before, w.document);
}
void SelectAll(Workstation& w) { SelectAllCommand(w.window, w.document, w.states); }
void ClearSelection(Workstation& w) { ClearSelectionCommand(w.window, w.document, w.states); }

// --- Two channels

void OpenTwoChannels(Workstation& w) { openInteractive(w.window, w.document, w.states, ChannelMode::Two); }
void SaveTwoChannels(Workstation& w) {
  if (RequireTwoChannels(w.window, w.document)) saveSound(w.window, w.document, true);
}
void SwapChannels(Workstation& w) { SwapChannelsCommand(w.window, w.document, w.states); }
void ShowTwoChannels(Workstation& w) {
  ShowTwoChannelsCommand(w.window, {w.document, w.states, w.channels, w.exportFolder, w.playChannel});
}
void OpenTwoChannelNsp(Workstation& w) { OpenTwoChannelNspCommand(w.window, w.document, w.states); }

// --- Exchange with other programs

void ImportTextGrid(Workstation& w) { ImportTextGridCommand(w.window, w.MarkersToExchange()); }
void ExportTextGrid(Workstation& w) { ExportTextGridCommand(w.window, w.MarkersToExchange()); }
void ImportLabelTrack(Workstation& w) { ImportLabelTrackCommand(w.window, w.MarkersToExchange()); }
void ExportLabelTrack(Workstation& w) { ExportLabelTrackCommand(w.window, w.MarkersToExchange()); }
void ExportMarkersCsv(Workstation& w) { ExportMarkersCsvCommand(w.window, w.MarkersToExchange()); }
void ExportPitchTier(Workstation& w) { ExportPitchTierCommand(w.window, w.document); }
void ExportPitch(Workstation& w) { ExportPitchCommand(w.window, w.document, w.pitch.range); }
void ExportFormant(Workstation& w) { ExportFormantCommand(w.window, w.document); }
void ExportPitchCsv(Workstation& w) { ExportPitchCsvCommand(w.window, w.document, w.pitch.range); }
void ExportLevelsCsv(Workstation& w) { ExportLevelsCsvCommand(w.window, w.document); }
void ExportFormantsCsv(Workstation& w) { ExportFormantsCsvCommand(w.window, w.document); }
void ExportLtaCsv(Workstation& w) { ExportLtaCsvCommand(w.window, w.lta); }
void ExportVowelChartCsv(Workstation& w) { ExportVowelChartCsvCommand(w.window, w.document, w.vowels.chart); }
void ExportDurationsCsv(Workstation& w) { ExportDurationsCsvCommand(w.window, w.document); }
void ExportVowelGroupsCsv(Workstation& w) { ExportVowelGroupsCsvCommand(w.window, w.document); }
void ExportStereoWav(Workstation& w) { ExportStereoWavCommand(w.window, w.document); }

// --- Palate

void OpenEpg(Workstation& w) { OpenEpgCommand(w.window, w.document, w.states, w.palate); }

// --- Annotations

void OpenIpa(Workstation& w) { OpenIpaCommand(w.window, w.document, w.states, w.annotations); }
void SaveIpa(Workstation& w) { SaveIpaCommand(w.window, w.document, w.annotations); }
void Annotate(Workstation& w) { BeginAnnotation(w.window, w.document); }
void ShowIpaSymbols(Workstation& w) { ShowIpaIndex(w.window, w.dataFolder); }
void InsertCharacters(Workstation& w) { BeginCharacters(w.window, w.document, w.characters); }
void ShowCharacters(Workstation& w) { ToggleCharacters(w.window, w.characters); }
void ForgetCharacters(Workstation& w) { ClearCharacters(w.window, w.characters); }

// --- Refusals of functions that are still to come

void AnalyseIntonation(Workstation& w) {
  if (!w.document.selectionDefined())
    return w.window.Notify("请在幅度能量图中用鼠标左、右键选定要分析的语音段！");
  NotFinished(w);
}
void PalateStatistics(Workstation& w) {
  if (!w.document.selectionDefined())
    return w.window.ShowMessage("请用鼠标左、右键定义要进行统计的段", "语音段未正确定义", Icon::None);
  NotFinished(w);
}

// --- View, region, help

void ShowHint(Workstation& w) { w.window.Notify(w.view.Hint()); }
void ChangeAmplitudeScale(Workstation& w) { w.view.NextAmplitudeScale(); }
void SelectRegion(Workstation& w) { w.view.BeginRegion(); }
void CopyRegion(Workstation& w) { w.window.CopyRegion(w.view.region); }
void ShowHelp(Workstation& w) { OpenHelp(w.window, w.dataFolder, w.document.activity); }
void ShowAbout(Workstation& w) { w.window.Notify(AboutText()); }

constexpr CommandRow kRows[] = {
    {110, Menu::File, "打开声音文件[&O]", OpenSound},
    {120, Menu::File, "保存声音文件[&S]", SaveSound},
    {130, Menu::File, "声音文件另存为(&A]", SaveSoundAs},
    {40093, Menu::File, "Open next_digit file[&N]", OpenNextDigit},
    {40027, Menu::File, "选择所需地点[&G]", GoToPlace},
    {40013, Menu::File, "前进到标志[&M]", NextScreen},
    {40014, Menu::File, "后退一屏[&B]", PreviousScreen},
    {40078, Menu::File, "打开国际音标文件[&F]", OpenIpa},
    {40077, Menu::File, "汉语常用国际音标索引[&I]", ShowIpaSymbols},
    {140, Menu::File, "退出[&X]", Quit},
    {272, Menu::Sound, "开始录音（自动停）[&S]", RecordUntilSilence},
    {40022, Menu::Sound, "开始录音（手动停）[&H]", RecordUntilStopped},
    {274, Menu::Sound, "停止录音[&T]", StopRecording},
    {40023, Menu::Sound, "全部放音[&A]", PlayWhole},
    {160, Menu::Sound, "局部放音[&P]", PlaySelection},
    {40024, Menu::Sound, "局部倒放[&R]", PlayReversed},
    {40025, Menu::Sound, "停止放音[&N]", StopPlaying},
    {40081, Menu::Sound, "按给定基频合成放音[&Y]", Resynthesize},
    {220, Menu::Pitch, "基频（快速法）[&T]", FastPitchOfAll},
    {40005, Menu::Pitch, "基频（频域法）[&F]", TrackedPitchOfAll},
    {40103, Menu::Pitch, "再求一次音高[&Q]", PitchAgain},
    {40042, Menu::Pitch, "据窄带谱修改基频[&N]", RepairPitch},
    {40108, Menu::Pitch, "据倒谱修改基频[&P]", RepairPitchOverCepstrum},
    {40050, Menu::Pitch, "保存所选段基频[&B]", SaveSegmentPitch},
    {40051, Menu::Pitch, "显示已保存各段基频[&X]", ListSavedPitch},
    {40052, Menu::Pitch, "用五度坐标画选定段音高[&D]", nullptr},
    {40106, Menu::Pitch, "选定语音段的语调分析[&I]", AnalyseIntonation},
    {40029, Menu::Tone, "进入某基频统计[&J]", nullptr},
    {40030, Menu::Tone, "选择统计语料[&S]", nullptr},
    {40035, Menu::Tone, "撤消一个已选语料[&U]", nullptr},
    {40031, Menu::Tone, "结束本次统计[&E]", nullptr},
    {40032, Menu::Tone, "显示统计结果的数据[&R]", nullptr},
    {40034, Menu::Tone, "画声调格局图[&G]", nullptr},
    {40033, Menu::Tone, "改变格局图的显示坐标[&C]", nullptr},
    {40037, Menu::Tone, "画某组平均结果[&A]", nullptr},
    {40074, Menu::Pitch, "音长加入统计组[&I]", AddDuration},
    {40076, Menu::Pitch, "显示音长统计结果(&H)", ShowDurations},
    {170, Menu::Spectrum, "语谱图—宽带[&B]", DrawSpectrogram<SpectrogramKind::WideBand>},
    {180, Menu::Spectrum, "语谱图—窄带[&N]", DrawSpectrogram<SpectrogramKind::NarrowBand>},
    {190, Menu::Spectrum, "LPC 谱[&L]", DrawSpectrogram<SpectrogramKind::Lpc>},
    {205, Menu::Spectrum, "倒谱[&C]", DrawSpectrogram<SpectrogramKind::Cepstrum>},
    {200, Menu::Spectrum, "同态谱[&T]", DrawSpectrogram<SpectrogramKind::Homomorphic>},
    {210, Menu::Spectrum, "共振峰[&F]", DrawSpectrogram<SpectrogramKind::Formants>},
    {40066, Menu::Spectrum, "宽带语谱图--滤波器法[&Q]", DrawSpectrogram<SpectrogramKind::FilterBank>},
    {212, Menu::Spectrum, "帧参数[&P]", ShowFrame},
    {40089, Menu::Spectrum, "两帧的参数比较[&J]", CompareTwoFrames},
    {40090, Menu::Spectrum, "长时平均功率谱(LTA)[&A]", LongTermSpectrum},
    {40067, Menu::Spectrum, "声门波(嗓音)估计[&G]", nullptr},
    {40095, Menu::Spectrum, "辅音的帧参数[&S]", ConsonantOneFrame},
    {40096, Menu::Spectrum, "一段辅音的参数图[&D]", ConsonantSegment},
    {40109, Menu::Spectrum, "显示已保存的辅音段数据[&Y]", ListConsonants},
    {40056, Menu::Vowel, "一段元音的F1-F2图[&V]", SegmentVowels},
    {40068, Menu::Vowel, "保存一段元音的共振峰数据[&S]", SaveFormants},
    {40069, Menu::Vowel, "显示已保存的共振峰数据[&D]", ListFormants},
    {40057, Menu::Vowel, "在F1-F2图中加入某点数据[&A]", PointChart},
    {40059, Menu::Vowel, "撤消/修改最近加入的一点[&U]", UndoPoint},
    {40070, Menu::Vowel, "点形选择[&X]", ChoosePointShape},
    {40058, Menu::Vowel, "清除F1-F2图全部数据[&C]", ClearChart},
    {40085, Menu::Vowel, "调入主要元音的平均值[&M]", ShowAverageVowels},
    {40072, Menu::Vowel, "保存当前元音图[&H]", SaveChart},
    {40073, Menu::Vowel, "显示已保存的元音图[&Y]", OpenChart},
    {40082, Menu::Vowel, "显示已保存元音图数据[&W]", ListChart},
    {40062, Menu::Vowel, "人工在元音图中加入一点[J]", AddPointByHand},
    {40063, Menu::Vowel, "把最近的元音数据点加入统计组[&G]", AddPointToGroup},
    {40064, Menu::Vowel, "显示元音点的统计组数据并作图[&T]", ShowVowelGroups},
    {40060, Menu::Palate, "打开腭位数据文件[&O]", OpenEpg},
    {40061, Menu::Palate, "波形-语谱-腭位图[&E]", nullptr},
    {40049, Menu::Palate, "波形-腭位图[&P]", nullptr},
    {40083, Menu::Palate, "腭位数据库内容索引[&Z]", nullptr},
    {40084, Menu::Palate, "电子动态腭位数据库简介[&Q]", nullptr},
    {40087, Menu::Palate, "一段语音腭位数据统计[&I]", PalateStatistics},
    {40088, Menu::Palate, "显示腭位统计数据[&F]", nullptr},
    {40079, Menu::Palate, "保存国际音标文件[&B]", SaveIpa},
    {40080, Menu::Palate, "插入IPA 或其他注释字符 [&T]", Annotate},
    {40112, Menu::TwoChannel, "双声道录音（自动起停）[&R]", RecordTwoChannels},
    {40110, Menu::TwoChannel, "打开.WAV双声道文件[&S]", OpenTwoChannels},
    {40116, Menu::TwoChannel, "打开.NSP双声道文件[&N]", OpenTwoChannelNsp},
    {40113, Menu::TwoChannel, "保存双声道数据为文件[&V]", SaveTwoChannels},
    {40114, Menu::TwoChannel, "交换声道1,2的数据[&X]", SwapChannels},
    {40111, Menu::TwoChannel, "显示双声道数据[&D]", ShowTwoChannels},
    {40001, Menu::Edit, "波形剪切[&T]", Cut},
    {40002, Menu::Edit, "波形复制[&C]", Copy},
    {40003, Menu::Edit, "波形粘贴[&P]", Paste},
    {40006, Menu::Edit, "波形增强[&E]", Amplify},
    {40007, Menu::Edit, "波形减弱[&L]", Attenuate},
    {40040, Menu::Edit, "保存选中的段[&S]", SaveSelection},
    {40036, Menu::Edit, "撤消编辑操作[&U]", Undo},
    {40115, Menu::Edit, "对选定段进行滤波[&F]", FilterSegment},
    {40102, Menu::Edit, "高采样频率转换为16K/11K[&H]", ConvertRate},
    {40026, Menu::Marking, "全选[&S]", SelectAll},
    {40004, Menu::Marking, "清除选择[&Q]", ClearSelection},
    {40053, Menu::Marking, "插入字符[&I]", InsertCharacters},
    {40055, Menu::Marking, "显示插入字符[&X]", ShowCharacters},
    {40054, Menu::Marking, "清除插入字符[&D]", ForgetCharacters},
    {40105, Menu::Marking, "进入标志处理[&B]", EditMarkers},
    {40117, Menu::Marking, "普通话声韵母发音的唇位，舌位图[P]", nullptr},
    {215, Menu::Settings, "参数设置[&S]", Settings},
    {40021, Menu::Settings, "显示操作提示[&P]", ShowHint},
    {40041, Menu::Settings, "改变幅度_能量坐标[&L]", ChangeAmplitudeScale},
    {40104, Menu::Settings, "自动调节录音增益[&A]", TestGain},
    {40010, Menu::Region, "区域选择[&S]", SelectRegion},
    {40015, Menu::Region, "复制区域[&C]", CopyRegion},
    {270, Menu::Help, "帮助主题[&H]", ShowHelp},
    {40008, Menu::Help, "关于[&A]", ShowAbout},
    {41010, Menu::Extension, "谱图窗口[&P]", SpectrumWithWaveform},
    {41011, Menu::Extension, "单谱图窗口[&G]", SpectrumAlone},
    {41020, Menu::Exchange, "导入TextGrid文件[&T]", ImportTextGrid},
    {41021, Menu::Exchange, "导出TextGrid文件[&G]", ExportTextGrid},
    {41022, Menu::Exchange, "导入标签轨[&L]", ImportLabelTrack},
    {41023, Menu::Exchange, "导出标签轨[&B]", ExportLabelTrack},
    {41024, Menu::Exchange, "导出PitchTier文件[&I]", ExportPitchTier},
    {41025, Menu::Exchange, "导出Pitch文件[&P]", ExportPitch},
    {41026, Menu::Exchange, "导出Formant文件[&F]", ExportFormant},
    {41027, Menu::Exchange, "导出基频数据(CSV)[&Q]", ExportPitchCsv},
    {41028, Menu::Exchange, "导出幅度能量数据(CSV)[&N]", ExportLevelsCsv},
    {41029, Menu::Exchange, "导出共振峰数据(CSV)[&R]", ExportFormantsCsv},
    {41030, Menu::Exchange, "导出LTA谱数据(CSV)[&A]", ExportLtaCsv},
    {41031, Menu::Exchange, "导出元音图数据(CSV)[&V]", ExportVowelChartCsv},
    {41032, Menu::Exchange, "音长统计数据转为CSV[&D]", ExportDurationsCsv},
    {41033, Menu::Exchange, "元音统计数据转为CSV[&Y]", ExportVowelGroupsCsv},
    {41034, Menu::Exchange, "导出标志和标注(CSV)[&M]", ExportMarkersCsv},
    {41035, Menu::Exchange, "导出立体声WAV[&W]", ExportStereoWav},
};

constexpr const char* kMenuNames[] = {"文件", "录放音", "基频",   "声调统计", "频谱",
                                      "元音", "腭位",   "双声道", "编辑",     "选择与标注",
                                      "设置", "区域",   "帮助",   "扩展",     "与其他程序交换"};

}  // namespace

const char* MenuName(Menu menu) { return kMenuNames[static_cast<int>(menu)]; }

std::span<const CommandRow> CommandTable() { return kRows; }

const CommandRow* FindCommand(int number) {
  const auto found = std::find_if(std::begin(kRows), std::end(kRows),
                                  [number](const CommandRow& row) { return row.number == number; });
  return found == std::end(kRows) ? nullptr : found;
}

void RunCommand(Workstation& workstation, const CommandRow& row) {
  (row.run != nullptr ? row.run : NotFinished)(workstation);
}

}  // namespace parlowen
