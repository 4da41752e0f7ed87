#include "platform/accessibility.h"

#include <oleacc.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <vector>

#include "platform/bstr.h"
#include "platform/handles.h"

namespace platform {

namespace {

// A question that waits for the window's thread. Others ask from threads of their own.
struct Question {
    WPARAM number = 0;
    // About the part at a client point, or about a part.
    std::optional<POINT> point;
    unsigned part = 0;
    bool known = false;
    AccessiblePart description;
    unsigned count = 0;
    unsigned focused = 0;
};

SRWLOCK lock = SRWLOCK_INIT;
std::vector<std::shared_ptr<Question>> questions;
WPARAM lastNumber = 0;

class Locked {
 public:
    Locked() { AcquireSRWLockExclusive(&lock); }
    ~Locked() { ReleaseSRWLockExclusive(&lock); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
};

std::shared_ptr<Question> QuestionOf(WPARAM number) {
    const Locked locked;
    const auto found = std::find_if(questions.begin(), questions.end(),
                                    [&](const auto& other) { return other->number == number; });
    return found == questions.end() ? nullptr : *found;
}

// Null when the window has gone, has no such part, or does not answer.
std::shared_ptr<const Question> Ask(HWND window, unsigned part,
                                    std::optional<POINT> point = std::nullopt) {
    constexpr UINT patience = 2000;
    const auto question = std::make_shared<Question>();
    question->part = part;
    question->point = point;
    {
        const Locked locked;
        question->number = ++lastNumber;
        questions.push_back(question);
    }
    DWORD_PTR answered = 0;
    SendMessageTimeoutW(window, describePartMessage, question->number, 0, SMTO_ABORTIFHUNG,
                        patience, &answered);
    const Locked locked;
    questions.erase(std::find(questions.begin(), questions.end(), question));
    return answered && question->known ? question : nullptr;
}

LONG RoleOf(PartRole role) {
    switch (role) {
        case PartRole::List:
            return ROLE_SYSTEM_LIST;
        case PartRole::Row:
            return ROLE_SYSTEM_LISTITEM;
        case PartRole::Menu:
            return ROLE_SYSTEM_MENUPOPUP;
        case PartRole::MenuItem:
            return ROLE_SYSTEM_MENUITEM;
        case PartRole::Bar:
            return ROLE_SYSTEM_TOOLBAR;
        default:
            return ROLE_SYSTEM_PUSHBUTTON;
    }
}

LONG StateOf(const Question& question, HWND window) {
    const AccessiblePart& part = question.description;
    LONG state = 0;
    const auto add = [&state](bool holds, LONG bit) { state |= holds ? bit : 0; };
    if (question.part == 0) {
        add(true, STATE_SYSTEM_FOCUSABLE);
    } else {
        const bool row = part.role == PartRole::Row;
        add(row, STATE_SYSTEM_SELECTABLE | STATE_SYSTEM_FOCUSABLE);
        add(question.focused == question.part, STATE_SYSTEM_FOCUSED);
        add(IsRectEmpty(&part.bounds), STATE_SYSTEM_OFFSCREEN | STATE_SYSTEM_INVISIBLE);
    }
    add(part.selected, STATE_SYSTEM_SELECTED);
    add(part.checked, STATE_SYSTEM_CHECKED);
    add(part.disabled || !IsWindowEnabled(window), STATE_SYSTEM_UNAVAILABLE);
    add(part.opensMenu, STATE_SYSTEM_HASPOPUP);
    return state;
}

// A window and its parts as Microsoft Active Accessibility sees them. Knows the window by its
// handle alone, and so may outlive it.
class AccessibleObject final : public IAccessible {
 public:
    explicit AccessibleObject(HWND window) : window_(window) {}
    virtual ~AccessibleObject() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** object) override {
        if (id != IID_IUnknown && id != IID_IDispatch && id != IID_IAccessible) {
            *object = nullptr;
            return E_NOINTERFACE;
        }
        *object = static_cast<IAccessible*>(this);
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override {
        return static_cast<ULONG>(InterlockedIncrement(&references_));
    }
    ULONG STDMETHODCALLTYPE Release() override {
        const LONG left = InterlockedDecrement(&references_);
        if (left == 0) {
            delete this;
        }
        return static_cast<ULONG>(left);
    }

    // Everybody calls the functions themselves.
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }

    HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override {
        return AccessibleObjectOf(window_, OBJID_WINDOW, reinterpret_cast<void**>(parent));
    }
    HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override {
        const auto answer = Ask(window_, 0);
        *count = answer ? static_cast<LONG>(answer->count) : 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_accChild(VARIANT, IDispatch** child) override {
        // The parts have no objects of their own.
        *child = nullptr;
        return S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
        *name = nullptr;
        const auto answer = AskAbout(child);
        if (!answer) {
            return E_INVALIDARG;
        }
        std::wstring text = answer->description.name;
        if (text.empty() && answer->part == 0) {
            // Longer ones are cut there.
            wchar_t title[600];
            for (const HWND window : {window_, GetAncestor(window_, GA_ROOT)}) {
                const int length = text.empty() ? GetWindowTextW(window, title, 600) : 0;
                text.append(title, static_cast<size_t>(std::max(length, 0)));
            }
        }
        *name = SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
        return *name ? S_OK : E_OUTOFMEMORY;
    }
    HRESULT STDMETHODCALLTYPE get_accValue(VARIANT, BSTR* value) override { return None(value); }
    HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT, BSTR* description) override {
        return None(description);
    }
    HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
        const auto answer = AskAbout(child);
        return answer ? Number(RoleOf(answer->description.role), role) : E_INVALIDARG;
    }
    HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
        const auto answer = AskAbout(child);
        return answer ? Number(StateOf(*answer, window_), state) : E_INVALIDARG;
    }
    HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT, BSTR* help) override { return None(help); }
    HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT, LONG*) override {
        return None(file);
    }
    HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT, BSTR* key) override {
        return None(key);
    }
    HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* child) override {
        child->vt = VT_EMPTY;
        const auto answer = Ask(window_, 0);
        GUITHREADINFO thread = {};
        thread.cbSize = sizeof thread;
        const bool here = GetGUIThreadInfo(GetWindowThreadProcessId(window_, nullptr), &thread) &&
                          thread.hwndFocus == window_;
        return answer && here ? Number(static_cast<LONG>(answer->focused), child) : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* children) override {
        children->vt = VT_EMPTY;
        const auto answer = Ask(window_, 0);
        const auto part = answer ? Ask(window_, answer->focused) : nullptr;
        return part && part->part != 0 && part->description.selected
                   ? Number(static_cast<LONG>(part->part), children)
                   : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT, BSTR* action) override {
        return None(action);
    }
    HRESULT STDMETHODCALLTYPE accSelect(LONG, VARIANT) override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                          VARIANT child) override {
        *left = *top = *width = *height = 0;
        const auto answer = AskAbout(child);
        RECT place;
        if (!answer || !GetWindowRect(window_, &place)) {
            return E_INVALIDARG;
        }
        if (answer->part != 0) {
            place = answer->description.bounds;
            MapWindowPoints(window_, nullptr, reinterpret_cast<POINT*>(&place), 2);
        }
        *left = place.left;
        *top = place.top;
        *width = place.right - place.left;
        *height = place.bottom - place.top;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT from, VARIANT* to) override {
        to->vt = VT_EMPTY;
        const auto answer = AskAbout(from);
        if (!answer) {
            return E_INVALIDARG;
        }
        LONG part = 0;
        switch (direction) {
            case NAVDIR_FIRSTCHILD:
                part = answer->part == 0 ? 1 : 0;
                break;
            case NAVDIR_LASTCHILD:
                part = answer->part == 0 ? static_cast<LONG>(answer->count) : 0;
                break;
            case NAVDIR_NEXT:
            case NAVDIR_DOWN:
                part = answer->part == 0 ? 0 : static_cast<LONG>(answer->part) + 1;
                break;
            case NAVDIR_PREVIOUS:
            case NAVDIR_UP:
                part = static_cast<LONG>(answer->part) - 1;
                break;
            default:
                break;
        }
        return part >= 1 && part <= static_cast<LONG>(answer->count) ? Number(part, to) : S_FALSE;
    }
    HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* child) override {
        child->vt = VT_EMPTY;
        POINT point = {x, y};
        RECT client;
        if (!ScreenToClient(window_, &point) || !GetClientRect(window_, &client) ||
            !PtInRect(&client, point)) {
            return S_FALSE;
        }
        const auto answer = Ask(window_, 0, point);
        return Number(answer ? static_cast<LONG>(answer->part) : CHILDID_SELF, child);
    }
    HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT) override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }
    HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return DISP_E_MEMBERNOTFOUND; }

    // Of oleacc.dll, which is loaded by who asks first; fails without it.
    static HRESULT AccessibleObjectOf(HWND window, LONG id, void** object) {
        *object = nullptr;
        const auto find =
            Late<HRESULT WINAPI(HWND, DWORD, REFIID, void**)>("AccessibleObjectFromWindow");
        return find ? find(window, static_cast<DWORD>(id), IID_IDispatch, object) : E_NOTIMPL;
    }

    template <typename Function>
    static Function* Late(const char* name) {
        const HMODULE library = LoadLibraryW(L"oleacc.dll");
        return library ? reinterpret_cast<Function*>(
                             reinterpret_cast<void*>(GetProcAddress(library, name)))
                       : nullptr;
    }

 private:
    std::shared_ptr<const Question> AskAbout(const VARIANT& child) const {
        return child.vt == VT_I4 && child.lVal >= 0
                   ? Ask(window_, static_cast<unsigned>(child.lVal))
                   : nullptr;
    }
    static HRESULT None(BSTR* text) {
        *text = nullptr;
        return DISP_E_MEMBERNOTFOUND;
    }
    static HRESULT Number(LONG number, VARIANT* value) {
        value->vt = VT_I4;
        value->lVal = number;
        return S_OK;
    }

    const HWND window_;
    LONG references_ = 1;
};

