// Applications that are hidden, and the file that says which.
#include <objbase.h>

#include "faults/fault.h"
#include "platform/handles.h"
#include "res/resource.h"
#include "tests/support/heaps.h"
#include "tests/support/resource_module.h"
#include "tests/support/sample_program.h"
#include "tests/views/applications_fixture.h"
#include "text/resources.h"

using namespace test;

namespace {

class HiddenApplications : public ApplicationsFixture {
 protected:
    static std::string Narrow(const std::wstring& text) {
        return std::string(text.begin(), text.end());
    }
    // A file of the given entries.
    void WriteEntries(const std::string& entries) const {
        hiddenApps.Write("<hide>" + entries + "</hide>");
    }
    static unsigned CountOf(const std::string& text, const std::string& part) {
        unsigned count = 0;
        for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) {
            ++count;
        }
        return count;
    }
    HRESULT CodeOfHiding(HWND window) {
        try {
            hidden.HideApp(window);
        } catch (const faults::ErrorMessage::IFaultBase& fault) {
            return fault.Code();
        }
        return S_OK;
    }
};

BSTR(WINAPI* allocateText)(const wchar_t*) = nullptr;

BSTR WINAPI NoRoomForThePath(const wchar_t* text) {
    return std::wstring_view(text).ends_with(L"hiddenapps.xml") ? nullptr : allocateText(text);
}

HRESULT WINAPI UnknownProgram(const wchar_t*, CLSID*) {
    return CO_E_CLASSSTRING;
}
HRESULT WINAPI NoPrograms(const wchar_t*, CLSID*) {
    return REGDB_E_READREGDB;
}
BOOL WINAPI NoMove(const wchar_t*, const wchar_t*, DWORD) {
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}
BOOL WINAPI OnlyDelete(const wchar_t*, const wchar_t* destination, DWORD) {
    DeleteFileW(destination);
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}
BOOL WINAPI NotTaken(const wchar_t*, const wchar_t*) {
    return FALSE;
}
DWORD WINAPI ProcessUnknown(HWND, DWORD* process) {
    *process = 0;
    return 0xFFFFFFF0;
}
HANDLE WINAPI NoProcess(DWORD, BOOL, DWORD) {
    SetLastError(ERROR_ACCESS_DENIED);
    return nullptr;
}
HANDLE WINAPI NoSnapshot(DWORD, DWORD) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return INVALID_HANDLE_VALUE;
}
BOOL WINAPI NoNewFolder(const wchar_t*, SECURITY_ATTRIBUTES*) {
    SetLastError(ERROR_WRITE_PROTECT);
    return FALSE;
}

// How the special folder was asked for: whether it is to be made.
std::vector<BOOL> asksToMake;
BOOL(WINAPI* specialFolder)(HWND, wchar_t*, int, BOOL) = nullptr;
BOOL WINAPI NoteFolder(HWND owner, wchar_t* path, int folder, BOOL create) {
    EXPECT_FALSE(owner);
    EXPECT_EQ(folder, 26);
    asksToMake.push_back(create);
    return specialFolder(owner, path, folder, create);
}

// What was asked of COM.
std::vector<std::wstring> programs;
HRESULT(WINAPI* classOfProgram)(const wchar_t*, CLSID*) = nullptr;
HRESULT WINAPI NoteProgram(const wchar_t* name, CLSID* program) {
    programs.push_back(name);
    return classOfProgram(name, program);
}
std::vector<DWORD> contexts;
bool withoutAnObject = false;
HRESULT(WINAPI* createObject)(const CLSID*, IUnknown*, DWORD, const IID*, void**) = nullptr;
HRESULT WINAPI NoteObject(const CLSID* program, IUnknown* outer, DWORD context, const IID* kind,
                          void** object) {
    EXPECT_FALSE(outer);
    contexts.push_back(context);
    if (withoutAnObject) {
        *object = nullptr;
        return S_OK;
    }
    return createObject(program, outer, context, kind, object);
}

BOOL WINAPI NoFolder(HWND, wchar_t*, int, BOOL) {
    return FALSE;
}

}  // namespace

TEST_F(HiddenApplications, AreNoneWithoutAFile) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    EXPECT_FALSE(hidden.IsHidden(program.Window()));
    EXPECT_TRUE(Lists(L"Sample 1"));
}

TEST_F(HiddenApplications, HidingMakesTheFolderAndAFileWithOneEntry) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    Select(L"Sample 1");
    view->Command(ID_HIDE);
    EXPECT_FALSE(Lists(L"Sample 1"));
    const std::string file = hiddenApps.Read();
    EXPECT_EQ(CountOf(file, "<hide>"), 1u) << file;
    EXPECT_EQ(CountOf(file, "<application"), 1u) << file;
    EXPECT_EQ(CountOf(file, "sample_program.exe\""), 1u) << file;
    EXPECT_TRUE(hiddenApps.Read(L".new").empty());
}

