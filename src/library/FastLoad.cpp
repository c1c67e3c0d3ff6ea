// The cache of a loaded data set. None is kept yet: every start reads the data files.
#include "library/KVRSystem.h"

namespace kvr {

bool KVRSystem::LoadFastFileIfValid() {
  return false;
}

void KVRSystem::BuildFastFile() {}

std::string_view clsSystemItem::ReturnFastFileTagList() const {
  return {};
}

}  // namespace kvr
