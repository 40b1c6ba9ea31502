#include "base/Files.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <system_error>
#include <thread>
#include <utility>

namespace parlowen {
namespace fs = std::filesystem;

namespace {

bool WriteAll(int descriptor, ByteSpan bytes) {
  // A file size limit is a write that fails, like a full disk, and not the end of the program.
  [[maybe_unused]] static const auto previous = std::signal(SIGXFSZ, SIG_IGN);
  std::size_t done = 0;
  while (done < bytes.size()) {
    const ssize_t written = ::write(descriptor, bytes.data() + done, bytes.size() - done);
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    done += static_cast<std::size_t>(written);
  }
  return true;
}

/// Where a chain of links ends, whether a file is there or not; nothing when it has no end.
std::optional<std::string> ResolveLinks(const std::string& path) {
  constexpr int kMostLinks = 40;
  fs::path at = path;
  std::error_code error;
  for (int links = 0; links <= kMostLinks; ++links) {
    if (!fs::is_symlink(at, error)) return at.string();
    const fs::path target = fs::read_symlink(at, error);
    if (error) return {};
    at = at.parent_path() / target;
  }
  return {};
}

}  // namespace

InputFile::InputFile(const std::string& path) {
  // Not blocking: opening a pipe must not wait for its writer.
  descriptor_ = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
  if (descriptor_ < 0) return;
  struct stat status {};
  if (::fstat(descriptor_, &status) == 0 && S_ISREG(status.st_mode)) {
    size_ = status.st_size;
    return;
  }
  ::close(descriptor_);
  descriptor_ = -1;
}

InputFile::~InputFile() {
  if (descriptor_ >= 0) ::close(descriptor_);
}

std::size_t InputFile::ReadAt(std::int64_t offset, void* target, std::size_t count) const {
  std::size_t done = 0;
  while (done < count) {
    const ssize_t got = ::pread(descriptor_, static_cast<char*>(target) + done, count - done,
                                static_cast<off_t>(offset) + static_cast<off_t>(done));
    if (got < 0 && errno == EINTR) continue;
    if (got <= 0) break;
    done += static_cast<std::size_t>(got);
  }
  return done;
}

std::optional<std::vector<std::uint8_t>> ReadWholeFile(const std::string& path, std::size_t limit) {
  const InputFile file(path);
  if (!file.isOpen() || file.size() < 0 || static_cast<std::uint64_t>(file.size()) > limit) return {};
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(file.size()));
  // Half a file is none: an append would write it back as if it were the whole.
  if (file.ReadAt(0, bytes.data(), bytes.size()) != bytes.size()) return {};
  return bytes;
}

FileReplacement::~FileReplacement() { Abandon(); }

void FileReplacement::Abandon() {
  if (descriptor_ >= 0) ::close(descriptor_);
  if (!temporary_.empty()) ::unlink(temporary_.c_str());
  descriptor_ = -1;
  temporary_.clear();
}

int FileReplacement::Begin(const std::string& path) {
  Abandon();
  const auto target = ResolveLinks(path);
  if (!target) return -1;
  target_ = *target;
  struct stat status {};
  const bool exists = ::stat(target_.c_str(), &status) == 0;
  // A rename would also replace a file that its owner has protected; plain writing would not.
  if (exists && (!S_ISREG(status.st_mode) || ::access(target_.c_str(), W_OK) != 0)) return -1;
  const std::string::size_type slash = target_.rfind('/');
  const std::string folder = slash == std::string::npos ? "" : target_.substr(0, slash + 1);
  // The temporary name does not grow with the target's: a name of the longest length is still saved.
  std::string name = folder + ".parlowen-XXXXXX";
  descriptor_ = ::mkostemp(name.data(), O_CLOEXEC);
  if (descriptor_ < 0) return -1;
  temporary_ = name;
  mode_t mode = 0666;
  if (exists) {
    mode = status.st_mode & 07777;
    // A file that colleagues share stays their group's, and root's programs leave it to its owner. Whoever may
    // not give it away becomes the owner.
    if (::fchown(descriptor_, status.st_uid, status.st_gid) != 0 &&
        ::fchown(descriptor_, static_cast<uid_t>(-1), status.st_gid) != 0)
      mode &= 0777;
  } else {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    mode &= ~mask;
  }
  ::fchmod(descriptor_, mode);
  return 0;
}

int FileReplacement::Commit(ByteSpan bytes) {
  if (descriptor_ < 0) return -1;
  bool good = WriteAll(descriptor_, bytes) && ::fsync(descriptor_) == 0;
  good = ::close(descriptor_) == 0 && good;
  descriptor_ = -1;
  if (!good || ::rename(temporary_.c_str(), target_.c_str()) != 0) {
    Abandon();
    return -1;
  }
  temporary_.clear();
  return 0;
}

FileTurn::FileTurn(const std::string& path) {
  const std::string target = ResolveLinks(path).value_or(path);
  const std::string::size_type slash = target.rfind('/');
  const std::string folder = slash == std::string::npos ? "." : target.substr(0, slash + 1);
  folder_ = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
  // A program that was stopped in its turn does not stop all others.
  constexpr int kMostTries = 300;
  constexpr auto kPause = std::chrono::milliseconds(10);
  for (int i = 0; folder_ >= 0 && i < kMostTries; ++i) {
    if (::flock(folder_, LOCK_EX | LOCK_NB) == 0 || (errno != EWOULDBLOCK && errno != EINTR)) return;
    std::this_thread::sleep_for(kPause);
  }
}

void FileTurn::End() {
  if (folder_ >= 0) ::close(std::exchange(folder_, -1));
}

int ReplaceFile(const std::string& path, ByteSpan bytes) {
  FileReplacement file;
  return file.Begin(path) < 0 ? -1 : file.Commit(bytes);
}

bool CanReplaceFile(const std::string& path) {
  FileReplacement trial;
  return trial.Begin(path) == 0;
}

bool FileExists(const std::string& path) {
  std::error_code error;
  return fs::exists(path, error);
}

int AppendToFile(const std::string& path, ByteSpan bytes) {
  const FileTurn turn(path);
  std::vector<std::uint8_t> whole;
  if (FileExists(path)) {
    auto present = ReadWholeFile(path);
    if (!present) return -1;
    whole = std::move(*present);
  }
  whole.insert(whole.end(), bytes.begin(), bytes.end());
  return ReplaceFile(path, whole);
}

std::optional<FileStamp> StampOf(const std::string& path) {
  struct stat status {};
  if (::stat(path.c_str(), &status) != 0 || !S_ISREG(status.st_mode)) return {};
  return FileStamp{status.st_size, std::int64_t{status.st_mtim.tv_sec} * 1000000000 + status.st_mtim.tv_nsec};
}

std::string AbsolutePath(const std::string& path) {
  std::error_code error;
  const fs::path absolute = fs::absolute(path, error);
  if (error) return path;
  const fs::path normal = absolute.lexically_normal();
  // Behind a link ".." is the parent of what the link names, not of the link.
  const bool elsewhere = fs::exists(absolute.parent_path(), error) &&
                         !fs::equivalent(absolute.parent_path(), normal.parent_path(), error);
  return (elsewhere ? absolute : normal).string();
}

std::string FileNameOf(const std::string& path) { return path.substr(path.rfind('/') + 1); }

bool HasEnding(std::string_view name, std::string_view ending) {
  if (name.size() < ending.size()) return false;
  return std::equal(ending.begin(), ending.end(), name.end() - ending.size(),
                    [](char small, char c) { return small == (c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c); });
}

}  // namespace parlowen
