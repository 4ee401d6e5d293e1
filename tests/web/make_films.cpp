// Writes films that no artist would make: make_films FOLDER COUNT writes COUNT lists of three random cuts each, as
// film-0.flm and so on.
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

#include "reference/reference.h"
#include "support/random_cut.h"

namespace {

void WriteFile(const std::string& path, const reference::Bytes& bytes) {
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fprintf(stderr, "usage: make_films FOLDER COUNT\n");
    return 2;
  }
  const std::string folder = std::string(argv[1]) + "/";
  for (int film = 0; film < std::atoi(argv[2]); ++film) {
    sorvel::testing_support::RandomCuts random(static_cast<uint32_t>(film));
    std::string list = "Film " + std::to_string(film) + "\nNobody\n48, 40\n";
    for (int cut = 0; cut < 3; ++cut) {
      const std::string name = "cut-" + std::to_string(film) + "-" + std::to_string(cut) + ".cut";
      WriteFile(folder + name, reference::WriteCut(random.Chance(50) ? random.Make() : random.MakeScene()));
      list += name + "\n";
    }
    std::ofstream(folder + "film-" + std::to_string(film) + ".flm") << list;
  }
  return 0;
}
