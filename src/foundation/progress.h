#pragma once

#include <cstdint>
#include <functional>

namespace sorvel {

// Told how far long work has come: so many of all parts are done. It gives false to stop the work, which then fails.
// An empty one is for nobody.
using ProgressFunction = std::function<bool(int32_t done, int32_t total)>;

}  // namespace sorvel
