// The "@" functions: one table, one body each. A value argument is solved in the same context as the whole
// formula.
#include <algorithm>
#include <array>
#include <cmath>

#include "calc/SolverContext.h"
#include "calc/modSolver.h"
#include "character/clsMod.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTools.h"
#include "library/modPrefixes.h"

namespace kvr::modSolver {
namespace {

using modNewParser::FindWordTopLevel;
using modNewParser::kParens;

constexpr std::string_view kThen = " then ", kElse = " else ", kElseIf = " elseif ";

// The arguments of a call, as far as a function may look at them one by one.
struct Arguments {
  std::array<std::string_view, 3> first{};
  std::size_t count = 0;
};

// Calls each(argument) for the trimmed arguments in order.
template <class Each>
void ForEachArgument(std::string_view arguments, Each&& each) {
  modNewParser::ForEachToken(arguments, ',', modNewParser::kNames,
                             [&](std::string_view token) { each(Trim(token)); });
}

Arguments Split(std::string_view arguments) {
  Arguments split;
  ForEachArgument(arguments, [&split](std::string_view argument) {
    if (split.count < split.first.size()) split.first[split.count] = argument;
    ++split.count;
  });
  return split;
}

[[noreturn]] void InvalidCall() {
  throw KVRError(ErrorNumber::MissingKey);
}

double Solved(std::string_view text, Context& context) {
  return Solver(text, context.item);
}

// The value of a function of one argument; what stands behind a comma is of no account.
double FirstSolved(std::string_view arguments, Context& context) {
  return Solved(Split(arguments).first[0], context);
}

// Long calculations keep the front end alive at each argument of the functions that take lists of them.
double SolvedAlive(std::string_view text, Context& context) {
  context.character.Env().events.LetEventsRun();
  return Solved(text, context);
}

template <class Replaces>
double BestOf(std::string_view list, Context& context, Replaces&& replaces) {
  double best = 0;
  bool isFirst = true;
  ForEachArgument(list, [&](std::string_view argument) {
    const double value = SolvedAlive(argument, context);
    if (isFirst || replaces(value, best)) best = value;
    isFirst = false;
  });
  return best;
}

double IsEven(std::string_view arguments, Context& context) {
  const double value = FirstSolved(arguments, context);
  return value / 2 == std::trunc(RoundHalfEven(value) / 2) ? -1 : 0;
}

// The first condition of the chain that holds gives its value; a piece without " then " is skipped. False
// when none does.
bool SolveElseIfs(std::string_view chain, Context& context, double& value) {
  for (std::string_view piece : modNewParser::ParseWord(chain, kElseIf, kParens)) {
    const std::size_t then = FindNoCase(piece, kThen);
    if (then == npos || Solved(piece.substr(0, then), context) == 0) continue;
    value = Solved(piece.substr(then + kThen.size()), context);
    return true;
  }
  return false;
}

double If(std::string_view arguments, Context& context) {
  const std::size_t then = FindWordTopLevel(arguments, kThen, kParens);
  if (then == npos) return 0;
  std::string_view first = arguments.substr(then + kThen.size()), chain, last;
  const std::size_t elseIf = FindWordTopLevel(first, kElseIf, kParens);
  if (elseIf != npos) {
    chain = first.substr(elseIf + kElseIf.size());
    first = first.substr(0, elseIf);
  }
  std::string_view& beforeElse = elseIf != npos ? chain : first;
  if (const std::size_t otherwise = FindWordTopLevel(beforeElse, kElse, kParens); otherwise != npos) {
    last = beforeElse.substr(otherwise + kElse.size());
    beforeElse = beforeElse.substr(0, otherwise);
  }
  if (Solved(arguments.substr(0, then), context) != 0) return Solved(first, context);
  double value = 0;
  if (elseIf != npos && SolveElseIfs(chain, context, value)) return value;
  return Solved(last, context);
}

double Factorial(std::string_view arguments, Context& context) {
  const int n = CInt(FirstSolved(arguments, context));
  double product = 1;
  for (int i = 2; i <= n; ++i) product = Finite(product * i);
  return product;
}

double SquareRoot(std::string_view arguments, Context& context) {
  const double value = FirstSolved(arguments, context);
  if (value < 0) InvalidCall();
  return std::sqrt(value);
}

double Power(std::string_view arguments, Context& context) {
  const Arguments split = Split(arguments);
  if (split.count < 2) return 1;
  const double base = SolvedAlive(split.first[0], context), exponent = SolvedAlive(split.first[1], context);
  if (base < 0 && exponent != std::trunc(exponent)) return 1;
  if (base == 0 && exponent < 0) InvalidCall();
  return Finite(std::pow(base, exponent));
}

double NaturalLog(std::string_view arguments, Context& context) {
  const double value = FirstSolved(arguments, context);
  return value <= 0 ? 1 : std::log(value);
}

double DecimalLog(std::string_view arguments, Context& context) {
  const double value = FirstSolved(arguments, context);
  if (value <= 0) InvalidCall();
  return std::log(value) / std::log(10.0);
}

double Floor(std::string_view arguments, Context& context) {
  return std::floor(FirstSolved(arguments, context));
}
double Truncation(std::string_view arguments, Context& context) {
  return std::trunc(FirstSolved(arguments, context));
}

// The digits of a value as 15 of them show it, and how many of them stand behind the point (below 0: zeros
// are missing at the end).
struct DecimalDigits {
  std::string digits;
  int decimals = 0;
};

DecimalDigits DigitsOf(double value) {
  DecimalDigits result;
  AppendStr(result.digits, std::abs(value));
  if (const std::size_t exponent = result.digits.find('E'); exponent != npos) {
    result.decimals = -static_cast<int>(Val(std::string_view(result.digits).substr(exponent + 1)));
    result.digits.resize(exponent);
  }
  if (const std::size_t point = result.digits.find('.'); point != npos) {
    result.decimals += static_cast<int>(result.digits.size() - point - 1);
    result.digits.erase(point, 1);
  }
  return result;
}

// Half to even, on the decimal that 15 digits show.
double RoundDecimal(double value, int keep) {
  DecimalDigits decimal = DigitsOf(value);
  if (decimal.decimals <= keep) return Round15(value);
  const auto drop = static_cast<std::size_t>(decimal.decimals - keep);
  if (drop > decimal.digits.size()) return 0;
  const std::string_view kept = std::string_view(decimal.digits).substr(0, decimal.digits.size() - drop);
  const std::string_view dropped = std::string_view(decimal.digits).substr(kept.size());
  double whole = Val(kept);
  const bool isHalf = dropped[0] == '5' && dropped.find_first_not_of('0', 1) == npos;
  if (isHalf ? std::fmod(whole, 2) != 0 : dropped[0] >= '5') ++whole;
  return std::copysign(whole / std::pow(10.0, keep), value);
}

double Round(std::string_view arguments, Context& context) {
  const Arguments split = Split(arguments);
  if (split.count > 2) return 1;
  const double value = SolvedAlive(modTools::StripQuotesAndBraces(split.first[0]), context);
  double digits = 0;
  if (split.count == 2) digits = SolvedAlive(modTools::StripQuotesAndBraces(split.first[1]), context);
  return RoundDecimal(value, static_cast<int>(std::clamp(RoundHalfEven(digits), 0.0, 15.0)));
}

double Modulo(std::string_view arguments, Context& context) {
  const Arguments split = Split(arguments);
  if (split.count != 2) return -1;
  const double a = SolvedAlive(modTools::StripQuotesAndBraces(split.first[0]), context);
  const double b = SolvedAlive(modTools::StripQuotesAndBraces(split.first[1]), context);
  const std::int64_t wholeA = CLng(a), wholeB = CLng(b);
  return wholeB == 0 ? 0 : a - b * static_cast<double>(wholeA / wholeB);
}

double ModLevel(CalcItem* carrier, std::string_view name) {
  clsMod* mod = carrier ? carrier->ModByLCaseFullName(LCase(modTools::StripQuotesAndBraces(name))) : nullptr;
  return mod ? Val(mod->TagItem("level")) : 0;
}

double HasMod(std::string_view arguments, Context& context) {
  context.state.noCache = true;
  return ModLevel(&context.item, Split(arguments).first[0]);
}

double OwnerHasMod(std::string_view arguments, Context& context) {
  context.state.noCache = true;
  return ModLevel(context.item.OwnerContext(), Split(arguments).first[0]);
}

double ItemHasMod(std::string_view arguments, Context& context) {
  context.state.noCache = true;
  const Arguments split = Split(arguments);
  if (split.count != 2) return 0;
  const auto reference = modPrefixes::ExtractPrefix(modTools::StripQuotesAndBraces(split.first[0]));
  const ItemType type = modPrefixes::TypeFromPrefix(reference.prefix);
  return ModLevel(context.character.FindItem(reference.rest, type), split.first[1]);
}

double SameText(std::string_view arguments, Context& /*context*/) {
  const Arguments split = Split(arguments);
  if (split.count != 2) return 0;
  const auto a = modTools::StripQuotesAndBraces(split.first[0]),
             b = modTools::StripQuotesAndBraces(split.first[1]);
  return EqualNoCase(a, b) ? 1 : 0;
}

double IndexedValue(std::string_view arguments, Context& context) {
  return Solved(IndexedEntry(arguments, context), context);
}

double TextIndexedValue(std::string_view arguments, Context& context) {
  return Solved(TextIndexedEntry(arguments), context);
}

double BaseDice(std::string_view arguments, std::string clsBasicDamage::*column, Context& context) {
  const double score = FirstSolved(arguments, context);
  const clsBasicDamage* row = basicDamage::RowForScore(context.character, score);
  return row ? basicDamage::AtScore(row->*column, score, context.item, "") : 0;
}

double BaseSwingDice(std::string_view arguments, Context& context) {
  return BaseDice(arguments, &clsBasicDamage::SWBase, context);
}
double BaseThrustDice(std::string_view arguments, Context& context) {
  return BaseDice(arguments, &clsBasicDamage::THBase, context);
}

struct AtFunction {
  std::string_view name;
  double (*call)(std::string_view arguments, Context& context);
};

constexpr AtFunction kAtFunctions[] = {
    {"@max", LargestOf},
    {"@min", SmallestOf},
    {"@if", If},
    {"@int", Floor},
    {"@round", Round},
    {"@indexedvalue", IndexedValue},
    {"@textindexedvalue", TextIndexedValue},
    {"@fix", Truncation},
    {"@modulo", Modulo},
    {"@iseven", IsEven},
    {"@power", Power},
    {"@sqr", SquareRoot},
    {"@sqrt", SquareRoot},
    {"@fac", Factorial},
    {"@factorial", Factorial},
    {"@log", DecimalLog},
    {"@logn", NaturalLog},
    {"@nlog", NaturalLog},
    {"@hasmod", HasMod},
    {"@ownerhasmod", OwnerHasMod},
    {"@itemhasmod", ItemHasMod},
    {"@sametext", SameText},
    {"@baseswdice", BaseSwingDice},
    {"@basethdice", BaseThrustDice},
};

const AtFunction* FindFunction(std::string_view name) {
  for (const AtFunction& function : kAtFunctions) {
    if (function.name.size() == name.size() && EqualNoCase(function.name, name)) return &function;
  }
  return nullptr;
}

}  // namespace

void CallAtFunction(std::string_view name, std::string_view arguments, Context& context, double& result) {
  if (const AtFunction* function = FindFunction(name)) result = function->call(arguments, context);
}

bool IsFunction(std::string_view name) {
  return FindFunction(name) != nullptr;
}

double LargestOf(std::string_view list, Context& context) {
  return BestOf(list, context, [](double value, double best) { return value > best; });
}

double SmallestOf(std::string_view list, Context& context) {
  return BestOf(list, context, [](double value, double best) { return value < best; });
}

std::string_view IndexedEntry(std::string_view arguments, Context& context) {
  std::int16_t index = 0;
  std::size_t position = 0;
  std::string_view entry;
  ForEachArgument(arguments, [&](std::string_view argument) {
    if (position++ == 0)
      index = CInt(Solved(argument, context));
    else if (index >= 1 && position <= static_cast<std::size_t>(index) + 1)
      entry = argument;
  });
  return entry;
}

std::string_view TextIndexedEntry(std::string_view arguments) {
  std::size_t position = 0;
  bool answered = false;
  std::string_view key, value;
  ForEachArgument(arguments, [&](std::string_view argument) {
    if (position++ == 0) {
      key = modTools::StripQuotesAndBraces(argument);
    } else if (answered) {
      return;
    } else if (StartsWithNoCase(argument, "else")) {
      value = modTools::StripQuotesAndBraces(argument.substr(4));
      answered = true;
    } else {
      const auto parsed =
          modNewParser::ParseChars(argument, "(),", modNewParser::kQuotes | modNewParser::kBraces);
      if (!parsed.delimiters.starts_with('(') ||
          !EqualNoCase(modTools::StripQuotesAndBraces(parsed.Token(2)), key))
        return;
      value = modTools::StripQuotesAndBraces(parsed.Token(3));
      answered = true;
    }
  });
  return value;
}

}  // namespace kvr::modSolver