TEST_F(HiddenApplications, OfAnEmptyListComeBackUntilTheNextStart) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    Select(L"Sample 1");
    view->Command(ID_HIDE);
    view->Refresh();
    EXPECT_TRUE(Lists(L"Sample 1"));
    Select(L"Sample 1");
    view->Command(ID_HIDE);
    EXPECT_EQ(CountOf(hiddenApps.Read(), "<application"), 2u);
    Open();
    EXPECT_FALSE(Lists(L"Sample 1"));
    frame.flags = 0x0020;
    view->FlagsChanged(0x0020, 0x0020);
    EXPECT_TRUE(Lists(L"Sample 1"));
    Select(L"Sample 1");
    view->Command(ID_HIDE);
    EXPECT_TRUE(Lists(L"Sample 1")) << "hidden ones are shown";
    EXPECT_EQ(CountOf(hiddenApps.Read(), "<application"), 2u) << "it stands there already";
}

TEST_F(HiddenApplications, AreKnownByTheirNameInAnyCaseAndFolder) {
    const SampleProgram program(L"polite", L"Sample 1");
    WriteEntries("<application name=\"SAMPLE_program.EXE\"/>");
    Open();
    EXPECT_TRUE(hidden.IsHidden(program.Window()));
    EXPECT_FALSE(Lists(L"Sample 1"));
}

TEST_F(HiddenApplications, AnEntryWithAPathIsNoName) {
    const SampleProgram program(L"polite", L"Sample 1");
    WriteEntries("<application path=\"\\elsewhere.exe\" name=\"sample_program.exe\"/>");
    Open();
    EXPECT_TRUE(Lists(L"Sample 1"));
    WriteEntries("<application path=\"\" name=\"sample_program.exe\"/>");
    Open();
    EXPECT_FALSE(Lists(L"Sample 1"));
    WriteEntries("<program name=\"sample_program.exe\"/><application/>");
    Open();
    EXPECT_TRUE(Lists(L"Sample 1"));
}

TEST_F(HiddenApplications, WhatElseTheFileHoldsIsKept) {
    const SampleProgram program(L"polite", L"Sample 1");
    WriteEntries("<!-- mine --><note colour=\"red\">text</note><application name=\"other.exe\"/>");
    Open();
    Select(L"Sample 1");
    view->Command(ID_HIDE);
    const std::string file = hiddenApps.Read();
    EXPECT_EQ(CountOf(file, "<!-- mine -->"), 1u) << file;
    EXPECT_EQ(CountOf(file, "<note colour=\"red\">text</note>"), 1u) << file;
    EXPECT_EQ(CountOf(file, "other.exe"), 1u) << file;
    EXPECT_EQ(CountOf(file, "sample_program.exe"), 1u) << file;
    view->Refresh();
    EXPECT_FALSE(Lists(L"Sample 1")) << "the list was not empty at its start";
}

TEST_F(HiddenApplications, AFileThatCannotBeReadIsKeptBesideTheNewOne) {
    const SampleProgram program(L"polite", L"Sample 1");
    const std::string broken = "<hide><application name=\"other.exe\"></hide>";
    hiddenApps.Write(broken);
    Open();
    EXPECT_TRUE(Lists(L"Sample 1"));
    EXPECT_EQ(CodeOfHiding(program.Window()), S_OK);
    EXPECT_EQ(hiddenApps.Read(L".bak"), broken);
    EXPECT_EQ(CountOf(hiddenApps.Read(), "sample_program.exe"), 1u);
}

// Nobody knows what it holds.
TEST_F(HiddenApplications, AFileThatCannotBeReadForWantOfMemoryIsNotReplaced) {
    const SampleProgram program(L"polite", L"Sample 1");
    WriteEntries("<application name=\"other.exe\"/>");
    const std::string before = hiddenApps.Read();
    Open();
    {
        const PlatformHook<BSTR WINAPI(const wchar_t*)> hook("SysAllocString", NoRoomForThePath);
        allocateText = hook.Original();
        EXPECT_EQ(CodeOfHiding(program.Window()), E_OUTOFMEMORY);
    }
    EXPECT_EQ(hiddenApps.Read(), before);
    EXPECT_TRUE(hiddenApps.Read(L".bak").empty());
    EXPECT_EQ(CodeOfHiding(program.Window()), S_OK);
    EXPECT_EQ(CountOf(hiddenApps.Read(), "other.exe"), 1u);
}

