#include "tests/support/picture_file.h"

#include <objbase.h>
#include <wincodec.h>

#include "platform/handles.h"

namespace test {

namespace {

using platform::ComPointer;

ComPointer<IWICImagingFactory> Factory() {
    ComPointer<IWICImagingFactory> factory;
    CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER, IID_IWICImagingFactory,
                     reinterpret_cast<void**>(factory.Receive()));
    return factory;
}

}  // namespace

bool WritePng(const Picture& picture, const std::wstring& path) {
    const ComPointer<IWICImagingFactory> factory = Factory();
    ComPointer<IWICStream> stream;
    ComPointer<IWICBitmapEncoder> encoder;
    ComPointer<IWICBitmapFrameEncode> frame;
    if (!factory || FAILED(factory->CreateStream(stream.Receive())) ||
        FAILED(stream->InitializeFromFilename(path.c_str(), GENERIC_WRITE)) ||
        FAILED(factory->CreateEncoder(GUID_ContainerFormatPng, nullptr, encoder.Receive())) ||
        FAILED(encoder->Initialize(stream.Get(), WICBitmapEncoderNoCache)) ||
        FAILED(encoder->CreateNewFrame(frame.Receive(), nullptr)) ||
        FAILED(frame->Initialize(nullptr))) {
        return false;
    }
    const auto width = static_cast<UINT>(picture.Width());
    const auto height = static_cast<UINT>(picture.Height());
    std::vector<BYTE> bytes;
    bytes.reserve(static_cast<size_t>(width) * height * 3);
    for (int y = 0; y < picture.Height(); ++y) {
        for (int x = 0; x < picture.Width(); ++x) {
            const COLORREF color = picture.At(x, y);
            bytes.insert(bytes.end(), {GetBValue(color), GetGValue(color), GetRValue(color)});
        }
    }
    WICPixelFormatGUID format = GUID_WICPixelFormat24bppBGR;
    return SUCCEEDED(frame->SetSize(width, height)) && SUCCEEDED(frame->SetPixelFormat(&format)) &&
           SUCCEEDED(frame->WritePixels(height, width * 3, static_cast<UINT>(bytes.size()),
                                        bytes.data())) &&
           SUCCEEDED(frame->Commit()) && SUCCEEDED(encoder->Commit());
}

std::optional<Picture> ReadPng(const std::wstring& path) {
    const ComPointer<IWICImagingFactory> factory = Factory();
    ComPointer<IWICBitmapDecoder> decoder;
    ComPointer<IWICBitmapFrameDecode> frame;
    ComPointer<IWICFormatConverter> converter;
    UINT width = 0;
    UINT height = 0;
    if (!factory ||
        FAILED(factory->CreateDecoderFromFilename(path.c_str(), nullptr, GENERIC_READ,
                                                  WICDecodeMetadataCacheOnDemand,
                                                  decoder.Receive())) ||
        FAILED(decoder->GetFrame(0, frame.Receive())) ||
        FAILED(factory->CreateFormatConverter(converter.Receive())) ||
        FAILED(converter->Initialize(frame.Get(), GUID_WICPixelFormat32bppBGRA,
                                     WICBitmapDitherTypeNone, nullptr, 0.0,
                                     WICBitmapPaletteTypeCustom)) ||
        FAILED(converter->GetSize(&width, &height))) {
        return std::nullopt;
    }
    std::vector<BYTE> bytes(static_cast<size_t>(width) * height * 4);
    if (FAILED(converter->CopyPixels(nullptr, width * 4, static_cast<UINT>(bytes.size()),
                                     bytes.data()))) {
        return std::nullopt;
    }
    std::vector<COLORREF> pixels;
    pixels.reserve(static_cast<size_t>(width) * height);
    for (size_t index = 0; index < bytes.size(); index += 4) {
        pixels.push_back(RGB(bytes[index + 2], bytes[index + 1], bytes[index]));
    }
    return Picture(static_cast<int>(width), static_cast<int>(height), std::move(pixels));
}

}  // namespace test
