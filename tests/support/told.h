// What the system's interface for screen readers tells of a window, of this program or another.
#pragma once

#include <gtest/gtest.h>
#include <oleacc.h>

#include <string>
#include <vector>

#include "platform/bstr.h"

namespace test {

// The calling thread has entered COM (CoInitializeEx).
class Told {
 public:
    explicit Told(HWND window) {
        void* found = nullptr;
        EXPECT_EQ(AccessibleObjectFromWindow(window, static_cast<DWORD>(OBJID_CLIENT),
                                             IID_IAccessible, &found),
                  S_OK);
        object_ = static_cast<IAccessible*>(found);
    }
    ~Told() {
        if (object_) {
            object_->Release();
        }
    }
    Told(const Told&) = delete;
    Told& operator=(const Told&) = delete;

    LONG Count() const {
        LONG count = -1;
        EXPECT_EQ(object_->get_accChildCount(&count), S_OK);
        return count;
    }
    std::wstring Name(LONG part = CHILDID_SELF) const {
        BSTR name = nullptr;
        const HRESULT result = object_->get_accName(Child(part), &name);
        const platform::UniqueBstr owner(name);
        return result == S_OK ? platform::TextOfBstr(name) : L"(none)";
    }
    LONG Role(LONG part = CHILDID_SELF) const {
        VARIANT role = {};
        return object_->get_accRole(Child(part), &role) == S_OK && role.vt == VT_I4 ? role.lVal
                                                                                    : -1;
    }
    LONG State(LONG part) const {
        VARIANT state = {};
        return object_->get_accState(Child(part), &state) == S_OK ? state.lVal : -1;
    }
    LONG Selection() const {
        VARIANT selection = {};
        return object_->get_accSelection(&selection) == S_OK ? selection.lVal : 0;
    }
    LONG Focus() const {
        VARIANT focus = {};
        return object_->get_accFocus(&focus) == S_OK ? focus.lVal : -1;
    }
    LONG At(POINT point) const {
        VARIANT child = {};
        return object_->accHitTest(point.x, point.y, &child) == S_OK ? child.lVal : -1;
    }
    // Where a direction (NAVDIR_NEXT) leads from a part: 0 to nowhere. What was in the answer's
    // place has gone in any case.
    LONG To(LONG direction, LONG part) const {
        VARIANT to = {};
        to.vt = VT_BOOL;
        const HRESULT result = object_->accNavigate(direction, Child(part), &to);
        EXPECT_EQ(to.vt, result == S_OK ? VT_I4 : VT_EMPTY);
        return result == S_OK ? to.lVal : 0;
    }
    RECT Place(LONG part) const {
        LONG left = 0;
        LONG top = 0;
        LONG width = 0;
        LONG height = 0;
        EXPECT_EQ(object_->accLocation(&left, &top, &width, &height, Child(part)), S_OK);
        return RECT{left, top, left + width, top + height};
    }
    std::vector<std::wstring> Names() const {
        std::vector<std::wstring> names;
        for (LONG part = 1; part <= Count(); ++part) {
            names.push_back(Name(part));
        }
        return names;
    }
    HRESULT NameOfNoPart() const {
        BSTR name = nullptr;
        return object_->get_accName(Child(Count() + 1), &name);
    }

 private:
    static VARIANT Child(LONG part) {
        VARIANT child = {};
        child.vt = VT_I4;
        child.lVal = part;
        return child;
    }

    IAccessible* object_ = nullptr;
};

}  // namespace test