TEST_F(HiddenApplications, AnotherProgramsFileIsLeftAlone) {
    const SampleProgram program(L"polite", L"Sample 1");
    const std::string foreign = "<settings><application name=\"sample_program.exe\"/></settings>";
    hiddenApps.Write(foreign);
    Open();
    EXPECT_TRUE(Lists(L"Sample 1"));
    EXPECT_EQ(CodeOfHiding(program.Window()), faults::ResultFromError(ERROR_INVALID_DATA));
    EXPECT_EQ(hiddenApps.Read(), foreign);
}

TEST_F(HiddenApplications, AFileThatCannotBeReplacedStaysWhole) {
    const SampleProgram program(L"polite", L"Sample 1");
    WriteEntries("<application name=\"other.exe\"/>");
    const std::string before = hiddenApps.Read();
    Open();
    {
        const PlatformHook<BOOL WINAPI(const wchar_t*, const wchar_t*, DWORD)> move("MoveFileExW",
                                                                                    NoMove);
        EXPECT_EQ(CodeOfHiding(program.Window()), faults::ResultFromError(ERROR_DISK_FULL));
    }
    EXPECT_EQ(hiddenApps.Read(), before);
    EXPECT_TRUE(hiddenApps.Read(L".new").empty());
    EXPECT_TRUE(hidden.IsHidden(program.Window())) << "until the program ends";
    view->Refresh();
    EXPECT_FALSE(Lists(L"Sample 1"));
    Open();
    EXPECT_TRUE(Lists(L"Sample 1"));
}

// A handheld has no move that replaces: the old file goes first.
TEST_F(HiddenApplications, OutliveASaveThatEndsBetweenTheOldFileAndTheNew) {
    const SampleProgram program(L"polite", L"Sample 1");
    WriteEntries("<application name=\"other.exe\"/>");
    Open();
    {
        const PlatformHook<BOOL WINAPI(const wchar_t*, const wchar_t*, DWORD)> move("MoveFileExW",
                                                                                    OnlyDelete);
        EXPECT_EQ(CodeOfHiding(program.Window()), faults::ResultFromError(ERROR_DISK_FULL));
    }
    EXPECT_TRUE(hiddenApps.Read().empty());
    Open();
    EXPECT_TRUE(hidden.IsHidden(program.Window()));
    EXPECT_EQ(CountOf(hiddenApps.Read(), "other.exe"), 1u);
    EXPECT_TRUE(hiddenApps.Read(L".new").empty());
}

