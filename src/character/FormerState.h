// How a trait stood before a creation changed it, so that a cancelled creation leaves no trace.
#pragma once

#include <cstdint>

namespace kvr {

class FormerState {
 public:
  std::int32_t idKey = 0;
};

}  // namespace kvr
