// A compact prefix rendering of formula trees for test expectations:
// (+ 1 (* 2 3)), SUM(A1:B2, 3), {1,2;3,4}, #VALUE!.
#pragma once

#include <string>

#include "Tabrino.Formula.Parser.h"

namespace Tabrino::Testing {

inline std::string AstText(const TAstNode* Node) {
  if (!Node) return "<null>";
  switch (Node->Kind) {
    case ankString: return "\"" + Node->Text + "\"";
    case ankBool: return Node->BooleanValue ? "TRUE" : "FALSE";
    case ankError: return ErrorCodeToString(Node->ErrorCode);
    case ankTableRef: return Node->Text + "[" + Node->ColumnName + "]";
    case ankUnary: return "(" + Node->Op + " " + AstText(Node->Left.get()) + ")";
    case ankBinary: return "(" + Node->Op + " " + AstText(Node->Left.get()) + " " + AstText(Node->Right.get()) + ")";
    case ankFunc: {
      if (Node->Args.empty()) return Node->Text;
      std::string Out = Node->Text + "(";
      for (size_t I = 0; I < Node->Args.size(); ++I) Out += (I ? ", " : "") + AstText(Node->Args[I].get());
      return Out + ")";
    }
    case ankArrayLit: {
      std::string Out = "{";
      for (size_t I = 0; I < Node->Args.size(); ++I) {
        if (I > 0) Out += Node->Col2 > 0 && I % Node->Col2 == 0 ? ";" : ",";
        Out += AstText(Node->Args[I].get());
      }
      return Out + "}";
    }
    default: return Node->Text;  // numbers and references as written
  }
}

inline std::string ParsedText(std::string_view Formula) {
  return AstText(TFormulaParser::Parse(Formula).get());
}

}  // namespace Tabrino::Testing
