#include "images.h"

#include <objbase.h>
#include <ocidl.h>
#include <propidl.h>
// Wine's library of identifiers lacks those of this header.
#include <initguid.h>
// Behind what makes its identifiers.
#include <wincodec.h>

namespace emulator {

namespace {

// Gives back what it holds.
template <class Interface>
class Owned {
 public:
    Owned() = default;
    ~Owned() {
        if (pointer_) {
            pointer_->Release();
        }
    }
    Owned(const Owned&) = delete;
    Owned& operator=(const Owned&) = delete;
    Interface* operator->() const { return pointer_; }
    Interface* Get() const { return pointer_; }
    Interface** Receive() { return &pointer_; }

 private:
    Interface* pointer_ = nullptr;
};

bool Convert(IWICImagingFactory* factory, IWICBitmapSource* from, REFWICPixelFormatGUID format,
             Owned<IWICFormatConverter>* to) {
    return SUCCEEDED(factory->CreateFormatConverter(to->Receive())) &&
           SUCCEEDED((*to)->Initialize(from, format, WICBitmapDitherTypeNone, nullptr, 0.0,
                                       WICBitmapPaletteTypeCustom));
}

}  // namespace

HBITMAP DecodePicture(void* bytes, DWORD size) {
    Owned<IWICImagingFactory> factory;
    Owned<IWICStream> stream;
    Owned<IWICBitmapDecoder> decoder;
    Owned<IWICBitmapFrameDecode> frame;
    Owned<IWICFormatConverter> whole;
    Owned<IWICFormatConverter> plain;
    UINT width = 0;
    UINT height = 0;
    // Wine has no way from a palette to 24 bits a pixel but over 32.
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                __uuidof(IWICImagingFactory),
                                reinterpret_cast<void**>(factory.Receive()))) ||
        FAILED(factory->CreateStream(stream.Receive())) ||
        FAILED(stream->InitializeFromMemory(static_cast<BYTE*>(bytes), size)) ||
        FAILED(factory->CreateDecoderFromStream(
            stream.Get(), nullptr, WICDecodeMetadataCacheOnDemand, decoder.Receive())) ||
        FAILED(decoder->GetFrame(0, frame.Receive())) ||
        !Convert(factory.Get(), frame.Get(), GUID_WICPixelFormat32bppBGRA, &whole) ||
        !Convert(factory.Get(), whole.Get(), GUID_WICPixelFormat24bppBGR, &plain) ||
        FAILED(plain->GetSize(&width, &height)) || width == 0 || height == 0) {
        return nullptr;
    }
    BITMAPINFO information = {};
    information.bmiHeader.biSize = sizeof information.bmiHeader;
    information.bmiHeader.biWidth = static_cast<LONG>(width);
    information.bmiHeader.biHeight = -static_cast<LONG>(height);
    information.bmiHeader.biPlanes = 1;
    information.bmiHeader.biBitCount = 24;
    void* pixels = nullptr;
    const HBITMAP bitmap =
        CreateDIBSection(nullptr, &information, DIB_RGB_COLORS, &pixels, nullptr, 0);
    const UINT stride = (width * 3 + 3) & ~3u;
    if (bitmap &&
        FAILED(plain->CopyPixels(nullptr, stride, stride * height, static_cast<BYTE*>(pixels)))) {
        DeleteObject(bitmap);
        return nullptr;
    }
    return bitmap;
}

}  // namespace emulator
