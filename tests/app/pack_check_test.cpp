#include "text/pack/pack_check.h"
#include "text/pack/resource_checks.h"

#include <cstring>

#include "app/language.h"
#include "platform/handles.h"
#include "res/resource.h"
#include "tests/app/language_fixture.h"
#include "tests/support/crash.h"
#include "text/format.h"
#include "text/pack/resource_checks.h"
#include "text/resources.h"
#include "ui/paint/drawing_resources.h"

using namespace test;
using app::LoadLanguage;

namespace {

decltype(ReadFile)* readFile = nullptr;
BOOL WINAPI ReadAndFail(HANDLE file, void* buffer, DWORD size, DWORD* read, OVERLAPPED* place) {
    readFile(file, buffer, size, read, place);
    SetLastError(ERROR_READ_FAULT);
    return FALSE;
}
BOOL WINAPI ReadLess(HANDLE file, void* buffer, DWORD size, DWORD* read, OVERLAPPED* place) {
    const BOOL done = readFile(file, buffer, size, read, place);
    --*read;
    return done;
}

class HostilePacks : public LanguageFixture {
 protected:
    std::wstring PackPath() const { return folder.Path() + L"\\vantor.exe.0407.ui"; }
    std::vector<BYTE> Read(const std::wstring& path) const {
        const platform::UniqueHandle file(CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ,
                                                      nullptr, OPEN_EXISTING, 0, nullptr));
        std::vector<BYTE> bytes(GetFileSize(file.Get(), nullptr));
        DWORD read = 0;
        EXPECT_TRUE(
            ReadFile(file.Get(), bytes.data(), static_cast<DWORD>(bytes.size()), &read, nullptr));
        return bytes;
    }
    void WritePack(const std::vector<BYTE>& bytes) const {
        folder.MakeFile(
            L"vantor.exe.0407.ui",
            std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    }
    // A pack with some of everything.
    std::vector<BYTE> SoundPack() {
        ResourceModule(german)
            .Text(IDS_BUTTON_OK, L"Gut")
            .Text(IDS_ERROR, L"Fehler")
            .Text(IDS_FREE_OF, L"%2 von %1 frei")
            .Raw(16, 1, VersionBlock(L"040704B0", {{L"Translated", L"Wir"}}))
            .Picture(1000, std::vector<BYTE>(64))
            .Write(PackPath());
        return Read(PackPath());
    }
    // What the program asks of a pack at its start and later; it must survive each.
    static void UsePack() {
        for (UINT id = 100; id < 1100; ++id) {
            text::LoadText(id);
            text::LoadPattern(id);
        }
        for (const UINT menu : {120u, 500u, 502u, 506u, 511u}) {
            DestroyMenu(text::LoadMenuResource(menu));
        }
        ui::StripModule(ui::mainStrips, 80);
    }
};

}  // namespace

TEST_F(HostilePacks, ThatAreWholeAreTaken) {
    const std::vector<BYTE> bytes = SoundPack();
    EXPECT_TRUE(text::IsWholeModule(bytes.data(), bytes.size()));
    EXPECT_TRUE(LoadLanguage(german));
    EXPECT_EQ(Ok(), L"Gut");
}

TEST_F(HostilePacks, CutOffAnywhereLeaveEnglish) {
    const std::vector<BYTE> bytes = SoundPack();
    for (size_t size = 0; size < bytes.size(); size += size < 0x600 ? 7 : 41) {
        EXPECT_FALSE(text::IsWholeModule(bytes.data(), size)) << size;
    }
    WritePack({bytes.begin(), bytes.begin() + 0x500});
    EXPECT_FALSE(LoadLanguage(german));
    EXPECT_EQ(Ok(), L"Ok");
    EXPECT_EQ(text::Language(), text::programLanguage);
}

// Each word of the resource section in turn becomes an extreme one.
TEST_F(HostilePacks, WithAnyWordChangedAreSurvived) {
    // The system follows what a pack says, and finds nothing where that leads nowhere.
    const FaultsLeftToTheSystem left;
    const std::vector<BYTE> sound = SoundPack();
    for (size_t at = 0x400; at + 3 < sound.size() && at < 0x900; at += 4) {
        for (const DWORD lie : {0u, 0x80000000u, 0x7FFFFFF0u, 0xFFFFFFFFu, 0x0001FFFFu}) {
            std::vector<BYTE> bytes = sound;
            for (size_t byte = 0; byte < 4; ++byte) {
                bytes[at + byte] = static_cast<BYTE>(lie >> 8 * byte & 0xFF);
            }
            WritePack(bytes);
            if (LoadLanguage(german)) {
                UsePack();
                const HMODULE pack = text::ResourceModule();
                text::SetProgramModule(text::ProgramModule());
                FreeLibrary(pack);
            }
            ASSERT_TRUE(DeleteFileW(PackPath().c_str()));
        }
    }
    EXPECT_EQ(Ok(), L"Ok");
}

