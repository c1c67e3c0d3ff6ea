// The text forms of the character file: section heads, tag lines, and the guards that make any text read
// back.
#include "character/SavedText.h"

#include "core/Numbers.h"
#include "core/modTags.h"

namespace kvr::savedText {

namespace {

struct SectionRow {
  std::string_view head, lowerHead;
  ItemType traits;
};

// In the order of Section.
constexpr SectionRow kSections[] = {
    {"", "", kNoType},
    {"[System]", "[system]", kNoType},
    {"[General]", "[general]", kNoType},
    {"[Stats]", "[stats]", kStats},
    {"[Advantages]", "[advantages]", kAds},
    {"[Disadvantages]", "[disadvantages]", kDisads},
    {"[Quirks]", "[quirks]", kQuirks},
    {"[Powers]", "[powers]", kPerks},
    {"[Skills]", "[skills]", kSkills},
    {"[Spells]", "[spells]", kSpells},
    {"[Equipment]", "[equipment]", kEquipment},
    {"[Description]", "[description]", kNoType},
    {"[Notes]", "[notes]", kNoType},
    {"[Groups]", "[groups]", kNoType},
    {"[Cats]", "[cats]", kNoType},
    {"[Mods]", "[mods]", kNoType},
    {"[Campaign]", "[campaign]", kNoType},
    {"[LogEntry]", "[logentry]", kNoType},
    {"[Bonuses]", "[bonuses]", kNoType},
    {"[Packages]", "[packages]", kPackages},
    {"[BasicDamageList]", "[basicdamagelist]", kNoType},
    {"[DamageBreaks]", "[damagebreaks]", kNoType},
    {"[SkillTypes]", "[skilltypes]", kNoType},
    {"[Settings]", "[settings]", kNoType},
    {"[Author]", "[author]", kNoType},
    {"[ChangeLog]", "[changelog]", kNoType},
    {"[Conditionals]", "[conditionals]", kNoType},
    {"[Perks]", "[perks]", kPerks},
    {"[Body]", "[body]", kNoType},
    {"[ShieldArcs]", "[shieldarcs]", kNoType},
};

const SectionRow& RowOf(Section section) {
  return kSections[static_cast<std::size_t>(section)];
}

bool IsLineBreak(char c) {
  return c == '\r' || c == '\n';
}

// Calls f(line) for each line of a text, with CR LF, LF or CR between.
template <class F>
void ForEachLine(std::string_view text, F&& f) {
  for (std::size_t begin = 0;;) {
    const std::size_t end = text.find_first_of("\r\n", begin);
    f(text.substr(begin, end == npos ? npos : end - begin));
    if (end == npos) return;
    begin = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
  }
}

bool HasLineBreak(std::string_view text) {
  return text.find('\n') != npos || text.find('\r') != npos;
}

}  // namespace

std::string_view HeadOf(Section section) {
  return RowOf(section).head;
}

Section SectionOfHead(std::string_view line) {
  if (!line.starts_with('[') || line.size() > 20) return Section::None;
  for (std::size_t i = 1; i < std::size(kSections); ++i) {
    if (EqualNoCase(line, kSections[i].lowerHead)) return static_cast<Section>(i);
  }
  return Section::None;
}

ItemType TraitTypeOf(Section section) {
  return RowOf(section).traits;
}

bool EndsRecord(std::string_view line) {
  return line.starts_with("idkey(") || SectionOfHead(line) != Section::None;
}

std::int32_t ToLong(std::string_view value) {
  return CLngClamped(Val(value));
}

std::int16_t ToInteger(std::string_view value) {
  return static_cast<std::int16_t>(std::clamp(ToLong(value), -32768, 32767));
}

std::string LineBreaksFromMarks(std::string_view text) {
  std::string out;
  out.reserve(text.size());
  for (std::size_t begin = 0;;) {
    const std::size_t mark = text.find(kLineMark, begin);
    out += text.substr(begin, mark == npos ? npos : mark - begin);
    if (mark == npos) return out;
    out += "\r\n";
    begin = mark + kLineMark.size();
  }
}

std::string RichTextOnOneLine(std::string_view text) {
  auto isLetter = [](char c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); };
  std::string out;
  out.reserve(text.size());
  bool inWord = false;   // inside "\word-12"
  bool escaped = false;  // directly behind a backslash
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (IsLineBreak(c)) {
      if (c == '\r' && i + 1 < text.size() && text[i + 1] == '\n') ++i;
      if (escaped) out += "par ";
      if (inWord) out += ' ';
      escaped = inWord = false;
      continue;
    }
    out += c;
    if (escaped) {
      inWord = isLetter(c);
      escaped = false;
    } else if (c == '\\') {
      escaped = true;
      inWord = false;
    } else if (inWord) {
      inWord = isLetter(c) || (c >= '0' && c <= '9') || c == '-';
    }
  }
  return out;
}

