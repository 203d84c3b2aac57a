#include "Tabrino.Io.Xml.h"

#include <fmt/format.h>

#include <istream>
#include <string>

#include "Tabrino.Io.Files.h"
#include "Tabrino.Io.Text.h"
#include "Tabrino.Types.h"
#include "Tabrino.Utf16.h"

namespace Tabrino {

namespace {

constexpr std::string_view MarkerPrefix = "#~TBU";
constexpr unsigned ParseOptions = pugi::parse_full | pugi::parse_ws_pcdata;

int HexDigitValue(char C) {
  if (C >= '0' && C <= '9') return C - '0';
  if (C >= 'a' && C <= 'f') return C - 'a' + 10;
  if (C >= 'A' && C <= 'F') return C - 'A' + 10;
  return -1;
}

// Replaces every "#~TBU<hex>;" in Text by its character; returns false when
// there was none. Anything that is not a complete marker is plain text.
bool RestoreMarkers(std::string_view Text, std::string& Out) {
  size_t At = Text.find(MarkerPrefix);
  if (At == std::string_view::npos) return false;
  bool Changed = false;
  Out.clear();
  size_t Copied = 0;
  for (; At != std::string_view::npos; At = Text.find(MarkerPrefix, At)) {
    size_t Pos = At + MarkerPrefix.size();
    char32_t CodePoint = 0;
    size_t Digits = 0;
    for (int D; Pos < Text.size() && (D = HexDigitValue(Text[Pos])) >= 0; ++Pos, ++Digits) {
      CodePoint = CodePoint >= 0x110000 ? CodePoint : CodePoint * 16 + D;  // saturates, stays out of range
    }
    if (Digits == 0 || Pos >= Text.size() || Text[Pos] != ';') {
      At += MarkerPrefix.size();
      continue;
    }
    if (CodePoint >= 0x110000 || (CodePoint >= 0xD800 && CodePoint <= 0xDFFF)) CodePoint = 0xFFFD;
    Out.append(Text.substr(Copied, At - Copied));
    AppendUtf8(Out, CodePoint);
    At = Copied = Pos + 1;
    Changed = true;
  }
  if (Changed) Out.append(Text.substr(Copied));
  return Changed;
}

class TMarkerRestorer : public pugi::xml_tree_walker {
 public:
  void RestoreNode(pugi::xml_node Node) {
    for (pugi::xml_attribute Attr : Node.attributes()) {
      if (RestoreMarkers(Attr.value(), FScratch)) Attr.set_value(FScratch.data(), FScratch.size());
    }
    switch (Node.type()) {
      case pugi::node_pcdata:
      case pugi::node_cdata:
      case pugi::node_comment:
        if (RestoreMarkers(Node.value(), FScratch)) Node.set_value(FScratch.data(), FScratch.size());
        break;
      default: break;
    }
  }
  // traverse() walks without recursion, so deep documents cannot exhaust the stack.
  bool for_each(pugi::xml_node& Node) override {
    RestoreNode(Node);
    return true;
  }

 private:
  std::string FScratch;
};

}  // namespace

std::unique_ptr<TXmlDocument> LoadXmlDocument(std::string_view ABytes) {
  auto Document = std::make_unique<TXmlDocument>();
  if (ABytes.empty()) return Document;
  std::string Text(ABytes);
  const bool HadSurrogates = DecodeTextBytes(Text);
  pugi::xml_parse_result Result = Document->load_buffer(Text.data(), Text.size(), ParseOptions, pugi::encoding_utf8);
  if (!Result) throw EException(fmt::format("{} at offset {}", Result.description(), Result.offset));
  if (HadSurrogates) {
    TMarkerRestorer Restorer;
    pugi::xml_node Root = Document->document_element();
    Restorer.RestoreNode(Root);
    Root.traverse(Restorer);
  }
  return Document;
}

std::unique_ptr<TXmlDocument> LoadXmlDocument(std::istream& AStream) {
  const std::streampos Saved = AStream.tellg();
  AStream.clear();
  AStream.seekg(0);
  std::string Bytes = ReadAllBytes(AStream);
  AStream.clear();
  AStream.seekg(Saved);
  return LoadXmlDocument(Bytes);
}

}  // namespace Tabrino