// A handheld ends a program that reads a word across the places of two.
TEST_F(HostilePacks, WithADataAcrossTwoWordsLeaveEnglish) {
    const std::vector<BYTE> sound = SoundPack();
    unsigned moved = 0;
    for (size_t at = 0x400; at + 3 < sound.size() && at < 0x900; at += 4) {
        DWORD word = 0;
        std::memcpy(&word, &sound[at], sizeof word);
        // Where the image's one section lies.
        if (word >= 0x1000 && word < 0x1000 + sound.size()) {
            std::vector<BYTE> bytes = sound;
            bytes[at] |= 2;
            EXPECT_FALSE(text::IsWholeModule(bytes.data(), bytes.size())) << at;
            ++moved;
        }
    }
    // Two blocks of texts, a version and a picture.
    EXPECT_EQ(moved, 4u);
}

TEST_F(HostilePacks, ThatSayTheyAreShorterThanTheyAreLeaveEnglish) {
    std::vector<BYTE> bytes = SoundPack();
    const auto header = reinterpret_cast<const IMAGE_NT_HEADERS*>(
        bytes.data() + reinterpret_cast<const IMAGE_DOS_HEADER*>(bytes.data())->e_lfanew);
    auto* const section = const_cast<IMAGE_SECTION_HEADER*>(IMAGE_FIRST_SECTION(header));
    EXPECT_TRUE(text::IsWholeModule(bytes.data(), bytes.size()));
    section->Misc.VirtualSize = 0x80;
    EXPECT_FALSE(text::IsWholeModule(bytes.data(), bytes.size()));
    section->Misc.VirtualSize = 0;
    EXPECT_TRUE(text::IsWholeModule(bytes.data(), bytes.size()));
}

// A loader knows a type by half of its word.
TEST_F(HostilePacks, WithTextsUnderATypeOfAnotherWordLeaveEnglish) {
    const std::vector<BYTE> sound = SoundPack();
    const std::vector<BYTE> text = {3, 0, 'G', 0, 'u', 0, 't', 0};
    const auto found = std::search(sound.begin(), sound.end(), text.begin(), text.end());
    ASSERT_NE(found, sound.end());
    // The second entry of the first folder is that of the texts.
    constexpr size_t typePlace = 0x400 + 16 + 8;
    ASSERT_EQ(sound[typePlace], 6);
    for (const BYTE upper : {BYTE{0}, BYTE{1}, BYTE{0x40}}) {
        std::vector<BYTE> bytes = sound;
        bytes[typePlace + 2] = upper;
        EXPECT_TRUE(text::IsWholeModule(bytes.data(), bytes.size()));
        // A text that goes on behind the file.
        bytes[static_cast<size_t>(found - sound.begin()) + 1] = 0xFF;
        EXPECT_FALSE(text::IsWholeModule(bytes.data(), bytes.size())) << int{upper};
    }
}

// A loader keeps a section with what it has; what lies behind it in the file is not loaded.
TEST_F(HostilePacks, WithAFolderBehindTheirSectionLeaveEnglish) {
    std::vector<BYTE> bytes = SoundPack();
    bytes.resize(bytes.size() + 0x200);
    EXPECT_TRUE(text::IsWholeModule(bytes.data(), bytes.size()));
    // The second entry of the first folder leads to a folder without entries, at the file's end.
    const auto beyond = static_cast<DWORD>(bytes.size() - 0x400 - 16) | 0x80000000;
    std::memcpy(&bytes[0x400 + 16 + 8 + 4], &beyond, sizeof beyond);
    EXPECT_FALSE(text::IsWholeModule(bytes.data(), bytes.size()));
}

