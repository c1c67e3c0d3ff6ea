// The arithmetic of point progressions.
#include "calc/Progression.h"

#include <algorithm>
#include <cmath>

#include "core/modNewParser.h"

namespace kvr {

Progression::Progression(std::string_view text) {
  entries_.reserve(8);
  entries_.emplace_back();
  if (Trim(text).empty()) return;
  modNewParser::ForEachToken(text, '/', modNewParser::kPlain, [this](std::string_view piece) {
    entries_.push_back(Currency::FromVal(piece));
  });
}

Currency Progression::LastDifference() const {
  return Count() == 0 ? Currency() : Entry(Count()) - Entry(Count() - 1);
}

Currency Progression::Cost(std::int64_t level) const {
  if (level <= 0) return 0;
  if (level <= Count()) return Entry(level);
  return Entry(Count()) + LastDifference() * (level - Count());
}

Currency Progression::LevelForPoints(Currency points, bool roundUp) const {
  auto first = entries_.begin() + 1;
  auto levelOf = [this](auto place) { return Currency(static_cast<int>(place - entries_.begin())); };
  if (auto exact = std::find(first, entries_.end(), points); exact != entries_.end()) return levelOf(exact);
  auto greater = std::find_if(first, entries_.end(), [points](Currency entry) { return entry > points; });
  if (greater == entries_.end()) return LevelPastEnd(points, roundUp);
  return roundUp ? levelOf(greater) : levelOf(greater) - 1;
}

Currency Progression::LevelPastEnd(Currency points, bool roundUp) const {
  Currency count(static_cast<int>(Count()));
  Currency step = LastDifference();
  if (step.IsZero()) return count;
  std::int64_t rest = (points - Entry(Count())).Units();
  if (step.Units() == -1) return Currency::FromDouble(count.ToDouble() - static_cast<double>(rest));
  std::int64_t levels = rest / step.Units();
  if (roundUp && rest % step.Units() != 0) ++levels;
  return Currency::FromDouble(count.ToDouble() + static_cast<double>(levels));
}

}  // namespace kvr
