// File bytes to the library's text: UTF-8 that is always well formed, so no
// later step has to guard against broken sequences.
#pragma once

#include <string>

namespace Tabrino {

// Decodes ABuffer in place by its byte order mark: EF BB BF is UTF-8, FF FE
// UTF-16 little-endian, FE FF UTF-16 big-endian; without one the bytes are
// UTF-8. A declared encoding inside the text is never consulted. Sequences
// that do not decode and lone surrogates become U+FFFD. Returns true when the
// text needed UTF-16 surrogates: a character beyond U+FFFF or a lone one.
bool DecodeTextBytes(std::string& ABuffer);

}  // namespace Tabrino
