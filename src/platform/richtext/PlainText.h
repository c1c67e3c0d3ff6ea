// Rich text as the text that a reader sees.
#pragma once

#include <string>
#include <string_view>

namespace kvr::richtext {

// The visible text of an RTF document, lines with CR LF between. Pictures, tables of fonts and the like,
// headers and footers give nothing; cells are divided by tabs. A last paragraph mark ends the text and is no
// empty line behind it. Bytes are Windows-1252. Anything can be read: marks without a partner are passed
// over.
std::string PlainText(std::string_view rtf);

}  // namespace kvr::richtext
