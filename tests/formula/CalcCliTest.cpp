#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "io/TempDir.h"

using namespace TabrinoTest;

namespace {

struct TRun {
  int ExitCode;
  std::string Stdout;
  std::string Stderr;
};

TRun RunCalc(const TTempDir& Dir, const std::string& Args) {
  const std::string Out = Dir.File("stdout.txt"), Err = Dir.File("stderr.txt");
  const std::string Command =
      std::string("'") + TABRINO_CLI_PATH + "' calc " + Args + " >'" + Out + "' 2>'" + Err + "'";
  const int Status = std::system(Command.c_str());
  return {WIFEXITED(Status) ? WEXITSTATUS(Status) : -1, ReadFile(Out), ReadFile(Err)};
}

}  // namespace

TEST(CalcCli, RecalculatesCsvFormulas) {
  ASSERT_TRUE(std::filesystem::exists(TABRINO_CLI_PATH)) << "build the tabrino_cli target first";
  TTempDir Dir;
  const std::string In = "'" + Dir.File("in.csv") + "'";
  // C2 reads B2, which comes later in the file: the order is found, not read off.
  WriteFile(Dir.File("in.csv"), "1,2,=A1+B1\r\n3,=C2*2,\"=SUM(A1,A2)+C1\"\r\n");

  TRun Calculated = RunCalc(Dir, "--formulas " + In);
  EXPECT_EQ(Calculated.ExitCode, 0) << Calculated.Stderr;
  EXPECT_EQ(Calculated.Stdout, "1,2,3\n3,14,7\n");

  TRun AsText = RunCalc(Dir, In + " --range C2");
  EXPECT_EQ(AsText.Stdout, "\"=SUM(A1,A2)+C1\"\n") << "without --formulas a CSV formula stays text";

  TRun Part = RunCalc(Dir, "--formulas --raw --range B2:C2 --timing " + In);
  EXPECT_EQ(Part.ExitCode, 0) << Part.Stderr;
  EXPECT_EQ(Part.Stdout, "14,7\n");
  EXPECT_NE(Part.Stderr.find("recalculation:"), std::string::npos) << Part.Stderr;

  TRun Saved = RunCalc(Dir, "--formulas " + In + " -o '" + Dir.File("out.csv") + "'");
  EXPECT_EQ(Saved.ExitCode, 0) << Saved.Stderr;
  EXPECT_EQ(Saved.Stdout, "");
  EXPECT_NE(ReadFile(Dir.File("out.csv")).find("3,14,7"), std::string::npos);

  EXPECT_EQ(RunCalc(Dir, In + " --range nonsense").ExitCode, 2);
  EXPECT_EQ(RunCalc(Dir, In + " --sheet Missing").ExitCode, 2);
  EXPECT_EQ(RunCalc(Dir, "'" + Dir.File("absent.csv") + "'").ExitCode, 1);
}
