#pragma once
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "base/Bytes.h"

namespace parlowen {

/// An ordinary file opened for reading; paths are UTF-8. Folders, pipes and devices do not open.
class InputFile {
 public:
  explicit InputFile(const std::string& path);
  ~InputFile();
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  bool isOpen() const { return descriptor_ >= 0; }
  std::int64_t size() const { return size_; }  ///< bytes, as found when it was opened
  /// Reads up to `count` bytes from `offset` into `target`; returns how many there were.
  std::size_t ReadAt(std::int64_t offset, void* target, std::size_t count) const;

 private:
  int descriptor_ = -1;
  std::int64_t size_ = 0;
};

/// The whole file, or nothing when it cannot be opened or read or holds more than `limit` bytes.
std::optional<std::vector<std::uint8_t>> ReadWholeFile(const std::string& path,
                                                       std::size_t limit = std::size_t{1} << 30);

/// A file that takes another's place only when it is whole: `Begin` creates it beside the target, `Commit`
/// writes, flushes and renames. Until the rename, and after any failure, the target is as it was. A target
/// that is a link is replaced or made where it points; one that is a folder, a device or not writable is
/// refused. Permissions and group are kept, and the owner where that is allowed.
class FileReplacement {
 public:
  FileReplacement() = default;
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  int Begin(const std::string& path);  ///< 0, or -1 when the file cannot be created there
  int Commit(ByteSpan bytes);          ///< 0, or -1 when it cannot be written whole

 private:
  void Abandon();
  int descriptor_ = -1;
  std::string target_, temporary_;
};

/// A turn at the files of a folder among all programs that take turns: who reads a file, changes it and writes it has one
/// from the reading on, or what another program has added in between is lost. Waits for others' turns, but not for ever,
/// and goes without where a folder cannot be locked. Not to be taken twice at once, nor kept while the user is asked or
/// told something: the others would wait.
class FileTurn {
 public:
  explicit FileTurn(const std::string& path);
  ~FileTurn() { End(); }
  FileTurn(const FileTurn&) = delete;
  FileTurn& operator=(const FileTurn&) = delete;
  void End();

 private:
  int folder_ = -1;
};

/// Writes `bytes` as the whole new content of the file. 0, or -1 with the old file intact.
int ReplaceFile(const std::string& path, ByteSpan bytes);

/// True when the file can be made or replaced. Leaves nothing behind.
bool CanReplaceFile(const std::string& path);

/// Something stands there, or behind the link there. False also where that cannot be told.
bool FileExists(const std::string& path);

/// Adds `bytes` behind what the file holds, in a turn of its own; a missing file is made. 0, or -1 with the old file
/// intact.
int AppendToFile(const std::string& path, ByteSpan bytes);

/// By which a file's content is known to be another: its size and the time of its last change.
struct FileStamp {
  std::int64_t size = 0, nanoseconds = 0;
  bool operator==(const FileStamp&) const = default;
};
/// Nothing when there is no ordinary file.
std::optional<FileStamp> StampOf(const std::string& path);

/// `path` against the current directory. Links are not resolved; "." and ".." are taken out where that names the
/// same file.
std::string AbsolutePath(const std::string& path);

/// The part behind the last "/".
std::string FileNameOf(const std::string& path);

/// Whether the name ends in `ending`, which is given in small letters, in either case.
bool HasEnding(std::string_view name, std::string_view ending);

}  // namespace parlowen
