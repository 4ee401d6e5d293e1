#include "console/commands.h"

int main(int argc, char** argv) {
  return sorvel::console::Main(argc, argv);
}
