// Takes item lines apart. A line in which commas outside parentheses are all there is to split at goes
// straight into the record; one with quotes or braces around commas, or with modes, goes by way of its tag
// string.
#include "library/ItemLines.h"

#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "core/modTools.h"
#include "library/KVRSystem.h"
#include "library/LineMarks.h"
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

// A field behind the first one, trimmed and not empty, with the position of its first parenthesis.
void NoteField(std::string_view field, std::size_t open, Notes& notes) {
  if (open == npos) {
    if (notes.valueWithoutTag.empty()) notes.valueWithoutTag = field;
  } else if (open > 0 && field[open - 1] == ' ' && notes.nameEndingInBlank.empty()) {
    notes.nameEndingInBlank = field.substr(0, open);
  }
  if (open != npos && !field.ends_with(')') && notes.behindTag.empty()) notes.behindTag = field;
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

// Splits a line at the commas outside parentheses, as long as these are surely the commas outside quotes and
// braces too: where every quote and brace stands in a value and closes in it.
class PlainFields {
 public:
  explicit PlainFields(std::string_view line) : line_(line), marks_(line) {}

  // Calls take(field, number, position of the field's first "(") for each field, trimmed. False when the line
  // is not so plain, holds modes, or its parentheses do not match: then what was taken so far is void.
  template <class Take>
  bool ForEach(Take&& take) {
    std::size_t begin = 0, number = 0, open = npos;
    auto finish = [&](std::size_t end) {
      while (begin < end && line_[begin] == ' ') ++begin;
      take(Trim(line_.substr(begin, end - begin)), ++number, open == npos ? npos : open - begin);
      begin = end + 1;
      open = npos;
    };
    for (std::size_t i = marks_.Next(); i != npos; i = marks_.Next()) {
      if (line_[i] == ',') {
        finish(i);
      } else if (line_[i] == '(') {
        if (open == npos) open = i;
        if (!PassValue(i)) return false;
      } else {
        return false;
      }
    }
    finish(line_.size());
    return true;
  }
  // True when a tag "display" may stand somewhere in the line.
  bool MayHoldDisplay() const { return mayHoldDisplay_; }

 private:
  // Goes on to the ")" that closes the "(" at `open`. False when there is none, when a mode stands on the
  // way, or when a quote or a brace that opens in the value does not close there.
  bool PassValue(std::size_t open) {
    std::size_t depth = 1;
    bool quoted = false;
    std::int64_t braces = 0;
    if (!PassOpening(open)) return false;
    while (depth > 0) {
      const std::size_t i = marks_.NextButCommas();
      if (i == npos) return false;
      switch (line_[i]) {
        case '(':
          ++depth;
          if (!PassOpening(i)) return false;
          break;
        case ')':
          --depth;
          break;
        case '"':
          quoted = !quoted;
          break;
        case '{':
          ++braces;
          break;
        default:
          --braces;
          break;
      }
    }
    return !quoted && braces == 0;
  }
  // False for the one of a mode; notes where a tag "display" may stand. Few names end in their last letters.
  bool PassOpening(std::size_t open) {
    const int last = open == 0 ? 0 : line_[open - 1] | 0x20;
    if (last != 'e' && last != 'y') return true;
    const std::string_view before = line_.substr(0, open + 1);
    mayHoldDisplay_ = mayHoldDisplay_ || EndsWithNoCase(before, "display(");
    return !EndsWithNoCase(before, kModeTag.substr(1));
  }

  std::string_view line_;
  LineMarks marks_;
  bool mayHoldDisplay_ = false;
};

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
      if (!field.empty()) NoteField(field, field.find('('), notes);
      tags += field;
    }
  });
  if (GathersModes(kind)) GatherModes(tags, notes);
  return tags;
}

bool ReadPlainLine(const KVRSystem& system, clsSystemItem& item, std::string_view line, Kind kind,
                   Notes& notes) {
  constexpr std::size_t kMarksOfBareField = 8;  // "cost" and the marks around it
  RecordParts parts(item.Room(line.size() + kMarksOfBareField));
  PlainFields fields(line);
  const bool plain = fields.ForEach([&](std::string_view field, std::size_t number, std::size_t open) {
    if (number == 1) {
      const auto [name, ext] = FirstField(field);
      parts.Name = name;
      if (!ext.empty()) parts.NameExt = ext;
      system.ExpectItem(item.ItemType, name, ext);
    } else if (number == 2 && open == npos && !BareSecondField(kind).empty()) {
      parts.AddTag(BareSecondField(kind), field);
    } else if (!field.empty()) {
      NoteField(field, open, notes);
      if (open != npos) parts.AddPiece(field, open);
    }
  });
  if (!plain) return false;
  item.TakeParts(parts);
  if (fields.MayHoldDisplay()) item.DropNeedlessDisplay();
  return true;
}

void ReadByTagString(clsSystemItem& item, std::string_view line, Kind kind, Notes& notes) {
  notes = {};
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
