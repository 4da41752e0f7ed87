// The device's picture viewer: shows the picture named on its command line, as large as the screen
// allows.

#include <ole2.h>
#include <olectl.h>
#include <shellapi.h>
#include <windows.h>

namespace {

IPicture* picture = nullptr;

void Paint(HWND window) {
    PAINTSTRUCT paint;
    HDC context = BeginPaint(window, &paint);
    RECT area;
    GetClientRect(window, &area);
    FillRect(context, &area, static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH)));
    OLE_XSIZE_HIMETRIC pictureWidth = 0;
    OLE_YSIZE_HIMETRIC pictureHeight = 0;
    if (picture && SUCCEEDED(picture->get_Width(&pictureWidth)) &&
        SUCCEEDED(picture->get_Height(&pictureHeight)) && pictureWidth > 0 && pictureHeight > 0) {
        int width = area.right;
        int height = MulDiv(width, pictureHeight, pictureWidth);
        if (height > area.bottom) {
            height = area.bottom;
            width = MulDiv(height, pictureWidth, pictureHeight);
        }
        // A picture's own coordinates run from its bottom edge upwards.
        picture->Render(context, (area.right - width) / 2, (area.bottom - height) / 2, width,
                        height, 0, pictureHeight, pictureWidth, -pictureHeight, nullptr);
    }
    EndPaint(window, &paint);
}

LRESULT CALLBACK Handle(HWND window, UINT message, WPARAM first, LPARAM second) {
    switch (message) {
        case WM_PAINT:
            Paint(window);
            return 0;
        case WM_LBUTTONUP:
        case WM_KEYDOWN:
            DestroyWindow(window);
            return 0;
        case WM_DESTROY:
            PostQuitMessage(0);
            return 0;
        default:
            return DefWindowProcW(window, message, first, second);
    }
}

}  // namespace

int WINAPI wWinMain(HINSTANCE instance, HINSTANCE, PWSTR, int) {
    int count = 0;
    PWSTR* words = CommandLineToArgvW(GetCommandLineW(), &count);
    if (!words || count < 2 || FAILED(OleInitialize(nullptr))) {
        return 1;
    }
    if (FAILED(OleLoadPicturePath(words[1], nullptr, 0, 0, IID_IPicture,
                                  reinterpret_cast<void**>(&picture)))) {
        MessageBoxW(nullptr, words[1], L"This picture cannot be shown", MB_ICONWARNING);
        return 1;
    }
    WNDCLASSW shape = {};
    shape.lpfnWndProc = Handle;
    shape.hInstance = instance;
    shape.hCursor = LoadCursorW(nullptr, IDC_ARROW);
    shape.lpszClassName = L"Pictures";
    RegisterClassW(&shape);
    CreateWindowW(L"Pictures", words[1], WS_POPUP | WS_VISIBLE, 0, 0, GetSystemMetrics(SM_CXSCREEN),
                  GetSystemMetrics(SM_CYSCREEN), nullptr, nullptr, instance, nullptr);
    MSG message;
    while (GetMessageW(&message, nullptr, 0, 0) > 0) {
        DispatchMessageW(&message);
    }
    return 0;
}
