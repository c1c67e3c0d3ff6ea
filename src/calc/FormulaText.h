// Formulas inside of texts: "ST:ST*10" is one, "1,2" or "spec." are not.
#pragma once

#include <string>
#include <string_view>

#include "calc/CalcItem.h"

namespace kvr::formulaText {

// Whether a text asks to be solved: it calls a function ("@max(", "$if("), refers to a trait by prefix or to
// a tag by "::", or holds "%level" or "%count". Plain letters and numbers are a text, even with operators
// between them.
bool IsFormula(std::string_view text);
// Whether a part of an expression is a reference: a known prefix or "::".
bool IsReference(std::string_view part);
// Whether a text is nothing but numbers and operators.
bool IsArithmetic(std::string_view text);
// The text with the formulas among its elements (split at commas) solved: text functions as text, the rest as
// numbers. With `isFormula` bare arithmetic counts as a formula too.
std::string Solved(std::string_view text, CalcItem& context, bool isFormula = false);

}  // namespace kvr::formulaText
