// Walks the modifiers on a trait and the modifiers on those.
#include "character/ModTree.h"

#include <algorithm>

#include "core/modTags.h"

namespace kvr {

int ModDepth(CalcItem& owner) {
  int depth = 0;
  for (CalcItem* at = &owner; dynamic_cast<clsMod*>(at); at = at->OwnerContext()) ++depth;
  return depth;
}

clsSortedModCollection* ModsOf(CalcItem& owner) {
  if (auto* item = dynamic_cast<clsItem*>(&owner)) return &item->Mods;
  if (auto* mod = dynamic_cast<clsMod*>(&owner)) return &mod->Mods;
  return nullptr;
}

std::vector<clsMod*> AllModsOf(CalcItem& owner) {
  std::vector<clsMod*> all, waiting;
  const auto takeFrom = [&](const clsSortedModCollection& mods) {
    const auto old = static_cast<std::ptrdiff_t>(waiting.size());
    for (clsMod& mod : mods) waiting.push_back(&mod);
    std::reverse(waiting.begin() + old, waiting.end());
  };
  if (const auto* mods = ModsOf(owner)) takeFrom(*mods);
  while (!waiting.empty()) {
    clsMod* mod = waiting.back();
    waiting.pop_back();
    all.push_back(mod);
    takeFrom(mod->Mods);
  }
  return all;
}

std::string ExtractOwnInitMods(std::string& tagList) {
  std::size_t from = 0;
  for (;;) {
    const std::size_t at = modTags::FindTag("initmods", std::string_view(tagList).substr(from));
    if (at == npos) return "";
    from += at;
    if (modTags::ParensBalance(std::string_view(tagList).substr(0, from))) break;
    ++from;
  }
  std::string tail = tagList.substr(from);
  std::string value = modTags::ReturnTagValueExtractingTag(tail, "initmods");
  tagList.replace(from, npos, tail);
  return value;
}

}  // namespace kvr
