// Owners of what the platform lends: each gives its resource back on every way out.
#pragma once

#include <utility>

#include "platform/windows.h"

namespace platform {

// INVALID_HANDLE_VALUE, for Unique.
inline constexpr INT_PTR invalidHandle = -1;

// Owns one resource of type Value; `release` gives it back. The empty state is Value{}; `invalid`
// is what the platform's calls may return in place of a resource, and no resource either.
template <typename Value, auto release, INT_PTR invalid = 0>
class Unique {
 public:
    Unique() = default;
    explicit Unique(Value value) : value_(value) {}
    Unique(Unique&& other) noexcept : value_(std::exchange(other.value_, Value{})) {}
    Unique& operator=(Unique&& other) noexcept {
        Reset(std::exchange(other.value_, Value{}));
        return *this;
    }
    ~Unique() { Reset(); }

    Value Get() const { return value_; }
    explicit operator bool() const { return IsResource(value_); }
    void Reset(Value value = Value{}) {
        Value old = std::exchange(value_, value);
        if (IsResource(old)) {
            release(old);
        }
    }
    // Hands the resource to the caller, who must give it back.
    Value Detach() { return std::exchange(value_, Value{}); }
    // For platform calls that fill in a handle.
    Value* Receive() {
        Reset();
        return &value_;
    }

 private:
    static bool IsResource(Value value) {
        if constexpr (invalid != 0) {
            return value != Value{} && value != reinterpret_cast<Value>(invalid);
        } else {
            return value != Value{};
        }
    }

    Value value_{};
};

using UniqueBitmap = Unique<HBITMAP, DeleteObject>;
using UniqueBrush = Unique<HBRUSH, DeleteObject>;
using UniqueFont = Unique<HFONT, DeleteObject>;
using UniqueHandle = Unique<HANDLE, CloseHandle, invalidHandle>;
using UniqueIcon = Unique<HICON, DestroyIcon>;
using UniqueKey = Unique<HKEY, RegCloseKey>;
using UniqueMemoryDC = Unique<HDC, DeleteDC>;
using UniqueMenu = Unique<HMENU, DestroyMenu>;
using UniqueModule = Unique<HMODULE, FreeLibrary>;
using UniquePen = Unique<HPEN, DeleteObject>;
// A search for files (FindFirst).
using UniqueSearch = Unique<HANDLE, FindClose, invalidHandle>;

// Text that the platform allocated with LocalAlloc.
inline void FreeLocal(wchar_t* memory) {
    LocalFree(memory);
}
using UniqueLocalText = Unique<wchar_t*, FreeLocal>;

// The device context of a window's client area (GetDC, ReleaseDC).
class WindowDC {
 public:
    explicit WindowDC(HWND window) : window_(window), dc_(GetDC(window)) {}
    ~WindowDC() {
        if (dc_) {
            ReleaseDC(window_, dc_);
        }
    }
    WindowDC(const WindowDC&) = delete;
    WindowDC& operator=(const WindowDC&) = delete;
    operator HDC() const { return dc_; }

 private:
    HWND window_;
    HDC dc_;
};

// Puts a GDI object into a device context and the previous one back (SelectObject).
class Selected {
 public:
    Selected(HDC dc, HGDIOBJ object) : dc_(dc), previous_(SelectObject(dc, object)) {}
    ~Selected() {
        if (previous_) {
            SelectObject(dc_, previous_);
        }
    }
    Selected(const Selected&) = delete;
    Selected& operator=(const Selected&) = delete;

 private:
    HDC dc_;
    HGDIOBJ previous_;
};

// Shows one of the system's cursors for as long as it lives (LoadCursorW, SetCursor).
class ShownCursor {
 public:
    explicit ShownCursor(const wchar_t* name)
        : cursor_(LoadCursorW(nullptr, name)),
          previous_(SetCursor(cursor_)),
          around_(std::exchange(innermost_, this)) {}
    ~ShownCursor() {
        innermost_ = around_;
        SetCursor(previous_);
    }
    ShownCursor(const ShownCursor&) = delete;
    ShownCursor& operator=(const ShownCursor&) = delete;

    // The cursor for the program's windows now: the one shown last that still lives, else the
    // arrow.
    static HCURSOR ForWindows() {
        return innermost_ ? innermost_->cursor_ : LoadCursorW(nullptr, IDC_ARROW);
    }

 private:
    static inline ShownCursor* innermost_ = nullptr;

    HCURSOR cursor_;
    HCURSOR previous_;
    ShownCursor* around_;
};

// The wait cursor, while something lasts.
class WaitCursor : public ShownCursor {
 public:
    WaitCursor() : ShownCursor(IDC_WAIT) {}
};

// The arrow, or nothing on a handheld without one: while a person is asked, nothing waits.
class ArrowCursor : public ShownCursor {
 public:
    ArrowCursor() : ShownCursor(IDC_ARROW) {}
};

// A counted reference to a COM object.
template <typename Interface>
class ComPointer {
 public:
    ComPointer() = default;
    ComPointer(const ComPointer& other) : object_(other.object_) {
        if (object_) {
            object_->AddRef();
        }
    }
    ComPointer(ComPointer&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
    ComPointer& operator=(ComPointer other) noexcept {
        std::swap(object_, other.object_);
        return *this;
    }
    ~ComPointer() {
        if (object_) {
            object_->Release();
        }
    }
    Interface* operator->() const { return object_; }
    Interface* Get() const { return object_; }
    explicit operator bool() const { return object_ != nullptr; }
    // For platform calls that hand out a reference which the caller then owns.
    Interface** Receive() {
        *this = ComPointer();
        return &object_;
    }

 private:
    Interface* object_ = nullptr;
};

}  // namespace platform
