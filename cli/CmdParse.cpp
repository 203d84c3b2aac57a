// tabrino parse FORMULA: the tree a formula parses to, one node a line,
// children indented by two spaces under their parent.
#include <fmt/format.h>

#include <memory>
#include <string>

#include "Commands.h"
#include "FormulaText.h"
#include "Tabrino.Formula.Parser.h"
#include "Tabrino.Types.h"

namespace TabrinoCli {
namespace {

using Tabrino::TAstNode;

// The fields that mean something for the node's kind.
std::string FieldsOf(const TAstNode& Node) {
  using namespace Tabrino;
  std::string Text = QuotedText(Node.Text);
  switch (Node.Kind) {
    case ankNumber: return fmt::format("Number={} Text={}", GeneralNumberText(Node.Number), Text);
    case ankString: return "Text=" + Text;
    case ankBool: return Node.BooleanValue ? "TRUE" : "FALSE";
    case ankError: return ErrorCodeToString(Node.ErrorCode);
    case ankCellRef: return fmt::format("Text={} Col={} Row={}", Text, Node.Col, Node.Row);
    case ankSheetRef:
      return fmt::format("Text={} SheetName={} Col={} Row={}", Text, QuotedText(Node.SheetName), Node.Col, Node.Row);
    case ankRange:
      return fmt::format("Text={}{} Col={} Row={} Col2={} Row2={}", Text,
                         Node.SheetName.empty() ? "" : " SheetName=" + QuotedText(Node.SheetName), Node.Col, Node.Row,
                         Node.Col2, Node.Row2);
    case ankTableRef: return fmt::format("Text={} ColumnName={}", Text, QuotedText(Node.ColumnName));
    case ankUnary:
    case ankBinary: return "Op=" + QuotedText(Node.Op);
    case ankFunc: return fmt::format("Text={} Args={}", Text, Node.Args.size());
    case ankArrayLit: return fmt::format("Col2={} Row2={}", Node.Col2, Node.Row2);
  }
  return "";
}

void PrintNode(const TAstNode& Node, size_t Depth) {
  fmt::print("{:{}}{} {}\n", "", Depth * 2, Tabrino::AstNodeKindName(Node.Kind), FieldsOf(Node));
  if (Node.Left) PrintNode(*Node.Left, Depth + 1);
  if (Node.Right) PrintNode(*Node.Right, Depth + 1);
  for (const auto& Arg : Node.Args) PrintNode(*Arg, Depth + 1);
}

}  // namespace

void AddParseCommand(CLI::App& App) {
  auto Formula = std::make_shared<std::string>();
  CLI::App* Command = App.add_subcommand("parse", "Show the tree a formula parses to");
  Command
      ->add_option("formula", *Formula, "Formula text, with or without its \"=\" (put -- before one starting with -)")
      ->required();
  Command->callback([Formula] { PrintNode(*Tabrino::TFormulaParser::Parse(*Formula), 0); });
}

}  // namespace TabrinoCli
