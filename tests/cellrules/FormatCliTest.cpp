#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <string>

namespace {

struct TRun {
  int ExitCode;
  std::string Output;  // stdout, then stderr
};

// Runs "tabrino format" with Args (already quoted for the shell).
TRun RunFormat(const std::string& Args) {
  const std::string Command = std::string("'") + TABRINO_CLI_PATH + "' format " + Args + " 2>&1";
  TRun Run{-1, {}};
  FILE* Pipe = popen(Command.c_str(), "r");
  if (!Pipe) return Run;
  char Buffer[256];
  while (size_t N = fread(Buffer, 1, sizeof Buffer, Pipe)) Run.Output.append(Buffer, N);
  int Status = pclose(Pipe);
  Run.ExitCode = WIFEXITED(Status) ? WEXITSTATUS(Status) : -1;
  return Run;
}

}  // namespace

TEST(FormatCli, PrintsTheFormattedNumber) {
  ASSERT_TRUE(std::filesystem::exists(TABRINO_CLI_PATH)) << "build the tabrino_cli target first";
  struct Case {
    const char* Args;
    const char* Output;
  } Cases[] = {
      {"1234.5 '#,##0.00_);(#,##0.00)'", "1,234.50 \n"},
      {"-- -1234.5 '#,##0.00_);(#,##0.00)'", "(1,234.50)\n"},
      {"45351 yyyy-mm-dd", "2024-02-29\n"},
      {"0.5 '# ?/?'", "1/2\n"},
      {"12 @", "12\n"},
      {"'two words' @", "two words\n"},
  };
  for (const Case& C : Cases) {
    TRun Run = RunFormat(C.Args);
    EXPECT_EQ(Run.ExitCode, 0) << C.Args;
    EXPECT_EQ(Run.Output, C.Output) << C.Args;
  }
}

TEST(FormatCli, BadArgumentsGiveOneLineAndExitCode2) {
  ASSERT_TRUE(std::filesystem::exists(TABRINO_CLI_PATH)) << "build the tabrino_cli target first";
  for (const char* Args : {"hello 0.00", "1", "", "1 0 extra"}) {
    TRun Run = RunFormat(Args);
    EXPECT_EQ(Run.ExitCode, 2) << Args;
    ASSERT_FALSE(Run.Output.empty()) << Args;
    EXPECT_EQ(Run.Output.find('\n'), Run.Output.size() - 1) << Run.Output;
  }
}
