#include "platform/aygshell.h"

#include <objbase.h>
#include <wincodec.h>

#include "platform/desktop/screen.h"
#include "platform/handles.h"

namespace platform {

namespace {

ComPointer<IWICBitmapSource> Convert(IWICImagingFactory* factory,
                                     const ComPointer<IWICBitmapSource>& picture,
                                     const WICPixelFormatGUID& format) {
    ComPointer<IWICFormatConverter> converter;
    ComPointer<IWICBitmapSource> converted;
    if (!picture || FAILED(factory->CreateFormatConverter(converter.Receive())) ||
        FAILED(converter->Initialize(picture.Get(), format, WICBitmapDitherTypeNone, nullptr, 0.0,
                                     WICBitmapPaletteTypeCustom)) ||
        FAILED(converter->QueryInterface(IID_IWICBitmapSource,
                                         reinterpret_cast<void**>(converted.Receive())))) {
        return {};
    }
    return converted;
}

ComPointer<IWICBitmapSource> DecodePicture(void* bytes, DWORD size) {
    ComPointer<IWICImagingFactory> factory;
    ComPointer<IWICStream> stream;
    ComPointer<IWICBitmapDecoder> decoder;
    ComPointer<IWICBitmapFrameDecode> frame;
    ComPointer<IWICBitmapSource> picture;
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                IID_IWICImagingFactory,
                                reinterpret_cast<void**>(factory.Receive()))) ||
        FAILED(factory->CreateStream(stream.Receive())) ||
        FAILED(stream->InitializeFromMemory(static_cast<BYTE*>(bytes), size)) ||
        FAILED(factory->CreateDecoderFromStream(
            stream.Get(), nullptr, WICDecodeMetadataCacheOnDemand, decoder.Receive())) ||
        FAILED(decoder->GetFrame(0, frame.Receive())) ||
        FAILED(frame->QueryInterface(IID_IWICBitmapSource,
                                     reinterpret_cast<void**>(picture.Receive())))) {
        return {};
    }
    // Wine has no way from a palette to 24 bits a pixel but over 32.
    return Convert(factory.Get(), Convert(factory.Get(), picture, GUID_WICPixelFormat32bppBGRA),
                   GUID_WICPixelFormat24bppBGR);
}

}  // namespace

HWND FindMenuBar(HWND) {
    return nullptr;
}

HBITMAP LoadImageResource(HINSTANCE module, UINT id) {
    const HRSRC resource = FindResourceW(module, MAKEINTRESOURCEW(id), L"GIF");
    const HGLOBAL loaded = resource ? LoadResource(module, resource) : nullptr;
    void* bytes = loaded ? LockResource(loaded) : nullptr;
    if (!bytes) {
        return nullptr;
    }
    const ComPointer<IWICBitmapSource> picture =
        DecodePicture(bytes, SizeofResource(module, resource));
    UINT width = 0;
    UINT height = 0;
    if (!picture || FAILED(picture->GetSize(&width, &height)) || width == 0 || height == 0) {
        return nullptr;
    }
    BITMAPINFO info = {};
    info.bmiHeader.biSize = sizeof info.bmiHeader;
    info.bmiHeader.biWidth = static_cast<LONG>(width);
    info.bmiHeader.biHeight = -static_cast<LONG>(height);
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 24;
    void* pixels = nullptr;
    UniqueBitmap bitmap(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &pixels, nullptr, 0));
    const UINT stride = (width * 3 + 3) & ~3u;
    if (!bitmap ||
        FAILED(picture->CopyPixels(nullptr, stride, stride * height, static_cast<BYTE*>(pixels)))) {
        return nullptr;
    }
    return bitmap.Detach();
}

bool VisibleArea(HWND window, RECT* area) {
    RECT workArea;
    if (!desktop::WorkArea(window, &workArea)) {
        return false;
    }
    *area = desktop::WindowPlace(workArea, desktop::DotsPerInch());
    // On a large screen people put the window where they like it.
    if (!desktop::IsSmall(workArea) && IsWindowVisible(window)) {
        GetWindowRect(window, area);
    }
    return true;
}

void ShowInputPanel(bool) {}

void HideInputPanelButton(HWND) {}

bool MakeFullScreen(HWND dialog) {
    RECT place;
    const HWND owner = GetWindow(dialog, GW_OWNER);
    if (!(owner && GetWindowRect(owner, &place)) && !VisibleArea(dialog, &place)) {
        return false;
    }
    return SetWindowPos(dialog, HWND_TOP, place.left, place.top, place.right - place.left,
                        place.bottom - place.top, SWP_NOACTIVATE) != FALSE;
}

bool ShellShowsCaption() {
    return false;
}

void ClaimBackKey(HWND) {}

}  // namespace platform
