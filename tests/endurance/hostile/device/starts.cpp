// The program itself, started on what it finds: its settings, a pack, its list of hidden
// applications.
#include <gtest/gtest.h>

#include "app/settings.h"
#include "platform/handles.h"
#include "tests/endurance/hostile/device/parts.h"
#include "tests/support/hidden_apps_folder.h"
#include "tests/support/program.h"
#include "tests/support/wait.h"
#include "tests/support/world.h"

namespace hostile {

namespace {

using namespace test;

constexpr const wchar_t* settingNames[] = {app::settingView, app::settingFlags, L"path",
                                           L"SelectAppPath", L"SelectAppFlags"};

void PutPiece(Block* block, const Bytes& bytes) {
    block->Put32(static_cast<uint32_t>(bytes.size()));
    block->bytes.insert(block->bytes.end(), bytes.begin(), bytes.end());
}

// Each setting's type and data, a list, a pack.
Bytes MakeStart(Chance& chance, bool* whole) {
    static constexpr const char16_t* folders[] = {
        u"", u"\\", u"\\My Documents", u"\\..\\..", u"C:\\\\\\", u"\\\\", u"\\Temp\\."};
    Block block;
    for (size_t setting = 0; setting < std::size(settingNames); ++setting) {
        const bool text = setting == 2 || setting == 3;
        block.Put32(chance.OneIn(6) ? chance.Dice(12) : text ? REG_SZ : REG_DWORD);
        Block data;
        if (text) {
            data.PutText(chance.OneIn(2) ? chance.Of(folders) : OddText(chance, 400));
            data.PutZeros(chance.Dice(4));
        } else {
            data.Put32(chance.OneIn(2) ? chance.Dice(8) : chance.Dice(0x10000) * 0x10001);
        }
        PutPiece(&block, data.bytes);
    }
    bool sound = false;
    PutPiece(&block, hiddenApps.make(chance, &sound));
    PutPiece(&block, packs.make(chance, &sound));
    *whole = false;
    return block.bytes;
}

std::wstring MakePackFile(const TemporaryFolder& folder, const Bytes& bytes) {
    return folder.MakeFile(
        L"pack.ui", std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

void NamePack(const std::wstring& path) {
    platform::UniqueKey key;
    RegCreateKeyExW(HKEY_LOCAL_MACHINE, app::languagePacksKey, 0, nullptr, 0, KEY_ALL_ACCESS,
                    nullptr, key.Receive(), nullptr);
    RegSetValueExW(key.Get(), L"vantor.exe.0407.ui", 0, REG_SZ,
                   reinterpret_cast<const BYTE*>(path.c_str()),
                   static_cast<DWORD>((path.size() + 1) * sizeof(wchar_t)));
}

std::string JudgeStart(const Bytes& input, bool, bool* accepted) {
    const CleanSettings settings;
    const HiddenAppsFolder list;
    const TemporaryFolder folder;
    Taker taker(input);
    for (const wchar_t* const name : settingNames) {
        const DWORD type = taker.Take(4);
        const Bytes data = taker.TakeBytes(taker.Take(4));
        CleanSettings::SetRaw(name, type, data.data(), static_cast<DWORD>(data.size()));
    }
    CleanSettings::SetNumber(app::settingLanguage, 0x0407);
    const Bytes entries = taker.TakeBytes(taker.Take(4));
    const std::string written(entries.begin(), entries.end());
    list.Write(written);
    NamePack(MakePackFile(folder, taker.TakeBytes(taker.Take(4))));
    DWORD code = 0;
    {
        const Program program;
        *accepted = program.WaitForMainWindow();
        code = program.Close();
    }
    // It tells what went wrong otherwise, as a crash.
    if (testing::UnitTest::GetInstance()->ad_hoc_test_result().Failed()) {
        return "the program did not end as it should";
    }
    if (!*accepted || code != 0) {
        return "the program did not start";
    }
    return list.Read() == written ? "" : "a start changed the list";
}

}  // namespace

const Part starts = {"starts", MakeStart, JudgeStart};

}  // namespace hostile
