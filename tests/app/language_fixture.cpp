#include "tests/app/language_fixture.h"

#include "platform/handles.h"
#include "text/resources.h"

namespace test {

namespace {

std::wstring programPath;
std::vector<HMODULE> freed;
BOOL(WINAPI* freeLibrary)(HMODULE) = nullptr;

void Append16(std::vector<BYTE>& bytes, size_t value) {
    bytes.push_back(static_cast<BYTE>(value & 0xFF));
    bytes.push_back(static_cast<BYTE>(value >> 8 & 0xFF));
}

void AppendText(std::vector<BYTE>& bytes, const std::wstring& text) {
    for (const wchar_t character : text) {
        Append16(bytes, character);
    }
    Append16(bytes, 0);
}

void Align(std::vector<BYTE>& bytes) {
    bytes.resize((bytes.size() + 3) / 4 * 4);
}

// A node of a version block: its name, its value, the nodes in it.
std::vector<BYTE> Node(const std::wstring& name, WORD type, size_t valueLength,
                       const std::vector<BYTE>& value, const std::vector<BYTE>& children) {
    std::vector<BYTE> node;
    Append16(node, 0);
    Append16(node, valueLength);
    Append16(node, type);
    AppendText(node, name);
    Align(node);
    node.insert(node.end(), value.begin(), value.end());
    if (!children.empty()) {
        Align(node);
        node.insert(node.end(), children.begin(), children.end());
    }
    node[0] = static_cast<BYTE>(node.size() & 0xFF);
    node[1] = static_cast<BYTE>(node.size() >> 8);
    return node;
}

}  // namespace

std::vector<BYTE> VersionBlock(const std::vector<VersionTable>& tables) {
    std::vector<BYTE> children;
    for (const auto& [language, texts] : tables) {
        std::vector<BYTE> strings;
        for (const auto& [name, text] : texts) {
            std::vector<BYTE> value;
            AppendText(value, text);
            const std::vector<BYTE> string = Node(name, 1, text.size() + 1, value, {});
            Align(strings);
            strings.insert(strings.end(), string.begin(), string.end());
        }
        const std::vector<BYTE> table = Node(language, 1, 0, {}, strings);
        Align(children);
        children.insert(children.end(), table.begin(), table.end());
    }
    VS_FIXEDFILEINFO fixed = {};
    fixed.dwSignature = 0xFEEF04BD;
    const auto bytes = reinterpret_cast<const BYTE*>(&fixed);
    return Node(L"VS_VERSION_INFO", 0, sizeof fixed, {bytes, bytes + sizeof fixed},
                Node(L"StringFileInfo", 1, 0, {}, children));
}

std::vector<BYTE> VersionBlock(const std::wstring& language, const VersionTexts& texts) {
    return VersionBlock({VersionTable{language, texts}});
}

LanguageFixture::LanguageFixture() {
    programPath = L"C:" + folder.Path() + L"\\vantor.exe";
    freed.clear();
    freeLibrary = freeHook_.Original();
}

LanguageFixture::~LanguageFixture() {
    const HMODULE pack = text::ResourceModule();
    text::SetProgramModule(text::ProgramModule());
    if (pack != text::ProgramModule()) {
        FreeLibrary(pack);
    }
}

DWORD WINAPI LanguageFixture::TellProgramPath(HMODULE, wchar_t* buffer, DWORD size) {
    if (programPath.empty()) {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return 0;
    }
    programPath.copy(buffer, size);
    buffer[programPath.size()] = 0;
    return static_cast<DWORD>(programPath.size());
}

BOOL WINAPI LanguageFixture::NoteFreed(HMODULE module) {
    freed.push_back(module);
    return freeLibrary(module);
}

void LanguageFixture::MakePack(const std::wstring& name, LANGID language, const std::wstring& ok) {
    ResourceModule(language).Text(IDS_BUTTON_OK, ok).Write(folder.Path() + L"\\" + name);
}

void LanguageFixture::SetOverride(const wchar_t* name, DWORD type, const void* data, size_t size) {
    platform::UniqueKey key;
    ASSERT_EQ(RegCreateKeyExW(HKEY_LOCAL_MACHINE, L"Software\\Kelmor\\vantor\\mui", 0, nullptr, 0,
                              KEY_ALL_ACCESS, nullptr, key.Receive(), nullptr),
              ERROR_SUCCESS);
    ASSERT_EQ(RegSetValueExW(key.Get(), name, 0, type, static_cast<const BYTE*>(data),
                             static_cast<DWORD>(size)),
              ERROR_SUCCESS);
}

void LanguageFixture::SetOverride(const std::wstring& path, DWORD type) {
    SetOverride(L"vantor.exe.0407.ui", type, path.c_str(), (path.size() + 1) * 2);
}

void LanguageFixture::LoseProgramPath() {
    programPath.clear();
}

std::wstring LanguageFixture::Ok() {
    return std::wstring(text::LoadText(IDS_BUTTON_OK));
}

const std::vector<HMODULE>& LanguageFixture::Freed() {
    return freed;
}

}  // namespace test
