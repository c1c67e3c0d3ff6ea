// The totals of a character: points by type, money, weight, and what follows from them.
#include <algorithm>
#include <limits>
#include <tuple>

#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modTags.h"

namespace kvr {
namespace {
constexpr std::int32_t kMostTL = std::numeric_limits<std::int16_t>::max();
}

// Everything that a formula can read of the character and that a summing up may change.
class KVRCharacter::TotalsRead {
 public:
  explicit TotalsRead(const KVRCharacter& c)
      : values_(c.Cost, c.DollarCost, c.TotalCost, c.UnspentPoints, c.TotalPoints, c.AgainstDisadLimit,
                c.TotalWeight, c.CurrentLoad, c.EncumbranceLevel, c.BaseSW, c.BaseTH, c.BaseSwDice,
                c.BaseSwAdds, c.BaseTHDice, c.BaseTHAdds, c.ParryScore, c.BlockScore, c.TL) {
    for (ItemType type = kFirstType; type <= kLastType; ++type) {
      counts_[static_cast<std::size_t>(type)] = c.Count(type);
    }
  }
  bool operator==(const TotalsRead&) const = default;

 private:
  std::tuple<ByType<Currency>, Currency, Currency, Currency, Currency, Currency, Currency, Currency,
             std::int16_t, std::string, std::string, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
             std::int32_t, std::int32_t, std::int16_t>
      values_;
  ByType<std::int32_t> counts_{};
};

void KVRCharacter::CalcPointCosts() {
  TraceScope trace("KVRCharacter:CalcPointCosts");
  // A formula that reads a total gets the totals as they stand at that moment: what reads it may be in the
  // middle of something that a trait's calculation would change.
  if (trickling_ || calculating_ > 0 || Solving.depth > 0) {
    UpdateTotals();
    return;
  }
  TrickleScope scope(*this);
  FirstFailure failure;
  for (;;) {
    failure.Run([this] { UpdateTotals(); });
    TellReadersOfTotals();
    if (recalcQueue_.empty()) return failure.PassOn();
    failure.Run([this] { EmptyQueue(); });
  }
}

// Totals may have been summed in between, in the middle of a calculation; what counts is what the readers
// were last told.
void KVRCharacter::TellReadersOfTotals() {
  const TotalsRead now(*this);
  if (totalsTold_ && *totalsTold_ == now) return;
  totalsTold_ = std::make_shared<TotalsRead>(now);
  for (std::int32_t key : charValueReaders_) QueueKey(key);
}

void KVRCharacter::UpdateTotals() {
  SumCosts();
  if (costing_) return;
  struct Costing {
    explicit Costing(bool& flag) : flag_(flag) { flag_ = true; }
    ~Costing() { flag_ = false; }
    bool& flag_;
  } costing(costing_);
  FirstFailure failure;
  failure.Run([this] { LogFailure(env_.log, [this] { CalcBaseDamage(); }); });
  failure.Run([this] { LogFailure(env_.log, [this] { CalcParryBlock(); }); });
  failure.PassOn();
}

void KVRCharacter::SumCosts() {
  Cost.fill(0);
  DollarCost = TotalWeight = CurrentLoad = AgainstDisadLimit = 0;
  for (const clsItem& item : Items) SumItem(item);
  AgainstDisadLimit += Cost[kDisads];
  EncumbranceLevel = GetEncLevel(CurrentLoad);
  TotalCost = 0;
  for (Currency cost : Cost) TotalCost += cost;
  TotalPoints = Campaign.BasePoints + Campaign.TotalPoints;
  UnspentPoints = TotalPoints - TotalCost;
}

void KVRCharacter::SumItem(const clsItem& item) {
  if (item.ItemType == kStats && item.LCaseName() == "tech level") {
    TL = static_cast<std::int16_t>(std::clamp(CLngClamped(item.Score()), -kMostTL, kMostTL));
  }
  if (!item.ParentKey().empty()) return;
  if (!IsSet(item.FreeTag("owned"))) {
    Cost[static_cast<std::size_t>(item.ItemType)] += item.Points();
    if (item.ItemType == kStats) AgainstDisadLimit += std::min(item.Points(), Currency(0));
  }
  if (item.ItemType == kEquipment && !CostsAreInOwner(item)) SumEquipment(item);
}

// An owned piece is part of the price and weight of the piece that owns it.
bool KVRCharacter::CostsAreInOwner(const clsItem& item) const {
  if (!IsSet(item.FreeTag("owned"))) return false;
  const clsItem* owner = ItemByKey(CLngClamped(Val(item.FreeTag("keep"))));
  return owner != nullptr && owner->ItemType == kEquipment && IsSet(owner->FreeTag("owns"));
}

void KVRCharacter::SumEquipment(const clsItem& item) {
  DollarCost += Currency::FromVal(item.FreeTag("cost"));
  if (IsSet(item.FreeTag("ndl"))) return;
  Currency weight = Currency::FromVal(item.FreeTag("weight"));
  TotalWeight += weight;
  std::string_view loads = item.FreeTag("load");
  bool carried = CurrentLoadout.empty() ? loads.empty() : modTags::IsItemInList(CurrentLoadout, loads);
  if (carried) CurrentLoad += weight;
}

void KVRCharacter::FreezeStats() {
  for (clsItem& stat : ItemsByType[kStats]) {
    if (!stat.FreeTagIsEmpty("frozenlevel")) continue;
    stat.SetTagItem("frozenlevel", std::to_string(stat.Level()));
    stat.SetTagItem("frozencost", NumberText(stat.Points().ToDouble() * Val(stat.FreeTag("inplaymult"))));
  }
}

}  // namespace kvr
