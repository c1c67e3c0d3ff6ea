// One run over the directives of a text, and what its handlers may use. The door for all others is
// modDirectives.h.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "character/modDirectives.h"

namespace kvr::modDirectives {

// Which run a directive belongs to; a run of several kinds takes them as they come.
enum Kinds : unsigned { kLeftInPlace = 0, kSpecial = 1, kMain = 2, kSelect = 4 };

// "#word" at a "#", and the "(" behind it (blanks may stand between); npos for none.
struct Word {
  std::string_view letters;
  std::size_t open = npos;
};
Word WordAt(std::string_view text, std::size_t hash);

// A directive cut out of its text. Without a closing bracket the body is all of the rest.
struct Directive {
  std::string word;                 // "#list"
  std::string before, body, after;  // of the body, the directives have run

  std::string Text() const { return word + "(" + body + ")"; }
};

class DirectiveRun {
 public:
  DirectiveRun(KVRCharacter& owner, const std::vector<Substitution>& protectedVars, Origin origin);

  KVRCharacter& character;

  void Scan(std::string& text, unsigned kinds);
  bool IsCancelled() const { return cancelled_; }
  void Cancel() { cancelled_ = true; }
  const std::string& NotHandled() const { return notHandled_; }
  // The name of the trait in hand; "" when nobody gives one.
  const std::string& TraitName() const { return origin_.trait; }
  // Takes the "#" from each word of a directive in what the user typed, so that no run, this one or a later
  // one, reads it as one.
  void MakePlain(std::string& answer);

  // Shielded texts are made plain.
  void Log(std::string_view line);
  // Behind the name of the running procedure.
  void LogTraced(std::string_view line) { Log(TraceTop() + std::string(line)); }
  // In red, with the trait: what keeps it from being added.
  void LogFault(std::string_view line);
  // "Improper #InputToTag directive: <text>"; the directive leaves no text.
  std::string LogImproper(std::string_view name, const Directive& directive);

 private:
  struct Row;
  static const Row kTable[];
  static const Row* FindRow(std::string_view letters);

  std::size_t Resolve(std::string& text, std::size_t hash, const Row& row, unsigned kinds);
  bool HoldsProtected(std::string_view body) const;
  bool MayGoOn(std::size_t length);
  void PutOff(std::string_view directive, unsigned kinds);
  void NoteUnknown(const Word& word, unsigned kinds);

  const std::vector<Substitution>& protectedVars_;
  const Origin origin_;
  std::string notHandled_;
  std::set<std::string> unknown_;
  int depth_ = 0, replacements_ = 0;
  std::size_t work_ = 0;
  bool cancelled_ = false;
};

// An answer in the form in which no scan of this run finds a directive in it; the end of the
// scan makes it plain again.
std::string Shielded(std::string_view text);
std::string Unshielded(std::string_view text);
// A text for the user: without enclosing quotes or braces, with its marks "~P" made line breaks.
std::string ShownText(std::string_view text);

// The handlers: each gives the text that stands in the directive's place, and may change the text around it.
// What they give may hold directives again.
std::string HandleInput(DirectiveRun& run, Directive& directive);
std::string HandleInputReplace(DirectiveRun& run, Directive& directive);
std::string HandleInputToTag(DirectiveRun& run, Directive& directive);
std::string HandleInputToTagReplace(DirectiveRun& run, Directive& directive);
std::string HandleChoice(DirectiveRun& run, Directive& directive);
std::string HandleChoiceList(DirectiveRun& run, Directive& directive);
std::string HandleList(DirectiveRun& run, Directive& directive);
std::string HandleGroupList(DirectiveRun& run, Directive& directive);
std::string HandleBuildList(DirectiveRun& run, Directive& directive);
std::string HandleBuildSelectList(DirectiveRun& run, Directive& directive);
std::string HandleBuildCharItemList(DirectiveRun& run, Directive& directive);
std::string HandleMessage(DirectiveRun& run, Directive& directive);

}  // namespace kvr::modDirectives
