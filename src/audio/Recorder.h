#pragma once
#include <array>
#include <functional>
#include <optional>
#include <span>
#include <string>

#include "audio/CaptureBlock.h"
#include "audio/GainTest.h"
#include "audio/RecorderSettings.h"
#include "audio/SoundDevice.h"
#include "document/SoundDocument.h"
#include "ui/Window.h"

namespace parlowen {

/// When a recording ends by itself.
enum class RecordingStop { AfterSilence, ByHand };

/// Records into the document, block by block, or listens to the room for the gain test.
///
/// Stopped → (start) running, waiting for voice → (two voiced blocks one after the other) keeping → (silence,
/// a stop by hand, full document) stop requested → (the next block, which is dropped) stopped. The block
/// before the two voiced ones is kept as a lead-in. The document is left alone until sound is kept. While the
/// recorder runs, every command but 274 is greyed. A device that fails ends it with a message: what was kept is
/// the document's sound, and before that, and after a gain test, all is as it was.
class Recorder {
 public:
  /// `input` may be null: a machine without a microphone.
  Recorder(SoundInput* input, Window& window, SoundDocument& document, CommandStates& states,
           RecorderSettings& settings);
  ~Recorder();
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  /// Begins to record 1 or 2 channels at the document's rate, or at 11025 Hz where that cannot be recorded.
  /// 0, or −1 after a failure, which is shown.
  int startRecording(RecordingStop stop, int channels = 1);

  /// Begins four seconds of listening, after which gain and threshold are set and kept in `file`. Blocks that
  /// do not come because its user ends it count as silent ones.
  int runGainTest(const std::string& file);

  /// The device filled a block. The number of recorded samples when that ended a recording, 200 when it ended
  /// a gain test, else 0.
  int onBlockFilled(std::span<std::int16_t> block);

  /// The next block ends the recording or the gain test.
  void stopRecording();

  bool running() const { return state_ != State::Stopped; }
  bool keeping() const { return started_; }                   ///< voice was found
  bool listensOnly() const { return gainTest_.has_value(); }  ///< a gain test
  int recorded() const { return recorded_; }                  ///< samples a channel
  int blocks() const { return blockCount_; }                  ///< heard since the start
  const BlockLevels& Levels() const { return levels_; }       ///< of the last of them

  /// Called after every block and at start and end.
  std::function<void()> changed;

 private:
  enum class State { Stopped, Running, StopRequested };
  enum class Ending { Wanted, Broken };
  struct PendingBlock {
    std::array<std::int16_t, kBlockSamples> samples;
    std::size_t size = 0;
    bool voiced = false;
  };

  std::optional<UiText> OpenDevice();
  int Start(int channels);
  void Keep(std::span<const std::int16_t> block);
  void WaitForVoice(std::span<const std::int16_t> block, bool voiced);
  void Append(std::span<const std::int16_t> block);
  void TakeDocumentOver();
  void ShowRecorded();
  void DropTrailingSilence();
  int Finish(Ending ending);
  void FinishRecording();
  void FinishGainTest(Ending ending);
  void DeviceLost(InputLoss loss);
  void Changed();

  SoundInput* input_;
  Window& window_;
  SoundDocument& document_;
  CommandStates& states_;
  RecorderSettings& settings_;

  State state_ = State::Stopped;
  int sampleRate_ = 0, channels_ = 1;
  bool manualStop_ = false;
  std::array<std::array<std::int16_t, kBlockSamples>, 2> blocks_{};
  std::array<PendingBlock, 3> ring_{};
  int ringIndex_ = 0;
  bool started_ = false;
  int silentBlocks_ = 0;
  int recorded_ = 0;
  int blockCount_ = 0;
  BlockLevels levels_;
  std::optional<GainTest> gainTest_;  ///< only while one runs
  std::string gainFile_;
};

}  // namespace parlowen
