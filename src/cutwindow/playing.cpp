#include <utility>

#include "animation/stream_encoder.h"
#include "cutwindow/cut_window.h"
#include "foundation/paths.h"
#include "platform/files.h"

namespace sorvel {

// The player gets the stream in memory, so that its timer never waits for the disk.
void CutWindow::PlayFile(ByteStream* file) {
  Buffer<uint8_t> bytes;
  int32_t size = 0;
  if (ReadWholeStream(*file, &bytes, &size)) host->PlayBuffer(std::move(bytes), size);
}

bool CutWindow::PlayCut() {
  host->CommitPanels(this);
  FILE* opened = nullptr;
  bool isOldFile = false;
  char cache[kPathCapacity] = "";
  if (path[0] == '\0') {
    opened = platform::OpenTemporaryFile();
    stateFlags |= kImagesStale | kTimingStale;
  } else if (ChangeExtension(cache, path, "ca")) {
    opened = platform::OpenStdioFile(cache, "rb+");
    isOldFile = opened != nullptr;
    if (!isOldFile) opened = platform::OpenStdioFile(cache, "wb+");
  }
  if (opened == nullptr) return false;
  host->StopAnimation();
  FileStream file(opened);
  if (!PatchCompiledStream(&file)) {
    if (isOldFile) {
      file.Close();
      file.file = platform::OpenStdioFile(cache, "wb+");
      if (!file.IsOpen()) return false;
    }
    // A cut that can't be compiled leaves the file empty, and nothing plays.
    CompileFrames(this, 0, frames.Count() - 1, &file, &host->animationWindow.bitmap, &view);
    // The compilation used the view as scratch.
    RepaintArea(0, 0, width, height, false);
  }
  PlayFile(&file);
  file.Close();
  stateFlags &= ~static_cast<uint32_t>(kImagesStale | kTimingStale);
  return true;
}

void CutWindow::PreviewFrame() {
  host->CommitPanels(this);
  FileStream file(platform::OpenTemporaryFile());
  if (!file.IsOpen()) return;
  host->StopAnimation();
  CompileFrames(this, currentFrame, currentFrame, &file, &host->animationWindow.bitmap, &view);
  PlayFile(&file);
  file.Close();
}

}  // namespace sorvel
