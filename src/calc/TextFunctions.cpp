// Formulas that give text: the special cases ("%level", "%count", "$textvalue(...)") and the "$" functions.
#include "calc/Explanation.h"
#include "calc/SolverContext.h"
#include "calc/modSolver.h"
#include "core/Currency.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"
#include "core/modTags.h"
#include "core/modTools.h"

namespace kvr::modSolver {
namespace {

// The "$" functions in the arguments of another one come first.
std::string SolvedArguments(std::string_view arguments, Context& context) {
  SolverCall call(context, arguments);
  return call.Entered() ? ReplaceTextFunctions(arguments, context) : "";
}

std::string ReturnIf(std::string_view arguments, Context& context) {
  const std::string text = SolvedArguments(arguments, context);
  const auto halves = modNewParser::ParseSplitWord(text, " then ", modNewParser::kNames);
  if (halves.size() != 2) return "";
  const auto branches = modNewParser::ParseSplitWord(halves[1], " else ", modNewParser::kNames);
  if (branches.size() > 2) return "";
  const std::size_t chosen = Solver(halves[0], context.item) != 0 ? 0 : 1;
  return chosen < branches.size() ? std::string(modTools::StripQuotesAndBraces(branches[chosen])) : "";
}

std::string ReturnIndexedValue(std::string_view arguments, Context& context) {
  return std::string(modTools::StripQuotesAndBraces(IndexedEntry(arguments, context)));
}

std::string ReturnTextIndexedValue(std::string_view arguments, Context& context) {
  return std::string(TextIndexedEntry(SolvedArguments(arguments, context)));
}

std::string ReturnSolved(std::string_view arguments, Context& context) {
  std::string text;
  AppendStr(text, Solver(arguments, context.item));
  return text;
}

struct TextFunction {
  std::string_view name;
  std::string (*call)(std::string_view arguments, Context& context);
};

constexpr TextFunction kTextFunctions[] = {
    {"$if", ReturnIf},
    {"$indexedvalue", ReturnIndexedValue},
    {"$textindexedvalue", ReturnTextIndexedValue},
    {"$solver", ReturnSolved},
    {"$evaluate", ReturnSolved},
    {"$eval", ReturnSolved},
};

const TextFunction* FindTextFunction(std::string_view name) {
  for (const TextFunction& function : kTextFunctions)
    if (EqualNoCase(function.name, name)) return &function;
  return nullptr;
}

std::string FourDecimals(Currency value) {
  return Str(value.ToDouble());
}

// Replaces each `word` by what value() gives, found once in the first round.
template <class Value>
void ReplaceWord(std::string& text, std::string_view word, Context& context, Value&& value) {
  ReplacementBound bound(context, text);
  std::size_t at = FindNoCase(text, word);
  if (at == npos) return;
  context.state.noCache = true;
  explain::Step read(context.state);
  read.Formula(word);
  const std::string replacement = value();
  read.Is(Trim(replacement));
  for (; at != npos; at = FindNoCase(text, word, at + replacement.size())) {
    if (!bound.NextRound(text)) {
      text.clear();
      return;
    }
    text.replace(at, word.size(), replacement);
  }
}

// The text that comes in may hold a further "$textvalue(", or complete one with what stands before it.
void ReplaceTextValues(std::string& text, Context& context) {
  constexpr std::string_view kWord = "$textvalue(";
  ReplacementBound bound(context, text);
  for (std::size_t at = FindNoCase(text, kWord); at != npos;) {
    context.state.noCache = true;
    if (!bound.NextRound(text) || !Charge(context, text)) {
      text.clear();
      return;
    }
    const std::size_t begin = at + kWord.size();
    const std::size_t length = modTags::FindCloseParen(std::string_view(text).substr(begin));
    if (length == npos) return;
    const std::string value = GetItemTextVal(text.substr(begin, length), context.item);
    text.replace(at, kWord.size() + length + 1, value);
    at = FindNoCase(text, kWord, at < kWord.size() ? 0 : at - kWord.size());
  }
}

}  // namespace

void SubstituteSpecialCases(std::string& text, Context& context) {
  ReplaceWord(text, "%level", context,
              [&] { return FourDecimals(Currency::FromDouble(context.item.LevelForFormula())); });
  ReplaceWord(text, "%count", context, [&] {
    const std::string count = context.item.TagItem("count");
    return FourDecimals(count.empty() ? Currency() : Currency::FromText(count));
  });
  ReplaceTextValues(text, context);
}

std::string ReplaceTextFunctions(std::string_view source, Context& context) {
  if (Trim(source).empty()) return "";
  std::string text(source);
  ReplacementBound bound(context, text);
  for (std::size_t at = text.find('$'); at != npos; at = text.find('$', at + 1)) {
    const std::string_view whole = text;
    const std::size_t open = whole.find('(', at);
    if (open == npos) break;
    const TextFunction* function = FindTextFunction(Trim(whole.substr(at, open - at)));
    if (!function) continue;
    const std::size_t length = modTags::FindCloseParen(whole.substr(open + 1));
    if (!Charge(context, whole)) return "";
    if (length == npos) continue;
    if (!bound.NextRound(whole)) return "";
    explain::Step call(context.state);
    call.Formula(whole.substr(at, open + 1 + length + 1 - at));
    const std::string value = call.Is(function->call(Trim(whole.substr(open + 1, length)), context));
    text.replace(at, open + 1 + length + 1 - at, value);
  }
  return text;
}

void SpecialCaseSubstitutions(std::string& text, CalcItem& item) {
  Context context = ContextOf(item);
  Guarded("modSolver:SpecialCaseSubstitutions", text, context,
          [&] { SubstituteSpecialCases(text, context); });
}

std::string TextFunctions(std::string_view text, CalcItem& item) {
  Context context = ContextOf(item);
  return Guarded("modSolver:TextFunctions", text, context,
                 [&] { return ReplaceTextFunctions(text, context); });
}

std::string TextFunctionSolver(std::string_view expression, CalcItem& item) {
  if (Trim(expression).empty()) return "";
  Context context = ContextOf(item);
  return Guarded("modSolver:TextFunctionSolver", expression, context, [&] {
    explain::Step formula(context.state);
    formula.Formula(expression);
    std::string text(expression);
    if (text.find('%') != npos) SubstituteSpecialCases(text, context);
    return formula.Is(ReplaceTextFunctions(text, context));
  });
}

}  // namespace kvr::modSolver
