// Finds the directives in a text, each by its word, runs those of the wanted kind from left to right, and
// puts what they come to in their place.
#include "character/modDirectives.h"

#include <algorithm>

#include "character/DirectiveRun.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr::modDirectives {
namespace {

constexpr int kMostReplacements = 1000;
constexpr int kDeepestDirective = 50;
// Bytes of text that are copied by the replacements of one run.
constexpr std::size_t kMostWork = std::size_t{256} << 20;

// Stands for "#" in a shielded text. No byte of UTF-8 has this value.
constexpr char kShield = '\xFF';

bool IsLetter(char c) {
  const char lower = static_cast<char>(c | 0x20);
  return lower >= 'a' && lower <= 'z';
}

// By the tag `name` of the list itself: one inside a directive or another tag's value is no name of the
// trait.
std::string NameIn(std::string_view tagList) {
  const auto fields = modTags::ReturnTagItems(tagList);
  const std::string_view name = modTags::ValueOf(fields, "name");
  return std::string(name.substr(0, modTags::FindCloseParen(name)));
}

bool RunKinds(std::string& text, KVRCharacter& character, const std::vector<Substitution>& protectedVars,
              unsigned kinds, std::string* notHandled, Origin origin = {}) {
  if (notHandled) notHandled->clear();
  if (text.find('#') == npos) return false;
  if (origin.trait.empty()) origin.trait = NameIn(text);
  DirectiveRun run(character, protectedVars, std::move(origin));
  run.Scan(text, kinds);
  if (notHandled) *notHandled = run.NotHandled();
  return run.IsCancelled();
}

}  // namespace

struct DirectiveRun::Row {
  std::string_view letters;
  unsigned kinds;
  std::string (*handler)(DirectiveRun&, Directive&);
};

const DirectiveRun::Row DirectiveRun::kTable[] = {
    {"input", kSpecial, HandleInput},
    {"inputreplace", kSpecial, HandleInputReplace},
    {"inputtotag", kSpecial, HandleInputToTag},
    {"inputtotagreplace", kSpecial, HandleInputToTagReplace},
    {"buildlist", kMain, HandleBuildList},
    {"choice", kMain, HandleChoice},
    {"choicelist", kMain, HandleChoiceList},
    {"grouplist", kMain, HandleGroupList},
    {"list", kMain, HandleList},
    {"message", kMain, HandleMessage},
    {"buildcharitemlist", kMain, HandleBuildCharItemList},
    {"buildselectlist", kSelect, HandleBuildSelectList},
    // At the end of adding.
    {"buildit", kLeftInPlace, nullptr},
    {"buildcombo", kLeftInPlace, nullptr},
    {"edit", kLeftInPlace, nullptr},
    // Read by those who add what the text describes.
    {"codes", kLeftInPlace, nullptr},
    {"donotown", kLeftInPlace, nullptr},
    {"noneeds", kLeftInPlace, nullptr},
    {"newitem", kLeftInPlace, nullptr},
    {"newmod", kLeftInPlace, nullptr},
};

const DirectiveRun::Row* DirectiveRun::FindRow(std::string_view letters) {
  const auto row = std::find_if(std::begin(kTable), std::end(kTable),
                                [&](const Row& each) { return EqualNoCase(each.letters, letters); });
  return row == std::end(kTable) ? nullptr : row;
}

Word WordAt(std::string_view text, std::size_t hash) {
  std::size_t end = hash + 1;
  while (end < text.size() && IsLetter(text[end])) ++end;
  const std::size_t open = text.find_first_not_of(' ', end);
  const bool bracket = open != npos && text[open] == '(';
  return {text.substr(hash + 1, end - hash - 1), bracket ? open : npos};
}

DirectiveRun::DirectiveRun(KVRCharacter& owner, const std::vector<Substitution>& protectedVars, Origin origin)
    : character(owner), protectedVars_(protectedVars), origin_(std::move(origin)) {}

void DirectiveRun::Scan(std::string& text, unsigned kinds) {
  std::size_t hash = text.find('#');
  while (hash != npos && !cancelled_) {
    const Word word = WordAt(text, hash);
    const Row* row = FindRow(word.letters);
    if (!row) NoteUnknown(word, kinds);
    const bool runs = row && (row->kinds & kinds) && word.open != npos;
    hash = text.find('#', runs ? Resolve(text, hash, *row, kinds) : hash + 1);
  }
  std::replace(text.begin(), text.end(), kShield, '#');
}

