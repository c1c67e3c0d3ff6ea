// Parents and children by the word of data: `parentof` and `childof`.
#include "character/KVRCharacter.h"
#include "character/TemplateEntries.h"

namespace kvr {

void KVRCharacter::HandleParentOf(clsItem& item) {
  const std::string list = item.TagItem("parentof");
  if (list.empty()) return;
  TraceScope trace("KVRCharacter:HandleParentOf");
  for (std::string_view text : templateEntries::Split(list)) {
    const templateEntries::TraitReference wanted = templateEntries::ReadReference(text);
    clsItem* child = templateEntries::FindOn(*this, wanted);
    if (!child) {
      env_.log.LogLine("Trait " + item.FullName() + " wanted trait " + wanted.name +
                       " as a child, but it wasn't found.");
    } else if (DisallowParent(item.KeyText(), child->KeyText())) {
      env_.log.LogLine("Parent '" + item.FullNameTL() + "' was disallowed.");
    } else {
      if (const clsItem* former = ItemByKey(NumberOfKeyText(child->ParentKey()))) {
        env_.log.LogLine("Trait " + item.FullName() + " wanted trait " + child->FullName() +
                         " as a child, so it was taken from " + former->FullName() + ".");
      }
      LogFailure(env_.log, [&] { MoveToParent(*child, item); });
    }
  }
}

void KVRCharacter::HandleChildOf(clsItem& item) {
  const std::string text = item.TagItem("childof");
  if (text.empty()) return;
  TraceScope trace("KVRCharacter:HandleChildOf");
  const templateEntries::TraitReference wanted = templateEntries::ReadReference(text);
  clsItem* parent = templateEntries::FindOn(*this, wanted);
  if (!parent) {
    env_.log.LogLine("Trait " + item.FullName() + " wanted to be a child of " + wanted.name +
                     ", but it wasn't found.");
  } else if (DisallowParent(parent->KeyText(), item.KeyText())) {
    env_.log.LogLine("Parent '" + parent->FullNameTL() + "' was disallowed.");
  } else {
    MoveToParent(item, *parent);
  }
}

}  // namespace kvr
