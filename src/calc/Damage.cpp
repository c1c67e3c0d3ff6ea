// The character's base damage, and what it parries and blocks with.
#include "character/KVRCharacter.h"

namespace kvr {

void KVRCharacter::CalcBaseDamage() {}

void KVRCharacter::CalcParryBlock() {}

}  // namespace kvr
