// How heavily a load weighs on the character.
#include "character/KVRCharacter.h"

namespace kvr {

std::int16_t KVRCharacter::GetEncLevel(Currency /*weight*/) {
  return 0;
}

}  // namespace kvr
