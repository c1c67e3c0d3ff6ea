// Formulas, without a character to work them out for: functions and references become numbers, and what is
// left must be arithmetic.
#include <array>

#include "calc/SolverContext.h"
#include "calc/modEval.h"
#include "calc/modSolver.h"
#include "core/Numbers.h"
#include "core/modTags.h"
#include "core/modTools.h"
#include "frontend/LintChecks.h"

namespace kvr::Lint {
namespace {

// Functions whose arguments are texts.
constexpr std::array<std::string_view, 5> kTextFunctions = {"@hasmod", "@ownerhasmod", "@itemhasmod",
                                                            "@sametext", "@textindexedvalue"};
constexpr std::array<std::string_view, 5> kContextWords = {"prereq", "lowprereq", "default", "%level",
                                                           "%count"};

template <std::size_t N>
bool IsOneOf(std::string_view word, const std::array<std::string_view, N>& words) {
  return std::ranges::any_of(words, [&](std::string_view each) { return EqualNoCase(each, word); });
}

// A formula taken apart once; the first fault is told.
class FormulaWalk {
 public:
  FormulaWalk(const Check& check, std::string_view whole) : check_(check), whole_(whole) {}

  // False when a fault was told.
  bool Walk(std::string_view text, int depth) {
    if (depth > kDeepest) return Fault("Functions nested too deep", whole_);
    std::string reduced;
    std::size_t begin = 0;
    for (std::size_t at = text.find('@'); at != npos; at = text.find('@', begin)) {
      reduced += text.substr(begin, at - begin);
      const std::size_t open = text.find('(', at);
      const std::size_t length = open == npos ? npos : modTags::FindCloseParen(text.substr(open + 1));
      if (length == npos) return Fault("A function without its parentheses", text.substr(at));
      if (!Call(Trim(text.substr(at, open - at)), text.substr(open + 1, length), depth)) return false;
      reduced += SomeNumber();
      begin = open + length + 2;
    }
    reduced += text.substr(begin);
    return Arithmetic(reduced);
  }

 private:
  bool Fault(std::string_view what, std::string_view found) {
    check_.Tell(what, found);
    return false;
  }

  // Stands for a value; no two are the same, so that no difference of two is 0.
  std::string SomeNumber() { return std::to_string(++numbers_ * 7 + 4); }

  bool Call(std::string_view name, std::string_view arguments, int depth) {
    if (!modSolver::IsFunction(name)) return Fault("An unknown function", name);
    if (IsOneOf(name, kTextFunctions)) return true;
    if (EqualNoCase(name, "@if")) return Condition(arguments, depth);
    bool fine = true;
    modNewParser::ForEachToken(arguments, ',', modNewParser::kNames,
                               [&](std::string_view argument) { fine = fine && Walk(argument, depth + 1); });
    return fine;
  }

  bool Condition(std::string_view arguments, int depth) {
    if (modNewParser::FindWordTopLevel(arguments, " then ", modNewParser::kNames) == npos)
      return Fault("An @if without \"then\"", arguments);
    std::vector<std::string_view> parts = {arguments};
    for (std::string_view word : {" then ", " elseif ", " else "}) {
      std::vector<std::string_view> split;
      for (std::string_view part : parts) {
        for (std::string_view piece : modNewParser::ParseWord(part, word, modNewParser::kNames))
          split.push_back(piece);
      }
      parts = std::move(split);
    }
    return std::ranges::all_of(parts, [&](std::string_view part) { return Walk(part, depth + 1); });
  }

  bool Arithmetic(std::string_view text) {
    std::string numbers;
    bool fine = true;
    modSolver::ForEachPart(
        text, true,
        [&](std::string_view part) {
          if (Trim(part).empty()) return;
          fine = fine && Reference(modTools::StripQuotesAndBraces(part));
          numbers += IsNumeric(Trim(part)) ? std::string(Trim(part)) : SomeNumber();
        },
        [&](char mark) { mark == 'M' ? numbers += " MOD " : numbers += mark; });
    if (!fine || Trim(numbers).empty()) return fine;
    return modEval::Evaluate(numbers).fault ? Fault("A formula that cannot be worked out", whole_) : true;
  }

  // A part that begins with a number is that number.
  bool Reference(std::string_view part) {
    if (part.empty() || std::string_view("0123456789.").find(part[0]) != npos) return true;
    std::string_view name = part.substr(0, part.find("::"));
    const bool hasTag = name.size() < part.size();
    if (EndsWithNoCase(name, " pts")) name.remove_suffix(4);
    name = Trim(name);
    const auto [prefix, rest] = modPrefixes::ExtractPrefix(name);
    const std::string_view bare = modTools::StripQuotesAndBraces(rest);
    bool known = false;
    if (!prefix.empty()) {
      const ItemType type = modPrefixes::TypeFromPrefix(prefix);
      known = type == kStats ? check_.names.HasStat(bare) : check_.names.HasTrait(type, bare);
    } else {
      const bool isOwner = EqualNoCase(name, "me") || EqualNoCase(name, "owner");
      known = isOwner || (hasTag && EqualNoCase(name, "char")) || IsOneOf(name, kContextWords) ||
              check_.names.HasStat(bare);
    }
    return known || Fault("No such trait", part);
  }

  const Check& check_;
  std::string_view whole_;
  int numbers_ = 0;
};

}  // namespace

// Text functions and variables make of a formula what only the game can tell.
void CheckFormula(const Check& check, std::string_view formula) {
  formula = Trim(formula);
  if (formula.empty() || IsUnsettled(formula) || formula.find('$') != npos) return;
  FormulaWalk(check, formula).Walk(formula, 0);
}

}  // namespace kvr::Lint
