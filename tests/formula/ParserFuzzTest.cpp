// Random and mutated formula texts: the tokenizer and parser must never crash,
// hang or leak (the sanitizers watch), and must keep their invariants.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "AstText.h"
#include "Tabrino.Formula.Parser.h"
#include "Tabrino.Formula.Tokenizer.h"
#include "Tabrino.Utf16.h"

namespace Tabrino {
namespace {

const std::vector<std::string> Fragments = {"A1",         "$B$2",      "Sheet1!A1:B2",
                                            "'It''s'!C3", "Sheet2.D4", "$'S'.A1",
                                            "SUM(",       "IF(",       "LOG10",
                                            "_xlfn.X(",   "(",         ")",
                                            ",",          ";",         "{",
                                            "}",          "1.5",       "2",
                                            ".5",         "1.2.3",     "\"s\"",
                                            "\"",         "'",         "+",
                                            "-",          "*",         "/",
                                            "^",          "&",         "=",
                                            "<>",         "<=",        ">",
                                            "@",          "TRUE",      "Table1[Col]",
                                            "[x]",        "[",         "]",
                                            ":",          "A:C",       "$3:$7",
                                            " ",          "%",         "#",
                                            "!",          ".",         "é",
                                            "😀",          "\t"};

const std::vector<std::string> Seeds = {"=SUM(A1:B2,3)*-2^2",
                                        "=IF(A1>0,\"yes\",{1,2;3,4})",
                                        "='My Sheet'!A1&Table1[[Col]]",
                                        "=_xlfn.XLOOKUP(1,A:A,B:B)",
                                        "=LET(x,1,x+Sheet2.A1)",
                                        "=-(1+2)/3<>4",
                                        "={1;2;3}",
                                        "=Sales[@Q1]*$3:$7"};

// Every node of a tree, children first; bounded by the parser's depth limits.
void CollectKinds(const TAstNode* Node, std::vector<TAstNodeKind>& Kinds) {
  if (!Node) return;
  Kinds.push_back(Node->Kind);
  CollectKinds(Node->Left.get(), Kinds);
  CollectKinds(Node->Right.get(), Kinds);
  for (const auto& Arg : Node->Args) CollectKinds(Arg.get(), Kinds);
}

std::string Mutate(std::string Text, std::mt19937& Random) {
  int Edits = 1 + static_cast<int>(Random() % 4);
  for (int I = 0; I < Edits && !Text.empty(); ++I) {
    size_t At = Random() % Text.size();
    switch (Random() % 4) {
      case 0: Text.erase(At, 1); break;  // may split a UTF-8 sequence: invalid bytes must survive too
      case 1: Text.insert(At, Fragments[Random() % Fragments.size()]); break;
      case 2: Text[At] = static_cast<char>(Random() % 256); break;
      default: std::swap(Text[At], Text[Random() % Text.size()]); break;
    }
  }
  return Text;
}

std::string RandomFormula(std::mt19937& Random) {
  std::string Text = Random() % 2 ? "=" : "";
  int Count = static_cast<int>(Random() % 24);
  for (int I = 0; I < Count; ++I) Text += Fragments[Random() % Fragments.size()];
  return Text;
}

void CheckTokens(const std::string& Text) {
  int32_t Units = static_cast<int32_t>(Utf16Length(Text));
  int32_t PreviousEnd = 0;
  for (const TFormulaToken& Token : TokenizeFormula(Text)) {
    ASSERT_NE(Token.Kind, ftEnd);
    ASSERT_GE(Token.StartIndex, PreviousEnd) << Text;
    ASSERT_GT(Token.Length, 0) << Text;
    PreviousEnd = Token.StartIndex + Token.Length;
    ASSERT_LE(PreviousEnd, Units) << Text;
  }
}

void CheckTree(const std::string& Text) {
  std::unique_ptr<TAstNode> Root = TFormulaParser::Parse(Text);
  ASSERT_NE(Root, nullptr) << Text;
  std::vector<TAstNodeKind> Kinds;
  CollectKinds(Root.get(), Kinds);
  if (Root->Kind == ankError) {
    EXPECT_EQ(Root->ErrorCode, ceValue) << Text;
    EXPECT_EQ(Kinds.size(), 1u) << Text;
  } else {
    // No partial trees: an error node never hides inside a successful parse.
    EXPECT_EQ(std::count(Kinds.begin(), Kinds.end(), ankError), 0) << Text << " -> " << Testing::AstText(Root.get());
  }
  EXPECT_EQ(Testing::AstText(CloneAstNode(Root.get()).get()), Testing::AstText(Root.get()));
}

TEST(ParserFuzz, RandomAndMutatedTextsNeverBreakTheParser) {
  std::mt19937 Random(20240521);
  for (int I = 0; I < 4000; ++I) {
    std::string Text = I % 2 ? RandomFormula(Random) : Mutate(Seeds[Random() % Seeds.size()], Random);
    CheckTokens(Text);
    CheckTree(Text);
    if (testing::Test::HasFatalFailure()) return;
  }
}

TEST(ParserFuzz, SeedsParseCleanly) {
  for (const std::string& Seed : Seeds) EXPECT_NE(TFormulaParser::Parse(Seed)->Kind, ankError) << Seed;
}

}  // namespace
}  // namespace Tabrino
