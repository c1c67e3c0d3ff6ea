// Takes item lines apart. A line in which commas outside parentheses are all there is to split at goes
// straight into the record; one with quotes or braces around commas, or with modes, goes by way of its tag
// string.
#include "library/ItemLines.h"

#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "core/modTools.h"
#include "library/KVRSystem.h"
#include "library/clsModeBuilder.h"
#include "library/modPrefixes.h"

namespace kvr {
namespace ItemLines {
namespace {

constexpr std::string_view kModeTag = ",newmode(";

std::string_view BareSecondField(Kind kind) {
  switch (kind) {
    case Kind::Ad:
    case Kind::Mod:
      return "cost";
    case Kind::Skill:
      return "type";
    default:
      return "";
  }
}

bool GathersModes(Kind kind) {
  return kind == Kind::Ad || kind == Kind::Skill || kind == Kind::Stat || kind == Kind::Equipment;
}

modPrefixes::NameAndExt FirstField(std::string_view field) {
  const std::string_view inner =
      modTools::IsBraced(field) ? modTools::StripBraces(field) : modTools::StripQuotes(field);
  return modPrefixes::SplitNameAndExt(inner);
}

// A field behind the first one, trimmed.
void NoteField(std::string_view field, Notes& notes) {
  const std::size_t open = field.find('(');
  if (open == npos) {
    if (notes.valueWithoutTag.empty()) notes.valueWithoutTag = field;
  } else if (open > 0 && field[open - 1] == ' ' && notes.nameEndingInBlank.empty()) {
    notes.nameEndingInBlank = field.substr(0, open);
  }
}

void AppendTag(std::string& tags, std::string_view name, std::string_view value) {
  tags += name;
  tags += '(';
  tags += value;
  tags += ')';
}

// Takes every ",newmode(...)" out of the tags and puts the modes' lists behind them.
void GatherModes(std::string& tags, Notes& notes) {
  clsModeBuilder builder;
  std::string rest;
  std::size_t done = 0;
  for (std::size_t found = FindNoCase(tags, kModeTag); found != npos;
       found = FindNoCase(tags, kModeTag, done)) {
    const std::string_view behind = std::string_view(tags).substr(found + kModeTag.size());
    const std::size_t close = modTags::FindCloseParen(behind);
    if (close == npos) break;
    Notes ignored;
    if (!builder.AddMode(ToTagString(behind.substr(0, close), Kind::Generic, ignored)))
      notes.tooManyModes = true;
    rest.append(tags, done, found - done);
    done = found + kModeTag.size() + close + 1;
  }
  if (done == 0) return;
  rest.append(tags, done);
  if (const std::string modes = builder.ModeList(); !modes.empty()) rest += "," + modes;
  tags = std::move(rest);
}

constexpr bool IsQuoteOrBrace(char c) {
  return c == '"' || c == '{' || c == '}';
}

bool HoldsQuoteOrBrace(std::string_view text) {
  return text.find('"') != npos || text.find('{') != npos || text.find('}') != npos;
}

// True when the quotes and braces of a value cancel out by its end.
bool QuotesAndBracesClose(std::string_view value) {
  modNewParser::NestingLevels levels(modNewParser::kQuotes | modNewParser::kBraces);
  bool top = true;
  for (char c : value)
    if (IsQuoteOrBrace(c)) top = levels.Step(c);
  return top;
}

bool IsModeTag(std::string_view upToParen) {
  const std::size_t size = upToParen.size();
  return size > 1 && (upToParen[size - 2] | 0x20) == 'e' && EndsWithNoCase(upToParen, kModeTag.substr(1));
}

// Position of the ")" that closes the "(" at `open`; npos when there is none, or when a mode stands on the
// way.
std::size_t ClosePlainValue(std::string_view line, std::size_t open) {
  std::size_t depth = 0;
  for (std::size_t i = open; i < line.size(); i = modTags::NextParen(line, i + 1)) {
    if (line[i] == ')') {
      if (--depth == 0) return i;
    } else {
      ++depth;
      if (IsModeTag(line.substr(0, i + 1))) return npos;
    }
  }
  return npos;
}

// Splits the line at the commas outside parentheses and calls take(field, number) for each field, trimmed, as
// long as these are surely the commas outside quotes and braces too. False when they may not be, or when the
// line holds modes or a stray parenthesis: then what was taken so far is void.
template <class Take>
bool ForEachPlainField(std::string_view line, Take&& take) {
  const bool hasMarks = HoldsQuoteOrBrace(line);
  std::size_t begin = 0, number = 0;
  for (std::size_t i = 0; i < line.size(); ++i) {
    const char c = line[i];
    if (c == ',') {
      take(Trim(line.substr(begin, i - begin)), ++number);
      begin = i + 1;
    } else if (c == '(') {
      const std::size_t close = ClosePlainValue(line, i);
      if (close == npos) return false;
      if (hasMarks && !QuotesAndBracesClose(line.substr(i, close - i))) return false;
      i = close;
    } else if (c == ')' || (hasMarks && IsQuoteOrBrace(c))) {
      return false;
    }
  }
  take(Trim(line.substr(begin)), ++number);
  return true;
}

bool ReadPlainLine(clsSystemItem& item, std::string_view line, Kind kind, Notes& notes) {
  item.BeginTagList(line.size() + 8);
  const bool plain = ForEachPlainField(line, [&](std::string_view field, std::size_t number) {
    if (number == 1) {
      const auto [name, ext] = FirstField(field);
      item.SetName(name);
      if (!ext.empty()) item.SetNameExt(ext);
    } else if (number == 2 && field.find('(') == npos && !BareSecondField(kind).empty()) {
      item.AddTag(BareSecondField(kind), field);
    } else if (!field.empty()) {
      NoteField(field, notes);
      item.AddTagPiece(field);
    }
  });
  if (plain) item.EndTagList();
  return plain;
}

}  // namespace

std::string ToTagString(std::string_view line, Kind kind, Notes& notes) {
  std::string tags;
  tags.reserve(line.size() + 32);
  std::size_t number = 0;
  modNewParser::ForEachToken(line, ',', modNewParser::kNames, [&](std::string_view token) {
    const std::string_view field = Trim(token);
    if (++number == 1) {
      const auto [name, ext] = FirstField(field);
      AppendTag(tags, "name", name);
      if (!ext.empty()) AppendTag(tags, ",nameext", ext);
      return;
    }
    tags += ',';
    if (number == 2 && field.find('(') == npos && !BareSecondField(kind).empty()) {
      AppendTag(tags, BareSecondField(kind), field);
    } else {
      if (!field.empty()) NoteField(field, notes);
      tags += field;
    }
  });
  if (GathersModes(kind)) GatherModes(tags, notes);
  return tags;
}

void ReadInto(clsSystemItem& item, std::string_view line, Kind kind, Notes& notes) {
  if (ReadPlainLine(item, line, kind, notes)) return;
  notes = {};
  item.SetName({});
  item.SetNameExt({});
  item.SetCategory({});
  item.NewTagList(ToTagString(line, kind, notes));
}

}  // namespace ItemLines

namespace {
std::string TagStringOf(std::string_view line, ItemLines::Kind kind) {
  ItemLines::Notes ignored;
  return ItemLines::ToTagString(line, kind, ignored);
}
}  // namespace

std::string KVRSystem::ReturnAdItem(std::string_view line) {
  return TagStringOf(line, ItemLines::Kind::Ad);
}
std::string KVRSystem::ReturnSkillItem(std::string_view line) {
  return TagStringOf(line, ItemLines::Kind::Skill);
}
std::string KVRSystem::ReturnSpellItem(std::string_view line) {
  return TagStringOf(line, ItemLines::Kind::Spell);
}
std::string KVRSystem::ReturnStatItem(std::string_view line) {
  return TagStringOf(line, ItemLines::Kind::Stat);
}
std::string KVRSystem::ReturnEquipmentItem(std::string_view line) {
  return TagStringOf(line, ItemLines::Kind::Equipment);
}
std::string KVRSystem::ReturnModItem(std::string_view line) {
  return TagStringOf(line, ItemLines::Kind::Mod);
}
std::string KVRSystem::ReturnGenericItem(std::string_view line) {
  return TagStringOf(line, ItemLines::Kind::Generic);
}

}  // namespace kvr
