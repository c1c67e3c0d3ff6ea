// A skill type such as "IQ/H": what a level costs and what it starts from.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "core/Currency.h"

namespace kvr {

class clsSkillCosts {
 public:
  std::string Name;
  std::string BaseAdj;      // text; Base is its number
  std::string Adds;         // "/" separated
  std::string Costs;        // "/" separated
  std::string DefaultStat;  // solved for the base; "%default" marks a technique, "%combo" a combination
  std::string RelName;
  bool SubZero = false;
  bool ZeroPointsOkay = false;

  // Fills the texts from tags ("name", "costs", "baseadj", "adds", "defaultstat", "zeropointsokay",
  // "subzero", "relname") and runs CalcValues.
  void NewTagList(std::string_view tagList);
  // Base = Val(BaseAdj); MinCost = the first cost; CostDiff = the last difference (a single cost: itself);
  // AddDiff likewise.
  void CalcValues();

  std::int32_t Base() const { return base_; }
  Currency MinCost() const { return minCost_; }
  Currency CostDiff() const { return costDiff_; }
  double AddDiff() const { return addDiff_; }
  const std::vector<Currency>& CostList() const { return costs_; }

  // Points for `step` steps: the list's entry, beyond its end the last cost plus the rest times CostDiff; 0
  // for 0 steps.
  Currency LevelCost(std::int32_t step) const;
  double LevelAdds(std::int32_t step) const;
  // The highest step whose cost the points reach; with CostDiff 0 the list's end is the last step.
  std::int32_t ReturnStepForCost(Currency points) const;

 private:
  std::int32_t base_ = 0;
  Currency minCost_, costDiff_;
  double addDiff_ = 0;
  std::vector<Currency> costs_;
  std::vector<double> adds_;
};

}  // namespace kvr
