// The totals of a character: points by type, money, weight, and what follows from them.
#include <algorithm>
#include <limits>
#include <tuple>

#include "calc/Explanation.h"
#include "character/KVRCharacter.h"
#include "core/Numbers.h"
#include "core/modTags.h"

namespace kvr {
namespace {
constexpr std::int32_t kMostTL = std::numeric_limits<std::int16_t>::max();

// By type: the tag of the character that holds the sum of the points, and what a player calls the traits.
struct TypeNames {
  std::string_view tag, traits;
};
constexpr ByType<TypeNames> kTypes = {{{"", ""},
                                       {"statcost", "attributes"},
                                       {"adcost", "advantages"},
                                       {"disadcost", "disadvantages"},
                                       {"quirkcost", "quirks"},
                                       {"perkcost", "perks"},
                                       {"skillcost", "skills"},
                                       {"spellcost", "spells"},
                                       {"equipmentcost", "equipment"},
                                       {"packagecost", "templates"}}};

// One trait's part of a sum.
void NotePart(const KVRCharacter& character, std::string_view tags, const clsItem& item, Currency part) {
  explain::Section section(character, tags);
  if (!part.IsZero())
    explain::Note(
        character, [&] { return item.FullName(); }, ": ", part);
}

Currency SumOf(const KVRCharacter& character) {
  explain::Section section(character, "totalcost");
  Currency sum;
  for (ItemType type = kFirstType; type <= kLastType; ++type) {
    const Currency cost = character.Cost[static_cast<std::size_t>(type)];
    explain::Step step(character, kTypes[static_cast<std::size_t>(type)].traits);
    step.Repeat(kTypes[static_cast<std::size_t>(type)].tag);
    sum += step.NeedsDetail().Is(cost);
  }
  return sum;
}
}  // namespace

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
  if (Solving.record != nullptr) Solving.record->Restart(*this);
  Cost.fill(0);
  DollarCost = TotalWeight = CurrentLoad = AgainstDisadLimit = 0;
  for (const clsItem& item : Items) SumItem(item);
  AgainstDisadLimit += Cost[kDisads];
  EncumbranceLevel = GetEncLevel(CurrentLoad);
  TotalCost = SumOf(*this);
  explain::Section section(*this, "unspentpoints");
  TotalPoints = Campaign.BasePoints + Campaign.TotalPoints;
  explain::Note(*this, "points to begin with: ", Campaign.BasePoints);
  explain::Note(*this, "points of the campaign: ", Campaign.TotalPoints);
  explain::Note(*this, "spent: ", TotalCost);
  UnspentPoints = TotalPoints - TotalCost;
}

void KVRCharacter::SumItem(const clsItem& item) {
  if (item.ItemType == kStats && item.LCaseName() == "tech level") {
    TL = static_cast<std::int16_t>(std::clamp(CLngClamped(item.Score()), -kMostTL, kMostTL));
  }
  if (!item.ParentKey().empty()) return;
  if (!IsSet(item.FreeTag("owned"))) {
    const auto type = static_cast<std::size_t>(item.ItemType);
    Cost[type] += item.Points();
    NotePart(*this, kTypes[type].tag, item, item.Points());
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
  const Currency price = Currency::FromVal(item.FreeTag("cost"));
  DollarCost += price;
  NotePart(*this, "dollarcost", item, price);
  if (IsSet(item.FreeTag("ndl"))) return;
  Currency weight = Currency::FromVal(item.FreeTag("weight"));
  TotalWeight += weight;
  NotePart(*this, "totalweight", item, weight);
  std::string_view loads = item.FreeTag("load");
  bool carried = CurrentLoadout.empty() ? loads.empty() : modTags::IsItemInList(CurrentLoadout, loads);
  if (!carried) return;
  CurrentLoad += weight;
  NotePart(*this, "currentload", item, weight);
}

void KVRCharacter::FreezeStats() {
  for (clsItem& stat : ItemsByType[kStats]) {
    if (!stat.FreeTagIsEmpty("frozenlevel")) continue;
    stat.SetTagItem("frozenlevel", std::to_string(stat.Level()));
    stat.SetTagItem("frozencost", NumberText(stat.Points().ToDouble() * Val(stat.FreeTag("inplaymult"))));
  }
}

}  // namespace kvr
