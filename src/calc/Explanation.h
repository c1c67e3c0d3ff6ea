// How a number came about: what a calculation notes on its way, for the player who asks.
//
// A CalcRecord hangs at SolverState::record for the length of one explained calculation; otherwise nothing
// hangs there, and a hook in a calculator costs one test. A hook notes what the calculation has at hand and
// works nothing out for the record.
//
// Lines are noted within sections. A section tells which tags its lines explain; what is noted outside of all
// sections, or within one of another trait, is forgotten.
#pragma once

#include <concepts>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "character/KVRCharacter.h"
#include "core/Numbers.h"

namespace kvr {

class CalcRecord {
 public:
  // "starts at: 22 = ST:HT * 2", and below it the lines of what went in. Any of the three may be empty.
  struct Line {
    std::string text, formula, result;
    std::vector<Line> below;
  };

  // The lines of one trait, or of the character, count.
  explicit CalcRecord(const CalcItem& subject) : subject_(&subject) {}

  // All lines that explain a tag, two blanks before each for every step of depth. A record over its bound
  // ends in "...".
  std::vector<std::string> LinesFor(std::string_view tag) const;

  // For the hooks below.
  bool Listens() const { return !open_.empty() && muted_ == 0; }
  // `tags` is a list with commas between.
  void OpenSection(const CalcItem& subject, std::string_view tags);
  void CloseSection();
  // Forgets all sections.
  void Restart(const CalcItem& subject);
  void Open(Line line);
  // With `needsDetail` a line with none below it is left out.
  void Close(bool needsDetail);
  void Add(Line line);
  Line& Current() { return open_.back(); }
  // Copies the lines of all former sections for the tag below the current line.
  void Repeat(std::string_view tag);

 private:
  enum class Opened { Section, Within, Muted };
  struct Section {
    std::string tags;
    std::vector<Line> lines;
  };

  const CalcItem* subject_;
  std::vector<Section> sections_;
  std::vector<Opened> opened_;
  std::vector<Line> open_;  // the section's own, and in it the lines that are not at their end yet
  int muted_ = 0;
  std::size_t bytes_ = 0;
};

namespace explain {

// A number with its sign: "+2".
struct Signed {
  double value;
};

// "1 point", "4 points".
struct Points {
  Currency value;
};

void Append(std::string& text, std::string_view part);
void Append(std::string& text, double value);
void Append(std::string& text, Currency value);
void Append(std::string& text, Signed part);
void Append(std::string& text, Points part);
template <std::integral Number>
void Append(std::string& text, Number value) {
  Append(text, static_cast<double>(value));
}
// A part that costs something is handed over as a procedure that gives it.
template <std::invocable Part>
void Append(std::string& text, const Part& part) {
  Append(text, part());
}

template <class... Parts>
std::string Text(const Parts&... parts) {
  std::string text;
  (Append(text, parts), ...);
  return text;
}

inline CalcRecord* RecordOf(const SolverState& state) {
  return state.record;
}
inline CalcRecord* RecordOf(const KVRCharacter& character) {
  return character.Solving.record;
}
inline CalcRecord* RecordOf(const clsItem& item) {
  return item.Owner == nullptr ? nullptr : item.Owner->Solving.record;
}
inline CalcRecord* RecordOf(CalcItem& item) {
  const KVRCharacter* character = item.RootOwnerChar();
  return character == nullptr ? nullptr : character->Solving.record;
}
inline CalcRecord* RecordOf(CalcRecord* record) {
  return record;
}

// Notes one line: Note(item, "from ", points, " points").
template <class Where, class... Parts>
void Note(Where& where, const Parts&... parts) {
  CalcRecord* record = RecordOf(where);
  if (record == nullptr || !record->Listens()) return;
  record->Add({Text(parts...), "", "", {}});
}

// The lines noted within its lifetime explain the tags.
class Section {
 public:
  template <class Subject>
  Section(Subject& subject, std::string_view tags) : record_(RecordOf(subject)), subject_(subject) {
    if (record_ != nullptr) record_->OpenSection(subject_, tags);
  }
  ~Section() { End(); }
  Section(const Section&) = delete;
  Section& operator=(const Section&) = delete;
  // From here on other tags.
  void Now(std::string_view tags) {
    if (record_ == nullptr) return;
    record_->CloseSection();
    record_->OpenSection(subject_, tags);
  }
  void End() {
    if (record_ != nullptr) record_->CloseSection();
    record_ = nullptr;
  }

 private:
  CalcRecord* record_;
  const CalcItem& subject_;
};

// Notes a number that rounding made another one.
template <class Where>
void NoteRounded(Where& where, double before, double after) {
  if (before != after) Note(where, "rounded to ", after);
}

enum class Detail { Optional, Needed };

// A line with its result, and below it what is noted within its lifetime.
class Step {
 public:
  template <class Where, class... Parts>
  explicit Step(Where& where, const Parts&... parts) : record_(RecordOf(where)) {
    if (record_ == nullptr || !record_->Listens()) {
      record_ = nullptr;
      return;
    }
    record_->Open({Text(parts...), "", "", {}});
  }
  ~Step() {
    if (record_ != nullptr) record_->Close(detail_ == Detail::Needed);
  }
  Step(const Step&) = delete;
  Step& operator=(const Step&) = delete;

  // Without lines below it, this one is left out.
  Step& NeedsDetail() {
    detail_ = Detail::Needed;
    return *this;
  }
  // The result, which is handed on.
  template <class Value>
  Value Is(Value value) {
    if (record_ != nullptr) record_->Current().result = Text(value);
    return value;
  }
  template <class... Parts>
  void Named(const Parts&... parts) {
    if (record_ != nullptr) record_->Current().text = Text(parts...);
  }
  void Formula(std::string_view formula) {
    if (record_ != nullptr) record_->Current().formula = formula;
  }
  // The lines of all former sections for the tag stand below this one too.
  void Repeat(std::string_view tag) {
    if (record_ != nullptr) record_->Repeat(tag);
  }

 private:
  CalcRecord* record_;
  Detail detail_ = Detail::Optional;
};

// A formula solved in a context, as a line of its own. An empty one, which is 0, leaves no line, nor does a
// plain number where detail is needed.
double SolvedStep(CalcItem& context, std::string_view label, std::string_view formula,
                  Detail detail = Detail::Optional);

// "upto(20), control_upto(18)": the tags that the trait has, as they are written.
std::string Written(const clsItem& item, std::initializer_list<std::string_view> tags);

}  // namespace explain

// How the value of a tag came about: a line with the tag and its value, and below it, deeper by two blanks
// for each step, what the calculation noted while it was run once more. A trait that has no such calculation
// gets a line that says so.
std::vector<std::string> ExplainTag(clsItem& item, std::string_view tag);
// The same for a total of the character ("totalcost", "currentload").
std::vector<std::string> ExplainTag(KVRCharacter& character, std::string_view tag);

}  // namespace kvr
