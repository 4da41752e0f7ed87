#include "app/settings.h"

#include "faults/fault.h"
#include "platform/handles.h"
#include "platform/registry.h"

namespace app {

namespace {

void ThrowOnError(LONG error) {
    if (error != ERROR_SUCCESS) {
        throw faults::W32Fault(faults::ResultFromError(static_cast<DWORD>(error)));
    }
}

void Write(const wchar_t* name, DWORD type, const void* data, size_t size) {
    platform::UniqueKey key;
    ThrowOnError(platform::CreateMachineKey(settingsKey, KEY_ALL_ACCESS, key.Receive()));
    ThrowOnError(RegSetValueExW(key.Get(), name, 0, type, static_cast<const BYTE*>(data),
                                static_cast<DWORD>(size)));
}

}  // namespace

std::optional<DWORD> ReadNumber(const wchar_t* name) {
    platform::UniqueKey key;
    DWORD value = 0;
    DWORD size = sizeof value;
    DWORD type = 0;
    if (platform::OpenMachineKey(settingsKey, KEY_READ, key.Receive()) != ERROR_SUCCESS ||
        RegQueryValueExW(key.Get(), name, nullptr, &type, reinterpret_cast<BYTE*>(&value), &size) !=
            ERROR_SUCCESS ||
        type != REG_DWORD || size != sizeof value) {
        return std::nullopt;
    }
    return value;
}

void WriteNumber(const wchar_t* name, DWORD value) {
    Write(name, REG_DWORD, &value, sizeof value);
}

std::optional<std::wstring> ReadText(const wchar_t* keyPath, const wchar_t* name) {
    platform::UniqueKey key;
    DWORD size = 0;
    DWORD type = 0;
    if (platform::OpenMachineKey(keyPath, KEY_READ, key.Receive()) != ERROR_SUCCESS ||
        RegQueryValueExW(key.Get(), name, nullptr, &type, nullptr, &size) != ERROR_SUCCESS ||
        type != REG_SZ) {
        return std::nullopt;
    }
    std::wstring value(size / sizeof(wchar_t), L'\0');
    size = static_cast<DWORD>(value.size() * sizeof(wchar_t));
    if (RegQueryValueExW(key.Get(), name, nullptr, &type, reinterpret_cast<BYTE*>(value.data()),
                         &size) != ERROR_SUCCESS ||
        type != REG_SZ) {
        return std::nullopt;
    }
    value.resize(size / sizeof(wchar_t));
    const size_t end = value.find(L'\0');
    if (end != std::wstring::npos) {
        value.resize(end);
    }
    return value;
}

std::optional<std::wstring> ReadText(const wchar_t* name) {
    return ReadText(settingsKey, name);
}

void WriteText(const wchar_t* name, const std::wstring& value) {
    Write(name, REG_SZ, value.c_str(), (value.size() + 1) * sizeof(wchar_t));
}

}  // namespace app
