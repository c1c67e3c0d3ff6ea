// A modifier as a record on its holder: its captions, its place in the tree of holders, and the end of that
// tree.
#include "character/clsMod.h"

#include "character/KVRCharacter.h"
#include "core/Numbers.h"

namespace kvr {
namespace {

// Captions of modifiers on modifiers are spelled out to this depth, which no person reads to the end.
constexpr int kCaptionDepth = 20;

std::string CaptionTo(clsMod& mod, bool withValues, int depth);

// " (value; caption; caption)" for the modifiers on `mod`; "" when there are none.
std::string CaptionsOfMods(clsMod& mod, bool withValues, int depth) {
  if (mod.Mods.Empty() || depth == 0) return "";
  std::string text;
  if (withValues) text.append(mod.Tags().Value("premodsvalue")).append("; ");
  bool first = true;
  for (clsMod& inner : mod.Mods) {
    if (!first) text += "; ";
    text += CaptionTo(inner, withValues, depth - 1);
    first = false;
  }
  return " (" + text + ")";
}

std::string CaptionTo(clsMod& mod, bool withValues, int depth) {
  return mod.Caption(withValues) + CaptionsOfMods(mod, withValues, depth);
}

}  // namespace

clsMod::clsMod() = default;
clsMod::~clsMod() {
  TerminateMods();
}

std::string clsMod::Caption(bool withValue) {
  std::string_view shortName = Tags().Value("shortname");
  std::string caption = shortName.empty() ? FullName() : std::string(shortName);
  std::string level = LevelCaption();
  if (!level.empty()) caption.append(" (").append(level).append(")");
  if (withValue) caption.append(", ").append(Tags().Value("value"));
  return caption;
}

std::string clsMod::CaptionExpanded(bool withValues) {
  return CaptionTo(*this, withValues, kCaptionDepth);
}

std::string clsMod::FullNameExpanded(bool withValues) {
  return FullName() + CaptionsOfMods(*this, withValues, kCaptionDepth);
}

// Holders before their modifiers in a list, then emptied from its end: every modifier is dropped with nothing
// left on it, so that a chain of any depth goes without recursion.
void clsMod::TerminateMods() {
  if (Mods.Empty()) return;
  std::vector<clsMod*> tree{this};
  for (std::size_t i = 0; i < tree.size(); ++i) {
    for (clsMod& inner : tree[i]->Mods) tree.push_back(&inner);
  }
  for (auto mod = tree.rbegin(); mod != tree.rend(); ++mod) (*mod)->Mods.Clear();
}

void clsMod::Clear() {
  TerminateMods();
  Owner = nullptr;
  ModRecord::Clear();
}

double clsMod::LevelForFormula() {
  return Val(Tags().Value("level"));
}

clsItem* clsMod::RootOwnerItem() {
  CalcItem* holder = Owner;
  while (auto* mod = dynamic_cast<clsMod*>(holder)) holder = mod->Owner;
  return holder ? holder->RootOwnerItem() : nullptr;
}

KVRCharacter* clsMod::RootOwnerChar() {
  clsItem* root = RootOwnerItem();
  return root ? root->Owner : nullptr;
}

clsMod* clsMod::ModByLCaseFullName(std::string_view lcaseFullName) {
  return FindModByName(Mods, lcaseFullName);
}

clsMod* FindModByName(const clsSortedModCollection& mods, std::string_view lcaseFullName) {
  for (clsMod& mod : mods) {
    if (mod.LCaseFullName() == lcaseFullName) return &mod;
  }
  return nullptr;
}

}  // namespace kvr
