// Lets the user pick traits from a template's list: the tags `select1`, `select2` and so on.
#include "character/FormerState.h"
#include "character/ItemSelection.h"
#include "character/modDirectives.h"

namespace kvr {

namespace {

KVRCharacter::SelectResult Canceled() {
  return {{}, {}, true};
}

}  // namespace

KVRCharacter::SelectResult KVRCharacter::HandleSelect(clsItem& item, int index, int count) {
  TraceScope trace("KVRCharacter:HandleSelect");
  const std::string tag = "select" + std::to_string(index);
  std::string text = item.TagItem(tag);
  if (text.empty()) return {};
  FormerState::MakeLinks(*this);
  TrickleRecalcItems();
  env_.log.LogLine("Text for " + tag + " = " + text);
  if (modDirectives::HandleSelectXDirectives(text, *this, {{"%AddedItemsList%", ""}}, nullptr,
                                             {item.FullName(), tag})) {
    return Canceled();
  }
  const SelectText wanted(text);
  ItemSelection selection(*this, item, wanted);
  if (!selection.CanBeMet()) {
    env_.log.LogRed("'" + item.FullName() + "': " + tag + " offers less than it wants.");
    return Canceled();
  }
  const SelectItemsRequest request = selection.Request(index, count);
  if (request.Items.empty()) return {};
  const bool canceled = env_.prompts.SelectItems(request).Canceled || !selection.OkayAllowed();
  if (canceled) {
    selection.Undo();
    return Canceled();
  }
  selection.Accept();
  return {selection.Added(), selection.Existing(), false};
}

}  // namespace kvr
