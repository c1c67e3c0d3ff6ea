// The stack of mouse pointers: long operations may hold one another.
#include "core/FrontEndEvents.h"

namespace kvr {

void FrontEndEvents::CursorPush(int shape) {
  formerPointers_.push_back(pointer_);
  pointer_ = shape;
  if (shape == kHourglass) busy_ = true;
  ShowPointer(pointer_);
}

void FrontEndEvents::CursorPop() {
  if (formerPointers_.empty()) return;
  pointer_ = formerPointers_.back();
  formerPointers_.pop_back();
  if (pointer_ != kHourglass) busy_ = false;
  ShowPointer(pointer_);
}

}  // namespace kvr
