#include "platform/pictures.h"

#include <string>

#include "platform/win32/win32.h"
// Needs the types of the header above.
#include <wincodec.h>

namespace sorvel::platform {

namespace {

// An object of the window system's, released at the end.
template <typename T>
class Held {
 public:
  Held() = default;
  Held(const Held&) = delete;
  Held& operator=(const Held&) = delete;
  ~Held() {
    if (object != nullptr) object->Release();
  }
  T** Place() { return &object; }
  T* operator->() const { return object; }
  T* Get() const { return object; }

 private:
  T* object = nullptr;
};

bool ReadAll(IStream* stream, std::vector<uint8_t>* file) {
  STATSTG facts = {};
  if (FAILED(stream->Stat(&facts, STATFLAG_NONAME)) || facts.cbSize.HighPart != 0) return false;
  file->resize(facts.cbSize.LowPart);
  ULONG count = 0;
  return SUCCEEDED(stream->Seek({}, STREAM_SEEK_SET, nullptr)) &&
         SUCCEEDED(stream->Read(file->data(), facts.cbSize.LowPart, &count)) && count == facts.cbSize.LowPart;
}

// An option of a codec, of one byte.
bool SetOption(IPropertyBag2* options, const wchar_t* name, uint8_t value) {
  std::wstring text = name;
  PROPBAG2 option = {};
  option.pstrName = text.data();
  VARIANT setting = {};
  setting.vt = VT_UI1;
  setting.bVal = value;
  return SUCCEEDED(options->Write(1, &option, &setting));
}

bool SetGreys(IWICImagingFactory* factory, IWICBitmapFrameEncode* frame) {
  WICColor colors[256];
  for (uint32_t i = 0; i < 256; ++i) colors[i] = 0xFF000000U | i * 0x010101U;
  Held<IWICPalette> palette;
  return SUCCEEDED(factory->CreatePalette(palette.Place())) && SUCCEEDED(palette->InitializeCustom(colors, 256)) &&
         SUCCEEDED(frame->SetPalette(palette.Get()));
}

// `format` is the one that the file must have.
bool Encode(REFGUID container, REFWICPixelFormatGUID format, const uint8_t* pixels, int32_t width, int32_t height,
            int32_t pitch, std::vector<uint8_t>* file) {
  const bool isGif = container == GUID_ContainerFormatGif;
  Held<IWICImagingFactory> factory;
  Held<IStream> stream;
  Held<IWICBitmapEncoder> encoder;
  Held<IWICBitmapFrameEncode> frame;
  Held<IPropertyBag2> options;
  WICPixelFormatGUID taken = format;
  const UINT bytes = static_cast<UINT>(pitch) * (static_cast<UINT>(height) - 1) + static_cast<UINT>(width);
  return SUCCEEDED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                                    reinterpret_cast<void**>(factory.Place()))) &&
         SUCCEEDED(CreateStreamOnHGlobal(nullptr, TRUE, stream.Place())) &&
         SUCCEEDED(factory->CreateEncoder(container, nullptr, encoder.Place())) &&
         SUCCEEDED(encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache)) &&
         SUCCEEDED(encoder->CreateNewFrame(frame.Place(), options.Place())) &&
         // Drawings have large even areas, which no filter makes shorter.
         (isGif || SetOption(options.Get(), L"FilterOption", WICPngFilterNone)) &&
         SUCCEEDED(frame->Initialize(options.Get())) &&
         SUCCEEDED(frame->SetSize(static_cast<UINT>(width), static_cast<UINT>(height))) &&
         SUCCEEDED(frame->SetPixelFormat(&taken)) && taken == format &&
         (!isGif || SetGreys(factory.Get(), frame.Get())) &&
         SUCCEEDED(frame->WritePixels(static_cast<UINT>(height), static_cast<UINT>(pitch), bytes,
                                      const_cast<BYTE*>(pixels))) &&
         SUCCEEDED(frame->Commit()) && SUCCEEDED(encoder->Commit()) && ReadAll(stream.Get(), file);
}

bool EncodeAlone(REFGUID container, REFWICPixelFormatGUID format, const uint8_t* pixels, int32_t width, int32_t height,
                 int32_t pitch, std::vector<uint8_t>* file) {
  file->clear();
  const ComUse use;
  if (width > 0 && height > 0 && Encode(container, format, pixels, width, height, pitch, file)) return true;
  file->clear();
  return false;
}

}  // namespace

bool EncodePng(const uint8_t* pixels, int32_t width, int32_t height, int32_t pitch, std::vector<uint8_t>* file) {
  return EncodeAlone(GUID_ContainerFormatPng, GUID_WICPixelFormat8bppGray, pixels, width, height, pitch, file);
}

bool CanEncodeGif() {
  return true;
}

bool EncodeGif(const uint8_t* pixels, int32_t width, int32_t height, int32_t pitch, std::vector<uint8_t>* file) {
  return EncodeAlone(GUID_ContainerFormatGif, GUID_WICPixelFormat8bppIndexed, pixels, width, height, pitch, file);
}

}  // namespace sorvel::platform
