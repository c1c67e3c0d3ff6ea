// Which pieces of a tag text are fields of a record, and how the others are written.
#include "library/RecordParts.h"

#include "core/Text.h"

namespace kvr {
namespace {

// Most tag names are written so, and are copied with their values.
bool IsShortLowerAscii(std::string_view name) {
  if (name.size() > fold::kShortName) return false;
  const fold::NameWords words = fold::LoadName(name);
  return words.IsAscii() && fold::Lowered(words) == words;
}

bool IsFieldName(std::string_view lowerName) {
  return lowerName == "name" || lowerName == "nameext" || lowerName == "cat";
}

}  // namespace

// The last character is taken to be the closing parenthesis, whatever it is; the opening one cannot be it.
void RecordParts::AddPiece(std::string_view piece, std::size_t open) {
  if (open == 0 || open + 1 == piece.size()) return;
  const std::string_view name = piece.substr(0, open);
  if (piece.back() == ')' && IsShortLowerAscii(name) && !IsFieldName(name)) {
    *end_++ = ',';
    Write(piece);
  } else {
    AddTag(name, piece.substr(open + 1, piece.size() - open - 2));
  }
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