// Returns where the search goes on: at the text that the directive came to, or behind one that stays.
std::size_t DirectiveRun::Resolve(std::string& text, std::size_t hash, const Row& row, unsigned kinds) {
  const std::string_view rest = std::string_view(text).substr(WordAt(text, hash).open + 1);
  const std::string_view body = rest.substr(0, modTags::FindCloseParen(rest));
  const std::size_t end = std::min(text.size(), text.size() - rest.size() + body.size() + 1);
  if (HoldsProtected(body)) {
    PutOff(std::string_view(text).substr(hash, end - hash), kinds);
    return end;
  }
  if (!MayGoOn(text.size())) return text.size();
  Directive directive{"#" + std::string(row.letters), text.substr(0, hash), std::string(body),
                      text.substr(end)};
  ++depth_;
  Scan(directive.body, kinds | kMain | kSelect);
  --depth_;
  if (cancelled_) return text.size();
  const std::string result = row.handler(*this, directive);
  text = std::move(directive.before);
  const std::size_t next = text.size();
  text.append(result).append(directive.after);
  return next;
}

bool DirectiveRun::HoldsProtected(std::string_view body) const {
  return std::any_of(protectedVars_.begin(), protectedVars_.end(),
                     [&](const Substitution& each) { return ContainsNoCase(body, each.name); });
}

// What stands inside is looked at now: the later run speaks of nothing unknown.
void DirectiveRun::PutOff(std::string_view directive, unsigned kinds) {
  Log(": Protected Var: Don't process yet!");
  if (!notHandled_.empty()) notHandled_ += ',';
  notHandled_ += Unshielded(directive);
  for (std::size_t hash = directive.find('#', 1); hash != npos; hash = directive.find('#', hash + 1)) {
    const Word word = WordAt(directive, hash);
    if (!FindRow(word.letters)) NoteUnknown(word, kinds);
  }
}

bool DirectiveRun::MayGoOn(std::size_t length) {
  work_ += length;
  if (depth_ >= kDeepestDirective) {
    LogFault("its directives stand too deep in one another.");
  } else if (++replacements_ > kMostReplacements || work_ > kMostWork) {
    LogFault("its directives lead to others without end.");
  } else {
    return true;
  }
  Cancel();
  return false;
}

// The first run over a trait, which is the one with variables that are not known yet, speaks for all.
void DirectiveRun::NoteUnknown(const Word& word, unsigned kinds) {
  if (word.letters.empty() || word.open == npos || !(kinds & kMain) || protectedVars_.empty()) return;
  std::string directive = "#" + LCase(word.letters) + "(";
  if (!unknown_.insert(directive).second) return;
  Log("Unknown directive: " + directive);
}

// A word that loses its "#" can complete the one before it, so the text is walked again. Each walk can only
// find longer words than the one before, which makes them few.
void DirectiveRun::MakePlain(std::string& answer) {
  std::erase(answer, kShield);
  for (bool changed = answer.find('#') != npos; changed;) {
    changed = false;
    std::string plain;
    for (std::size_t i = 0; i < answer.size(); ++i) {
      if (answer[i] != '#' || !FindRow(WordAt(answer, i).letters)) {
        plain += answer[i];
        continue;
      }
      changed = true;
      while (plain.ends_with('#')) plain.pop_back();
    }
    if (changed) Log("An answer must not hold a directive and was changed to: " + plain);
    answer = std::move(plain);
  }
}

void DirectiveRun::Log(std::string_view line) {
  character.Env().log.LogLine(Unshielded(line));
}

void DirectiveRun::LogFault(std::string_view line) {
  std::string who = "'" + origin_.trait + "'";
  if (!origin_.tag.empty()) who += " (" + origin_.tag + ")";
  character.Env().log.LogRed(Unshielded(who + " can't be added: " + std::string(line)));
}

std::string DirectiveRun::LogImproper(std::string_view name, const Directive& directive) {
  Log("Improper " + std::string(name) + " directive: " + directive.Text());
  return "";
}

std::string Shielded(std::string_view text) {
  std::string shielded(text);
  std::replace(shielded.begin(), shielded.end(), '#', kShield);
  return shielded;
}

std::string Unshielded(std::string_view text) {
  std::string plain(text);
  std::replace(plain.begin(), plain.end(), kShield, '#');
  return plain;
}

std::string ShownText(std::string_view text) {
  std::string shown(modTools::StripQuotesAndBraces(text));
  modTools::ParagraphMarksToLineBreaks(shown);
  return shown;
}

bool HandleDirectives(std::string& text, KVRCharacter& character,
                      const std::vector<Substitution>& protectedVars, std::string* notHandled) {
  TraceScope trace("modDirectives:HandleDirectives");
  return RunKinds(text, character, protectedVars, kMain, notHandled);
}

bool HandleSpecialDirectives(std::string& text, KVRCharacter& character,
                             const std::vector<Substitution>& protectedVars, std::string* notHandled) {
  TraceScope trace("modDirectives:HandleSpecialDirectives");
  return RunKinds(text, character, protectedVars, kSpecial, notHandled);
}

bool HandleSelectXDirectives(std::string& text, KVRCharacter& character,
                             const std::vector<Substitution>& protectedVars, std::string* notHandled,
                             Origin origin) {
  TraceScope trace("modDirectives:HandleSelectXDirectives");
  return RunKinds(text, character, protectedVars, kSelect, notHandled, std::move(origin));
}

}  // namespace kvr::modDirectives
