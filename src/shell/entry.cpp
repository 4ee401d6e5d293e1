#include "shell/entry.h"

#include <cstdlib>
#include <cstring>

#include "animation/animation_window.h"
#include "animation/stream_encoder.h"
#include "document/cut.h"
#include "foundation/paths.h"
#include "imaging/color_table.h"
#include "imaging/indexed_image.h"
#include "platform/files.h"
#include "platform/messages.h"

namespace sorvel {

namespace {

// The window of the player. It has the size of the picture and ends the program when it is closed.
class PlayerWindow final : public platform::WindowObject {
 public:
  PlayerWindow() { player.window = platform::MakeWindow("Sorvel Developer", this); }
  PlayerWindow(const PlayerWindow&) = delete;
  PlayerWindow& operator=(const PlayerWindow&) = delete;
  ~PlayerWindow() { std::free(stream.buffer); }

  bool IsMade() const { return player.window != nullptr; }
  bool OpenByExtension(const char* path);
  void Show() { platform::ShowInactive(player.window); }

  intptr_t WindowProc(platform::WindowHandle window, uint32_t message, uintptr_t first, intptr_t second) override;

 private:
  bool PlayCutFile(FileStream* file);
  bool PlayFile(FileStream* file);

  AnimationWindow player;
  BufferStream stream;
};

intptr_t PlayerWindow::WindowProc(platform::WindowHandle window, uint32_t message, uintptr_t first, intptr_t second) {
  switch (message) {
    case platform::kMessagePaint: {
      platform::DeviceContext* context = platform::BeginPainting(window);
      player.Paint(context);
      platform::EndPainting(window, context);
      return 0;
    }
    case platform::kMessageClose:
      player.StopTimer();
      platform::DestroyWindow(window);
      return 0;
    case platform::kMessageDestroy:
      platform::QuitLoop(0);
      return 0;
    default:
      return platform::DefaultHandling(window, message, first, second);
  }
}

bool PlayerWindow::PlayFile(FileStream* file) {
  return ReadWholeStream(*file, &stream) && player.Play(&stream) != 0;
}

bool PlayerWindow::PlayCutFile(FileStream* file) {
  Cut cut(0, 0, 24, "", 0);
  LoadReport report;
  if (!cut.Load(file, nullptr, &report) || report.IsDamaged() || CanvasProblem(cut) != nullptr) return false;
  FileStream compiled(platform::OpenTemporaryFile());
  if (!compiled.IsOpen()) return false;
  const int32_t scale = OutputScale(cut.Antialias());
  IndexedImage composition;
  AnimationEncoder encoder(&compiled, &player.bitmap, 1);
  const bool played = player.bitmap.Create(cut.width / scale, cut.height / scale) != 0 &&
                      composition.Resize(cut.width, cut.height, 0) &&
                      encoder.EncodeCut(&cut, &composition, 0, cut.frames.Count() - 1) != 0 && PlayFile(&compiled);
  compiled.Close();
  return played;
}

bool PlayerWindow::OpenByExtension(const char* path) {
  char extension[kPathCapacity];
  if (!UpperExtensionOf(extension, path)) return false;
  const bool isCut = std::strcmp(extension, ".CUT") == 0;
  if (!isCut && std::strcmp(extension, ".CA") != 0 && std::strcmp(extension, ".SV") != 0) return false;
  FileStream file(platform::OpenStdioFile(path, "rb"));
  if (!file.IsOpen()) return false;
  const bool played = isCut ? PlayCutFile(&file) : PlayFile(&file);
  file.Close();
  return played;
}

}  // namespace

int EntryPoint(const char* commandLine) {
  LoadColors(nullptr);
  PlayerWindow window;
  if (!window.IsMade()) return 0;
  if (commandLine[0] != '\0') window.OpenByExtension(commandLine);
  window.Show();
  return platform::RunLoop();
}

}  // namespace sorvel
