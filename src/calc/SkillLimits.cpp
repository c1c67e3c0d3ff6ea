// Limits of skills and spells, in levels or in points.
#include "calc/SkillLimits.h"

#include <algorithm>
#include <string>

#include "calc/Explanation.h"
#include "calc/modSolver.h"
#include "core/Numbers.h"
#include "core/Text.h"

namespace kvr {
namespace {

struct Limit {
  double value = 0;
  bool inPoints = false;
};

// Cuts the word for points off, unless it is the end of a name or of a tag ("me::points").
bool CutPointsWord(std::string_view& text) {
  for (const std::string_view word : {"points", "pts"}) {
    if (!EndsWithNoCase(text, word)) continue;
    const std::string_view before = text.substr(0, text.size() - word.size());
    if (before.ends_with("::")) return false;
    const char last = before.empty() ? ' ' : before.back();
    if ((last >= 'a' && last <= 'z') || (last >= 'A' && last <= 'Z')) return false;
    text = Trim(before);
    return true;
  }
  return false;
}

Limit ReadLimit(clsItem& item, std::string_view tag) {
  Limit limit;
  std::string_view text = item.FreeTag(tag);
  if (text.empty()) return limit;
  limit.inPoints = CutPointsWord(text);
  explain::Step step(item, tag, limit.inPoints ? " (points)" : "");
  if (!tag.ends_with("upto")) step.NeedsDetail();
  limit.value = step.Is(modSolver::Solver(std::string(text), item));
  return limit;
}

template <class Number>
void TakeSmaller(Number& limit, Number other) {
  if (other > Number(0) && (limit <= Number(0) || other < limit)) limit = other;
}

}  // namespace

SkillLimits ReadSkillLimits(clsItem& item) {
  SkillLimits limits;
  for (const std::string_view tag : {"upto", "control_upto"}) {
    const Limit upto = ReadLimit(item, tag);
    if (upto.inPoints) {
      TakeSmaller(limits.mostPoints, Currency::FromDouble(upto.value));
    } else {
      TakeSmaller(limits.mostLevel, CLngClamped(upto.value));
    }
  }
  const Limit downto = ReadLimit(item, item.FreeTagIsEmpty("control_downto") ? "downto" : "control_downto");
  limits.hasLeastPoints = downto.inPoints;
  if (downto.inPoints) limits.leastPoints = Currency::FromDouble(downto.value);
  return limits;
}

}  // namespace kvr
