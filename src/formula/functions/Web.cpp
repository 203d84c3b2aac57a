// Web-flavoured functions that need no network: ENCODEURL percent-encodes,
// FILTERXML runs an XPath query over XML text, HYPERLINK shows its caption.
// Fetching (WEBSERVICE) needs a provider and lives with the unavailable ones.

#include <pugixml.hpp>

#include <string>

#include "Tabrino.Formula.Functions.h"

namespace Tabrino {

namespace {

// Every byte of the UTF-8 text but the unreserved A-Z a-z 0-9 - _ . ~
// becomes %XX.
TCellValue EncodeUrl(const TFunctionCall& Call) {
  TCellValue Value = Call[0].First();
  if (Value.Kind == cvkError) return Value;
  static constexpr char Hex[] = "0123456789ABCDEF";
  std::string Out;
  for (unsigned char C : Value.ToDisplayString()) {
    bool Unreserved = (C >= 'A' && C <= 'Z') || (C >= 'a' && C <= 'z') || (C >= '0' && C <= '9') || C == '-' ||
                      C == '_' || C == '.' || C == '~';
    if (Unreserved) {
      Out += static_cast<char>(C);
    } else {
      Out += '%';
      Out += Hex[C >> 4];
      Out += Hex[C & 15];
    }
  }
  return TextResult(std::move(Out));
}

// The string value of a node: an attribute's value, or all text below an element.
void AppendTextContent(const pugi::xml_node& Node, std::string& Out) {
  if (Node.type() == pugi::node_pcdata || Node.type() == pugi::node_cdata) {
    Out += Node.value();
    return;
  }
  for (const pugi::xml_node& Child : Node.children()) AppendTextContent(Child, Out);
}

// A text that reads as a number becomes one, as the values of XML usually are.
TCellValue XmlValue(std::string Text) {
  TCellValue Value = TCellValue::FromText(std::move(Text));
  double Number;
  if (AsNumber(Value, Number)) return Num(Number);
  return Value;
}

// FILTERXML(xml, xpath): a node set gives its nodes' values in a column, a
// single node a single value; a number, text or boolean result gives itself.
// Unreadable XML, a bad query and an empty node set are #VALUE!.
TFormulaArg FilterXml(const TFunctionCall& Call) {
  for (const TFormulaArg& Arg : Call.Args)
    if (Arg.First().Kind == cvkError) return TFormulaArg::FromScalar(Arg.First());
  pugi::xml_document Document;
  std::string Xml = ArgText(Call[0]), Path = ArgText(Call[1]);
  if (!Document.load_buffer(Xml.data(), Xml.size(), pugi::parse_default, pugi::encoding_utf8))
    return TFormulaArg::FromError(ceValue);
  try {
    pugi::xpath_query Query(Path.c_str());
    switch (Query.return_type()) {
      case pugi::xpath_type_number: return TFormulaArg::FromScalar(FiniteNum(Query.evaluate_number(Document)));
      case pugi::xpath_type_boolean: return TFormulaArg::FromScalar(Bool(Query.evaluate_boolean(Document)));
      case pugi::xpath_type_string: return TFormulaArg::FromScalar(TextResult(Query.evaluate_string(Document)));
      default: break;
    }
    pugi::xpath_node_set Nodes = Query.evaluate_node_set(Document);
    if (Nodes.empty()) return TFormulaArg::FromError(ceValue);
    std::vector<TCellValue> Values;
    Values.reserve(Nodes.size());
    for (const pugi::xpath_node& Node : Nodes) {
      std::string Text;
      if (Node.attribute())
        Text = Node.attribute().value();
      else
        AppendTextContent(Node.node(), Text);
      Values.push_back(XmlValue(std::move(Text)));
    }
    if (Values.size() == 1) return TFormulaArg::FromScalar(std::move(Values.front()));
    int32_t Rows = static_cast<int32_t>(Values.size());
    return TFormulaArg::FromRange(std::move(Values), Rows, 1);
  } catch (const pugi::xpath_exception&) {
    return TFormulaArg::FromError(ceValue);
  }
}

// HYPERLINK(link_location, [friendly_name]): the cell shows the caption, or
// the link itself without one; following the link is the host's business.
TCellValue Hyperlink(const TFunctionCall& Call) {
  return Call.Count() > 1 ? Call[1].First() : Call[0].First();
}

}  // namespace

std::span<const TFunctionDef> WebFunctions() {
  static constexpr TFunctionDef Table[] = {
      {"ENCODEURL", 1, 1, fnNone, EncodeUrl},
      {"FILTERXML", 2, 2, fnReturnsArray, nullptr, FilterXml},
      {"HYPERLINK", 1, 2, fnNone, Hyperlink},
  };
  return Table;
}

}  // namespace Tabrino
