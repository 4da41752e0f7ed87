#include "text/resources.h"

#include "platform/coredll.h"

namespace text {

namespace {

HINSTANCE program = nullptr;
void* volatile resources = nullptr;
LANGID language = programLanguage;

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
}

HINSTANCE SetResourceModule(HINSTANCE module, LANGID newLanguage) {
    void* const previous = InterlockedExchangePointer(&resources, module);
    language = newLanguage;
    return static_cast<HINSTANCE>(previous);
}

std::wstring_view LoadText(UINT id) {
    const wchar_t* found = nullptr;
    size_t length = platform::ResourceString(ResourceModule(), id, &found);
    if (length == 0 && ResourceModule() != program) {
        length = platform::ResourceString(program, id, &found);
    }
    return length == 0 ? L"<resource not found>" : std::wstring_view(found, length);
}

HMENU LoadMenuResource(UINT id) {
    HMENU menu = LoadMenuW(ResourceModule(), MAKEINTRESOURCEW(id));
    if (!menu && ResourceModule() != program) {
        menu = LoadMenuW(program, MAKEINTRESOURCEW(id));
    }
    return menu;
}

}  // namespace text
