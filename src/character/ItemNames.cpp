// The names of a trait in their forms, its modifiers in words, and what a trait is to the formulas in it.
#include "character/KVRCharacter.h"
#include "core/Text.h"
#include "library/modPrefixes.h"

namespace kvr {
namespace {

std::string WithCaptions(std::string name, const std::string& captions) {
  return captions.empty() ? name : name.append(" (").append(captions).append(")");
}

}  // namespace

std::string clsItem::FullName() const {
  return modPrefixes::JoinNameAndExt(name_, nameExt_);
}

std::string clsItem::FullNameTL() const {
  std::string_view techLevel = FreeTag("tl");
  if (techLevel.empty()) return FullName();
  return modPrefixes::JoinNameAndExt(name_ + "/TL" + std::string(techLevel), nameExt_);
}

std::string clsItem::FullNameExpanded(bool withValues) {
  return WithCaptions(FullName(), ExpandedModCaptions(withValues));
}

std::string clsItem::FullNameTLExpanded(bool withValues) {
  return WithCaptions(FullNameTL(), ExpandedModCaptions(withValues));
}

std::string clsItem::ExpandedModCaptions(bool withValues) {
  std::string captions;
  for (clsMod& mod : Mods) {
    if (!captions.empty()) captions += "; ";
    captions += mod.CaptionExpanded(withValues);
  }
  return captions;
}

void clsItem::TerminateMods() {
  for (clsMod& mod : Mods) mod.TerminateMods();
  Mods.Clear();
}

CalcItem* clsItem::OwnerContext() {
  return Owner;
}

clsMod* clsItem::ModByLCaseFullName(std::string_view lcaseFullName) {
  return FindModByName(Mods, lcaseFullName);
}

}  // namespace kvr