// Where sections lie one over another, or over the headers, each loader finds other bytes.
TEST_F(HostilePacks, WithSectionsInEachOthersPlaceLeaveEnglish) {
    const std::vector<BYTE> sound = SoundPack();
    const auto withSections = [&](DWORD first, DWORD stored, DWORD headers) {
        std::vector<BYTE> bytes = sound;
        auto* const image = reinterpret_cast<IMAGE_NT_HEADERS64*>(
            bytes.data() + reinterpret_cast<const IMAGE_DOS_HEADER*>(bytes.data())->e_lfanew);
        auto* const sections = IMAGE_FIRST_SECTION(image);
        sections[1] = sections[0];
        sections[0].VirtualAddress = first;
        sections[0].Misc.VirtualSize = 0x10;
        sections[0].SizeOfRawData = stored;
        image->FileHeader.NumberOfSections = 2;
        image->OptionalHeader.SizeOfHeaders = headers;
        return text::IsWholeModule(bytes.data(), bytes.size());
    };
    EXPECT_TRUE(withSections(0x800, 0x200, 0x400));
    EXPECT_TRUE(withSections(0xE00, 0x200, 0x400));
    EXPECT_FALSE(withSections(0xE00, 0x201, 0x400));
    EXPECT_FALSE(withSections(0x1000, 0x10, 0x400));
    EXPECT_FALSE(withSections(0x2000, 0x10, 0x400));
    EXPECT_FALSE(withSections(0x800, 0x200, 0x801));
    EXPECT_FALSE(withSections(0x800, 0x200, 0xFFFFFFFF));
}

// A loader takes as much memory as the image says, and puts headers and sections where they say.
TEST_F(HostilePacks, WithSectionsOutsideTheImageLeaveEnglish) {
    const std::vector<BYTE> sound = SoundPack();
    const auto header =
        static_cast<size_t>(reinterpret_cast<const IMAGE_DOS_HEADER*>(sound.data())->e_lfanew);
    const auto withSizes = [&](DWORD imageSize, DWORD headers, DWORD sectionSize) {
        std::vector<BYTE> bytes = sound;
        auto* const image = reinterpret_cast<IMAGE_NT_HEADERS64*>(&bytes[header]);
        image->OptionalHeader.SizeOfImage = imageSize;
        image->OptionalHeader.SizeOfHeaders = headers;
        IMAGE_FIRST_SECTION(image)->Misc.VirtualSize = sectionSize;
        return text::IsWholeModule(bytes.data(), bytes.size());
    };
    const auto* const image = reinterpret_cast<const IMAGE_NT_HEADERS64*>(&sound[header]);
    const DWORD headers = image->OptionalHeader.SizeOfHeaders;
    const DWORD start = IMAGE_FIRST_SECTION(image)->VirtualAddress;
    const DWORD size = IMAGE_FIRST_SECTION(image)->SizeOfRawData;
    EXPECT_TRUE(withSizes(start + size, headers, 0));
    EXPECT_FALSE(withSizes(start + size - 1, headers, 0));
    EXPECT_TRUE(withSizes(start + size + 1, headers, size + 1));
    EXPECT_FALSE(withSizes(start + size, headers, size + 1));
    EXPECT_FALSE(withSizes(0, headers, 0));
    // No more than there are addresses in a process.
    EXPECT_TRUE(withSizes(0x02000000, headers, 0));
    EXPECT_FALSE(withSizes(0x02000001, headers, 0));
    EXPECT_FALSE(withSizes(0x80000000, headers, 0x7FFF0000));
    const auto whole = static_cast<DWORD>(sound.size());
    ASSERT_LT(whole, start);
    EXPECT_TRUE(withSizes(0x02000000, whole, 0));
    EXPECT_FALSE(withSizes(0x02000000, whole + 1, 0));
}

// Each address would be looked for in all of them.
TEST_F(HostilePacks, WithMoreSectionsThanALoaderTakesLeaveEnglish) {
    const std::vector<BYTE> sound = SoundPack();
    const auto withSections = [&](WORD count) {
        std::vector<BYTE> bytes = sound;
        auto* const image = reinterpret_cast<IMAGE_NT_HEADERS64*>(
            bytes.data() + reinterpret_cast<const IMAGE_DOS_HEADER*>(bytes.data())->e_lfanew);
        const auto place = static_cast<size_t>(
            reinterpret_cast<const BYTE*>(IMAGE_FIRST_SECTION(image)) - bytes.data());
        image->FileHeader.NumberOfSections = count;
        IMAGE_SECTION_HEADER ours;
        std::memcpy(&ours, &bytes[place], sizeof ours);
        const size_t added = (count - size_t{1}) * sizeof ours;
        ours.PointerToRawData += static_cast<DWORD>(added);
        bytes.insert(bytes.begin() + static_cast<std::ptrdiff_t>(place), added, 0);
        std::memcpy(&bytes[place + added], &ours, sizeof ours);
        for (size_t at = place; at < place + added; at += sizeof ours) {
            reinterpret_cast<IMAGE_SECTION_HEADER*>(&bytes[at])->VirtualAddress = 0x1000;
        }
        return text::IsWholeModule(bytes.data(), bytes.size());
    };
    EXPECT_TRUE(withSections(96));
    EXPECT_FALSE(withSections(97));
    EXPECT_FALSE(withSections(0xFFFF));
}

