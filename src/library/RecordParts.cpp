// Which pieces of a tag text are fields of a record, and how the others are written.
#include "library/RecordParts.h"

#include "core/modTools.h"

namespace kvr {

// The last character is taken to be the closing parenthesis, whatever it is; the opening one cannot be it.
void RecordParts::AddOddPiece(std::string_view piece, std::size_t open) {
  if (open > 0 && open + 1 < piece.size())
    AddTag(piece.substr(0, open), modTools::WithoutLastLetter(piece.substr(open + 1)));
}

void RecordParts::AddTag(std::string_view name, std::string_view value) {
  if (EqualNoCase(name, "name")) {
    Name = value;
  } else if (EqualNoCase(name, "nameext")) {
    NameExt = value;
  } else if (EqualNoCase(name, "cat")) {
    Category = value;
  } else {
    *end_++ = ',';
    char* lowered = end_;
    Write(name);
    LCaseInPlace(lowered, name.size());
    *end_++ = '(';
    Write(value);
    *end_++ = ')';
  }
}

}  // namespace kvr
