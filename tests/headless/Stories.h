// What the stories need, whichever program plays them: their names, the sounds they speak of, the files they leave.
#pragma once
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <numbers>
#include <utility>

#include "palatography/NspBytes.h"
#include "support/Kept.h"
#include "support/TempFolder.h"
#include "support/WavBytes.h"

namespace parlowen::testing {

inline const std::string kStories = PARLOWEN_SOURCE_DIR "/tests/headless/stories/";

inline std::string Replaced(std::string text, const std::string& what, const std::string& by) {
  for (std::size_t at = text.find(what); at != std::string::npos; at = text.find(what, at + by.size()))
    text.replace(at, what.size(), by);
  return text;
}

/// Stories that somebody has written, and walks at random that scripts/make_walk.py has.
inline std::vector<std::string> StoryNames() {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(kStories))
    if (entry.path().extension() == ".txt" || entry.path().extension() == ".walk")
      names.push_back(entry.path().stem());
  std::sort(names.begin(), names.end());
  return names;
}

inline std::string ScriptOf(const std::string& story) {
  const std::string written = kStories + story + ".txt";
  return ReadFile(std::filesystem::exists(written) ? written : kStories + story + ".walk");
}

inline std::string HeadValue(const std::string& script, const std::string& name) {
  const std::size_t at = script.find("# " + name + ": ");
  if (at == std::string::npos) return "";
  const std::size_t begin = at + name.size() + 4;
  return script.substr(begin, script.find('\n', begin) - begin);
}

/// What a file is known by: names of folders taken out, and of pictures the decimals.
inline std::string ComparedText(const std::filesystem::path& path, const TempFolder& folder) {
  const std::string text = Replaced(ReadFile(path), folder.path(), "{folder}");
  return path.extension() == ".svg" ? WithoutDecimals(text) : text;
}

using FileStates = std::map<std::string, std::string>;

inline FileStates StatesOf(const TempFolder& folder) {
  FileStates states;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path())) {
    if (!entry.is_regular_file()) continue;
    const std::string text = ComparedText(entry.path(), folder);
    states[std::filesystem::relative(entry.path(), folder.path()).generic_string()] = SizeAndDigest(text);
  }
  return states;
}

/// "NAME SIZE DIGEST" a line of what is new or changed, "NAME gone" of what is not there any more.
inline std::string ChangesOf(const FileStates& before, const FileStates& after) {
  std::string lines;
  for (const auto& [name, state] : after)
    if (const auto old = before.find(name); old == before.end() || old->second != state)
      lines += name + " " + state + "\n";
  for (const auto& [name, state] : before)
    if (!after.contains(name)) lines += name + " gone\n";
  return lines;
}

inline std::string TestNameOf(const ::testing::TestParamInfo<std::string>& story) {
  std::string name = story.param;
  std::replace(name.begin(), name.end(), '-', '_');
  return name;
}

/// 0.3 s at 16000 Hz: a pulse every 8 ms through resonances of these frequencies, 80 Hz wide.
inline std::vector<std::int16_t> Vowel(const std::vector<double>& formants) {
  std::vector<double> wave(4800);
  for (std::size_t i = 0; i < wave.size(); i += 128) wave[i] = 3000;
  const double decay = std::exp(-std::numbers::pi * 80 / 16000);
  for (const double formant : formants) {
    const double first = 2 * decay * std::cos(2 * std::numbers::pi * formant / 16000),
                 second = -decay * decay;
    double one = 0, two = 0;
    for (double& sample : wave) {
      sample = (1 - first - second) * sample + first * one + second * two;
      two = std::exchange(one, sample);
    }
  }
  std::vector<std::int16_t> samples;
  for (const double sample : wave)
    samples.push_back(static_cast<std::int16_t>(std::clamp(sample, -32768.0, 32767.0)));
  return samples;
}