TEST_F(HostilePacks, ThatAreAnotherProgramLeaveEnglishWhereItHasNoText) {
    wchar_t notepad[MAX_PATH];
    ASSERT_TRUE(GetSystemDirectoryW(notepad, MAX_PATH));
    ASSERT_TRUE(
        CopyFileW((std::wstring(notepad) + L"\\notepad.exe").c_str(), PackPath().c_str(), FALSE));
    LoadLanguage(german);
    UsePack();
    EXPECT_EQ(text::LoadText(IDS_ASK_RESTART).substr(0, 15), L"Language option");
}

TEST_F(HostilePacks, WithOtherInsertsLeaveThePatternEnglish) {
    ResourceModule(german)
        .Text(IDS_APPLICATIONS_TITLE, L"Anwendungen (%1)")
        .Text(IDS_PROCESSES_TITLE, L"Prozesse (%2!i!)")
        .Text(IDS_DLLS_TITLE, L"DLLs (%1!*.*s!)")
        .Text(IDS_PROCESS_WITH_ID, L"%2 [%1!x!]")
        .Text(IDS_ACTION_FAILED, L"Nichts%n%1!")
        .Text(IDS_PERCENT, L"%1!i")
        .Write(PackPath());
    ASSERT_TRUE(LoadLanguage(german));
    EXPECT_EQ(text::FormatText(IDS_APPLICATIONS_TITLE, 7), L"Applications (7)");
    EXPECT_EQ(text::FormatText(IDS_PROCESSES_TITLE, 7), L"Processes (7)");
    EXPECT_EQ(text::FormatText(IDS_DLLS_TITLE, 7), L"Dlls (7)");
    EXPECT_EQ(text::FormatText(IDS_PROCESS_WITH_ID, 31, L"x"), L"x [1f]");
    EXPECT_EQ(text::FormatText(IDS_PERCENT, 57), L"57%");
    EXPECT_EQ(text::FormatText(IDS_ACTION_FAILED, L"x").substr(0, 10), L"The action");
}

TEST_F(HostilePacks, WithAnInsertAtTheirEndAreReadNoFurther) {
    EXPECT_TRUE(text::InsertsFit(std::wstring_view(L"%12", 2), L"%1"));
    EXPECT_FALSE(text::InsertsFit(L"%12", L"%1"));
}

TEST_F(HostilePacks, WithAMenuBehindALongerHeadAreTaken) {
    const std::vector<BYTE> menu = {0, 0, 4, 0, 1, 1, 1, 1, 0x80, 0, 77, 0, 'D', 0, 0, 0};
    EXPECT_TRUE(text::IsSoundMenu({menu.data(), menu.size()}));
}

TEST_F(HostilePacks, WithoutResourcesLeaveEnglish) {
    std::vector<BYTE> bytes = SoundPack();
    ASSERT_TRUE(text::IsWholeModule(bytes.data(), bytes.size()));
    const size_t header = bytes[0x3C] | static_cast<size_t>(bytes[0x3D]) << 8;
    const size_t optional = header + 24;
    const size_t directories = bytes[optional + 1] == 2 ? 112 : 96;
    const size_t resources = optional + directories + size_t{8} * IMAGE_DIRECTORY_ENTRY_RESOURCE;
    std::fill_n(bytes.begin() + static_cast<ptrdiff_t>(resources), 4, BYTE{0});
    EXPECT_FALSE(text::IsWholeModule(bytes.data(), bytes.size()));
}

TEST_F(HostilePacks, WithAMenuOfTenThousandItemsLeaveTheMenuEnglish) {
    std::vector<BYTE> menu(4);
    for (int item = 0; item < 10000; ++item) {
        const BYTE last = item == 9999 ? 0x80 : 0;
        menu.insert(menu.end(), {last, 0, 77, 0, 'D', 0, 'a', 0, 0, 0});
    }
    ResourceModule(german).Raw(4, IDR_FILES, menu).Write(PackPath());
    ASSERT_TRUE(LoadLanguage(german));
    const platform::UniqueMenu loaded(text::LoadMenuResource(IDR_FILES));
    EXPECT_EQ(GetMenuItemCount(loaded.Get()), 2);
}

