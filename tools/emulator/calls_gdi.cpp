// Drawing.
#include <cstring>
#include <map>

#include "call.h"
#include "machine.h"
#include "reach.h"
#include "screen.h"
#include "stop.h"

namespace emulator {

namespace {

struct DeviceBitmap {
    int bmType;
    int bmWidth;
    int bmHeight;
    int bmWidthBytes;
    WORD bmPlanes;
    WORD bmBitsPixel;
    Address bmBits;
};
static_assert(sizeof(DeviceBitmap) == 24);

// The pixels of bitmap sections, which the program reaches by their address.
std::map<HGDIOBJ, Address>& Pixels() {
    static std::map<HGDIOBJ, Address> pixels;
    return pixels;
}

// SelectObject and its like take and give handles of drawing as bare pointers.
template <HGDIOBJ(WINAPI* Function)(HDC, HGDIOBJ)>
std::uint64_t WithObject(Call& call) {
    return Result(Function(call.Drawing<HDC>(0), call.Drawing(1)));
}

std::uint64_t DropObject(Call& call) {
    const HGDIOBJ object = call.Drawing(0);
    const auto section = Pixels().find(object);
    if (section != Pixels().end()) {
        TheMachine().memory.Remove(section->second);
        Pixels().erase(section);
    }
    return Result(DeleteObject(object));
}

std::uint64_t DescribeObject(Call& call) {
    const HGDIOBJ object = call.Drawing(0);
    const Address size = call.Word(1);
    switch (GetObjectType(object)) {
        case OBJ_BITMAP: {
            BITMAP bitmap = {};
            if (size != sizeof(DeviceBitmap)) {
                Stop("GetObjectW: %u bytes for a bitmap", size);
            }
            const int result = GetObjectW(object, sizeof bitmap, &bitmap);
            const auto section = Pixels().find(object);
            *call.Out<DeviceBitmap>(2) = {bitmap.bmType,
                                          bitmap.bmWidth,
                                          bitmap.bmHeight,
                                          bitmap.bmWidthBytes,
                                          bitmap.bmPlanes,
                                          bitmap.bmBitsPixel,
                                          section == Pixels().end() ? 0 : section->second};
            return result ? sizeof(DeviceBitmap) : 0;
        }
        case OBJ_FONT:
            return Result(GetObjectW(object, call.Signed(1), call.Bytes(2, size, Access::Write)));
        default:
            Stop("GetObjectW: objects of type %u are not served", GetObjectType(object));
    }
}

std::uint64_t MakeSection(Call& call) {
    if (call.Word(4) != 0) {
        Stop("CreateDIBSection: a file mapping is not served");
    }
    const auto* info =
        static_cast<const BITMAPINFO*>(call.Bytes(1, sizeof(BITMAPINFOHEADER), Access::Read));
    const BITMAPINFOHEADER& header = info->bmiHeader;
    if (header.biBitCount <= 8) {
        call.Bytes(1, sizeof header + (4u << header.biBitCount), Access::Read);
    }
    auto* shown = call.Out<Address>(3);
    void* pixels = nullptr;
    const HBITMAP bitmap =
        CreateDIBSection(call.Drawing<HDC>(0), info, call.Word(2), &pixels, nullptr, 0);
    if (!bitmap) {
        return 0;
    }
    const auto width = static_cast<Address>(header.biWidth);
    const auto height = static_cast<Address>(std::abs(header.biHeight));
    const Address stride = ((width * header.biBitCount + 31) / 32) * 4;
    const Address address = AddressOf(pixels);
    TheMachine().memory.Add({address, stride * height, true, false, "a bitmap section"});
    Pixels()[bitmap] = address;
    if (shown) {
        *shown = address;
    }
    return Result(bitmap);
}

// The readable font of a handheld's proportions that stands for its stock font.
HFONT SystemFont() {
    static HFONT font = [] {
        LOGFONTW description = {};
        const Device& device = TheMachine().device;
        description.lfHeight = -MulDiv(12, device.dotsPerInch, 96);
        description.lfWeight = FW_NORMAL;
        description.lfCharSet = DEFAULT_CHARSET;
        description.lfQuality = ANTIALIASED_QUALITY;
        description.lfPitchAndFamily = VARIABLE_PITCH | FF_SWISS;
        const Text face = u"DejaVu Sans";
        face.copy(description.lfFaceName, face.size());
        return CreateFontIndirectW(&description);
    }();
    return font;
}

std::uint64_t StockObject(Call& call) {
    return call.Word(0) == SYSTEM_FONT ? Result(SystemFont())
                                       : Result(GetStockObject(call.Signed(0)));
}

const WCHAR* CountedText(const Call& call, unsigned index, int length) {
    return length < 0 ? call.String(index)
                      : static_cast<const WCHAR*>(
                            call.Bytes(index, 2 * static_cast<Address>(length), Access::Read));
}

std::uint64_t DrawSomeText(Call& call) {
    if (call.Word(4) & DT_MODIFYSTRING) {
        Stop("DrawTextW: changing the text is not served");
    }
    const WCHAR* text = CountedText(call, 1, call.Signed(2));
    Reached("drawn", Narrow(text, call.Signed(2)));
    return Result(
        DrawTextW(call.Drawing<HDC>(0), text, call.Signed(2), call.Out<RECT>(3), call.Word(4)));
}

std::uint64_t PutText(Call& call) {
    const auto* gaps = static_cast<const INT*>(call.Bytes(7, 4 * call.Word(6), Access::Read));
    return Result(ExtTextOutW(call.Drawing<HDC>(0), call.Signed(1), call.Signed(2), call.Word(3),
                              call.In<RECT>(4), CountedText(call, 5, call.Signed(6)), call.Word(6),
                              gaps));
}

std::uint64_t MeasureText(Call& call) {
    auto* widths = static_cast<INT*>(call.Bytes(5, 4 * call.Word(2), Access::Write));
    return Result(GetTextExtentExPointW(call.Drawing<HDC>(0), CountedText(call, 1, call.Signed(2)),
                                        call.Signed(2), call.Signed(3), call.Out<INT>(4), widths,
                                        call.Out<SIZE>(6)));
}

std::uint64_t CopyPixels(Call& call) {
    return Result(BitBlt(call.Drawing<HDC>(0), call.Signed(1), call.Signed(2), call.Signed(3),
                         call.Signed(4), call.Drawing<HDC>(5), call.Signed(6), call.Signed(7),
                         call.Word(8)));
}

std::uint64_t CopyTransparently(Call& call) {
    return Result(GdiTransparentBlt(call.Drawing<HDC>(0), call.Signed(1), call.Signed(2),
                                    call.Signed(3), call.Signed(4), call.Drawing<HDC>(5),
                                    call.Signed(6), call.Signed(7), call.Signed(8), call.Signed(9),
                                    call.Word(10)));
}

std::uint64_t MakeBitmap(Call& call) {
    if (call.Word(4) != 0) {
        Stop("CreateBitmap: pixels are not served");
    }
    return Result(
        CreateBitmap(call.Signed(0), call.Signed(1), call.Word(2), call.Word(3), nullptr));
}

std::uint64_t DrawLines(Call& call) {
    const Address count = call.Word(2);
    return Result(
        Polyline(call.Drawing<HDC>(0),
                 static_cast<const POINT*>(call.Bytes(1, count * sizeof(POINT), Access::Read)),
                 call.Signed(2)));
}

std::uint64_t DrawFilled(Call& call) {
    const Address count = call.Word(2);
    return Result(
        Polygon(call.Drawing<HDC>(0),
                static_cast<const POINT*>(call.Bytes(1, count * sizeof(POINT), Access::Read)),
                call.Signed(2)));
}

std::uint64_t MonitorArea(Call& call) {
    auto* shown = call.Out<MONITORINFO>(1);
    const BOOL result = GetMonitorInfoW(call.HandleAt<HMONITOR>(0), shown);
    shown->rcMonitor = ScreenArea();
    shown->rcWork = WorkArea();
    return Result(result);
}

std::uint64_t SystemMetric(Call& call) {
    switch (call.Signed(0)) {
        case SM_CXSCREEN:
            return Result(ScreenArea().right);
        case SM_CYSCREEN:
            return Result(ScreenArea().bottom);
        default:
            return Result(GetSystemMetrics(call.Signed(0)));
    }
}

// The numbers of the system's colours carry a mark on a handheld.
int ColorNumber(const Call& call) {
    const Address number = call.Word(0);
    if (number - systemColorMark >= 29) {
        Stop("%s: %x is no color of the system", call.Name(), number);
    }
    return static_cast<int>(number - systemColorMark);
}

std::uint64_t SystemColor(Call& call) {
    return Result(GetSysColor(ColorNumber(call)));
}

std::uint64_t SystemColorBrush(Call& call) {
    return Result(GetSysColorBrush(ColorNumber(call)));
}

const Services services = {
    {"GetDC", Direct<GetDC>},
    {"GetWindowDC", Direct<GetWindowDC>},
    {"ReleaseDC", Direct<ReleaseDC>},
    {"CreateCompatibleDC", Direct<CreateCompatibleDC>},
    {"DeleteDC", Direct<DeleteDC>},
    {"SaveDC", Direct<SaveDC>},
    {"RestoreDC", Direct<RestoreDC>},
    {"GetDeviceCaps", Direct<GetDeviceCaps>},
    {"SelectObject", WithObject<SelectObject>},
    {"DeleteObject", DropObject},
    {"GetObjectW", DescribeObject},
    {"GetStockObject", StockObject},
    {"CreateBitmap", MakeBitmap},
    {"CreateCompatibleBitmap", Direct<CreateCompatibleBitmap>},
    {"CreateDIBSection", MakeSection},
    {"CreateFontIndirectW", Direct<CreateFontIndirectW>},
    {"CreatePen", Direct<CreatePen>},
    {"CreateSolidBrush", Direct<CreateSolidBrush>},
    {"CreateRectRgn", Direct<CreateRectRgn>},
    {"CreateRectRgnIndirect", Direct<CreateRectRgnIndirect>},
    {"CombineRgn", Direct<CombineRgn>},
    {"SelectClipRgn", Direct<SelectClipRgn>},
    {"IntersectClipRect", Direct<IntersectClipRect>},
    {"ExcludeClipRect", Direct<ExcludeClipRect>},
    {"GetClipBox", Direct<GetClipBox>},
    {"SetViewportOrgEx", Direct<SetViewportOrgEx>},
    {"SetBrushOrgEx", Direct<SetBrushOrgEx>},
    {"BitBlt", CopyPixels},
    {"StretchBlt", Direct<StretchBlt>},
    {"PatBlt", Direct<PatBlt>},
    {"TransparentImage", CopyTransparently},
    {"FillRect", Direct<FillRect>},
    {"InvertRect", Direct<InvertRect>},
    {"DrawFocusRect", Direct<DrawFocusRect>},
    {"DrawEdge", Direct<DrawEdge>},
    {"DrawFrameControl", Direct<DrawFrameControl>},
    {"Rectangle", Direct<Rectangle>},
    {"RoundRect", Direct<RoundRect>},
    {"Ellipse", Direct<Ellipse>},
    {"Polyline", DrawLines},
    {"Polygon", DrawFilled},
    {"MoveToEx", Direct<MoveToEx>},
    {"LineTo", Direct<LineTo>},
    {"GetPixel", Direct<GetPixel>},
    {"SetPixel", Direct<SetPixel>},
    {"DrawIconEx", Direct<DrawIconEx>},
    {"DestroyIcon", Direct<DestroyIcon>},
    {"DrawTextW", DrawSomeText},
    {"ExtTextOutW", PutText},
    {"GetTextExtentExPointW", MeasureText},
    {"GetTextMetricsW", Direct<GetTextMetricsW>},
    {"SetROP2", Direct<SetROP2>},
    {"SetBkColor", Direct<SetBkColor>},
    {"SetBkMode", Direct<SetBkMode>},
    {"SetTextColor", Direct<SetTextColor>},
    {"SetTextAlign", Direct<SetTextAlign>},
    {"GetBkColor", Direct<GetBkColor>},
    {"GetTextColor", Direct<GetTextColor>},
    {"GetSysColor", SystemColor},
    {"GetSysColorBrush", SystemColorBrush},
    {"GetSystemMetrics", SystemMetric},
    {"GetMonitorInfo", MonitorArea},
};

}  // namespace

}  // namespace emulator
