#include "tests/endurance/hostile/host/system.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "tests/endurance/hostile/parts.h"

using namespace hostile;

namespace {

DWORD lastError = 0;
// What every handle is.
int something = 0;

HANDLE Give() {
    ++answers.held;
    return &something;
}
BOOL TakeBack() {
    --answers.held;
    return TRUE;
}

const Value* Find(const wchar_t* name) {
    const std::vector<Value>& values =
        answers.questions++ == 0 ? answers.values : answers.valuesLater;
    const auto found = std::find_if(values.begin(), values.end(),
                                    [&](const Value& value) { return value.name == name; });
    return found == values.end() ? nullptr : &*found;
}

// Fills an entry with the next bytes, whatever they say.
BOOL Step(void* entry, size_t size) {
    if (answers.entry >= answers.entries.size()) {
        lastError = ERROR_NO_MORE_FILES;
        return FALSE;
    }
    const Bytes& bytes = answers.entries[answers.entry++];
    std::memcpy(entry, bytes.data(), std::min(size, bytes.size()));
    return TRUE;
}

}  // namespace

bool hostile::IsThere(std::wstring_view path) {
    unsigned sum = 0;
    for (const wchar_t character : path) {
        sum = sum * 31 + character;
    }
    return sum % 3 == 0;
}

extern "C" {

DWORD WINAPI GetLastError() {
    return lastError;
}
void WINAPI SetLastError(DWORD error) {
    lastError = error;
}
BOOL WINAPI CloseHandle(HANDLE) {
    return TakeBack();
}

// Resources and modules: there are none.
HRSRC WINAPI FindResourceW(HMODULE, const wchar_t*, const wchar_t*) {
    return nullptr;
}
HGLOBAL WINAPI LoadResource(HMODULE, HRSRC) {
    return nullptr;
}
void* WINAPI LockResource(HGLOBAL) {
    return nullptr;
}
DWORD WINAPI SizeofResource(HMODULE, HRSRC) {
    return 0;
}
HMODULE WINAPI LoadLibraryExW(const wchar_t*, HANDLE, DWORD) {
    return nullptr;
}
BOOL WINAPI FreeLibrary(HMODULE) {
    return TRUE;
}
DWORD WINAPI GetModuleFileNameW(HMODULE, wchar_t* path, DWORD size) {
    constexpr wchar_t program[] = L"\\Program Files\\vantor.exe";
    std::copy_n(program, std::min<size_t>(size, std::size(program)), path);
    return std::size(program) - 1;
}
HMENU WINAPI LoadMenuW(HINSTANCE, const wchar_t*) {
    return nullptr;
}
int WINAPI LoadStringW(HINSTANCE, UINT, wchar_t*, int) {
    return 0;
}

// Files.
HANDLE WINAPI CreateFileW(const wchar_t*, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD,
                          HANDLE) {
    return answers.opens ? Give() : INVALID_HANDLE_VALUE;
}
DWORD WINAPI GetFileSize(HANDLE, DWORD*) {
    return 0;
}
BOOL WINAPI ReadFile(HANDLE, void*, DWORD, DWORD*, OVERLAPPED*) {
    return FALSE;
}
DWORD WINAPI GetFileAttributesW(const wchar_t* path) {
    return IsThere(path) ? FILE_ATTRIBUTE_NORMAL : INVALID_FILE_ATTRIBUTES;
}
// Called as a handheld's functions are.
HANDLE BeginSearch(const wchar_t*, WIN32_FIND_DATAW* data) asm("FindFirstFileW");
HANDLE BeginSearch(const wchar_t*, WIN32_FIND_DATAW* data) {
    return Step(data, sizeof *data) ? Give() : INVALID_HANDLE_VALUE;
}
BOOL GoOn(HANDLE, WIN32_FIND_DATAW* data) asm("FindNextFileW");
BOOL GoOn(HANDLE, WIN32_FIND_DATAW* data) {
    return Step(data, sizeof *data);
}
BOOL WINAPI FindClose(HANDLE) {
    return TakeBack();
}
BOOL Identify(HANDLE, void*) asm("GetFileInformationByHandle");
BOOL Identify(HANDLE, void*) {
    return FALSE;
}
BOOL WINAPI DeleteFileW(const wchar_t*) {
    return FALSE;
}
BOOL WINAPI MoveFileW(const wchar_t*, const wchar_t*) {
    return FALSE;
}
BOOL WINAPI RemoveDirectoryW(const wchar_t*) {
    return FALSE;
}

// Letters.
DWORD WINAPI CharUpperBuffW(wchar_t* text, DWORD length) {
    std::for_each_n(text, length, [](wchar_t& letter) {
        letter = letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - 32) : letter;
    });
    return length;
}
int WINAPI CompareStringW(LCID, DWORD, const wchar_t* first, int firstLength, const wchar_t* second,
                          int secondLength) {
    std::wstring one(first,
                     firstLength < 0 ? std::wcslen(first) : static_cast<size_t>(firstLength));
    std::wstring other(second,
                       secondLength < 0 ? std::wcslen(second) : static_cast<size_t>(secondLength));
    CharUpperBuffW(one.data(), static_cast<DWORD>(one.size()));
    CharUpperBuffW(other.data(), static_cast<DWORD>(other.size()));
    return one < other ? CSTR_LESS_THAN : one == other ? CSTR_EQUAL : CSTR_GREATER_THAN;
}
// A language has its number for a name; some have none.
int WINAPI GetLocaleInfoW(LCID locale, LCTYPE, wchar_t* text, int size) {
    const std::wstring name(1, static_cast<wchar_t>(locale & 0xFFFF));
    if (locale % 5 == 0) {
        return 0;
    }
    if (size >= 2) {
        text[0] = name[0];
        text[1] = 0;
    }
    return 2;
}
LCID WINAPI GetUserDefaultLCID() {
    return 0x0409;
}
DWORD WINAPI FormatMessageW(DWORD, const void*, DWORD, DWORD, wchar_t*, DWORD, __ms_va_list*) {
    return 0;
}

