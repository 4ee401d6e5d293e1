#include <utility>

#include "animation/compiled_cache.h"
#include "animation/stream_encoder.h"
#include "cutwindow/cut_window.h"
#include "foundation/paths.h"
#include "foundation/replacement_file.h"
#include "platform/files.h"

namespace sorvel {

namespace {

// Of a stream that is made in memory.
constexpr int32_t kMemoryBlock = 1 << 16;

// The player gets the stream in memory, so that its timer never waits for the disk.
struct Compiled {
  // False if there is no memory for the stream.
  bool Read(ByteStream* from) { return ReadWholeStream(*from, &bytes, &size); }

  Buffer<uint8_t> bytes;
  int32_t size = 0;
};

// Takes the stream from the cache file if it still is what the cut looks like. Timing that has changed is patched.
bool ReadCache(Cut* cut, const char* cache, Compiled* compiled) {
  if (cut->Has(kImagesStale)) return false;
  FileStream file(OpenCache(cache));
  const bool isRead = file.IsOpen() && compiled->Read(&file);
  file.Close();
  if (!isRead || !cut->Has(kTimingStale)) return isRead;
  BufferStream stream;
  stream.buffer = compiled->bytes.Data();
  stream.capacity = stream.size = compiled->size;
  return cut->PatchCompiledStream(&stream) && KeepCache(&stream, cache);
}

}  // namespace

bool CutWindow::PlayCut() {
  host->CommitPanels(this);
  char cache[kPathCapacity] = "";
  const bool hasCache = path[0] != '\0';
  if (hasCache && !ChangeExtension(cache, path, "ca")) return false;
  host->StopAnimation();
  constexpr uint32_t marks = kImagesStale | kTimingStale;
  const uint32_t stale = stateFlags & marks;
  Compiled compiled;
  bool isReady = hasCache && ReadCache(this, cache, &compiled);
  bool isKept = isReady || !hasCache;
  if (!isReady) {
    ReplacementFile replacement;
    FileStream temporary(hasCache ? nullptr : platform::OpenTemporaryFile());
    if (hasCache) replacement.Open(cache);
    FileStream& file = hasCache ? replacement.stream : temporary;
    // A cut that can't be compiled leaves the stream empty, and nothing plays.
    const auto compile = [&](ByteStream* stream) {
      CompileFrames(this, 0, frames.Count() - 1, stream, &host->animationWindow.bitmap, &view);
      isReady = compiled.Read(stream);
    };
    if (file.IsOpen()) compile(&file);
    if (file.failure != 0 || !file.IsOpen()) {
      // What can't be written plays from memory.
      ChunkStream memory(kMemoryBlock);
      compile(&memory);
    }
    if (hasCache) isKept = replacement.Commit();
    temporary.Close();
    // The view holds output pictures now.
    RepaintArea(0, 0, width, height, false);
  }
  if (isReady) host->PlayBuffer(std::move(compiled.bytes), compiled.size);
  // Without a cache file of this state the next play has to compile again.
  stateFlags = (stateFlags & ~marks) | (isKept ? 0 : stale);
  return true;
}

void CutWindow::PreviewFrame() {
  host->CommitPanels(this);
  host->StopAnimation();
  ChunkStream stream(kMemoryBlock);
  CompileFrames(this, currentFrame, currentFrame, &stream, &host->animationWindow.bitmap, &view);
  Compiled compiled;
  if (compiled.Read(&stream)) host->PlayBuffer(std::move(compiled.bytes), compiled.size);
}

}  // namespace sorvel