namespace {

// True if the ")" at `close` can be the end of a tag: the text ends there, or ",name(" follows,
// perhaps with blanks behind the comma.
bool CanEndTag(std::string_view text, std::size_t close) {
  if (close + 1 == text.size()) return true;
  if (text[close + 1] != ',') return false;
  const std::size_t name = text.find_first_not_of(' ', close + 2);
  if (name == npos) return false;
  const std::size_t end = text.substr(0, name + 64).find_first_of("(), |\r\n", name);
  return end != npos && end > name && text[end] == '(';
}

// Position of the ")" that ends the value beginning at `begin`: the matching one where a tag can end there,
// else the first where one can; the text's end if there is none.
std::size_t EndOfValue(std::string_view text, std::size_t begin) {
  constexpr std::size_t kLongestValue = 65536;  // bounds the search for a match that may be missing
  const std::size_t match = modTags::FindCloseParen(text.substr(begin, kLongestValue));
  if (match != npos && CanEndTag(text, begin + match)) return begin + match;
  for (std::size_t close = text.find(')', begin); close != npos; close = text.find(')', close + 1)) {
    if (CanEndTag(text, close)) return close;
  }
  return text.size();
}

}  // namespace

std::string RepairTagText(std::string_view tagText) {
  std::string out;
  out.reserve(tagText.size() + 1);
  for (std::size_t pos = 0; pos < tagText.size();) {
    const std::size_t open = std::min(tagText.find('(', pos), tagText.size());
    std::string head(tagText.substr(pos, open - pos));
    modTags::RepairParens(head);
    out += head;
    if (open == tagText.size()) break;
    const std::size_t end = EndOfValue(tagText, open + 1);
    std::string value(tagText.substr(open + 1, end - open - 1));
    modTags::RepairParens(value);
    out += '(';
    out += value;
    out += ')';
    pos = end + 1;
  }
  return out;
}

void SavedLines::OpenTag(std::string_view name) {
  if (!first_) text_ += ',';
  first_ = false;
  text_ += name;
  text_ += '(';
}

SavedLines& SavedLines::TagExact(std::string_view name, std::string_view value) {
  OpenTag(name);
  if (value.find_first_of("()\r\n") == npos) {
    text_ += value;
  } else if (modTags::ParensBalance(value)) {
    MarkedText(value);
  } else {
    std::string repaired(value);
    modTags::RepairParens(repaired);
    log_.LogRed("An unmatched parenthesis in '" + std::string(name) +
                "' was saved as a bracket: " + repaired);
    MarkedText(repaired);
  }
  text_ += ')';
  return *this;
}

SavedLines& SavedLines::Tag(std::string_view name, std::int32_t value) {
  OpenTag(name);
  text_ += std::to_string(value);
  text_ += ')';
  return *this;
}

SavedLines& SavedLines::Tag(std::string_view name, Currency value) {
  OpenTag(name);
  text_ += NumberText(value);
  text_ += ')';
  return *this;
}

void SavedLines::RecordText(std::string_view text) {
  if (!HasLineBreak(text)) {
    text_ += text;
    return;
  }
  bool first = true;
  ForEachLine(text, [&](std::string_view line) {
    if (!first) {
      text_ += "\r\n";
      if (EndsRecord(line)) text_ += ' ';
    }
    first = false;
    text_ += line;
  });
}

void SavedLines::MarkedText(std::string_view text) {
  if (!HasLineBreak(text)) {
    text_ += text;
    return;
  }
  bool first = true;
  ForEachLine(text, [&](std::string_view line) {
    if (!first) text_ += kLineMark;
    first = false;
    text_ += line;
  });
}

void SavedLines::FreeText(std::string_view text, bool inLogEntry) {
  SavedLines flat(log_);
  if (IsRichText(text)) {
    flat.text_ = RichTextOnOneLine(text);
  } else {
    flat.MarkedText(text);
  }
  std::string_view rest = flat.text_;
  auto breakBehind = [&](std::size_t count) {
    Line(rest.substr(0, count));
    rest.remove_prefix(count);
  };
  if (SectionOfHead(rest) != Section::None) breakBehind(1);
  if (inLogEntry) {
    constexpr std::string_view kEntryMark = "date(";
    for (std::size_t at = rest.find(kEntryMark); at != npos; at = rest.find(kEntryMark)) breakBehind(at + 3);
  }
  Line(rest);
}

}  // namespace kvr::savedText