// What a first save has left unfinished must not be taken up as the list.
TEST_F(HiddenApplications, LeaveNothingBehindWhenTheFirstSaveFails) {
    const SampleProgram program(L"polite", L"Sample 1");
    hiddenApps.Write("");
    ASSERT_TRUE(MoveFileW(hiddenApps.File().c_str(), hiddenApps.File(L".new").c_str()));
    {
        const PlatformHook<BOOL WINAPI(const wchar_t*, const wchar_t*)> taken("MoveFileW",
                                                                              NotTaken);
        const platform::UniqueHandle held(
            CreateFileW(hiddenApps.File(L".new").c_str(), GENERIC_READ,
                        FILE_SHARE_READ | FILE_SHARE_DELETE, nullptr, OPEN_EXISTING, 0, nullptr));
        ASSERT_NE(held.Get(), INVALID_HANDLE_VALUE);
        EXPECT_NE(CodeOfHiding(program.Window()), S_OK);
    }
    EXPECT_EQ(GetFileAttributesW(hiddenApps.File(L".new").c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(GetFileAttributesW(hiddenApps.File().c_str()), INVALID_FILE_ATTRIBUTES);
}

TEST_F(HiddenApplications, DoNotBeginWithAFirstListThatIsHalfWritten) {
    const SampleProgram program(L"polite", L"Sample 1");
    hiddenApps.Write("<hide><application path=\"C:\\oth");
    ASSERT_TRUE(MoveFileW(hiddenApps.File().c_str(), hiddenApps.File(L".new").c_str()));
    Open();
    EXPECT_EQ(GetFileAttributesW(hiddenApps.File().c_str()), INVALID_FILE_ATTRIBUTES);
    EXPECT_EQ(CodeOfHiding(program.Window()), S_OK);
    EXPECT_EQ(CountOf(hiddenApps.Read(), "sample_program.exe"), 1u);
    EXPECT_TRUE(hiddenApps.Read(L".bak").empty()) << "there was no list to keep";
}

TEST_F(HiddenApplications, WhoseSaveHasFailedAreSavedWhenTheyAreHiddenAgain) {
    const SampleProgram program(L"polite", L"Sample 1");
    WriteEntries("<application name=\"other.exe\"/>");
    Open();
    {
        const PlatformHook<BOOL WINAPI(const wchar_t*, const wchar_t*, DWORD)> full("MoveFileExW",
                                                                                    NoMove);
        EXPECT_NE(CodeOfHiding(program.Window()), S_OK);
        EXPECT_NE(CodeOfHiding(program.Window()), S_OK);
    }
    EXPECT_TRUE(hidden.IsHidden(program.Window()));
    EXPECT_EQ(CountOf(hiddenApps.Read(), "<application"), 1u);
    EXPECT_EQ(CodeOfHiding(program.Window()), S_OK);
    EXPECT_EQ(CountOf(hiddenApps.Read(), "<application"), 2u);
    EXPECT_EQ(CodeOfHiding(program.Window()), S_OK);
    EXPECT_EQ(CountOf(hiddenApps.Read(), "<application"), 2u) << "it stands there already";
}

TEST_F(HiddenApplications, NeedNoPlaceToBeEmpty) {
    const SampleProgram program(L"polite", L"Sample 1");
    const PlatformHook<BOOL WINAPI(HWND, wchar_t*, int, BOOL)> folder("SHGetSpecialFolderPathW",
                                                                      NoFolder);
    Open();
    EXPECT_TRUE(Lists(L"Sample 1"));
    EXPECT_EQ(CodeOfHiding(program.Window()), S_OK);
    EXPECT_TRUE(hiddenApps.Read().empty());
}

TEST_F(HiddenApplications, AreReadByThePlainDocumentWhereTheOtherIsUnknown) {
    const SampleProgram program(L"polite", L"Sample 1");
    WriteEntries("<application name=\"sample_program.exe\"/>");
    {
        const PlatformHook<HRESULT WINAPI(const wchar_t*, CLSID*)> unknown("CLSIDFromProgID",
                                                                           UnknownProgram);
        Open();
        EXPECT_FALSE(Lists(L"Sample 1"));
    }
    const PlatformHook<HRESULT WINAPI(const wchar_t*, CLSID*)> none("CLSIDFromProgID", NoPrograms);
    EXPECT_THROW(hidden.LoadHiddenApps(), faults::COMFault);
}

TEST_F(HiddenApplications, AreNotClosedWithTheOthers) {
    const SampleProgram program(L"polite", L"Sample 1");
    WriteEntries("<application name=\"sample_program.exe\"/>");
    Open();
    frame.closer.CloseAllApps();
    EXPECT_TRUE(program.Runs());
}

TEST_F(HiddenApplications, ATitledWindowOfTheShellCannotBeHidden) {
    const SampleProgram shell(L"polite", L"Sample shell");
    MakeShell(shell.Window());
    frame.flags = 0x0010;
    Open();
    Select(L"Sample shell");
    view->Command(ID_HIDE);
    EXPECT_TRUE(Lists(L"Sample shell"));
    EXPECT_TRUE(hiddenApps.Read().empty());
}

TEST_F(HiddenApplications, AreNoneOfAWindowWithoutAProcess) {
    const SampleProgram program(L"polite", L"Sample 1");
    WriteEntries("<application name=\"sample_program.exe\"/>");
    Open();
    const std::string before = hiddenApps.Read();
    ASSERT_TRUE(hidden.IsHidden(program.Window()));
    const PlatformHook<DWORD WINAPI(HWND, DWORD*)> hook("GetWindowThreadProcessId", ProcessUnknown);
    EXPECT_FALSE(hidden.IsHidden(program.Window()));
    EXPECT_EQ(CodeOfHiding(program.Window()), S_OK);
    EXPECT_EQ(hiddenApps.Read(), before);
}

TEST_F(HiddenApplications, AreNoneOfAProcessWhoseExecutableIsNotTold) {
    const SampleProgram program(L"polite", L"Sample 1");
    WriteEntries("<application name=\"sample_program.exe\"/>");
    Open();
    const std::string before = hiddenApps.Read();
    const PlatformHook<HANDLE WINAPI(DWORD, BOOL, DWORD)> open("OpenProcess", NoProcess);
    const PlatformHook<HANDLE WINAPI(DWORD, DWORD)> names("CreateToolhelp32Snapshot", NoSnapshot);
    EXPECT_FALSE(hidden.IsHidden(program.Window()));
    EXPECT_EQ(CodeOfHiding(program.Window()), faults::ResultFromError(ERROR_ACCESS_DENIED));
    EXPECT_EQ(hiddenApps.Read(), before);
}

TEST_F(HiddenApplications, HaveTheirFolderMadeWhenOneIsHiddenAndNoSooner) {
    const SampleProgram program(L"polite", L"Sample 1");
    const PlatformHook<BOOL WINAPI(HWND, wchar_t*, int, BOOL)> folder("SHGetSpecialFolderPathW",
                                                                      NoteFolder);
    specialFolder = folder.Original();
    asksToMake.clear();
    Open();
    EXPECT_EQ(asksToMake, std::vector<BOOL>{FALSE});
    asksToMake.clear();
    EXPECT_EQ(CodeOfHiding(program.Window()), S_OK);
    EXPECT_EQ(asksToMake, std::vector<BOOL>{TRUE});
}

TEST_F(HiddenApplications, WhoseFolderCannotBeMadeAreAFault) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    const PlatformHook<BOOL WINAPI(const wchar_t*, SECURITY_ATTRIBUTES*)> make("CreateDirectoryW",
                                                                               NoNewFolder);
    EXPECT_EQ(CodeOfHiding(program.Window()), faults::ResultFromError(ERROR_WRITE_PROTECT));
    EXPECT_TRUE(hiddenApps.Read().empty());
}

TEST_F(HiddenApplications, AreReadByTheStatedDocument) {
    const PlatformHook<HRESULT WINAPI(const wchar_t*, CLSID*)> names("CLSIDFromProgID",
                                                                     NoteProgram);
    const PlatformHook<HRESULT WINAPI(const CLSID*, IUnknown*, DWORD, const IID*, void**)> objects(
        "CoCreateInstance", NoteObject);
    classOfProgram = names.Original();
    createObject = objects.Original();
    programs.clear();
    contexts.clear();
    withoutAnObject = false;
    Open();
    EXPECT_TRUE(programs.empty()) << "there is no folder";
    EXPECT_TRUE(contexts.empty());
    WriteEntries("");
    Open();
    EXPECT_EQ(programs, std::vector<std::wstring>{L"Msxml2.FreeThreadedDOMDocument"});
    EXPECT_EQ(contexts, std::vector<DWORD>{23});
    withoutAnObject = true;
    try {
        hidden.LoadHiddenApps();
        ADD_FAILURE() << "no fault";
    } catch (const faults::COMFault& fault) {
        EXPECT_EQ(fault.Code(), E_UNEXPECTED);
    }
}

TEST_F(HiddenApplications, AreWrittenWithoutAnythingElse) {
    const SampleProgram program(L"polite", L"Sample 1");
    Open();
    EXPECT_EQ(CodeOfHiding(program.Window()), S_OK);
    const std::string file = hiddenApps.Read();
    EXPECT_EQ(file.find("<hide><application path=\""), 0u) << file;
    EXPECT_EQ(CountOf(file, "<"), 3u) << file;
    EXPECT_EQ(CountOf(file, "="), 1u) << file;
}

TEST_F(HiddenApplications, StandInAFolderOfTheProgramsTitle) {
    const SampleProgram program(L"polite", L"Sample 1");
    const TemporaryFolder packs;
    const std::wstring path = packs.Path() + L"\\pack.dll";
    ResourceModule(0x0407).Text(IDS_PROGRAM, L"Wanderer").Write(path);
    const HMODULE pack = LoadLibraryExW(path.c_str(), nullptr, LOAD_LIBRARY_AS_DATAFILE);
    ASSERT_TRUE(pack);
    text::SetResourceModule(pack, 0x0407);
    const std::wstring file = views::HiddenAppsFilePath(true).path;
    text::SetProgramModule(text::ProgramModule());
    FreeLibrary(pack);
    EXPECT_TRUE(file.ends_with(L"\\Wanderer\\hiddenapps.xml"));
    EXPECT_TRUE(RemoveDirectoryW(file.substr(0, file.rfind(L'\\')).c_str()));
}

TEST_F(HiddenApplications, GiveBackAllTheyTake) {
    const SampleProgram program(L"polite", L"Sample 1");
    const auto round = [&] {
        WriteEntries("<application name=\"other.exe\"/><application path=\"\\a.exe\"/>");
        hidden = views::HiddenAppList();
        hidden.LoadHiddenApps();
        EXPECT_EQ(CodeOfHiding(program.Window()), S_OK);
    };
    for (int i = 0; i < 5; ++i) {
        round();
    }
    const Held before = CountHeld();
    const size_t bytes = BytesOnAllHeaps();
    for (int i = 0; i < 50; ++i) {
        round();
    }
    EXPECT_EQ(CountHeld(), before);
    EXPECT_LE(BytesOnAllHeaps(), bytes);
}
