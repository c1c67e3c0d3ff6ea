// The text forms of the character file: its sections, its tag lines, and how text that could be taken for a
// mark of the file is written so that it reads back. The format is told in docs/formats/character-file.md.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "core/Currency.h"
#include "core/modLogging.h"
#include "core/modNewParser.h"
#include "library/modPrefixes.h"

namespace kvr::savedText {

enum class Section {
  None,
  System,
  General,
  Stats,
  Advantages,
  Disadvantages,
  Quirks,
  Powers,
  Skills,
  Spells,
  Equipment,
  Description,
  Notes,
  Groups,
  Cats,
  Mods,
  Campaign,
  LogEntry,
  Bonuses,
  Packages,
  BasicDamageList,
  DamageBreaks,
  SkillTypes,
  Settings,
  Author,
  ChangeLog,
  Conditionals,
  Perks,
  Body,
  ShieldArcs,
};

// "[System]", as written.
std::string_view HeadOf(Section section);
// The section whose head is exactly that line, in any case; None for any other line.
Section SectionOfHead(std::string_view line);
// The type of the traits of a section; kNoType for a section without traits.
ItemType TraitTypeOf(Section section);
// True for a line that ends the record before it in a trait section: a head, or "idkey(".
bool EndsRecord(std::string_view line);

// Calls f(name, value) for each "name(value)" of a line, the value untrimmed. Only parentheses nest, so that
// a stray brace in a value can't swallow the tags behind it.
template <class F>
void ForEachTag(std::string_view line, F&& f) {
  modNewParser::ForEachToken(line, ',', modNewParser::kParens, [&](std::string_view piece) {
    piece = Trim(piece);
    const std::size_t open = piece.find('(');
    if (open == npos) return;
    std::string_view value = piece.substr(open + 1);
    if (value.ends_with(')')) value.remove_suffix(1);  // not there where a file was cut
    f(Trim(piece.substr(0, open)), value);
  });
}

// The tolerant whole numbers of the file, held within their range.
std::int32_t ToLong(std::string_view value);
std::int16_t ToInteger(std::string_view value);

// Each mark "<CRLF>" as a line break.
inline constexpr std::string_view kLineMark = "<CRLF>";
std::string LineBreaksFromMarks(std::string_view text);

// Rich text without line ends: they mean nothing there, except that one ends a control word (it becomes a
// blank) and that one behind a single backslash is a paragraph.
std::string RichTextOnOneLine(std::string_view text);
inline bool IsRichText(std::string_view text) {
  return text.starts_with("{\\rtf");
}

// ",tag(value),tag(value)" whose parentheses don't balance, with each value repaired by itself, so that the
// tags behind a broken value stay tags.
std::string RepairTagText(std::string_view tagText);

// Builds the file line by line. A value written with Tag is trimmed, its line breaks become "<CRLF>", and
// unmatched parentheses become brackets, with a line in the log.
class SavedLines {
 public:
  explicit SavedLines(ActivityLog& log) : log_(log) {}

  void Reserve(std::size_t bytes) { text_.reserve(bytes); }
  void Head(Section section) { Line(HeadOf(section)); }
  void EndSection() { Line(""); }
  void Line(std::string_view line) {
    text_ += line;
    EndLine();
  }
  void EndLine() {
    text_ += "\r\n";
    first_ = true;
  }

  SavedLines& Tag(std::string_view name, std::string_view value) { return TagExact(name, Trim(value)); }
  SavedLines& TagExact(std::string_view name, std::string_view value);
  SavedLines& Tag(std::string_view name, std::int32_t value);
  SavedLines& Tag(std::string_view name, Currency value);
  SavedLines& TagFlag(std::string_view name, bool value) { return Tag(name, value ? "-1" : "0"); }
  // A tag on a line of its own.
  template <class Value>
  void TagLine(std::string_view name, const Value& value) {
    Tag(name, value);
    EndLine();
  }

  // Goes on in the line as it stands.
  void Raw(std::string_view text) { text_ += text; }
  // A record of a trait section: its line breaks go into the file, and a line that could end the record gets
  // a blank in front.
  void RecordText(std::string_view text);
  // Text with its line breaks as marks.
  void MarkedText(std::string_view text);
  // A free text (description, notes) on one line, or on several where the line could be taken for a head or,
  // in a log entry, for the beginning of another entry; the reader joins such lines with nothing between.
  void FreeText(std::string_view text, bool inLogEntry);

  // True behind a tag, until the line ends.
  bool LineStarted() const { return !first_; }

  std::string Take() { return std::move(text_); }

 private:
  void OpenTag(std::string_view name);

  ActivityLog& log_;
  std::string text_;
  bool first_ = true;
};

}  // namespace kvr::savedText
