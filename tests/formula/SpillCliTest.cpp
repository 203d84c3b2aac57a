// Spilled arrays in the CLI: tabrino eval prints the block, tabrino calc
// prints spilled cells like any others.
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "io/TempDir.h"

using namespace TabrinoTest;

namespace {

// Runs the CLI with Args; its standard output, or a note of the failure.
std::string RunCli(const TTempDir& Dir, const std::string& Args) {
  const std::string Out = Dir.File("stdout.txt");
  const std::string Command = std::string("'") + TABRINO_CLI_PATH + "' " + Args + " >'" + Out + "' 2>&1";
  const int Status = std::system(Command.c_str());
  const std::string Text = ReadFile(Out);
  return WIFEXITED(Status) && WEXITSTATUS(Status) == 0 ? Text : "failed: " + Text;
}

}  // namespace

TEST(SpillCli, EvalPrintsTheSpilledBlock) {
  ASSERT_TRUE(std::filesystem::exists(TABRINO_CLI_PATH)) << "build the tabrino_cli target first";
  TTempDir Dir;
  EXPECT_EQ(RunCli(Dir, "eval '=SEQUENCE(2,3)'"), "1\t2\t3\n4\t5\t6\n");
  EXPECT_EQ(RunCli(Dir, "eval '=SORT(A1:A3,1,-1)' --set A1=b --set A2=c --set A3=a"), "c\nb\na\n");
  EXPECT_EQ(RunCli(Dir, "eval '=SEQUENCE(1,2)' --json"),
            "[[{\"kind\":\"number\",\"value\":1.0},{\"kind\":\"number\",\"value\":2.0}]]\n");
  EXPECT_EQ(RunCli(Dir, "eval '=SEQUENCE(3)' --at A1 --set A2=x"), "#SPILL!\n");
  EXPECT_EQ(RunCli(Dir, "eval '=SUM(SEQUENCE(4))'"), "10\n");
}

TEST(SpillCli, CalcPrintsSpilledCellsInItsDefaultRange) {
  ASSERT_TRUE(std::filesystem::exists(TABRINO_CLI_PATH)) << "build the tabrino_cli target first";
  TTempDir Dir;
  WriteFile(Dir.File("in.csv"), "\"=SEQUENCE(3,2)\",=A2*10\r\n");
  EXPECT_EQ(RunCli(Dir, "calc --formulas '" + Dir.File("in.csv") + "'"), "#SPILL!,0\n");
  WriteFile(Dir.File("in.csv"), "\"=SEQUENCE(3,2)\",,=A2*10\r\n");
  EXPECT_EQ(RunCli(Dir, "calc --formulas '" + Dir.File("in.csv") + "'"), "1,2,30\n3,4,\n5,6,\n");
}
