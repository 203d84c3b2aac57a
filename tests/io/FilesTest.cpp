#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <sstream>
#include <stdexcept>

#include "Tabrino.Io.Files.h"
#include "Tabrino.Types.h"
#include "TempDir.h"

using namespace Tabrino;
using namespace TabrinoTest;
namespace fs = std::filesystem;

namespace {

std::string ReadStream(std::istream& Stream) {
  return ReadAllBytes(Stream);
}

// Opens like the real opener except for one path, which behaves as if another
// program held it exclusively.
TReadOpener HeldExclusively(const fs::path& Held) {
  return [Held](const fs::path& Path) -> std::unique_ptr<std::istream> {
    if (fs::equivalent(Path, Held)) throw EException("held by another program");
    return OpenReadOnly(Path);
  };
}

}  // namespace

TEST(OpenSharedReadStream, MissingFileOrFolderIsNotFound) {
  TTempDir Dir;
  std::unique_ptr<std::istream> Stream;
  bool UsedCopy = true;
  for (const std::string& Name : {Dir.File("absent.csv"), Dir.Path().string()}) {
    try {
      OpenSharedReadStream(Name, Stream, UsedCopy);
      FAIL() << Name;
    } catch (const EException& E) {
      EXPECT_EQ(std::string(E.what()), "File not found: " + Name);
    }
    EXPECT_FALSE(UsedCopy);
    EXPECT_EQ(Stream, nullptr);
  }
}

TEST(OpenSharedReadStream, ReadsAFileThatIsOpenForWriting) {
  TTempDir Dir;
  const std::string Name = Dir.File("busy.csv");
  std::ofstream Writer(Name, std::ios::binary);
  Writer << "1,2\r\n" << std::flush;

  std::unique_ptr<std::istream> Stream;
  bool UsedCopy = true;
  EXPECT_TRUE(OpenSharedReadStream(Name, Stream, UsedCopy));
  EXPECT_FALSE(UsedCopy);
  EXPECT_EQ(ReadStream(*Stream), "1,2\r\n");
}

TEST(OpenSharedReadStream, FileHeldExclusivelyIsReadThroughATempCopy) {
  TTempDir Dir;
  const std::string Name = Dir.File("held.csv");
  WriteFile(Name, "fresh");
  const fs::path Copy = SharedReadCopyPath(Name);
  EXPECT_EQ(Copy, fs::temp_directory_path() / ("tabrino_" + std::to_string(getpid()) + "_held.csv"));
  WriteFile(Copy, "stale copy of an earlier open");

  std::unique_ptr<std::istream> Stream;
  bool UsedCopy = false;
  EXPECT_TRUE(OpenSharedReadStream(Name, Stream, UsedCopy, HeldExclusively(Name)));
  EXPECT_TRUE(UsedCopy);
  EXPECT_EQ(ReadStream(*Stream), "fresh");
  Stream.reset();
  EXPECT_TRUE(fs::exists(Copy)) << "the copy stays for the caller's lifetime of the data";
  fs::remove(Copy);
}

TEST(OpenSharedReadStream, ErrorOfTheCopyPassesOn) {
  TTempDir Dir;
  const std::string Name = Dir.File("locked.csv");
  WriteFile(Name, "x");
  auto Nothing = [](const fs::path&) -> std::unique_ptr<std::istream> { throw std::runtime_error("no access"); };
  std::unique_ptr<std::istream> Stream;
  bool UsedCopy = false;
  EXPECT_THROW(OpenSharedReadStream(Name, Stream, UsedCopy, Nothing), std::runtime_error);
  EXPECT_EQ(Stream, nullptr);
  fs::remove(SharedReadCopyPath(Name));
}

TEST(SaveToFileViaTemp, ReplacesTheTargetAndLeavesNoTemp) {
  TTempDir Dir;
  const std::string Target = Dir.File("book.csv");
  WriteFile(Target, "old content");
  SaveToFileViaTemp(Target, MakeWriteStreamProc([](std::ostream& S) { S << "new content"; }));
  EXPECT_EQ(ReadFile(Target), "new content");
  EXPECT_FALSE(fs::exists(SaveTempPath(Target)));
  EXPECT_EQ(SaveTempPath(Target), Dir.Path() / "book.csv.tabrino.tmp");
  EXPECT_EQ(SaveTempPath("plain.csv"), fs::current_path() / "plain.csv.tabrino.tmp");
}

TEST(SaveToFileViaTemp, WriterFailureKeepsTheTargetAndLeavesTheTemp) {
  TTempDir Dir;
  const std::string Target = Dir.File("book.csv");
  WriteFile(Target, "the user's work");
  auto Failing = MakeWriteStreamProc([](std::ostream& S) {
    S << "half of it";
    throw std::runtime_error("formatter failed");
  });
  EXPECT_THROW(SaveToFileViaTemp(Target, Failing), std::runtime_error);
  EXPECT_EQ(ReadFile(Target), "the user's work");
  EXPECT_EQ(ReadFile(SaveTempPath(Target)), "half of it");
}

TEST(SaveToFileViaTemp, TargetThatCannotBeReplacedKeepsTheNewContentInTheTemp) {
  TTempDir Dir;
  // A non-empty folder in the target's place cannot be deleted, even by root.
  const std::string Target = Dir.File("report.csv");
  fs::create_directory(Target);
  WriteFile(fs::path(Target) / "inside.txt", "keep me");
  const std::string Content(100000, 'x');
  try {
    SaveToFileViaTemp(Target, MakeWriteStreamProc([&](std::ostream& S) { S << Content; }));
    FAIL() << "the save should fail";
  } catch (const EException& E) {
    const std::string Temp = SaveTempPath(Target).string();
    EXPECT_EQ(std::string(E.what()),
              "Cannot save to \"" + Target +
                  "\" because it is open in another program.\r\nYour changes were saved to:\r\n" + Temp);
    EXPECT_EQ(ReadFile(Temp), Content);
  }
  EXPECT_EQ(ReadFile(fs::path(Target) / "inside.txt"), "keep me");
}

TEST(SaveToFileViaTemp, ReadOnlyFolderFailsBeforeTouchingTheTarget) {
  if (geteuid() == 0) GTEST_SKIP() << "permission bits do not stop root";
  TTempDir Dir;
  const std::string Target = Dir.File("book.csv");
  WriteFile(Target, "the user's work");
  fs::permissions(Dir.Path(), fs::perms::owner_write, fs::perm_options::remove);
  EXPECT_THROW(SaveToFileViaTemp(Target, MakeWriteStreamProc([](std::ostream& S) { S << "new"; })), EException);
  fs::permissions(Dir.Path(), fs::perms::owner_write, fs::perm_options::add);
  EXPECT_EQ(ReadFile(Target), "the user's work");
}

TEST(ReadAllBytes, ReadsFromTheCurrentPosition) {
  std::istringstream Stream("header|body");
  Stream.seekg(7);
  EXPECT_EQ(ReadAllBytes(Stream), "body");
}
