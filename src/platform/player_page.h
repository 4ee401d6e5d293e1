#pragma once

#include <string>

namespace sorvel::platform {

// The page that plays a film in a browser, without the film. Empty if the program was built without it.
std::string PlayerPage();

}  // namespace sorvel::platform
