// Takes item lines apart. A line in which commas outside parentheses are all there is to split at goes
// straight into the record; one with quotes or braces around commas, or with modes, goes by way of its tag
// string.
#include "library/ItemLines.h"

#include <array>

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

// A field behind the first one, trimmed and not empty, with the position of its first parenthesis.
void NoteField(std::string_view field, std::size_t open, Notes& notes) {
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

// Walks over one mark of a line, from the front to the back.
class MarkCursor {
 public:
  MarkCursor(std::string_view line, char mark) : line_(line), mark_(mark), next_(line.find(mark)) {}
  // How many stand before `end` that were not counted yet.
  std::size_t CountUpTo(std::size_t end) {
    std::size_t count = 0;
    for (; next_ < end; next_ = line_.find(mark_, next_ + 1)) ++count;
    return count;
  }

 private:
  std::string_view line_;
  char mark_;
  std::size_t next_;
};

constexpr std::array<bool, 256> kFieldMarks = [] {
  std::array<bool, 256> marks{};
  for (char c : std::string_view("(),\"{}")) marks[static_cast<unsigned char>(c)] = true;
  return marks;
}();

bool EndsWithTag(std::string_view text, std::string_view tagAndParen) {
  const std::size_t last = tagAndParen.size() - 2;  // of the name
  return text.size() > last + 1 && (text[text.size() - 2] | 0x20) == tagAndParen[last] &&
         EndsWithNoCase(text, tagAndParen);
}

// Splits a line at the commas outside parentheses, as long as these are surely the commas outside quotes and
// braces too.
class PlainFields {
 public:
  explicit PlainFields(std::string_view line)
      : line_(line), quotes_(line, '"'), openBraces_(line, '{'), closeBraces_(line, '}') {}

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
    for (std::size_t i = 0; i < line_.size(); ++i) {
      const char c = line_[i];
      if (!kFieldMarks[static_cast<unsigned char>(c)]) continue;
      if (c == ',') {
        finish(i);
      } else if (c == '(') {
        if (open == npos) open = i;
        i = CloseValue(i);
        if (i == npos) return false;
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
  // Position of the ")" that closes the "(" at `open`; npos when there is none, when a mode stands on the
  // way, or when a quote or a brace that opens in the value does not close there.
  std::size_t CloseValue(std::size_t open) {
    std::size_t depth = 0;
    for (std::size_t i = open; i < line_.size(); i = modTags::NextParen(line_, i + 1)) {
      if (line_[i] == '(') {
        ++depth;
        const std::string_view before = line_.substr(0, i + 1);
        if (EndsWithTag(before, kModeTag.substr(1))) return npos;
        mayHoldDisplay_ = mayHoldDisplay_ || EndsWithTag(before, "display(");
      } else if (--depth == 0) {
        const bool closed =
            quotes_.CountUpTo(i) % 2 == 0 && openBraces_.CountUpTo(i) == closeBraces_.CountUpTo(i);
        return closed ? i : npos;
      }
    }
    return npos;
  }

  std::string_view line_;
  MarkCursor quotes_, openBraces_, closeBraces_;
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

bool ReadPlainLine(clsSystemItem& item, std::string_view line, Kind kind, Notes& notes) {
  PlainFields fields(line);
  item.BeginTagList(line.size() + 8);
  const bool plain = fields.ForEach([&](std::string_view field, std::size_t number, std::size_t open) {
    if (number == 1) {
      const auto [name, ext] = FirstField(field);
      item.SetName(name);
      if (!ext.empty()) item.SetNameExt(ext);
    } else if (number == 2 && open == npos && !BareSecondField(kind).empty()) {
      item.AddTag(BareSecondField(kind), field);
    } else if (!field.empty()) {
      NoteField(field, open, notes);
      if (open != npos) item.AddTagPiece(field, open);
    }
  });
  if (plain && fields.MayHoldDisplay()) item.EndTagList();
  return plain;
}

void ReadByTagString(clsSystemItem& item, std::string_view line, Kind kind, Notes& notes) {
  item.Clear();
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
