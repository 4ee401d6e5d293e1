#include "platform/player_page.h"

#include <filesystem>
#include <fstream>
#include <sstream>

#include "platform/files.h"
#include "platform/text.h"

namespace sorvel::platform {

// The page lies beside the program.
std::string PlayerPage() {
  char program[4096];
  std::string path;
  if (!ProgramPath(program, sizeof(program)) || !ShiftJisToUtf8(program, &path)) return "";
  std::ifstream file(std::filesystem::path(path).parent_path() / "sorvel-player.html", std::ios::binary);
  std::stringstream text;
  text << file.rdbuf();
  return text.str();
}

}  // namespace sorvel::platform