/// The sounds that stories speak of.
inline void WriteSounds(const TempFolder& folder) {
  const auto write = [&](const std::string& name, std::uint32_t rate, std::vector<std::int16_t> samples,
                         const std::string& behind = "") {
    WavBytes wav;
    wav.rate = rate;
    wav.samples = std::move(samples);
    wav.behind = behind;
    WriteFile(folder / name, wav.Bytes());
    return wav;
  };
  for (const char* sample : {"synthetic_palate_16000.nsp", "synthetic_vowels_two_channels_16000.wav",
                             "mandarin_initials_male_22050.wav", "english_male_sentence_16000.wav",
                             "mandarin_mao_four_tones_female_11025.wav", "english_female_prompt_8000.wav"})
    std::filesystem::copy_file(std::string(PARLOWEN_SOURCE_DIR "/sounds/") + sample, folder / sample);
  write("mono7.wav", 16000, Ramp(32000));
  write("mono8.wav", 11025, Ramp(500));
  write("high.wav", 44100, Ramp(1000));
  write("minute.wav", 8000, Ramp(480000));
  write("中文 名 3.wav", 8000, Ramp(10));
  write("pitch.wav", 16000, Ramp(1600), PitchTail({-1, 100, 0, 90, 80, 0, 0, 70, 60, 50, 0, 0}));
  // 0.3 s of silence, 0.6 s of a sawtooth of 128 Hz, 0.3 s of silence.
  std::vector<std::int16_t> voice(19200);
  for (std::size_t n = 4800; n < 14400; ++n)
    voice[n] = static_cast<std::int16_t>(8000 - 128 * static_cast<int>((n - 4800) % 125));
  write("voice.wav", 16000, std::move(voice));
  // Three syllables, frames 10..39, 60..89 and 110..149: 256 Hz level, 256 to 128 Hz, 160 to 128 to 200 Hz with a
  // gap of 4 frames. The last three frames of the first are 40 dB weaker.
  std::vector<float> periods(170);
  std::vector<std::int16_t> syllables(170 * 160);
  const auto syllable = [&](std::size_t first, std::size_t count, float from, float to) {
    for (std::size_t i = 0; i < count; ++i) {
      periods[first + i] = from + (to - from) * static_cast<float>(i) / static_cast<float>(count - 1);
      for (std::size_t n = 0; n < 160; ++n)
        syllables[(first + i) * 160 + n] =
            static_cast<std::int16_t>(first + i > 36 && first < 60 ? 80 : 8000);
    }
  };
  syllable(10, 30, 62.5f, 62.5f);
  syllable(60, 30, 62.5f, 125);
  syllable(110, 20, 100, 125);
  syllable(130, 20, 125, 80);
  std::fill(periods.begin() + 128, periods.begin() + 132, 0.0f);
  write("tones.wav", 16000, std::move(syllables), PitchTail(periods));
  WavBytes stereo = write("stereo.wav", 16000, {});
  stereo.blockAlign = 4;
  for (int i = 1; i <= 4000; ++i) {
    stereo.samples.push_back(static_cast<std::int16_t>(i));
    stereo.samples.push_back(static_cast<std::int16_t>(-i));
  }
  WriteFile(folder / "stereo.wav", stereo.Bytes());
  WavBytes bits = write("bits8.wav", 22050, Ramp(10));
  bits.bits = 8;
  WriteFile(folder / "bits8.wav", bits.Bytes());
  WriteFile(folder / "text.wav", std::string(100, 't'));
  // Steady values of 3 and 4 in the full band: the nasal ratio of every frame is exactly 100·9/25.
  NspBytes nasal;
  nasal.chunks =
      Speech("SDA_", std::vector<std::int16_t>(500, 3)) + Speech("SD_B", std::vector<std::int16_t>(500, 4));
  WriteFile(folder / "nasal.nsp", nasal.TwoChannel());
  // i for 0.3 s, silence for 0.2 s, a for 0.3 s.
  std::vector<std::int16_t> vowels = Vowel({280, 2300, 3000});
  vowels.resize(8000);
  const std::vector<std::int16_t> second = Vowel({750, 1250, 2500});
  vowels.insert(vowels.end(), second.begin(), second.end());
  write("vowels.wav", 16000, vowels);
  std::filesystem::create_directory(folder / "folder");
  write("long.wav", 16000, {});
  WavBytes longSound = write("long.wav", 16000, {});
  longSound.dataSize = 200 * 32000;
  WriteFile(folder / "long.wav", longSound.Bytes());
  std::filesystem::resize_file(folder / "long.wav", 44 + 200 * 32000);
}

}  // namespace parlowen::testing
