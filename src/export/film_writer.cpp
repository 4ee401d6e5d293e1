#include "export/film_writer.h"

namespace sorvel {

bool FilmWriter::Fail(const std::string& reason) {
  if (failureKind == WriteProblem::kNone) {
    failureKind = WriteProblem::kOther;
    failureText = reason;
  }
  return false;
}

bool FilmWriter::FailWith(int number) {
  if (failureKind == WriteProblem::kNone) {
    failureKind = number != 0 ? WriteProblemOf(number) : WriteProblem::kOther;
    failureNumber = number;
  }
  return false;
}

bool FilmWriter::FailOf(const ReplacementFile& file) {
  return FailWith(file.stream.failure != 0 ? file.stream.failure : file.errorNumber());
}

}  // namespace sorvel
