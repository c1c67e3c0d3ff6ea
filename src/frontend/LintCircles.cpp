// Traits that bring themselves, by way of whatever other traits.
#include "character/TemplateEntries.h"
#include "core/modTags.h"
#include "frontend/LintChecks.h"

namespace kvr::Lint {
namespace {

constexpr std::size_t kMostSteps = 10'000'000;

std::string ShownName(const clsSystemItem& item) {
  return std::string(modPrefixes::ItemTypeName(item.ItemType)) + ":" + item.FullName();
}

// The way is listed from its end; of a long one the middle is left out.
std::string ShownWay(const std::vector<const clsSystemItem*>& way) {
  constexpr std::size_t kMostNames = 12;
  std::string text = ShownName(*way.front());
  for (std::size_t i = way.size() - 1; i > 0; --i) {
    if (way.size() <= kMostNames || i < 2 || i > way.size() - kMostNames) {
      text += " > " + ShownName(*way[i]);
    } else if (i == 2) {
      text += " > ...";
    }
  }
  return text + " > " + ShownName(*way.front());
}

}  // namespace

Circles::Circles(const KVRSystem& system) : system_(system) {
  for (const clsSystemItem& item : system.Items) {
    Brought brought;
    AddBrought(item.TagItem("adds"), item.TagItem("creates"), brought);
    if (!brought.empty()) brought_.emplace(&item, std::move(brought));
  }
  DropEnds();
}

void Circles::AddBrought(std::string_view adds, std::string_view creates, Brought& brought, int depth) const {
  for (std::string_view text : templateEntries::Split(adds)) {
    const EffectEntry entry = ReadEffectEntry(text);
    const clsSystemItem* item = system_.FindItem(entry.name, entry.type);
    if (!item) item = system_.FindItem(modPrefixes::SplitNameAndExt(entry.name).name, entry.type);
    if (item && entry.type != kNoType) brought.push_back(item);
  }
  if (depth >= kDeepest) return;
  // What is made here can add and make in its turn.
  for (std::string_view text : templateEntries::Split(creates)) {
    const std::string tags = "," + TagsOfCreated(ReadEffectEntry(text));
    const std::string_view inner = modTags::GetTagValue("creates", tags);
    AddBrought(modTags::GetTagValue("adds", tags), inner, brought, depth + 1);
  }
}

// From the ends of all chains backwards, so that what is left leads into circles.
void Circles::DropEnds() {
  std::unordered_map<const clsSystemItem*, Brought> bringers;
  std::unordered_map<const clsSystemItem*, std::size_t> open;
  std::vector<const clsSystemItem*> ends;
  for (const auto& [item, brought] : brought_) {
    open[item] = brought.size();
    for (const clsSystemItem* each : brought) {
      bringers[each].push_back(item);
      if (!brought_.contains(each)) ends.push_back(each);
    }
  }
  for (std::size_t i = 0; i < ends.size(); ++i) {
    const auto found = bringers.find(ends[i]);
    if (found == bringers.end()) continue;
    for (const clsSystemItem* bringer : std::exchange(found->second, {})) {
      if (--open[bringer] > 0) continue;
      brought_.erase(bringer);
      ends.push_back(bringer);
    }
  }
}

std::string Circles::WayBack(const clsSystemItem& start) {
  if (!brought_.contains(&start)) return "";
  std::unordered_map<const clsSystemItem*, const clsSystemItem*> bringer;
  std::vector<const clsSystemItem*> queue = {&start};
  for (std::size_t i = 0; i < queue.size(); ++i) {
    const clsSystemItem* from = queue[i];
    const auto found = brought_.find(from);
    if (found == brought_.end()) continue;
    for (const clsSystemItem* to : found->second) {
      if (++steps_ > kMostSteps) return "";
      if (to != &start) {
        if (bringer.emplace(to, from).second) queue.push_back(to);
        continue;
      }
      std::vector<const clsSystemItem*> way = {&start};
      for (; from != &start; from = bringer[from]) way.push_back(from);
      return ShownWay(way);
    }
  }
  return "";
}

}  // namespace kvr::Lint
