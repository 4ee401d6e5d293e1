
#include "animation/stream_encoder.h"
#include "cutwindow/cut_window.h"
#include "foundation/paths.h"
#include "platform/files.h"

namespace sorvel {

bool CutWindow::CompileFrames(ByteStream* stream, int32_t first, int32_t last) {
  NibbleBitmap* bitmap = &host->animationWindow.bitmap;
  const int32_t scale = OutputScale(Antialias());
  if (CanvasProblem(*this) != nullptr || bitmap->Create(width / scale, height / scale) == 0) return false;
  AnimationEncoder encoder(stream, bitmap, 1);
  return encoder.EncodeCut(this, &view, first, last) != 0;
}

// The player works from memory: its timer must not touch the disk.
void CutWindow::PlayFile(ByteStream* file) {
  Buffer<uint8_t> bytes;
  int32_t size = 0;
  if (ReadWholeStream(*file, &bytes, &size)) host->PlayBuffer(bytes.Release(), size);
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
    CompileFrames(&file, 0, frames.Count() - 1);
    // The view holds output pictures now.
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
  CompileFrames(&file, currentFrame, currentFrame);
  PlayFile(&file);
  file.Close();
}

}  // namespace sorvel