int WINAPI MultiByteToWideChar(UINT, DWORD, const char*, int, wchar_t*, int) {
    return 0;
}
int WINAPI WideCharToMultiByte(UINT, DWORD, const wchar_t*, int, char*, int, const char*, BOOL*) {
    return 0;
}

// The clipboard, whose block is copied to exactly its size.
BOOL WINAPI IsClipboardFormatAvailable(UINT) {
    return TRUE;
}
HLOCAL GetClipboardDataAlloc(UINT) {
    ++answers.held;
    auto* const block = static_cast<uint8_t*>(std::malloc(answers.clipboard.size() + 0));
    std::copy(answers.clipboard.begin(), answers.clipboard.end(), block);
    return block;
}
SIZE_T WINAPI LocalSize(HLOCAL) {
    return answers.clipboard.size();
}
HLOCAL WINAPI LocalFree(HLOCAL memory) {
    if (memory) {
        TakeBack();
        std::free(memory);
    }
    return nullptr;
}
HLOCAL WINAPI LocalAlloc(UINT, SIZE_T size) {
    ++answers.held;
    return std::malloc(size);
}
HANDLE WINAPI SetClipboardData(UINT, HANDLE) {
    return nullptr;
}

// The registry.
LONG WINAPI RegOpenKeyExW(HKEY, const wchar_t*, DWORD, REGSAM, HKEY* key) {
    *key = static_cast<HKEY>(Give());
    return ERROR_SUCCESS;
}
LONG WINAPI RegCreateKeyExW(HKEY, const wchar_t*, DWORD, wchar_t*, DWORD, REGSAM,
                            SECURITY_ATTRIBUTES*, HKEY*, DWORD*) {
    return ERROR_ACCESS_DENIED;
}
LONG WINAPI RegSetValueExW(HKEY, const wchar_t*, DWORD, DWORD, const BYTE*, DWORD) {
    return ERROR_ACCESS_DENIED;
}
LONG WINAPI RegCloseKey(HKEY) {
    TakeBack();
    return ERROR_SUCCESS;
}
LONG WINAPI RegQueryValueExW(HKEY, const wchar_t* name, DWORD*, DWORD* type, BYTE* data,
                             DWORD* size) {
    const Value* const value = Find(name);
    if (!value) {
        return ERROR_FILE_NOT_FOUND;
    }
    *type = value->type;
    const auto needed = static_cast<DWORD>(value->data.size());
    const DWORD room = std::exchange(*size, needed);
    if (data && room < needed) {
        return ERROR_MORE_DATA;
    }
    if (data) {
        std::copy(value->data.begin(), value->data.end(), data);
    }
    return ERROR_SUCCESS;
}
LONG WINAPI RegEnumValueW(HKEY, DWORD index, wchar_t* name, DWORD* nameLength, DWORD*, DWORD* type,
                          BYTE* data, DWORD* size) {
    if (index >= answers.values.size()) {
        return ERROR_NO_MORE_ITEMS;
    }
    const Value& value = answers.values[index];
    if (value.name.size() >= *nameLength || value.data.size() > *size) {
        return ERROR_MORE_DATA;
    }
    value.name.copy(name, value.name.size());
    name[value.name.size()] = 0;
    *nameLength = static_cast<DWORD>(value.name.size());
    *type = value.type;
    std::copy(value.data.begin(), value.data.end(), data);
    *size = static_cast<DWORD>(value.data.size());
    return ERROR_SUCCESS;
}

// Memory.
SIZE_T WINAPI VirtualQuery(const void*, MEMORY_BASIC_INFORMATION* information, SIZE_T) {
    if (answers.entry >= answers.regionsFound.size()) {
        return 0;
    }
    *information = answers.regionsFound[answers.entry++];
    return sizeof *information;
}
}
