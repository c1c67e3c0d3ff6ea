// Formulas inside of texts: "ST:ST*10" is one, "1,2" or "spec." are not.
#pragma once

#include <string>
#include <string_view>

#include "calc/CalcItem.h"

namespace kvr::formulaText {

// Whether a text asks to be solved: it calls a function ("@max(", "$if("), refers to a trait by prefix or to a tag
// by "::", or holds "%level" or "%count". Plain letters and numbers are a text, even with operators between them.
bool IsFormula(std::string_view text);
// Whether a part of an expression is a reference: a known prefix or "::".
bool IsReference(std::string_view part);
// The text with the formulas among its elements (split at commas) solved: text functions as text, the rest as
// numbers.
std::string Solved(std::string_view text, CalcItem& context);

}  // namespace kvr::formulaText
