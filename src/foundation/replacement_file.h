#pragma once

#include <string>

#include "foundation/byte_stream.h"
#include "platform/replacement.h"

namespace sorvel {

// Why a file couldn't be written.
enum class WriteProblem { kNone, kDiskFull, kReadOnly, kNoFolder, kInUse, kTooLarge, kOther };

// What a value of errno says; kOther for one that says nothing to a user.
WriteProblem WriteProblemOf(int error);

// Writes the contents of one file whole or not at all. They go to a file beside the target, which takes the target's
// name in one step when Commit() finds that every byte reached the disk. Until then, and after any failure, the target
// is what it was; a program that is killed leaves at most a file that the next save in that folder removes.
//
// Where the folder takes no new file but the target can be written, and where the target is a pipe or a device, the
// contents are written over it in place. For a plain file a full copy then lies in the user's data folder until that
// is done; a program that was killed in between is made up for by FinishInterruptedWrites().
class ReplacementFile {
 public:
  enum class Form { kBinary, kText };

  ReplacementFile() = default;
  ReplacementFile(const ReplacementFile&) = delete;
  ReplacementFile& operator=(const ReplacementFile&) = delete;
  // Leaves the target as it was unless Commit() succeeded.
  ~ReplacementFile() { Discard(); }

  // Begins. The path is Shift JIS, or UTF-8 with OpenUtf8(). False, with problem() and errorNumber() telling why.
  bool Open(const char* path, Form form = Form::kBinary);
  bool OpenUtf8(const std::string& path, Form form = Form::kBinary);

  // Where the contents go, from Open() to Commit(). Can seek and read.
  FileStream stream{nullptr};

  // Puts the contents in place. False, with problem() and errorNumber() telling why, if any write failed since Open().
  bool Commit();
  void Discard();

  // The path of the target as UTF-8, as it was given.
  const std::string& Path() const { return requested; }
  // Whether the target keeps its place on the disk and only its contents are exchanged.
  bool IsInPlace() const { return !inPlace.empty(); }
  // Whether a write in place failed halfway. The next start of a program writes the rest.
  bool IsTouched() const { return isTouched; }

  // Why the file couldn't be written; kNone while nothing failed.
  WriteProblem problem() const { return reason; }
  // The same for a caller that gave up for a reason of its own, which is kOther.
  WriteProblem WhyNot() const { return reason != WriteProblem::kNone ? reason : WriteProblem::kOther; }
  // The value of errno that goes with it, 0 if it got lost.
  int errorNumber() const { return error; }

 private:
  bool Fail(int number);
  bool OpenCopy(const std::string& path);
  bool CommitInPlace();
  bool CommitToDevice();

  platform::PartialFile partial;
  std::string requested;   // the path as it was given
  std::string inPlace;     // the target when it is written in place, else empty
  FILE* device = nullptr;  // the target if it is no plain file
  bool isTouched = false;
  bool isText = false;
  WriteProblem reason = WriteProblem::kNone;
  int error = 0;
};

// Completes writes in place whose program was killed while they went on. To be called at the start of a program.
void FinishInterruptedWrites();

}  // namespace sorvel
