// QUERY and the regular-expression functions reached through formulas: the
// evaluator on a workbook, and the built CLI's "eval".
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <utility>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"
#include "Tabrino.Worksheet.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

class QueryRegexEvaluated : public testing::Test {
 protected:
  void SetUp() override {
    const std::pair<const char*, TCellValue> Cells[] = {
        {"A1", V("Name")}, {"B1", V("Score")}, {"A2", V("Ann")}, {"B2", V(7)},
        {"A3", V("Bob")},  {"B3", V(9)},      {"A4", V("Cid")}, {"B4", V(3)},
        {"D1", V("Order 1234-X")},
    };
    for (const auto& [Address, Value] : Cells)
      FBook.GetSheet(0)->SetCell(TCellAddress::FromA1(Address), TCell::WithValue(Value));
  }
  TCellValue Eval(const char* Formula) { return FEvaluator.Evaluate(Formula, 0); }

  TWorkbook FBook;
  TFormulaEvaluator FEvaluator{FBook};
};

TEST_F(QueryRegexEvaluated, QueryThroughTheEvaluator) {
  EXPECT_EQ(Eval("=INDEX(QUERY(A1:B4,\"select A where B > 5 order by B desc\"),2,1)"), V("Bob"));
  EXPECT_EQ(Eval("=ROWS(QUERY(A1:B4,\"select A where B > 5\"))"), V(3));
  EXPECT_EQ(Eval("=ROWS(QUERY(A1:B4,\"select A\",0))"), V(4));
  EXPECT_EQ(Eval("=QUERY(A1:B4,\"select sum(B)\")"), V("sum Score"));
  EXPECT_EQ(Eval("=INDEX(QUERY(A1:B4,\"select sum(B)\"),2,1)"), V(19));
  EXPECT_EQ(Eval("=QUERY(A1:B4,\"select A where B > 100\")"), E(ceNA));
  EXPECT_EQ(Eval("=QUERY(A1:B4,\"select A where (B > 1)\")"), E(ceValue));
}

TEST_F(QueryRegexEvaluated, RegexThroughTheEvaluator) {
  EXPECT_EQ(Eval("=REGEXEXTRACT(D1,\"\\d+\")"), V("1234"));
  EXPECT_EQ(Eval("=REGEXEXTRACT(D1,\"\\d+\")+1"), V(1235));
  EXPECT_EQ(Eval("=REGEXEXTRACT(D1,\"(\")"), E(ceValue));
  EXPECT_EQ(Eval("=ROWS(REGEXEXTRACT(\"a1b2c3\",\"\\d\",1))"), V(3));
  EXPECT_EQ(Eval("=_xlfn.REGEXREPLACE(D1,\"[0-9]\",\"#\")"), V("Order ####-X"));
  EXPECT_EQ(Eval("=JOIN(\"/\",A2:A4)"), V("Ann/Bob/Cid"));
  EXPECT_EQ(Eval("=COLUMNS(ARRAY_CONSTRAIN(A1:B4,2,1))"), V(1));
}

// Runs the built CLI and gives its standard output.
std::string RunCli(const std::string& Arguments) {
  const std::string Command = std::string("'") + TABRINO_CLI_PATH + "' " + Arguments + " 2>&1";
  std::string Output;
  if (FILE* Pipe = popen(Command.c_str(), "r")) {
    char Buffer[256];
    while (fgets(Buffer, sizeof Buffer, Pipe)) Output += Buffer;
    pclose(Pipe);
  }
  return Output;
}

TEST(QueryRegexCli, EvalPrintsQueryAndRegexResults) {
  ASSERT_TRUE(std::filesystem::exists(TABRINO_CLI_PATH)) << "build the tabrino_cli target first";
  EXPECT_EQ(RunCli("eval '=INDEX(QUERY(A1:B3,\"select A order by B desc\"),2,1)' --set A1=Name --set B1=N "
                   "--set A2=low --set B2=1 --set A3=high --set B3=2"),
               "high\n");
  EXPECT_EQ(RunCli("eval --json '=REGEXEXTRACT(A1,\"[0-9]+\")' --set A1=ab12"),
            "{\"kind\":\"text\",\"value\":\"12\"}\n");
}

}  // namespace
}  // namespace Tabrino