LRESULT GiveObject(HWND handle, WPARAM wParam) {
    const auto result =
        AccessibleObject::Late<LRESULT WINAPI(REFIID, WPARAM, IUnknown*)>("LresultFromObject");
    if (!result) {
        return 0;
    }
    const auto object = new AccessibleObject(handle);
    const LRESULT answer = result(IID_IAccessible, wParam, object);
    object->Release();
    return answer;
}

}  // namespace

LRESULT AnswerAccessibility(HWND handle, UINT message, WPARAM wParam, LPARAM lParam,
                            AccessibleWindow& window) {
    if (message == WM_GETOBJECT) {
        AccessiblePart whole;
        const bool client = static_cast<LONG>(lParam) == OBJID_CLIENT;
        return client && window.Describe(0, &whole)
                   ? GiveObject(handle, wParam)
                   : DefWindowProcW(handle, message, wParam, lParam);
    }
    const std::shared_ptr<Question> question = QuestionOf(wParam);
    if (!question) {
        return 0;
    }
    if (question->point) {
        question->part = window.PartAt(*question->point);
    }
    question->known = window.Describe(question->part, &question->description);
    question->count = window.PartCount();
    question->focused = window.FocusedPart();
    return TRUE;
}

void TellFocusedPart(HWND handle, unsigned part) {
    if (IsWinEventHookInstalled(EVENT_OBJECT_FOCUS)) {
        NotifyWinEvent(EVENT_OBJECT_FOCUS, handle, OBJID_CLIENT, static_cast<LONG>(part));
        NotifyWinEvent(EVENT_OBJECT_SELECTION, handle, OBJID_CLIENT, static_cast<LONG>(part));
    }
}

}  // namespace platform
