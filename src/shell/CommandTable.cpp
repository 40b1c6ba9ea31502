#include "shell/CommandTable.h"

#include <algorithm>

#include "annotation/AnnotationCommands.h"
#include "annotation/InsertedCharacters.h"
#include "annotation/IpaIndex.h"
#include "articulation/ArticulationWindow.h"
#include "audio/SettingsCommand.h"
#include "channels/ChannelsWindow.h"
#include "document/ConversionCommands.h"
#include "document/EditCommands.h"
#include "document/SoundFileCommands.h"
#include "interchange/ExchangeCommands.h"
#include "measure/MeasureCommands.h"
#include "palatography/NspCommands.h"
#include "palatography/PalateCommands.h"
#include "pitch/PitchCommands.h"
#include "prosody/DurationCommands.h"
#include "prosody/IntonationCommands.h"
#include "prosody/ToneCommands.h"
#include "shell/HelpPages.h"
#include "shell/Rooms.h"
#include "spectral/FrameCommands.h"
#include "spectral/FrequencyCeiling.h"
#include "spectral/SpectrogramCommands.h"
#include "spectral/SpectrumWindow.h"
#include "synthesis/SynthesisCommands.h"
#include "ui/Text.h"
#include "voice/GlottalCommands.h"
#include "vowel/VowelCommands.h"
#include "vowel/VowelGroupCommands.h"

