#include "base/Files.h"

#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include <thread>

#include "support/Child.h"
#include "support/TempFolder.h"
#include "support/WavBytes.h"

namespace parlowen {
namespace {

namespace fs = std::filesystem;
using namespace testing;

TEST(Files, ReplaceAndAppendWriteExactlyTheirBytes) {
  const TempFolder folder;
  const std::string path = folder / "声 音.dat";
  EXPECT_EQ(AppendToFile(path, AsBytes("made")), 0) << "adding to a file that is not there makes it";
  EXPECT_EQ(AppendToFile(path, AsBytes(" longer")), 0);
  EXPECT_EQ(ReadFile(path), "made longer");
  EXPECT_EQ(ReplaceFile(path, AsBytes("new")), 0);
  EXPECT_EQ(ReadFile(path), "new");
  EXPECT_EQ(ReplaceFile(folder / std::string(255, 'n'), AsBytes("x")), 0)
      << "the longest name a folder takes";
  EXPECT_EQ(folder.Names().size(), 2u) << "nothing else is left";
}

TEST(Files, WhatManyAddAtOnceIsAllThere) {
  const TempFolder folder;
  const auto add = [path = folder / "many"] {
    for (int i = 0; i < 3; ++i) EXPECT_EQ(AppendToFile(path, AsBytes("x")), 0);
  };
  std::vector<std::thread> writers;
  for (int i = 0; i < 4; ++i) writers.emplace_back(add);
  for (std::thread& writer : writers) writer.join();
  EXPECT_EQ(ReadFile(folder / "many"), std::string(12, 'x'));
}

TEST(Files, AFullDiskLeavesTheOldFileAndTheProgramAlive) {
  const TempFolder folder;
  const std::string path = WriteFile(folder / "old", std::string("old content"));
  const std::string big(100000, 'b');
  EXPECT_EQ(WithFileSizeLimit(65536, [&] { return ReplaceFile(path, AsBytes(big)) == -1 ? 7 : 0; }), 7);
  EXPECT_EQ(WithFileSizeLimit(65536, [&] { return AppendToFile(path, AsBytes(big)) == -1 ? 7 : 0; }), 7);
  EXPECT_EQ(ReadFile(path), "old content");
  EXPECT_EQ(folder.Names(), std::vector<std::string>{"old"});
}

TEST(Files, WhatCannotBeWrittenStaysAsItWas) {
  const TempFolder folder;
  WriteFile(folder / "file", std::string("kept"));
  fs::create_directory(folder / "dir");
  for (const std::string& path :
       {folder / "file/in-a-file", folder / "missing/name", folder / "dir", folder.path() + "/",
        folder / std::string(256, 'n'), std::string("/dev/null"), std::string()}) {
    EXPECT_EQ(ReplaceFile(path, AsBytes("new")), -1) << path;
    EXPECT_EQ(AppendToFile(path, AsBytes("new")), -1) << path;
  }
  EXPECT_EQ(ReadFile(folder / "file"), "kept");
  EXPECT_TRUE(fs::is_empty(folder / "dir"));
  EXPECT_EQ(folder.Names().size(), 2u);
}

TEST(Files, PermissionsHoldForAnUnprivilegedUser) {
  const TempFolder folder;
  const std::string locked =
      WriteFile(folder / "locked", std::string("kept"));  // a folder of root's: read-only
  fs::create_directory(folder / "open");
  fs::permissions(folder / "open", fs::perms::all);
  const std::string foreign = WriteFile(folder / "open/foreign", std::string("kept"));
  const std::string secret = WriteFile(folder / "open/secret", std::string("kept"));
  fs::permissions(foreign, fs::perms(0644));
  fs::permissions(secret, fs::perms(0600));
  EXPECT_EQ(AsNobody([&] { return ReplaceFile(locked, AsBytes("new")) == -1 ? 7 : 0; }), 7);
  // The folder would allow the rename; the file's owner does not.
  EXPECT_EQ(AsNobody([&] { return ReplaceFile(foreign, AsBytes("new")) == -1 ? 7 : 0; }), 7);
  EXPECT_EQ(
      AsNobody([&] { return AppendToFile(secret, AsBytes("new")) == -1 && !ReadWholeFile(secret) ? 7 : 0; }),
      7);
  EXPECT_EQ(AsNobody([&] { return ReplaceFile(folder / "open/own", AsBytes("new")) == 0 ? 7 : 0; }), 7);
  for (const std::string& path : {locked, foreign, secret}) EXPECT_EQ(ReadFile(path), "kept") << path;
}

TEST(Files, ALinkIsFollowedAndModeAndGroupOfTheFileAreKept) {
  const TempFolder folder;
  const std::string target = WriteFile(folder / "target", std::string("old"));
  const bool given = ::chown(target.c_str(), 12345, 23456) == 0;  // only root may
  fs::permissions(target, fs::perms(0640));
  fs::create_symlink("target", folder / "link");
  fs::create_symlink("link", folder / "link2");
  EXPECT_EQ(ReplaceFile(folder / "link2", AsBytes("new")), 0);
  EXPECT_TRUE(fs::is_symlink(folder / "link") && fs::is_symlink(folder / "link2"));
  EXPECT_EQ(ReadFile(target), "new");
  EXPECT_EQ(fs::status(target).permissions(), fs::perms(0640));
  struct stat status {};
  ASSERT_EQ(::stat(target.c_str(), &status), 0);
  EXPECT_TRUE(!given || (status.st_uid == 12345 && status.st_gid == 23456));

  // A link to what is not there yet, or no more (a drive that is away), or nowhere.
  fs::create_symlink(folder / "later", folder / "early");
  fs::create_symlink("away/file", folder / "lost");
  fs::create_symlink("ring", folder / "ring");
  EXPECT_EQ(ReplaceFile(folder / "early", AsBytes("made")), 0);
  EXPECT_EQ(ReadFile(folder / "later"), "made");
  for (const char* name : {"lost", "ring"}) EXPECT_EQ(AppendToFile(folder / name, AsBytes("x")), -1) << name;
  for (const char* name : {"early", "lost", "ring"}) EXPECT_TRUE(fs::is_symlink(folder / name)) << name;
}

TEST(Files, AnAbsolutePathNamesTheSameFile) {
  const TempFolder folder;
  fs::create_directories(folder / "far/inner");
  fs::create_directory_symlink("far/inner", folder / "link");
  EXPECT_EQ(AbsolutePath(folder / "far/./inner/../x"), folder / "far/x");
  EXPECT_EQ(AbsolutePath(folder / "missing/../x"), folder / "x");
  WriteFile(folder / "far/x", std::string("the link's"));
  EXPECT_EQ(ReadFile(AbsolutePath(folder / "link/../x")), "the link's");
}

TEST(Files, OnlyOrdinaryFilesOpenAndTheLimitHolds) {
  const TempFolder folder;
  ASSERT_EQ(::mkfifo((folder / "pipe").c_str(), 0600), 0);
  for (const std::string& path :
       {folder.path(), folder / "pipe", folder / "missing", std::string("/dev/zero"), std::string()})
    EXPECT_FALSE(InputFile(path).isOpen()) << path;
  const std::string path = WriteFile(folder / "ten", std::string("0123456789"));
  EXPECT_TRUE(ReadWholeFile(path, 10));
  EXPECT_FALSE(ReadWholeFile(path, 9));
  char buffer[4] = {'?', '?', '?', '?'};
  EXPECT_EQ(InputFile(path).ReadAt(8, buffer, 4), 2u);
  EXPECT_EQ(std::string(buffer, 4), "89??");
  EXPECT_EQ(InputFile(path).ReadAt(11, buffer, 4), 0u);
}

}  // namespace
}  // namespace parlowen
