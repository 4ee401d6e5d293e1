#include "document/layer.h"

#include <cstring>
#include <new>

#include "imaging/packed_image.h"
#include "platform/bitmaps.h"

namespace sorvel {

const char* const kUntitledLayer = "UNTITLED";

namespace {

uint64_t lastId = 0;

}  // namespace

Layer::Layer(int32_t layerWidth, int32_t layerHeight, const char* layerName, CellImage* prototypeImage, uint32_t follow)
    : id(++lastId), width(layerWidth), height(layerHeight), prototype(prototypeImage), followFrame(follow) {
  SetName(layerName);
}

Layer::~Layer() {
  ReleaseElements(&cells, DestroyImage);
  delete[] name;
}

void Layer::SetName(const char* text) {
  char* copy = nullptr;
  if (text != nullptr) {
    const size_t size = std::strlen(text) + 1;
    copy = new char[size];
    std::memcpy(copy, text, size);
  }
  delete[] name;
  name = copy;
}

bool Layer::AddCell(int32_t position, int32_t fill, CellImage* image) {
  return PlaceCell(position, fill, image, true);
}

bool Layer::InsertCell(int32_t position, int32_t fill, CellImage* image) {
  return PlaceCell(position, fill, image, false);
}

bool Layer::PlaceCell(int32_t position, int32_t fill, CellImage* image, bool behind) {
  if (!cells.Seek(position) && cells.Count() != 0) return false;
  CellImage* made = nullptr;
  if (image == nullptr) {
    made = MakeCell();
    image = made;
  }
  if (image == nullptr || !image->Resize(width, height, 0)) {
    DestroyImage(made);
    return false;
  }
  // A new image is blank already. The caller's image loses its picture.
  if (fill != 0 || made == nullptr) image->Fill(fill);
  if (behind) {
    cells.InsertAfter(image);
  } else {
    cells.InsertBefore(image);
  }
  return true;
}

CellImage* Layer::AddEmptyCell() {
  CellImage* made = MakeCell();
  if (made == nullptr) return nullptr;
  made->Resize(0, 0, 0);
  cells.SeekLast();
  cells.InsertAfter(made);
  return made;
}

CellImage* Layer::MakeCell() const {
  return prototype != nullptr ? prototype->MakeBlank() : new PackedImage;
}

bool Layer::DeleteCell(int32_t index) {
  if (!cells.Seek(index)) return false;
  DestroyImage(cells.Current());
  cells.RemoveCurrent();
  return true;
}

bool Layer::Resize(int32_t newWidth, int32_t newHeight, int32_t fill) {
  // A cell takes at least one byte for two pixels.
  if (!platform::FitsMemory((int64_t{newWidth} + 1) / 2 + 3, newHeight)) return false;
  width = newWidth;
  height = newHeight;
  if (!cells.SeekFirst()) return true;
  do {
    cells.Current()->Resize(newWidth, newHeight, fill);
  } while (cells.SeekNext());
  return true;
}

void Layer::Clear() {
  Resize(0, 0, 0);
  SetName(nullptr);
  while (DeleteCell(0)) {
  }
}

}  // namespace sorvel
