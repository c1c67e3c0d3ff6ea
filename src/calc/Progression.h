// Point progressions: "10/5/15" costs 0, 10, 5, 15 at levels 0 to 3.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "core/Currency.h"

namespace kvr {

// Beyond its end a progression goes on with its last difference, without any limit: "10/5" costs 0 and -5 at
// levels 3 and 4. With one entry that difference is the entry. An empty text has no entries and costs 0.
class Progression {
 public:
  explicit Progression(std::string_view text);

  // The number of entries, that of level 0 not counted.
  std::int64_t Count() const { return static_cast<std::int64_t>(entries_.size()) - 1; }
  // For 0 to Count.
  Currency Entry(std::int64_t level) const { return entries_[static_cast<std::size_t>(level)]; }
  Currency LastDifference() const;
  // 0 below level 0.
  Currency Cost(std::int64_t level) const;
  // The level that the points buy, a whole number in fixed point. Points between two levels buy the lower,
  // with roundUp the higher.
  Currency LevelForPoints(Currency points, bool roundUp) const;

 private:
  Currency LevelPastEnd(Currency points, bool roundUp) const;

  std::vector<Currency> entries_;
};

}  // namespace kvr
