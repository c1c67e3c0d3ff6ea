// Tells formulas from plain text, and solves them where they stand.
#include "calc/FormulaText.h"

#include "calc/SolverContext.h"
#include "calc/modSolver.h"
#include "core/Numbers.h"
#include "core/modTools.h"
#include "library/modPrefixes.h"

namespace kvr::formulaText {
namespace {

bool IsLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

// "@name" or "$name" anywhere.
bool CallsFunction(std::string_view text) {
  for (std::size_t i = text.find_first_of("@$"); i != npos; i = text.find_first_of("@$", i + 1)) {
    if (i + 1 < text.size() && IsLetter(text[i + 1])) return true;
  }
  return false;
}

bool HasReference(std::string_view text) {
  if (text.find(':') == npos) return false;
  bool found = false;
  modSolver::ForEachPart(
      text, false, [&](std::string_view part) { found = found || IsReference(part); }, [](char) {});
  return found;
}

// What a text function gives is a text, unless it is a formula again.
std::string SolvedElement(std::string_view element, CalcItem& context) {
  if (element.find('$') == npos) return NumberText(modSolver::Solver(element, context));
  const std::string text = modSolver::TextFunctionSolver(element, context);
  return IsFormula(text) ? NumberText(modSolver::Solver(text, context)) : text;
}

}  // namespace

bool IsReference(std::string_view part) {
  part = modTools::StripQuotesAndBraces(part);
  return part.find("::") != npos || !modPrefixes::ExtractPrefix(part).prefix.empty();
}

bool IsFormula(std::string_view text) {
  return CallsFunction(text) || HasReference(text) ||
         (text.find('%') != npos && (ContainsNoCase(text, "%level") || ContainsNoCase(text, "%count")));
}

bool IsArithmetic(std::string_view text) {
  return text.find_first_not_of("0123456789.+-*/\\^() ") == npos && text.find_first_of("0123456789") != npos;
}

std::string Solved(std::string_view text, CalcItem& context, bool isFormula) {
  if (!isFormula && !IsFormula(text)) return std::string(text);
  std::string solved;
  bool isFirst = true;
  modNewParser::ForEachToken(text, ',', modNewParser::kNames, [&](std::string_view element) {
    if (!isFirst) solved += ',';
    isFirst = false;
    if (IsFormula(element))
      solved += SolvedElement(Trim(element), context);
    else if (isFormula && IsArithmetic(element) && !IsNumeric(Trim(element)))
      solved += NumberText(modSolver::Solver(element, context));
    else
      solved += element;
  });
  return solved;
}

}  // namespace kvr::formulaText
