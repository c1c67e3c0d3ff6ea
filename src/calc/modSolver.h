// Formulas: references and functions replaced by numbers in the text, in a fixed order, and the rest handed
// to modEval. See docs/formats/formulas.md for the language.
//
// A run-time failure (a text where a number must stand) throws SolverFailure with trait, text and reason,
// after it was logged. Nested calls are bounded (200), replacement loops too (1000 rounds); over a bound the
// value is 0 and one red line names trait and text.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "calc/CalcItem.h"

namespace kvr::modSolver {

double Solver(std::string_view expression, CalcItem& item);
// Special-case substitutions and "$" functions; no arithmetic. "" for a blank expression.
std::string TextFunctionSolver(std::string_view expression, CalcItem& item);
// Text with "$name(...)" replaced.
std::string TextFunctions(std::string_view text, CalcItem& item);
// "%level", "%count", "$textvalue(...)".
void SpecialCaseSubstitutions(std::string& text, CalcItem& item);

// The value of one reference ("ST:DX", "{SK:Guns (Pistol)::level}", "me::cost", a stat's name).
double GetItemVal(std::string_view reference, CalcItem& item);
std::string GetItemTextVal(std::string_view reference, CalcItem& item);

// Solver for a skill's default, which also tells the trait that the default came from.
struct DefaultSource {
  std::string name;
  std::int32_t idKey = 0;
};
double SolverForDefaults(std::string_view expression, DefaultSource& source, CalcItem& item);

// Names in the `needs` of the context, and the same joined with ", ".
std::vector<std::string> GetPrereqArray(CalcItem& item);
std::string GetPrereqList(CalcItem& item);
// The numbers that a list of references (or "GR:" groups) stands for, joined with ",".
std::string GetValueList(std::string_view list, CalcItem& item);

// Whether there is an "@" function of that name ("@max", in any case).
bool IsFunction(std::string_view name);

// Solver, with a failure caught: logged, and 0. For foreign text (needs, columns of a list).
double SolverGuarded(std::string_view expression, CalcItem& item);

}  // namespace kvr::modSolver
