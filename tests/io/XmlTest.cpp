#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "Tabrino.Io.Xml.h"
#include "Tabrino.Types.h"

using namespace Tabrino;

namespace {

const std::string Emoji = "\xF0\x9F\x98\x80";  // U+1F600
const std::string Replacement = "\xEF\xBF\xBD";

std::string Utf16Bytes(const std::u16string& Text, bool BigEndian) {
  std::string Bytes = BigEndian ? "\xFE\xFF" : "\xFF\xFE";
  for (char16_t Unit : Text) {
    const char Hi = static_cast<char>(Unit >> 8), Lo = static_cast<char>(Unit & 0xFF);
    Bytes += BigEndian ? Hi : Lo;
    Bytes += BigEndian ? Lo : Hi;
  }
  return Bytes;
}

std::string RootText(const std::string& Xml) {
  return LoadXmlDocument(Xml)->document_element().text().get();
}

}  // namespace

TEST(LoadXmlDocument, ZeroBytesGiveAnEmptyDocument) {
  auto Document = LoadXmlDocument(std::string_view());
  EXPECT_TRUE(Document->first_child().empty());
}

TEST(LoadXmlDocument, SupplementaryCharactersSurviveEverywhere) {
  auto Document =
      LoadXmlDocument("<a t=\"x" + Emoji + "y\"><!--" + Emoji + "--><![CDATA[" + Emoji + "]]>" + Emoji + "</a>");
  pugi::xml_node Root = Document->document_element();
  EXPECT_EQ(std::string(Root.attribute("t").value()), "x" + Emoji + "y");
  EXPECT_EQ(std::string(Root.first_child().value()), Emoji);  // the comment
  EXPECT_EQ(std::string(Root.child_value()), Emoji);
}

TEST(LoadXmlDocument, ByteOrderMarksDecideTheEncoding) {
  const std::u16string Text = u"<a t=\"\u00e9\U0001F600\">\xD800x</a>";  // a lone high surrogate in the text
  for (bool BigEndian : {false, true}) {
    auto Document = LoadXmlDocument(Utf16Bytes(Text, BigEndian));
    pugi::xml_node Root = Document->document_element();
    EXPECT_EQ(std::string(Root.attribute("t").value()), "\xC3\xA9" + Emoji) << BigEndian;
    EXPECT_EQ(std::string(Root.child_value()), Replacement + "x") << BigEndian;
  }
  // A UTF-8 mark is skipped; the declared encoding is never consulted.
  EXPECT_EQ(RootText("\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><a>\xC3\xA9</a>"), "\xC3\xA9");
}

TEST(LoadXmlDocument, LoneSurrogatesAndBrokenBytesBecomeReplacementCharacters) {
  EXPECT_EQ(RootText("<a>\xED\xA0\x80|\xED\xBF\xBF</a>"), Replacement + "|" + Replacement);
  EXPECT_EQ(RootText("<a>x\xFFy</a>"), "x" + Replacement + "y");
}

TEST(LoadXmlDocument, LiteralMarkersAreRestoredOnlyWhenTheInputHadSurrogates) {
  const std::string Marked = "<a t=\"#~TBU1F600;\"><!--#~TBU41;--><b>#~TBU1f600;</b><![CDATA[#~TBU42;]]></a>";
  auto Plain = LoadXmlDocument(Marked);
  EXPECT_EQ(std::string(Plain->document_element().attribute("t").value()), "#~TBU1F600;");

  for (const std::string& Surrogates : {Emoji, std::string("\xED\xA0\x80")}) {
    auto Document = LoadXmlDocument("<r x=\"" + Surrogates + "\">" + Marked + "</r>");
    pugi::xml_node A = Document->document_element().child("a");
    EXPECT_EQ(std::string(A.attribute("t").value()), Emoji);
    EXPECT_EQ(std::string(A.first_child().value()), "A");
    EXPECT_EQ(std::string(A.child_value("b")), Emoji);
    EXPECT_EQ(std::string(A.last_child().value()), "B");
  }
}

TEST(LoadXmlDocument, OnlyCompleteMarkersAreRead) {
  struct TCase {
    const char* Text;
    std::string Expected;
  } Cases[] = {
      {"#~TBU;", "#~TBU;"},           {"#~TBUxyz;", "#~TBUxyz;"},
      {"#~TBU41", "#~TBU41"},         {"#~TBU41 ;", "#~TBU41 ;"},
      {"#~TBU#~TBU41;", "#~TBUA"},    {"#~TBU110000;", Replacement},
      {"#~TBUD83D;", Replacement},    {"#~TBUFFFFFFFFFFFFFFFFFFFF;", Replacement},
      {"a#~TBU42;c#~TBU44;", "aBcD"},
  };
  for (const TCase& Case : Cases) {
    EXPECT_EQ(RootText("<a x=\"" + Emoji + "\">" + Case.Text + "</a>"), Case.Expected) << Case.Text;
  }
}

TEST(LoadXmlDocument, WhiteSpaceIsKept) {
  auto Document = LoadXmlDocument("<a>\n  <b>  two  </b>\n  <c> </c></a>");
  pugi::xml_node Root = Document->document_element();
  EXPECT_EQ(Root.first_child().type(), pugi::node_pcdata);
  EXPECT_EQ(std::string(Root.first_child().value()), "\n  ");
  EXPECT_EQ(std::string(Root.child_value("b")), "  two  ");
  EXPECT_EQ(std::string(Root.child_value("c")), " ");
}

TEST(LoadXmlDocument, MalformedXmlRaisesTheParserDescription) {
  for (const char* Bad : {"<a><b></a>", "<a", "   ", "<a x=1/>"}) {
    try {
      LoadXmlDocument(std::string_view(Bad));
      FAIL() << Bad;
    } catch (const EException& E) {
      EXPECT_NE(std::string(E.what()).find("at offset"), std::string::npos) << E.what();
    }
  }
}

TEST(LoadXmlDocument, StreamFormReadsFromTheStartAndRestoresThePosition) {
  std::istringstream Stream("<a>v</a>");
  Stream.seekg(3);
  auto Document = LoadXmlDocument(Stream);
  EXPECT_EQ(std::string(Document->document_element().child_value()), "v");
  EXPECT_EQ(Stream.tellg(), 3);
}
