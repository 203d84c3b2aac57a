// Raw bytes to an XML document tree, for every reader that parses XML parts.
#pragma once

#include <iosfwd>
#include <memory>
#include <string_view>

#include <pugixml.hpp>

namespace Tabrino {

// The document type the XML-based readers share.
using TXmlDocument = pugi::xml_document;

// Parses ABytes, decoded by their byte order mark (UTF-8 without one; the
// declared encoding is never consulted). White space inside text is kept,
// white-space-only text nodes included; comments, processing instructions and
// the declaration are in the tree. Zero bytes give an empty document.
// Lone surrogates read as U+FFFD. Malformed XML raises EException with the
// parser's description and no partial tree.
//
// Kept from the time supplementary characters were passed through as
// "#~TBU<hex>;" markers: when the input held any UTF-16 surrogate, literal
// markers in attribute, text, CDATA and comment values under the document
// element are turned into their characters; otherwise they stay as written.
std::unique_ptr<TXmlDocument> LoadXmlDocument(std::string_view ABytes);
// Reads the whole stream from offset 0 and restores its position first.
std::unique_ptr<TXmlDocument> LoadXmlDocument(std::istream& AStream);

}  // namespace Tabrino
