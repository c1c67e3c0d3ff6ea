// How traits hang below each other.
#pragma once

#include <cstddef>

namespace kvr {

// Levels of a family, the topmost parent being the first: none is made deeper, and a file that brings a
// deeper one has its lower traits stand alone.
inline constexpr std::size_t kDeepestFamily = 100;

}  // namespace kvr
