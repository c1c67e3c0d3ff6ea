// Parents and children: a trait that is marked `isparent` can hold others, by the user's choice.
#include "character/Parents.h"

#include <algorithm>

#include "character/KVRCharacter.h"

namespace kvr {

namespace {

// Levels from the trait down, itself counted, as far as `most`.
std::size_t LevelsBelow(const KVRCharacter& character, const clsItem& item, std::size_t most) {
  if (item.ChildKeyList().empty() || most <= 1) return 1;
  std::size_t deepest = 0;
  modNewParser::ForEachToken(item.ChildKeyList(), ',', modNewParser::kPlain, [&](std::string_view key) {
    const clsItem* child = character.ItemByKey(NumberOfKeyText(Trim(key)));
    if (child) deepest = std::max(deepest, LevelsBelow(character, *child, most - 1));
  });
  return deepest + 1;
}

}  // namespace

void KVRCharacter::AttachChild(clsItem& child, clsItem& parent) {
  NoteFormerState(child);
  NoteFormerState(parent);
  const std::string key = child.KeyText();
  parent.AddChild(key);
  // AddChild takes "k1" for present in a list that holds "k11"; a child that its parent doesn't list would be
  // counted nowhere.
  if (!parent.HasChild(key)) parent.SetChildKeyList(parent.ChildKeyList() + "," + key);
  child.SetParentKey(parent.KeyText());
  RelinkOwnerBonuses(child);
}

clsItem* KVRCharacter::DetachFromParent(clsItem& child) {
  clsItem* parent = child.ParentKey().empty() ? nullptr : ItemByKey(NumberOfKeyText(child.ParentKey()));
  NoteFormerState(child);
  if (parent) NoteFormerState(*parent);
  child.SetParentKey("");
  if (parent) parent->RemoveChild(child.KeyText());
  RelinkOwnerBonuses(child);
  return parent;
}

bool KVRCharacter::DisallowParent(std::string_view candidateKey, std::string_view childKey) {
  std::string candidate(candidateKey);
  std::size_t levels = 0;
  for (; !candidate.empty(); ++levels) {
    // A circle, which only a damaged file can bring, takes no further child.
    if (candidate == childKey || levels >= kDeepestFamily) return true;
    const clsItem* item = ItemByKey(NumberOfKeyText(candidate));
    candidate = item ? item->ParentKey() : std::string();
  }
  const clsItem* child = ItemByKey(NumberOfKeyText(childKey));
  return child && levels + LevelsBelow(*this, *child, kDeepestFamily) > kDeepestFamily;
}

namespace {

bool IsOwned(const clsItem& item) {
  return EqualNoCase(item.FreeTag("owned"), "yes");
}

std::string OwnedText(const clsItem& item) {
  return "'" + item.FullName() + "' is owned by another item, and can't be made a child.";
}

std::string DisallowedText(const clsItem& parent) {
  return "Parent '" + parent.FullNameTL() + "' was disallowed.";
}

void Tell(Environment& env, std::string_view text) {
  env.log.LogLine(text);
}

// The selected traits that can be moved; the others are told to the user one by one.
std::vector<clsItem*> MovableChildren(KVRCharacter& character, const std::vector<std::string>& selected) {
  std::vector<clsItem*> children;
  for (const std::string& key : selected) {
    clsItem* item = character.ItemByKey(NumberOfKeyText(key));
    if (!item) continue;
    if (IsOwned(*item)) {
      Tell(character.Env(), OwnedText(*item));
    } else {
      children.push_back(item);
    }
  }
  return children;
}

struct ParentCandidates {
  std::vector<clsItem*> allowed;
  bool someRefused = false;
};

ParentCandidates FindParentCandidates(KVRCharacter& character, const std::vector<clsItem*>& children,
                                      ItemType type) {
  ParentCandidates candidates;
  for (clsItem& item : character.ItemsByType[static_cast<std::size_t>(type)]) {
    if (item.FreeTagIsEmpty("isparent")) continue;
    const bool refused = std::any_of(children.begin(), children.end(), [&](const clsItem* child) {
      return character.DisallowParent(item.KeyText(), child->KeyText());
    });
    if (refused) {
      character.Env().log.LogLine(DisallowedText(item));
      candidates.someRefused = true;
    } else {
      candidates.allowed.push_back(&item);
    }
  }
  return candidates;
}

// The user's pick; nullptr when it was cancelled.
clsItem* ChooseParent(KVRCharacter& character, const std::vector<clsItem*>& candidates) {
  std::vector<std::string> names;
  for (const clsItem* candidate : candidates) names.push_back(candidate->FullNameTL());
  const ChoiceAnswer answer = character.Env().prompts.ChooseFromList("Choose Parent", names);
  if (answer.Canceled || answer.ChoiceNum < 1 || answer.ChoiceNum > candidates.size()) return nullptr;
  return candidates[answer.ChoiceNum - 1];
}

constexpr std::string_view kAllParentsDisallowed =
    "No parent candidates found. Some parents were disallowed because they were either the items selected as "
    "children, or were themselves children of those items.";
constexpr std::string_view kNoParents =
    "No parent candidates found. You must create a parent before you can add children.";

}  // namespace

void KVRCharacter::MoveToParent(clsItem& child, clsItem& parent) {
  clsItem* former = DetachFromParent(child);
  if (former && former != &parent) former->Calculate();
  AttachChild(child, parent);
  SetRefreshList(child.ItemType);
}

bool KVRCharacter::MakeChildOf(std::string_view childKey, std::string_view parentKey) {
  TraceScope trace("KVRCharacter:MakeChildOf");
  clsItem* child = ItemByKey(NumberOfKeyText(childKey));
  clsItem* parent = ItemByKey(NumberOfKeyText(parentKey));
  if (!child || !parent) return false;
  if (IsOwned(*child)) {
    env_.log.LogLine(OwnedText(*child));
    return false;
  }
  if (parent->FreeTagIsEmpty("isparent") || DisallowParent(parent->KeyText(), child->KeyText())) {
    env_.log.LogLine(DisallowedText(*parent));
    return false;
  }
  MoveToParent(*child, *parent);
  parent->Calculate();
  TrickleRecalcItems();
  return true;
}

void KVRCharacter::UnmakeChildOf(std::string_view childKey) {
  UnmakeChild({std::string(childKey)});
}

void KVRCharacter::MakeChild(const std::vector<std::string>& selected, ItemType type) {
  TraceScope trace("KVRCharacter:MakeChild");
  if (type < kFirstType || type > kLastType) return;
  if (selected.empty()) return Tell(env_, "No traits selected.");
  const std::vector<clsItem*> children = MovableChildren(*this, selected);
  if (children.empty()) return Tell(env_, "No usable traits were selected. None were made children");
  const ParentCandidates candidates = FindParentCandidates(*this, children, type);
  if (candidates.allowed.empty()) {
    return Tell(env_, candidates.someRefused ? kAllParentsDisallowed : kNoParents);
  }
  clsItem* parent = ChooseParent(*this, candidates.allowed);
  if (!parent) return;
  for (clsItem* child : children) MoveToParent(*child, *parent);
  parent->Calculate();
  TrickleRecalcItems();
  env_.events.RefreshLists();
}

void KVRCharacter::UnmakeChild(const std::vector<std::string>& selected) {
  TraceScope trace("KVRCharacter:UnmakeChild");
  for (const std::string& key : selected) {
    clsItem* child = ItemByKey(NumberOfKeyText(key));
    if (!child || child->ParentKey().empty()) continue;
    if (clsItem* parent = DetachFromParent(*child)) parent->Calculate();
    SetRefreshList(child->ItemType);
  }
  TrickleRecalcItems();
  env_.events.RefreshLists();
}

}  // namespace kvr