namespace parlowen {
namespace {

// --- File

void OpenSound(Rooms& w) { openInteractive(w.window, w.document, w.states, ChannelMode::One); }
void SaveSound(Rooms& w) { saveSound(w.window, w.document, false); }
void SaveSoundAs(Rooms& w) { saveSound(w.window, w.document, true); }
void OpenNextDigit(Rooms& w) {
  openByName(w.window, w.document, w.states, std::string(w.document.nextDigitPath));
}
void Quit(Rooms& w) { w.window.Quit(); }

void GoToPlace(Rooms& w) {
  const auto second = AskStartSecond(w.window, w.document.sampleCount / std::max(1, w.document.sampleRate));
  if (second) w.view.ScrollTo(std::int64_t{*second} * w.document.sampleRate);
}
void NextScreen(Rooms& w) { w.view.ScrollBy(w.document.FullViewLength()); }
void PreviousScreen(Rooms& w) { w.view.ScrollBy(-std::int64_t{w.document.FullViewLength()}); }

// --- Sound

void RecordUntilSilence(Rooms& w) { w.recording.startRecording(RecordingStop::AfterSilence); }
void RecordUntilStopped(Rooms& w) { w.recording.startRecording(RecordingStop::ByHand); }
void RecordTwoChannels(Rooms& w) { w.recording.startRecording(RecordingStop::AfterSilence, 2); }
void StopRecording(Rooms& w) { w.recording.stopRecording(); }
void PlayWhole(Rooms& w) {
  w.player.startPlayback(0, w.document.sampleCount, PlayMode::Forward, w.document.samples.data());
}
void PlaySelection(Rooms& w) {
  w.player.startPlayback(w.document.selectionStart, w.document.selectionEnd, PlayMode::Forward,
                         w.document.samples.data());
}
void PlayReversed(Rooms& w) {
  w.player.startPlayback(w.document.selectionStart, w.document.selectionEnd, PlayMode::Reverse,
                         w.document.samples.data());
}
void Resynthesize(Rooms& w) {
  StartResynthesis(w.window, {w.document, w.synthesis, w.player, w.exportFolder, w.readTarget});
}
void StopPlaying(Rooms& w) { w.player.stopPlayback(); }
void Settings(Rooms& w) {
  SettingsCommand(w.window, w.document, w.states, w.recorder, w.ExportPath("Thresh.dat"));
}
void TestGain(Rooms& w) { w.recording.runGainTest(w.ExportPath("Thrsh.dat")); }

// --- Pitch

bool FastPitchOfAll(Rooms& w) { return PitchCommand(w.window, w.document, w.states, w.pitch); }
bool TrackedPitchOfAll(Rooms& w) {
  return PitchByCorrelationCommand(w.window, w.document, w.states, w.pitch);
}
bool PitchAgain(Rooms& w) { return PitchAgainCommand(w.window, w.document, w.states, w.pitch); }
bool RepairPitch(Rooms& w) { return RepairPitchCommand(w.window, w.document, w.spectrogram, w.pitch); }
bool RepairPitchOverCepstrum(Rooms& w) {
  return RepairPitchCommand(w.window, w.document, w.spectrogram, w.pitch, SpectrogramKind::Cepstrum);
}
void SaveSegmentPitch(Rooms& w) { SavePitchSegment(w.window, w.document); }
void ListSavedPitch(Rooms& w) {
  if (ListPitchFile(w.window, w.document, w.exportFolder) == 0)
    w.window.OpenInEditor(PitchListingPath(w.exportFolder));
}

// --- Durations

void AddDuration(Rooms& w) { AddDurationCommand(w.window, w.document, w.durationGroup); }
void ShowDurations(Rooms& w) { ShowDurationsCommand(w.window, w.exportFolder); }

// --- Spectrum

template <SpectrogramKind kind>
bool DrawSpectrogram(Rooms& w) {
  return SpectrogramCommand(w.window, w.document, w.spectrogram, kind,
                            {w.recorder.spectrogramShading == 0, &w.lpc});
}

void ShowFrame(Rooms& w) { ShowFrameCommand(w.window, w.document, w.frames, w.lpc); }
bool CompareTwoFrames(Rooms& w) { return CompareFramesCommand(w.window, w.document, w.frames, w.lpc); }
void LongTermSpectrum(Rooms& w) { LongTermSpectrumCommand(w.window, w.document, w.lta); }
bool ConsonantOneFrame(Rooms& w) { return ConsonantFrameCommand(w.window, w.document, w.consonant); }
bool ConsonantSegment(Rooms& w) { return ConsonantStretchCommand(w.window, w.document, w.consonant); }
void ListConsonants(Rooms& w) { ListConsonantFileCommand(w.window, w.exportFolder); }
void SpectrumWithWaveform(Rooms& w) { ShowSpectrumCommand(w.window, w.document, w.spectrogram, true); }
void FrequencyCeiling(Rooms& w) { ChooseCeiling(w.window, w.spectrogram); }
void SpectrumAlone(Rooms& w) { ShowSpectrumCommand(w.window, w.document, w.spectrogram, false); }

// --- Voice

bool EstimateGlottal(Rooms& w) {
  return GlottalWaveCommand(w.window, {w.document, w.glottal, w.exportFolder, w.playStretch});
}

// --- Vowels

bool SegmentVowels(Rooms& w) { return SegmentChartCommand(w.window, {w.document, w.states, w.vowels}); }
void SaveFormants(Rooms& w) { SaveFormantsCommand(w.window, w.document); }
void ListFormants(Rooms& w) { ListFormantsCommand(w.window, w.document, w.exportFolder); }
bool PointChart(Rooms& w) { return PointChartCommand(w.window, {w.document, w.states, w.vowels}); }
bool UndoPoint(Rooms& w) { return UndoPointCommand(w.window, {w.document, w.states, w.vowels}); }
bool ChoosePointShape(Rooms& w) { return ChoosePointShapeCommand(w.window, w.vowels); }
void ClearChart(Rooms& w) { ClearChartCommand(w.window, {w.document, w.states, w.vowels}); }
bool ShowAverageVowels(Rooms& w) { return AverageVowelsCommand(w.window, w.document, w.vowels); }
void SaveChart(Rooms& w) { SaveChartCommand(w.window, w.vowels); }
bool OpenChart(Rooms& w) { return OpenChartCommand(w.window, {w.document, w.states, w.vowels}); }
void ListChart(Rooms& w) { ListChartCommand(w.window, {w.document, w.states, w.vowels}, w.exportFolder); }
bool AddPointByHand(Rooms& w) { return TypePointCommand(w.window, {w.document, w.states, w.vowels}); }
bool AddPointToGroup(Rooms& w) { return AddPointToGroupCommand(w.window, w.document, w.vowels); }
bool ShowVowelGroups(Rooms& w) {
  return ShowVowelGroupsCommand(w.window, {w.document, w.states, w.vowels}, w.exportFolder);
}

// --- Editing and marking

void Cut(Rooms& w) { w.Follow(CutCommand(w.window, w.document, w.states)); }
void Copy(Rooms& w) { CopyCommand(w.document, w.states); }
void Paste(Rooms& w) { w.Follow(PasteCommand(w.window, w.document, w.states)); }
void Undo(Rooms& w) { w.Follow(UndoCommand(w.window, w.document, w.states)); }
void Amplify(Rooms& w) { AmplifyCommand(w.window, w.document); }
void Attenuate(Rooms& w) { AttenuateCommand(w.window, w.document); }
void SaveSelection(Rooms& w) { SaveSelectionCommand(w.window, w.document); }
void EditMarkers(Rooms& w) { OpenMarkerWindow(w.window, w.document, w.markers, w.playStretch); }
void FilterSegment(Rooms& w) { FilterSegmentCommand(w.window, w.document); }
void ShowArticulation(Rooms& w) {
  ShowArticulationCommand(w.window, {w.document, w.articulation, w.dataFolder, w.playSoundFile});
}
void ConvertRate(Rooms& w) { w.Follow(ConvertRateCommand(w.window, w.document, w.states)); }
void SelectAll(Rooms& w) { SelectAllCommand(w.window, w.document, w.states); }
void ClearSelection(Rooms& w) { ClearSelectionCommand(w.window, w.document, w.states); }

// --- Two channels

void OpenTwoChannels(Rooms& w) { openInteractive(w.window, w.document, w.states, ChannelMode::Two); }
void SaveTwoChannels(Rooms& w) {
  if (RequireTwoChannels(w.window, w.document)) saveSound(w.window, w.document, true);
}
void SwapChannels(Rooms& w) { SwapChannelsCommand(w.window, w.document, w.states); }
void ShowTwoChannels(Rooms& w) {
  ShowTwoChannelsCommand(w.window, {w.document, w.states, w.channels, w.exportFolder, w.playChannel});
}
void OpenTwoChannelNsp(Rooms& w) { OpenTwoChannelNspCommand(w.window, w.document, w.states); }

// --- Exchange with other programs

void MeasureLabels(Rooms& w) { MeasureLabelsCommand(w.window, w.MarkersToExchange(), w.pitch.range); }
void ImportTextGrid(Rooms& w) { ImportTextGridCommand(w.window, w.MarkersToExchange()); }
void ExportTextGrid(Rooms& w) { ExportTextGridCommand(w.window, w.MarkersToExchange()); }
void ImportLabelTrack(Rooms& w) { ImportLabelTrackCommand(w.window, w.MarkersToExchange()); }
void ExportLabelTrack(Rooms& w) { ExportLabelTrackCommand(w.window, w.MarkersToExchange()); }
void ExportMarkersCsv(Rooms& w) { ExportMarkersCsvCommand(w.window, w.MarkersToExchange()); }
void ExportPitchTier(Rooms& w) { ExportPitchTierCommand(w.window, w.document); }
void ExportPitch(Rooms& w) { ExportPitchCommand(w.window, w.document, w.pitch.range); }
void ExportFormant(Rooms& w) { ExportFormantCommand(w.window, w.document); }
void ExportPitchCsv(Rooms& w) { ExportPitchCsvCommand(w.window, w.document, w.pitch.range); }
void ExportLevelsCsv(Rooms& w) { ExportLevelsCsvCommand(w.window, w.document); }
void ExportFormantsCsv(Rooms& w) { ExportFormantsCsvCommand(w.window, w.document); }
void ExportLtaCsv(Rooms& w) { ExportLtaCsvCommand(w.window, w.lta); }
void ExportVowelChartCsv(Rooms& w) { ExportVowelChartCsvCommand(w.window, w.document, w.vowels.chart); }
void ExportDurationsCsv(Rooms& w) { ExportDurationsCsvCommand(w.window, w.document); }
void ExportVowelGroupsCsv(Rooms& w) { ExportVowelGroupsCsvCommand(w.window, w.document); }
void ExportTonesCsv(Rooms& w) { ExportTonesCsvCommand(w.window, w.document, w.tones); }
void ExportIntonationCsv(Rooms& w) { ExportIntonationCsvCommand(w.window, w.document, w.intonation); }
void ExportGlottalCsv(Rooms& w) { ExportGlottalCsvCommand(w.window, w.document, w.glottal); }
void ExportIntonationTier(Rooms& w) { ExportIntonationTierCommand(w.window, w.document, w.intonation); }
void ExportStereoWav(Rooms& w) { ExportStereoWavCommand(w.window, w.document); }

// --- Palate

bool OpenEpg(Rooms& w) { return OpenEpgCommand(w.window, w.document, w.states, w.palate); }
bool ShowPalate(Rooms& w) { return ShowPalateCommand(w.window, w.PalatesToShow(), false); }
bool ShowPalateAndSpectrum(Rooms& w) { return ShowPalateCommand(w.window, w.PalatesToShow(), true); }
bool CountSelectedFrames(Rooms& w) { return PalateStatisticsCommand(w.window, w.PalatesToShow()); }
bool OpenPalateStatistics(Rooms& w) { return OpenPalateStatisticsCommand(w.window, w.PalatesToShow()); }
void ShowPalateIndex(Rooms& w) { ShowPalateIndexCommand(w.window, w.palate, w.dataFolder); }
void ShowPalateIntroduction(Rooms& w) { ShowPalateIntroductionCommand(w.window, w.dataFolder); }
void ImportContactFrames(Rooms& w) { ImportContactFramesCommand(w.window, w.document, w.states, w.palate); }
void ExportPalateCsv(Rooms& w) { ExportPalateCsvCommand(w.window, w.document, w.palate); }

// --- Annotations

void OpenIpa(Rooms& w) { OpenIpaCommand(w.window, w.document, w.states, w.annotations); }
void SaveIpa(Rooms& w) { SaveIpaCommand(w.window, w.document, w.annotations); }
void Annotate(Rooms& w) { BeginAnnotation(w.window, w.document); }
void ShowIpaSymbols(Rooms& w) { ShowIpaIndex(w.window, w.dataFolder); }
void InsertCharacters(Rooms& w) { BeginCharacters(w.window, w.document, w.characters); }
void ShowCharacters(Rooms& w) { ToggleCharacters(w.window, w.characters); }
void ForgetCharacters(Rooms& w) { ClearCharacters(w.window, w.characters); }

// --- Tones and intonation

bool ShowDegrees(Rooms& w) { return DegreeCommand(w.window, w.prosody, w.degree, w.tones); }
bool AnalyseIntonation(Rooms& w) { return IntonationCommand(w.window, w.prosody, w.intonation); }
bool BeginTones(Rooms& w) { return BeginTonesCommand(w.window, w.tones); }
void AddTone(Rooms& w) { AddToneCommand(w.window, w.prosody, w.tones); }
void RemoveTone(Rooms& w) { RemoveToneCommand(w.window, w.tones); }
void EndTones(Rooms& w) { EndTonesCommand(w.window, w.tones); }
void ReportTones(Rooms& w) { ReportTonesCommand(w.window, w.prosody, w.tones); }
void ChangeToneAxis(Rooms& w) { NextToneAxisCommand(w.window, w.tones); }
bool ShowTonePattern(Rooms& w) { return TonePatternCommand(w.window, w.prosody, w.tones); }
bool ShowToneGroup(Rooms& w) { return ToneGroupCommand(w.window, w.prosody, w.tones); }

// --- View, region, help

void ShowHint(Rooms& w) { w.window.Notify(w.view.Hint()); }
void ChangeAmplitudeScale(Rooms& w) { w.view.NextAmplitudeScale(); }
void SelectRegion(Rooms& w) { w.view.BeginRegion(); }
void CopyRegion(Rooms& w) { w.window.CopyRegion(w.view.region); }
void ShowHelp(Rooms& w) { OpenHelp(w.window, w.dataFolder, w.document.activity); }
void ShowAbout(Rooms& w) { w.window.ShowMessage(AboutText(), kProgramCaption, Icon::None); }

// --- The view

void FollowPlay(Rooms& w) { w.view.followsPlay = !w.view.followsPlay; }
void ChoosePitchSpan(Rooms& w) {
  if (AskPitchSpan(w.window, w.view.pitchSpan)) w.window.Repaint(Pane::Pitch);
}
bool FollowsPlay(const Rooms& w) { return w.view.followsPlay; }

// --- Labels

void ShowLabels(Rooms& w) { ShowLabelPane(w.window, w.document, w.markers, !w.markers.paneShown); }
bool LabelsShown(const Rooms& w) { return w.markers.paneShown; }
void SaveLabels(Rooms& w) {
  EnsureMarkersRead(w.document, w.markers);
  SaveMarkers(w.window, w.document, w.markers);
}

constexpr Needs kNothing;
constexpr Needs kSound = Need::Sound;
constexpr Needs kLong = Need::Sound | Need::LongSound;
constexpr Needs kPlayable = Need::Sound | Need::Selection | Need::PlayableSelection;
constexpr Needs kEditable = Need::Sound | Need::EditableSelection;
constexpr Needs kClearable = Need::Sound | Need::ClearableSelection;
constexpr Needs kContour = Need::Sound | Need::Contour;
constexpr Needs kSelectedContour = Need::Sound | Need::Selection | Need::Contour;
constexpr Needs kLowRate = Need::Sound | Need::LowRate;
constexpr Needs kLowRateOnce = Need::Sound | Need::LowRateOnce;
constexpr Needs kSelectedAtLowRate = Need::Sound | Need::MarkedAtLowRate | Need::Selection;
constexpr Needs kStatistics = Need::Sound | Need::Statistics;
constexpr Needs kPicture = Need::Sound | Need::Picture;

constexpr DoesSet kPlain;
constexpr DoesSet kOpens = Does::StopPlay | Does::OpenSound;
constexpr DoesSet kRecords = Does::StopPlay | Does::RecordSound;
constexpr DoesSet kSaves = Does::SaveSound;
constexpr DoesSet kTool = Does::EndTool;
constexpr DoesSet kDraws = Does::EndTool | Does::DrawInPanes;
constexpr DoesSet kComputesPitch = kDraws | Does::ReplaceContour;
constexpr DoesSet kReplacesLabels = Does::ReplaceMarkers | Does::ReplaceAnnotations;

using namespace commands;

constexpr CommandRow kRows[] = {
    {kOpenSound, Menu::File, "打开声音文件[&O]", "Ctrl+O", kOpens, kNothing, OpenSound},
    {kSaveSound, Menu::File, "保存声音文件[&S]", "Ctrl+S", kSaves, kSound, SaveSound},
    {kSaveSoundAs, Menu::File, "声音文件另存为(&A]", "Ctrl+Shift+S", kSaves, kSound, SaveSoundAs},
    {kOpenNextDigit, Menu::File, "Open next_digit file[&N]", "Ctrl+N", kOpens, kSound, OpenNextDigit},
    {kGoToPlace, Menu::File, "选择所需地点[&G]", "", kPlain, kLong, GoToPlace},
    {kNextScreen, Menu::File, "前进到标志[&M]", "PageDown", kPlain, kLong, NextScreen},
    {kPreviousScreen, Menu::File, "后退一屏[&B]", "PageUp", kPlain, kLong, PreviousScreen},
    {kOpenIpa, Menu::File, "打开国际音标文件[&F]", "", kOpens, kNothing, OpenIpa},
    {kShowIpaSymbols, Menu::File, "汉语常用国际音标索引[&I]", "", kPlain, kSound, ShowIpaSymbols},
    {kQuit, Menu::File, "退出[&X]", "", kPlain, kNothing, Quit},
    {kRecordUntilSilence, Menu::Sound, "开始录音（自动停）[&S]", "Ctrl+R", kRecords, Need::Microphone,
     RecordUntilSilence},
    {kRecordUntilStopped, Menu::Sound, "开始录音（手动停）[&H]", "", kRecords, Need::Microphone,
     RecordUntilStopped},
    {kStopRecording, Menu::Sound, "停止录音[&T]", "T", kPlain, Need::Recording, StopRecording},
    {kPlayWhole, Menu::Sound, "全部放音[&A]", "Space", kPlain, kSound, PlayWhole},
    {kPlaySelection, Menu::Sound, "局部放音[&P]", "Space", kPlain, kPlayable, PlaySelection},
    {kPlayReversed, Menu::Sound, "局部倒放[&R]", "", kPlain, kPlayable, PlayReversed},
    {kStopPlaying, Menu::Sound, "停止放音[&N]", "T", kPlain, Need::Playing, StopPlaying},
    {kResynthesize, Menu::Sound, "按给定基频合成放音[&Y]", "", kPlain, kPlayable | Need::MarkedAtLowRate,
     Resynthesize},
    {kFastPitch, Menu::Pitch, "基频（快速法）[&T]", "F5", kComputesPitch, kSound, FastPitchOfAll},
    {kTrackedPitch, Menu::Pitch, "基频（频域法）[&F]", "", kComputesPitch, kSound, TrackedPitchOfAll},
    {kPitchAgain, Menu::Pitch, "再求一次音高[&Q]", "", kComputesPitch, kContour, PitchAgain},
    {kRepairPitch, Menu::Pitch, "据窄带谱修改基频[&N]", "", kDraws, kSound, RepairPitch},
    {kRepairPitchOverCepstrum, Menu::Pitch, "据倒谱修改基频[&P]", "", kDraws, kSound,
     RepairPitchOverCepstrum},
    {kSaveSegmentPitch, Menu::Pitch, "保存所选段基频[&B]", "", kPlain, kSelectedContour, SaveSegmentPitch},
    {kListSavedPitch, Menu::Pitch, "显示已保存各段基频[&X]", "", kPlain, kLowRate, ListSavedPitch},
    {kFiveDegreePlot, Menu::Pitch, "用五度坐标画选定段音高[&D]", "", kPlain, kSelectedContour, ShowDegrees},
    {kAnalyseIntonation, Menu::Pitch, "选定语音段的语调分析[&I]", "", kTool, kSound, AnalyseIntonation},
    {kEnterToneGroup, Menu::Tone, "进入某基频统计[&J]", "", kPlain, kLowRate | Need::NoStatistics,
     BeginTones},
    {kChooseToneItem, Menu::Tone, "选择统计语料[&S]", "", kPlain, kStatistics, AddTone},
    {kWithdrawToneItem, Menu::Tone, "撤消一个已选语料[&U]", "", kPlain, kStatistics, RemoveTone},
    {kEndToneStatistics, Menu::Tone, "结束本次统计[&E]", "", kPlain, kStatistics, EndTones},
    {kShowToneData, Menu::Tone, "显示统计结果的数据[&R]", "", kPlain, kStatistics, ReportTones},
    {kDrawTonePattern, Menu::Tone, "画声调格局图[&G]", "", kPlain, kStatistics, ShowTonePattern},
    {kChangeToneAxes, Menu::Tone, "改变格局图的显示坐标[&C]", "", kPlain, kLowRate, ChangeToneAxis},
    {kDrawToneMean, Menu::Tone, "画某组平均结果[&A]", "", kPlain, kStatistics, ShowToneGroup},
    {kAddDuration, Menu::Pitch, "音长加入统计组[&I]", "", kPlain, kEditable, AddDuration},
    {kShowDurations, Menu::Pitch, "显示音长统计结果(&H)", "", kPlain, kSound, ShowDurations},
    {kWideBand, Menu::Spectrum, "语谱图—宽带[&B]", "F6", kDraws, kSound,
     DrawSpectrogram<SpectrogramKind::WideBand>},
    {kNarrowBand, Menu::Spectrum, "语谱图—窄带[&N]", "F7", kDraws, kSound,
     DrawSpectrogram<SpectrogramKind::NarrowBand>},
    {kLpcSpectrum, Menu::Spectrum, "LPC 谱[&L]", "", kDraws, kSound, DrawSpectrogram<SpectrogramKind::Lpc>},
    {kCepstrum, Menu::Spectrum, "倒谱[&C]", "", kDraws, kSound, DrawSpectrogram<SpectrogramKind::Cepstrum>},
    {kHomomorphicSpectrum, Menu::Spectrum, "同态谱[&T]", "", kDraws, kSound,
     DrawSpectrogram<SpectrogramKind::Homomorphic>},
    {kFormants, Menu::Spectrum, "共振峰[&F]", "F8", kDraws, kSound,
     DrawSpectrogram<SpectrogramKind::Formants>},
    {kFilterBank, Menu::Spectrum, "宽带语谱图--滤波器法[&Q]", "", kDraws, kSound,
     DrawSpectrogram<SpectrogramKind::FilterBank>},
    {kShowFrame, Menu::Spectrum, "帧参数[&P]", "", kTool, kLowRate, ShowFrame},
    {kCompareTwoFrames, Menu::Spectrum, "两帧的参数比较[&J]", "", kTool, kLowRate, CompareTwoFrames},
    {kLongTermSpectrum, Menu::Spectrum, "长时平均功率谱(LTA)[&A]", "", kTool, kSound, LongTermSpectrum},
    {kGlottalWave, Menu::Spectrum, "声门波(嗓音)估计[&G]", "", kTool, kSelectedAtLowRate, EstimateGlottal},
    {kConsonantOneFrame, Menu::Spectrum, "辅音的帧参数[&S]", "", kTool, kLowRateOnce, ConsonantOneFrame},
    {kConsonantSegment, Menu::Spectrum, "一段辅音的参数图[&D]", "", kTool, kLowRateOnce, ConsonantSegment},
    {kListConsonants, Menu::Spectrum, "显示已保存的辅音段数据[&Y]", "", kPlain, kSound, ListConsonants},
    {kSegmentVowels, Menu::Vowel, "一段元音的F1-F2图[&V]", "", kTool, kSelectedAtLowRate, SegmentVowels},
    {kSaveFormants, Menu::Vowel, "保存一段元音的共振峰数据[&S]", "", kPlain, kSelectedAtLowRate,
     SaveFormants},
    {kListFormants, Menu::Vowel, "显示已保存的共振峰数据[&D]", "", kPlain, kLowRate, ListFormants},
    {kPointChart, Menu::Vowel, "在F1-F2图中加入某点数据[&A]", "", kTool, kLowRate, PointChart},
    {kUndoPoint, Menu::Vowel, "撤消/修改最近加入的一点[&U]", "", kTool, Need::ChartedPoints, UndoPoint},
    {kChoosePointShape, Menu::Vowel, "点形选择[&X]", "", kTool, kLowRate, ChoosePointShape},
    {kClearChart, Menu::Vowel, "清除F1-F2图全部数据[&C]", "", kTool, kLowRate, ClearChart},
    {kShowAverageVowels, Menu::Vowel, "调入主要元音的平均值[&M]", "", kTool, Need::VowelChart,
     ShowAverageVowels},
    {kSaveChart, Menu::Vowel, "保存当前元音图[&H]", "", kTool | Does::SaveChart, Need::ChartedPoints,
     SaveChart},
    {kOpenChart, Menu::Vowel, "显示已保存的元音图[&Y]", "", kTool | Does::ReplaceChart, kLowRate, OpenChart},
    {kListChart, Menu::Vowel, "显示已保存元音图数据[&W]", "", Does::ReplaceChart, kLowRate, ListChart},
    {kAddPointByHand, Menu::Vowel, "人工在元音图中加入一点[J]", "", kTool, kLowRateOnce, AddPointByHand},
    {kAddPointToGroup, Menu::Vowel, "把最近的元音数据点加入统计组[&G]", "", kTool, kLowRateOnce,
     AddPointToGroup},
    {kShowVowelGroups, Menu::Vowel, "显示元音点的统计组数据并作图[&T]", "", kTool, kLowRateOnce,
     ShowVowelGroups},
    {kOpenEpg, Menu::Palate, "打开腭位数据文件[&O]", "", kOpens | kTool, kNothing, OpenEpg},
    {kPalateWithSpectrogram, Menu::Palate, "波形-语谱-腭位图[&E]", "", kTool, Need::PalateFile,
     ShowPalateAndSpectrum},
    {kPalateWithWaveform, Menu::Palate, "波形-腭位图[&P]", "", kTool, Need::PalateFile, ShowPalate},
    {kPalateIndex, Menu::Palate, "腭位数据库内容索引[&Z]", "", kPlain, kNothing, ShowPalateIndex},
    {kPalateIntroduction, Menu::Palate, "电子动态腭位数据库简介[&Q]", "", kPlain, kNothing,
     ShowPalateIntroduction},
    {kPalateStatistics, Menu::Palate, "一段语音腭位数据统计[&I]", "", kTool, Need::PalateFile,
     CountSelectedFrames},
    {kShowPalateStatistics, Menu::Palate, "显示腭位统计数据[&F]", "", kTool, Need::PalateFile,
     OpenPalateStatistics},
    {kSaveIpa, Menu::Palate, "保存国际音标文件[&B]", "", Does::SaveFirstChannel, kSound, SaveIpa},
    {kAnnotate, Menu::Palate, "插入IPA 或其他注释字符 [&T]", "Ctrl+I", kTool, kSound, Annotate},
    {kRecordTwoChannels, Menu::TwoChannel, "双声道录音（自动起停）[&R]", "", kRecords, Need::Microphone,
     RecordTwoChannels},
    {kOpenTwoChannels, Menu::TwoChannel, "打开.WAV双声道文件[&S]", "", kOpens, kNothing, OpenTwoChannels},
    {kOpenTwoChannelNsp, Menu::TwoChannel, "打开.NSP双声道文件[&N]", "", kOpens, kNothing, OpenTwoChannelNsp},
    {kSaveTwoChannels, Menu::TwoChannel, "保存双声道数据为文件[&V]", "", kSaves, Need::TwoChannelFile,
     SaveTwoChannels},
    {kSwapChannels, Menu::TwoChannel, "交换声道1,2的数据[&X]", "", Does::StopPlay | Does::ReplaceContour,
     Need::TwoChannelFile, SwapChannels},
    {kShowTwoChannels, Menu::TwoChannel, "显示双声道数据[&D]", "", kPlain, Need::TwoChannelFile,
     ShowTwoChannels},
    {kCut, Menu::Edit, "波形剪切[&T]", "Ctrl+X", Does::StopPlay, kEditable, Cut},
    {kCopy, Menu::Edit, "波形复制[&C]", "Ctrl+C", kPlain, kEditable, Copy},
    {kPaste, Menu::Edit, "波形粘贴[&P]", "Ctrl+V", Does::StopPlay, Need::Sound | Need::Clip, Paste},
    {kAmplify, Menu::Edit, "波形增强[&E]", "", Does::StopPlay, kEditable, Amplify},
    {kAttenuate, Menu::Edit, "波形减弱[&L]", "", Does::StopPlay, kEditable, Attenuate},
    {kSaveSelection, Menu::Edit, "保存选中的段[&S]", "", kPlain, kEditable, SaveSelection},
    {kUndo, Menu::Edit, "撤消编辑操作[&U]", "Ctrl+Z", Does::StopPlay, Need::Sound | Need::Undo, Undo},
    {kFilterSegment, Menu::Edit, "对选定段进行滤波[&F]", "", Does::StopPlay, kSound, FilterSegment},
    {kConvertRate, Menu::Edit, "高采样频率转换为16K/11K[&H]", "", Does::StopPlay, kSound, ConvertRate},
    {kSelectAll, Menu::Marking, "全选[&S]", "Ctrl+A", kPlain, kSound, SelectAll},
    {kClearSelection, Menu::Marking, "清除选择[&Q]", "Ctrl+D", kPlain, kClearable, ClearSelection},
    {kInsertCharacters, Menu::Marking, "插入字符[&I]", "", kPlain, kSound, InsertCharacters},
    {kShowCharacters, Menu::Marking, "显示插入字符[&X]", "", kPlain, kSound, ShowCharacters},
    {kForgetCharacters, Menu::Marking, "清除插入字符[&D]", "", kPlain, kSound, ForgetCharacters},
    {kEditMarkers, Menu::Marking, "进入标志处理[&B]", "", kPlain, kSound, EditMarkers},
    {kArticulation, Menu::Marking, "普通话声韵母发音的唇位，舌位图[P]", "", kPlain, kSound, ShowArticulation},
    {kSettings, Menu::Settings, "参数设置[&S]", "", Does::StopPlay | Does::ReplaceContour, kSound, Settings},
    {kShowHint, Menu::Settings, "显示操作提示[&P]", "", kPlain, kSound, ShowHint},
    {kChangeAmplitudeScale, Menu::Settings, "改变幅度_能量坐标[&L]", "", kPlain, kSound,
     ChangeAmplitudeScale},
    {kTestGain, Menu::Settings, "自动调节录音增益[&A]", "", Does::StopPlay, kSound, TestGain},
    {kSelectRegion, Menu::Region, "区域选择[&S]", "", kPlain, kSound, SelectRegion},
    {kCopyRegion, Menu::Region, "复制区域[&C]", "", kPlain, Need::Sound | Need::Region, CopyRegion},
    {kShowHelp, Menu::Help, "帮助主题[&H]", "F1", kPlain, kNothing, ShowHelp},
    {kShowAbout, Menu::Help, "关于[&A]", "", kPlain, kNothing, ShowAbout},
    {kSpectrumWithWaveform, Menu::Extension, "谱图窗口[&P]", "", kPlain, kPicture, SpectrumWithWaveform},
    {kSpectrumAlone, Menu::Extension, "单谱图窗口[&G]", "", kPlain, kPicture, SpectrumAlone},
    {kFrequencyCeiling, Menu::Extension, "显示频率上限[&U]...", "", kPlain, kSound, FrequencyCeiling},
    {kMeasureLabels, Menu::Extension, "测量标注段[&M]", "", kPlain, Need::Samples, MeasureLabels},
    {kShowLabels, Menu::Extension, "显示标注窗[&L]", "", kPlain, kSound, ShowLabels, LabelsShown},
    {kSaveLabels, Menu::Extension, "保存标志和标注[&K]", "", kPlain, kSound, SaveLabels},
    {kFollowPlay, Menu::Extension, "跟随放音[&F]", "", kPlain, kSound, FollowPlay, FollowsPlay},
    {kChoosePitchSpan, Menu::Extension, "基频显示范围[&H]", "", kPlain, kSound, ChoosePitchSpan},
    {kImportTextGrid, Menu::Exchange, "导入TextGrid文件[&T]", "", kReplacesLabels, Need::Samples,
     ImportTextGrid},
    {kExportTextGrid, Menu::Exchange, "导出TextGrid文件[&G]", "", kPlain, Need::Samples, ExportTextGrid},
    {kImportLabelTrack, Menu::Exchange, "导入标签轨[&L]", "", Does::ReplaceMarkers, Need::Samples,
     ImportLabelTrack},
    {kExportLabelTrack, Menu::Exchange, "导出标签轨[&B]", "", kPlain, Need::Samples, ExportLabelTrack},
    {kExportPitchTier, Menu::Exchange, "导出PitchTier文件[&I]", "", kPlain, kContour, ExportPitchTier},
    {kExportPitch, Menu::Exchange, "导出Pitch文件[&P]", "", kPlain, kContour, ExportPitch},
    {kExportFormant, Menu::Exchange, "导出Formant文件[&F]", "", kPlain, kSelectedAtLowRate, ExportFormant},
    {kExportPitchCsv, Menu::Exchange, "导出基频数据(CSV)[&Q]", "", kPlain, kContour, ExportPitchCsv},
    {kExportLevelsCsv, Menu::Exchange, "导出幅度能量数据(CSV)[&N]", "", kPlain, Need::Samples,
     ExportLevelsCsv},
    {kExportFormantsCsv, Menu::Exchange, "导出共振峰数据(CSV)[&R]", "", kPlain, kSelectedAtLowRate,
     ExportFormantsCsv},
    {kExportLtaCsv, Menu::Exchange, "导出LTA谱数据(CSV)[&A]", "", kPlain,
     Need::Sound | Need::LongTermSpectrum, ExportLtaCsv},
    {kExportVowelChartCsv, Menu::Exchange, "导出元音图数据(CSV)[&V]", "", kPlain, Need::Points,
     ExportVowelChartCsv},
    {kExportDurationsCsv, Menu::Exchange, "音长统计数据转为CSV[&D]", "", kPlain, Need::Samples,
     ExportDurationsCsv},
    {kExportVowelGroupsCsv, Menu::Exchange, "元音统计数据转为CSV[&Y]", "", kPlain, Need::Samples,
     ExportVowelGroupsCsv},
    {kExportMarkersCsv, Menu::Exchange, "导出标志和标注(CSV)[&M]", "", kPlain, Need::Samples,
     ExportMarkersCsv},
    {kExportStereoWav, Menu::Exchange, "导出立体声WAV[&W]", "", kPlain, Need::Samples | Need::TwoChannels,
     ExportStereoWav},
    {kExportTonesCsv, Menu::Exchange, "导出声调统计数据(CSV)[&S]", "", kPlain, Need::ToneItems,
     ExportTonesCsv},
    {kExportIntonationCsv, Menu::Exchange, "导出语调数据(CSV)[&J]", "", kPlain, Need::Intonation,
     ExportIntonationCsv},
    {kExportGlottalCsv, Menu::Exchange, "导出声门波数据(CSV)[&K]", "", kPlain, Need::GlottalWave,
     ExportGlottalCsv},
    {kExportPalateCsv, Menu::Exchange, "导出腭位数据(CSV)[&E]", "", kPlain,
     Need::Samples | Need::ContactFrames, ExportPalateCsv},
    {kExportIntonationTier, Menu::Exchange, "导出语调目标(PitchTier)[&O]", "", kPlain, Need::Intonation,
     ExportIntonationTier},
    {kImportContactFrames, Menu::Exchange, "导入腭位帧[&U]", "", kPlain, Need::Samples, ImportContactFrames},
};

constexpr UiText kMenuNames[] = {"文件", "录放音", "基频",   "声调统计", "频谱",
                                 "元音", "腭位",   "双声道", "编辑",     "选择与标注",
                                 "设置", "区域",   "帮助",   "扩展",     "与其他程序交换"};

}  // namespace

UiText MenuName(Menu menu) { return kMenuNames[static_cast<int>(menu)]; }

std::span<const CommandRow> CommandTable() { return kRows; }

const CommandRow* FindCommand(int number) {
  const auto found = std::find_if(std::begin(kRows), std::end(kRows),
                                  [number](const CommandRow& row) { return row.number == number; });
  return found == std::end(kRows) ? nullptr : found;
}

std::vector<CommandRule> CommandRules() {
  std::vector<CommandRule> rules;
  for (const CommandRow& row : kRows) rules.push_back({row.number, row.need});
  return rules;
}

bool CommandHandler::Run(Rooms& rooms) const {
  if (try_ != nullptr) return try_(rooms);
  act_(rooms);
  return true;
}

}  // namespace parlowen
