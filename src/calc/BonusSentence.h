// The parts of one sentence of `gives`: "+1 to ST:DX upto 3 when in mist listas sure-footed".
#pragma once

#include <optional>
#include <string_view>

namespace kvr {

// Trimmed views into the sentence; what a part lacks is "". Quotes stay.
struct BonusSentence {
  std::string_view amount, target, upto, condition, listas;
};
// Nothing when the sentence has neither " to " nor a blank to divide it.
std::optional<BonusSentence> ReadBonusSentence(std::string_view text);

}  // namespace kvr
