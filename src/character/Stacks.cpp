// The small stacks that live as long as the character and are empty between operations.
#include "character/KVRCharacter.h"
#include "core/Text.h"

namespace kvr {
namespace {

std::string Pop(std::vector<std::string>& stack) {
  if (stack.empty()) return "";
  std::string top = std::move(stack.back());
  stack.pop_back();
  return top;
}

}  // namespace

std::string KVRCharacter::PopDeleteItem() {
  return Pop(deleteStack_);
}
std::string KVRCharacter::PopAddedItem() {
  return Pop(addedStack_);
}
std::string KVRCharacter::PopResponse() {
  return Pop(responses_);
}

void KVRCharacter::ChangedItemAdd(std::string_view text, int flag) {
  changedItems_.push_back(LCase(text) + std::to_string(flag));
}

std::string KVRCharacter::ChangedItemGet() const {
  return changedItems_.empty() ? "" : changedItems_.back();
}

void KVRCharacter::ChangedItemRemove() {
  if (changedItems_.empty()) {
    env_.log.LogLine("can't remove changed item, count is zero");
    return;
  }
  changedItems_.pop_back();
}

}  // namespace kvr
