// The small records of a character.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/Currency.h"
#include "library/Records.h"

namespace kvr {

class clsItem;

// What one trait changed on another, so that removing it can undo the change.
struct clsChangeItem {
  std::string Op;           // "insert" or "replace"
  std::int32_t Target = 0;  // 0: the character itself
  std::int32_t Source = 0;
  std::string Tag, OldValue, NewValue;
};

struct clsTaboo {
  std::string TabooItem;
  clsItem* Owner = nullptr;
  void InitializeData() { *this = clsTaboo{}; }
};

struct clsLogEntry {
  std::string EntryDate, CampaignDate, Caption, Notes;
  Currency CharPoints;
};

struct clsCampaignInfo {
  std::string Name;
  Currency BasePoints, DisadLimit, QuirkLimit;
  std::int32_t BaseTL = 0;
  Currency LoggedPoints, OtherPoints, TotalPoints;
  std::vector<clsLogEntry> Log;

  // LoggedPoints = the sum of the log's CharPoints; TotalPoints = logged + other.
  void Calculate();
};

// The body: its parts in order, by name.
class clsBody {
 public:
  const std::vector<clsBodyItem>& Parts() const { return parts_; }
  std::vector<clsBodyItem>& Parts() { return parts_; }
  clsBodyItem* Part(std::string_view name);
  // False, and nothing added, when there is a part of that name (in any case).
  bool Add(clsBodyItem part);
  void Clear() { parts_.clear(); }

 private:
  std::vector<clsBodyItem> parts_;
};

}  // namespace kvr
