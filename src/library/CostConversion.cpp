// Running sums in place of single costs.
#include "library/CostConversion.h"

#include <string>

#include "core/Currency.h"
#include "core/Numbers.h"
#include "core/Text.h"
#include "core/modNewParser.h"

namespace kvr {
namespace {

bool IsListOfCosts(std::string_view value) {
  const bool isMultiplier = value.starts_with('*') || value.starts_with('x') || value.starts_with('X');
  return !isMultiplier && value.find('/') != npos;
}

enum class Marks { Drop, Keep };

std::string RunningSums(std::string_view value, Marks marks) {
  std::string sums;
  Currency sum;
  modNewParser::ForEachToken(value, '/', modNewParser::kPlain, [&](std::string_view token) {
    const std::string_view entry = Trim(token);
    sum += Currency::FromVal(entry);
    if (!sums.empty()) sums += '/';
    if (marks == Marks::Keep && entry.starts_with('+') && sum >= Currency()) sums += '+';
    sums += NumberText(sum);
    if (marks == Marks::Keep && entry.ends_with('%')) sums += '%';
  });
  return sums;
}

}  // namespace

void ChangeSystemCostsToVersion3(clsSystemItem& item, std::string_view tag) {
  const std::string_view value = item.GetTagItem(tag);
  if (IsListOfCosts(value)) item.SetTagItem(tag, RunningSums(value, Marks::Drop));
}

void ChangeCostsToVersion3ForMods(ModRecord& mod, std::string_view tag) {
  const std::string value = mod.TagItem(tag);
  if (IsListOfCosts(value)) mod.SetTagItem(tag, RunningSums(value, Marks::Keep));
}

}  // namespace kvr
