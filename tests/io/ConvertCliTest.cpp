#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <string>

#include "TempDir.h"

using namespace TabrinoTest;

namespace {

struct TRun {
  int ExitCode;
  std::string Stderr;
};

// Runs the built tabrino with Args (already quoted) and its stderr captured.
TRun RunCli(const TTempDir& Dir, const std::string& Args) {
  const std::string ErrFile = Dir.File("stderr.txt");
  const std::string Command = std::string("'") + TABRINO_CLI_PATH + "' " + Args + " 2>'" + ErrFile + "'";
  const int Status = std::system(Command.c_str());
  return {WIFEXITED(Status) ? WEXITSTATUS(Status) : -1, ReadFile(ErrFile)};
}

std::string Quoted(const std::string& Path) {
  return "'" + Path + "'";
}

}  // namespace

TEST(ConvertCli, CsvToCsvWithOptionsAndExitCodes) {
  ASSERT_TRUE(std::filesystem::exists(TABRINO_CLI_PATH)) << "build the tabrino_cli target first";
  TTempDir Dir;
  const std::string In = Dir.File("in.csv");
  WriteFile(In, "1,2.5,\"a,b\"\r\nx,,\"q\"\"r\"\r\n");

  TRun Plain = RunCli(Dir, "convert " + Quoted(In) + " " + Quoted(Dir.File("out.csv")));
  EXPECT_EQ(Plain.ExitCode, 0) << Plain.Stderr;
  EXPECT_EQ(Plain.Stderr, "") << "no progress line when stderr is not a terminal";
  EXPECT_EQ(ReadFile(Dir.File("out.csv")),
            "\xEF\xBB\xBF"
            "1,2.5,\"a,b\"\r\nx,,qr\r\n");

  TRun Range = RunCli(Dir, "convert " + Quoted(In) + " " + Quoted(Dir.File("part.csv")) + " --range B1:C1 --no-bom");
  EXPECT_EQ(Range.ExitCode, 0) << Range.Stderr;
  EXPECT_EQ(ReadFile(Dir.File("part.csv")), "2.5,\"a,b\"\r\n");

  TRun Missing = RunCli(Dir, "convert " + Quoted(Dir.File("nope.csv")) + " " + Quoted(Dir.File("o.csv")));
  EXPECT_EQ(Missing.ExitCode, 1);
  EXPECT_NE(Missing.Stderr.find("File not found: " + Dir.File("nope.csv")), std::string::npos) << Missing.Stderr;

  EXPECT_EQ(RunCli(Dir, "convert " + Quoted(In) + " " + Quoted(Dir.File("o.csv")) + " --what everything").ExitCode, 2);
  EXPECT_EQ(RunCli(Dir, "convert " + Quoted(In) + " " + Quoted(Dir.File("o.csv")) + " --range nonsense").ExitCode, 2);
  EXPECT_FALSE(std::filesystem::exists(Dir.File("o.csv")));

  // A save that cannot replace its target says so and where the work went.
  std::filesystem::create_directories(Dir.Path() / "busy.csv" / "inside");
  TRun Blocked = RunCli(Dir, "convert " + Quoted(In) + " " + Quoted(Dir.File("busy.csv")));
  EXPECT_EQ(Blocked.ExitCode, 1);
  EXPECT_NE(Blocked.Stderr.find("Your changes were saved to:"), std::string::npos) << Blocked.Stderr;
}