TEST_F(HostilePacks, WithAMenuWithoutAnEndLeaveTheMenuEnglish) {
    const std::vector<std::vector<BYTE>> menus = {
        {},
        {0, 0, 0, 0},
        {0, 0, 0, 0, 0x80, 0, 77, 0, 'D', 0},
        {0, 0, 0, 0, 0, 0, 77, 0, 'D', 0, 0, 0},
        {0, 0, 0xFF, 0xFF, 0x80, 0, 77, 0, 'D', 0, 0, 0},
        {1, 0, 4, 0, 0, 0, 0, 0, 0x80, 0, 77, 0, 'D', 0, 0, 0},
        // A popup that ends behind the resource.
        {0, 0, 0, 0, 0x90, 0, 'D', 0, 0, 0},
    };
    for (const std::vector<BYTE>& menu : menus) {
        EXPECT_FALSE(text::IsSoundMenu({menu.data(), menu.size()}));
    }
    // As deep as a menu may be, and one deeper.
    for (const int popups : {3, 4}) {
        std::vector<BYTE> nested(4);
        for (int floor = 0; floor < popups; ++floor) {
            nested.insert(nested.end(), {0x90, 0, 'D', 0, 0, 0});
        }
        nested.insert(nested.end(), {0x80, 0, 77, 0, 'D', 0, 0, 0});
        EXPECT_EQ(text::IsSoundMenu({nested.data(), nested.size()}), popups == 3);
    }
    std::vector<BYTE> deep(4);
    for (int floor = 0; floor < 1000; ++floor) {
        deep.insert(deep.end(), {0x90, 0, 'D', 0, 0, 0});
    }
    deep.insert(deep.end(), {0x80, 0, 77, 0, 'D', 0, 0, 0});
    EXPECT_FALSE(text::IsSoundMenu({deep.data(), deep.size()}));
    ResourceModule(german)
        .Raw(4, IDR_FILES, deep)
        .Raw(4, IDR_SLIDE_BAR, menus[2])
        .Write(PackPath());
    ASSERT_TRUE(LoadLanguage(german));
    EXPECT_EQ(GetMenuItemCount(platform::UniqueMenu(text::LoadMenuResource(IDR_FILES)).Get()), 2);
    EXPECT_EQ(GetMenuItemCount(platform::UniqueMenu(text::LoadMenuResource(IDR_SLIDE_BAR)).Get()),
              4);
}

TEST_F(HostilePacks, WithPicturesOfNoSizeLeaveTheProgramsPictures) {
    // A picture as it begins, with a height of 0.
    const std::vector<BYTE> flat(64);
    ResourceModule(german).Picture(1000, flat).Picture(1005, flat).Write(PackPath());
    ASSERT_TRUE(LoadLanguage(german));
    EXPECT_EQ(ui::StripModule(ui::mainStrips, 80), text::ProgramModule());
    EXPECT_EQ(ui::StripModule(ui::statusStrips, 80), text::ProgramModule());
}

TEST_F(HostilePacks, WithPicturesHigherThanAnyScreenLeaveTheProgramsPictures) {
    for (const BYTE highest : {BYTE{0x01}, BYTE{0x7F}, BYTE{0xFF}}) {
        std::vector<BYTE> high(64);
        high[20] = highest;
        ResourceModule(german).Picture(1000, high).Picture(1005, high).Write(PackPath());
        ASSERT_TRUE(LoadLanguage(german));
        EXPECT_EQ(ui::StripModule(ui::mainStrips, 80), text::ProgramModule());
        EXPECT_EQ(ui::StripModule(ui::statusStrips, 80), text::ProgramModule());
        const HMODULE pack = text::ResourceModule();
        text::SetProgramModule(text::ProgramModule());
        FreeLibrary(pack);
    }
}

TEST_F(HostilePacks, ThatCannotBeReadWholeAreDamaged) {
    SoundPack();
    EXPECT_FALSE(text::IsDamagedPack(PackPath().c_str()));
    for (decltype(ReadFile)* const fault : {ReadAndFail, ReadLess}) {
        const PlatformHook<decltype(ReadFile)> hook("ReadFile", fault);
        readFile = hook.Original();
        EXPECT_TRUE(text::IsDamagedPack(PackPath().c_str()));
    }
}

TEST_F(HostilePacks, AsLargeAsNoPackAreNotRead) {
    {
        const platform::UniqueHandle file(
            CreateFileW(PackPath().c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        SetFilePointer(file.Get(), 64 * 1024 * 1024, nullptr, FILE_BEGIN);
        ASSERT_TRUE(SetEndOfFile(file.Get()));
    }
    EXPECT_TRUE(text::IsDamagedPack(PackPath().c_str()));
    EXPECT_FALSE(LoadLanguage(german));
    EXPECT_EQ(Ok(), L"Ok");
}
