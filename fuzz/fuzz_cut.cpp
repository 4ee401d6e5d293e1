// Cut files: loading, and for small canvases everything that a loaded cut is used for. What was loaded saves, and what
// was saved loads without a complaint and saves the same.

#include "animation/stream_encoder.h"
#include "animation/stream_inspector.h"
#include "document/cut.h"
#include "fuzz/fuzz_input.h"
#include "imaging/indexed_image.h"

using namespace sorvel;

namespace {

constexpr int32_t kLargestSide = 200;

std::vector<uint8_t> Contents(ChunkStream* stream) {
  std::vector<uint8_t> bytes;
  stream->Seek(0, kFromStart);
  for (int32_t byte = stream->GetC(); byte >= 0; byte = stream->GetC()) bytes.push_back(static_cast<uint8_t>(byte));
  return bytes;
}

std::vector<uint8_t> Saved(Cut* cut) {
  ChunkStream stream;
  fuzz::Require(cut->Save(&stream));
  return Contents(&stream);
}

void Use(Cut* cut) {
  const int32_t scale = OutputScale(cut->Antialias());
  if (cut->width > kLargestSide || cut->height > kLargestSide || cut->frames.Count() > 64) return;
  if (cut->frameWidth > kLargestSide || cut->frameHeight > kLargestSide) return;
  NibbleBitmap bitmap;
  IndexedImage image;
  if (cut->width < scale || cut->height < scale || cut->frames.Count() == 0) return;
  fuzz::Require(image.Resize(cut->width, cut->height, 0));
  for (int32_t i = 0; i < cut->frames.Count(); ++i) {
    const uint32_t flags = static_cast<uint32_t>(i * 37) & 0x3FF;
    cut->frames.At(i)->ComposeFrame(&image, 0, 0, cut->width, cut->height, &flags, nullptr);
  }
  ChunkStream picture;
  cut->ExportFrameBitmap(&picture, &bitmap, &image);
  ChunkStream output;
  fuzz::Require(CompileFrames(cut, 0, cut->frames.Count() - 1, &output, &bitmap, &image));
  std::vector<uint8_t> bytes = Contents(&output);
  fuzz::InputStream stream(bytes.data(), bytes.size());
  StreamInfo info;
  LoadReport report;
  fuzz::Require(InspectStream(stream.Get(), &info, &report));
  // Everything but sizes that an empty frame rectangle brings is as a compiled stream has to be.
  if (cut->frameWidth >= scale && cut->frameHeight >= scale) fuzz::Require(!report.IsDamaged());
  // A new cell takes the memory that its layer's size asks for, and nothing more is tried with huge ones.
  for (int32_t i = 0; i < cut->layers.Count(); ++i) {
    if (cut->layers.At(i)->width > 1000 || cut->layers.At(i)->height > 1000) return;
  }
  cut->BrightnessRamp(0);
  cut->LayerPositionRamp(0);
  cut->FramePositionRamp(0);
  cut->SaveUndo();
  cut->AddCurrentCell(0);
  cut->Undo();
  cut->DeleteCurrentCell();
  cut->PurgeUnusedLayers();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  fuzz::InputStream input(data, size);
  Cut cut(0, 0, 24, "", 0);
  LoadReport report;
  if (!cut.Load(input.Get(), nullptr, &report)) return 0;
  std::vector<uint8_t> first = Saved(&cut);
  fuzz::InputStream again(first.data(), first.size());
  Cut second(0, 0, 24, "", 0);
  LoadReport secondReport;
  fuzz::Require(second.Load(again.Get(), nullptr, &secondReport));
  if (!report.IsDamaged()) {
    fuzz::Require(!secondReport.IsDamaged());
    std::vector<uint8_t> saved = Saved(&second);
    fuzz::InputStream thirdInput(saved.data(), saved.size());
    Cut third(0, 0, 24, "", 0);
    fuzz::Require(third.Load(thirdInput.Get(), nullptr, nullptr));
    fuzz::Require(Saved(&third) == saved);
  }
  Use(&cut);
  return 0;
}
