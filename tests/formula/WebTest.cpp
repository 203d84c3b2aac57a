#include <gtest/gtest.h>

#include "FunctionTestSupport.h"
#include "Tabrino.Formula.Evaluator.h"
#include "Tabrino.Workbook.h"

namespace Tabrino {
namespace {

using namespace FunctionTest;

TEST(EncodeUrl, PercentEncodesAllButUnreserved) {
  ExpectCases({
      {"ENCODEURL", {"a b&c=d/é"}, V("a%20b%26c%3Dd%2F%C3%A9")},
      {"ENCODEURL", {"AZaz09-_.~"}, V("AZaz09-_.~")},
      {"ENCODEURL", {1.5}, V("1.5")},
      {"ENCODEURL", {E(ceNA)}, E(ceNA)},
      {"ENCODEURL", {}, E(ceValue)},
  });
}

TEST(FilterXml, NodeSetsAndOtherResults) {
  const char* Xml = "<r><i a='7'>one</i><i>2</i><i><b>x</b>y</i></r>";
  TFormulaArg Items = CallArray("FILTERXML", {Xml, "//i"});
  ASSERT_TRUE(Items.IsRange);
  EXPECT_EQ(Items.RowCount, 3);
  EXPECT_EQ(Items.ColCount, 1);
  EXPECT_EQ(Items.CellAt(0, 0), V("one"));
  EXPECT_EQ(Items.CellAt(1, 0), V(2));  // texts that read as numbers become numbers
  EXPECT_EQ(Items.CellAt(2, 0), V("xy"));
  ExpectCases({
      {"FILTERXML", {Xml, "//i[1]/@a"}, V(7)},
      {"FILTERXML", {Xml, "count(//i)"}, V(3)},
      {"FILTERXML", {Xml, "name(/*)"}, V("r")},
      {"FILTERXML", {Xml, "count(//i) > 2"}, V(true)},
      {"FILTERXML", {Xml, "//nothing"}, E(ceValue)},
      {"FILTERXML", {Xml, "//i[["}, E(ceValue)},
      {"FILTERXML", {"<r><unclosed></r>", "//r"}, E(ceValue)},
      {"FILTERXML", {"", "//r"}, E(ceValue)},
      {"FILTERXML", {E(ceRef), "//r"}, E(ceRef)},
      {"FILTERXML", {Xml}, E(ceValue)},
  });
}

TEST(Hyperlink, ShowsTheCaptionOrTheLink) {
  ExpectCases({
      {"HYPERLINK", {"https://example.com"}, V("https://example.com")},
      {"HYPERLINK", {"https://example.com", "Example"}, V("Example")},
      {"HYPERLINK", {"x", 42}, V(42)},
      {"HYPERLINK", {"x", E(ceNA)}, E(ceNA)},
      {"HYPERLINK", {}, E(ceValue)},
  });
}

TEST(WebEvaluated, ThroughFormulas) {
  TWorkbook Book;
  TFormulaEvaluator Evaluator(Book);
  EXPECT_EQ(Evaluator.Evaluate("=SUM(FILTERXML(\"<a><b>1</b><b>2.5</b></a>\",\"//b\"))", 0), V(3.5));
  EXPECT_EQ(Evaluator.Evaluate("=ENCODEURL(\"a b\")", 0), V("a%20b"));
  EXPECT_EQ(Evaluator.Evaluate("=HYPERLINK(\"https://example.com\",\"site\")", 0), V("site"));
  EXPECT_EQ(Evaluator.Evaluate("=ISNA(WEBSERVICE(\"https://example.com\"))", 0), V(true));
  EXPECT_EQ(Evaluator.Evaluate("=EUROCONVERT(1.2,\"DEM\",\"EUR\")", 0), V(0.61));
  EXPECT_EQ(Evaluator.Evaluate("=XMATCH(\"b*\",{\"apple\",\"berry\"},2)", 0), V(2));
}

}  // namespace
}  // namespace Tabrino
