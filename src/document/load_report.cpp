#include "document/load_report.h"

#include <cstdio>

namespace sorvel {

void LoadReport::Note(const char* format, int64_t number) {
  if (IsDamaged()) return;
  std::snprintf(problem, sizeof(problem), format, static_cast<long long>(number));
}

void NoteProblem(LoadReport* report, const char* format, int64_t number) {
  if (report != nullptr) report->Note(format, number);
}

}  // namespace sorvel
