#include "platform/shortcuts.h"

#include <objbase.h>
#include <shlobj.h>

#include <string>

#include "platform/desktop/paths.h"
#include "platform/desktop/shortcuts.h"
#include "platform/handles.h"

namespace platform {

namespace {

bool SucceedsOrSetsError(HRESULT result) {
    if (SUCCEEDED(result)) {
        return true;
    }
    SetLastError(HRESULT_FACILITY(result) == FACILITY_WIN32
                     ? static_cast<DWORD>(HRESULT_CODE(result))
                     : static_cast<DWORD>(result));
    return false;
}

using Command = desktop::ShortcutTarget;

// A bare name is looked for in the Windows folder, as a handheld does.
std::wstring FullPath(const std::wstring& path) {
    if (path.empty() || path[0] == L'\\' || path.find(L':') != std::wstring::npos) {
        return path.empty() ? path : desktop::ToDesktopPath(path);
    }
    wchar_t folder[MAX_PATH] = {};
    const UINT length = GetWindowsDirectoryW(folder, MAX_PATH);
    return std::wstring(folder, length < MAX_PATH ? length : 0) + L"\\" + path;
}

Command TakeApart(const std::wstring& text) {
    const std::wstring_view path = CommandPath(text);
    if (path.empty()) {
        return Command{};
    }
    size_t end = static_cast<size_t>(path.data() - text.data()) + path.size();
    if (end < text.size() && text[end] == L'"') {
        ++end;
    }
    const size_t arguments = text.find_first_not_of(L' ', end);
    return Command{FullPath(std::wstring(path)),
                   arguments == std::wstring::npos ? std::wstring() : text.substr(arguments)};
}

class Link {
 public:
    // False with the thread's last error.
    bool Make() {
        return SucceedsOrSetsError(CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER,
                                                    IID_IShellLinkW,
                                                    reinterpret_cast<void**>(link_.Receive()))) &&
               SucceedsOrSetsError(link_->QueryInterface(
                   IID_IPersistFile, reinterpret_cast<void**>(file_.Receive())));
    }
    bool Load(const std::wstring& file) {
        return Make() && SucceedsOrSetsError(file_->Load(file.c_str(), STGM_READ));
    }
    IShellLinkW* operator->() const { return link_.Get(); }
    const ComPointer<IPersistFile>& File() const { return file_; }

 private:
    ComPointer<IShellLinkW> link_;
    ComPointer<IPersistFile> file_;
};

// The longest text that a PC's shortcut holds in one of its fields, in characters with the NUL.
constexpr int fieldSize = 1024;

// What a call of IShellLinkW writes into a buffer; empty when it fails.
template <typename Read>
std::wstring Field(int size, Read read) {
    std::wstring text(static_cast<size_t>(size), L'\0');
    if (FAILED(read(text.data()))) {
        return std::wstring();
    }
    const size_t end = text.find(L'\0');
    text.resize(end == std::wstring::npos ? 0 : end);
    return text;
}

Command TargetOf(const Link& link) {
    return Command{
        Field(MAX_PATH, [&](wchar_t* text) { return link->GetPath(text, MAX_PATH, nullptr, 0); }),
        Field(fieldSize, [&](wchar_t* text) { return link->GetArguments(text, fieldSize); })};
}

bool SameCommand(const Command& first, const Command& second) {
    return first.arguments == second.arguments &&
           CompareStringW(LOCALE_INVARIANT, NORM_IGNORECASE, first.path.c_str(), -1,
                          second.path.c_str(), -1) == CSTR_EQUAL;
}

}  // namespace

// A PC's shortcut keeps the path and the arguments apart and the path in full, so the command
// itself stands in the shortcut's comment.
bool CreateShortcut(const wchar_t* shortcut, const wchar_t* command) {
    const std::wstring file = desktop::ToDesktopPath(shortcut);
    if (GetFileAttributesW(file.c_str()) != INVALID_FILE_ATTRIBUTES) {
        SetLastError(ERROR_FILE_EXISTS);
        return false;
    }
    const std::wstring text = command;
    const Command parts = TakeApart(text);
    if (parts.path.size() >= MAX_PATH || text.size() >= fieldSize) {
        SetLastError(ERROR_FILENAME_EXCED_RANGE);
        return false;
    }
    Link link;
    return link.Make() && SucceedsOrSetsError(link->SetPath(parts.path.c_str())) &&
           SucceedsOrSetsError(link->SetArguments(parts.arguments.c_str())) &&
           SucceedsOrSetsError(link->SetDescription(text.c_str())) &&
           SucceedsOrSetsError(link.File()->Save(file.c_str(), TRUE));
}

std::optional<std::wstring> ShortcutTarget(const wchar_t* shortcut, size_t capacity) {
    Link link;
    if (!link.Load(desktop::ToDesktopPath(shortcut))) {
        return std::nullopt;
    }
    std::wstring command =
        Field(fieldSize, [&](wchar_t* text) { return link->GetDescription(text, fieldSize); });
    const Command parts = TargetOf(link);
    // Another program's comment is no command, or the target has been changed since.
    if (!SameCommand(TakeApart(command), parts)) {
        command.clear();
        if (!parts.path.empty()) {
            command = L'"' + desktop::FromDesktopPath(parts.path) + L'"';
        }
        if (!parts.path.empty() && !parts.arguments.empty()) {
            command += L' ' + parts.arguments;
        }
    }
    if (command.size() >= capacity) {
        SetLastError(ERROR_INSUFFICIENT_BUFFER);
        return std::nullopt;
    }
    return command;
}

std::optional<desktop::ShortcutTarget> desktop::ReadShortcut(const std::wstring& file) {
    Link link;
    return link.Load(file) ? std::optional(TargetOf(link)) : std::nullopt;
}

}  // namespace platform
