// How a change spreads: a queue of traits to calculate, in which each stands once, and the pass over all
// traits.
#include <algorithm>

#include "calc/RecordLinks.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modNewParser.h"

namespace kvr {
namespace {

// Values that settle need two or three visits; a formula that never does would keep the queue running.
constexpr int kMostVisits = 100;

clsBonus* FindRecord(const std::vector<std::unique_ptr<clsBonus>>& records, std::int32_t key) {
  auto place =
      std::lower_bound(records.begin(), records.end(), key,
                       [](const auto& record, std::int32_t wanted) { return record->IDKey < wanted; });
  return place != records.end() && (*place)->IDKey == key ? place->get() : nullptr;
}

// Sets an option for its lifetime.
class OptionOff {
 public:
  explicit OptionOff(std::int32_t& option) : option_(option), former_(option) { option_ = 0; }
  ~OptionOff() { option_ = former_; }
  OptionOff(const OptionOff&) = delete;
  OptionOff& operator=(const OptionOff&) = delete;

 private:
  std::int32_t& option_;
  std::int32_t former_;
};

}  // namespace

void KVRCharacter::QueueKey(std::int32_t idKey) {
  if (queued_.insert(idKey).second) recalcQueue_.push_back(idKey);
}

void KVRCharacter::PushRecalcItems(clsItem& item) {
  for (std::int32_t key : item.AffectedItems) QueueKey(key);
  std::string_view components = item.FreeTag("pkids");
  if (!components.empty()) {
    modNewParser::ForEachToken(components, ',', modNewParser::kPlain,
                               [this](std::string_view entry) { QueueKey(CLngClamped(Val(entry))); });
  }
  // A child counts in its parent, an owned component in its owner, and neither names the other in a text.
  if (!item.ParentKey().empty()) QueueKey(NumberOfKeyText(item.ParentKey()));
  if (IsSet(item.FreeTag("owned"))) QueueKey(CLngClamped(Val(item.FreeTag("keep"))));
  QueueRecords(item.AffectedBonuses, Bonuses);
  QueueRecords(item.AffectedConditionals, Conditionals);
}

void KVRCharacter::QueueRecords(const std::vector<std::int32_t>& keys,
                                const std::vector<std::unique_ptr<clsBonus>>& records) {
  for (std::int32_t key : keys) {
    clsBonus* record = FindRecord(records, key);
    if (record == nullptr) continue;
    // An amount that stays what it was changes nothing on the traits that it reaches: most texts name these
    // traits and nothing else.
    if (CalculateRecord(*record)) PushRecalcBonus(*record);
  }
}

void KVRCharacter::PushRecalcBonus(clsBonus& bonus) {
  for (std::int32_t key : bonus.Targets) QueueKey(key);
}

void KVRCharacter::TrickleRecalcItems() {
  if (trickling_ || calculating_ > 0) return;
  TrickleScope scope(*this);
  EmptyQueue();
}

void KVRCharacter::EmptyQueue() {
  RefreshPause pause(env_.events);
  FirstFailure failure;
  while (!recalcQueue_.empty()) {
    std::int32_t key = recalcQueue_.front();
    recalcQueue_.pop_front();
    queued_.erase(key);
    // A trait may have been removed while it stood in the queue.
    clsItem* item = ItemByKey(key);
    if (item != nullptr && MayVisit(*item)) failure.Run([item] { item->Calculate(); });
  }
  failure.PassOn();
}

bool KVRCharacter::MayVisit(const clsItem& item) {
  int visits = ++visits_[item.IDKey];
  if (visits == kMostVisits + 1) {
    env_.log.LogRed("The values of '" + item.FullName() +
                    "' do not settle; its recalculation was stopped after " + std::to_string(kMostVisits) +
                    " rounds.");
  }
  return visits <= kMostVisits;
}

void KVRCharacter::RecalculateAll(bool pushAll) {
  TraceScope trace("KVRCharacter:RecalculateAll");
  const TimerScope timer;
  RefreshPause pause(env_.events);
  OptionOff secondaryFeatures(env_.Config.NoCalcSecondaryFeatures);
  PauseMark mark(env_.events);
  TokenCache.Clear();
  FirstFailure failure;
  failure.Run([this] { CalcPointCosts(); });
  for (clsItem& item : Items) {
    failure.Run([&] {
      item.Calculate();
      if (pushAll) PushTrickle(item);
    });
  }
  failure.Run([this] { CalcPointCosts(); });
  if (pushAll) env_.log.LogLine("Recalc took " + NumberText(timer.Seconds()) + " seconds");
  failure.PassOn();
}

void KVRCharacter::ClearTokensForItem(clsItem& item) {
  std::string_view symbol = item.FreeTag("symbol");
  TokenCache.ClearTokensForItem(item.IDKey, item.LCaseName(), symbol.empty() ? std::string() : LCase(symbol));
}

}  // namespace kvr
