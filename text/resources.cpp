#include "text/resources.h"

#include "platform/strings.h"
#include "text/pack/resource_checks.h"

namespace text {

namespace {

HINSTANCE program = nullptr;
void* volatile resources = nullptr;
LANGID language = programLanguage;
unsigned version = 1;

}  // namespace

HINSTANCE ProgramModule() {
    return program;
}
HINSTANCE ResourceModule() {
    return static_cast<HINSTANCE>(resources);
}
LANGID Language() {
    return language;
}

void SetProgramModule(HINSTANCE module) {
    program = module;
    resources = module;
    language = programLanguage;
    TextsChanged();
}

HINSTANCE SetResourceModule(HINSTANCE module, LANGID newLanguage) {
    void* const previous = InterlockedExchangePointer(&resources, module);
    language = newLanguage;
    TextsChanged();
    return static_cast<HINSTANCE>(previous);
}

unsigned TextsVersion() {
    return version;
}
void TextsChanged() {
    version += version == ~0u ? 2 : 1;
}

std::wstring_view LoadText(UINT id) {
    const wchar_t* found = nullptr;
    size_t length = platform::ResourceString(ResourceModule(), id, &found);
    if (length == 0 && ResourceModule() != program) {
        length = platform::ResourceString(program, id, &found);
    }
    return length == 0 ? L"<resource not found>" : std::wstring_view(found, length);
}

namespace {

HMENU LoadPackMenu(UINT id) {
    const HINSTANCE pack = ResourceModule();
    return IsSoundMenu(ResourceBytes(pack, id, RT_MENU)) ? LoadMenuW(pack, MAKEINTRESOURCEW(id))
                                                         : nullptr;
}

}  // namespace

std::wstring_view LoadPattern(UINT id) {
    const std::wstring_view pattern = LoadText(id);
    if (ResourceModule() == program) {
        return pattern;
    }
    const wchar_t* found = nullptr;
    const size_t length = platform::ResourceString(program, id, &found);
    const std::wstring_view original(found, length);
    return length == 0 || InsertsFit(pattern, original) ? pattern : original;
}

HMENU LoadMenuResource(UINT id) {
    HMENU menu = ResourceModule() != program ? LoadPackMenu(id) : nullptr;
    if (!menu) {
        menu = LoadMenuW(program, MAKEINTRESOURCEW(id));
    }
    return menu;
}

}  // namespace text
