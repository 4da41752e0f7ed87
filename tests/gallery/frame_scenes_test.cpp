// The main frame: its views, its bar and their menus.
#include "res/resource.h"
#include "tests/app/frame_fixture.h"
#include "tests/gallery/camera.h"
#include "tests/gallery/sample_folder.h"
#include "tests/support/fake_device.h"
#include "tests/support/fake_processes.h"
#include "tests/support/finger.h"
#include "tests/support/input_taken.h"
#include "tests/support/only_applications.h"
#include "tests/support/shell_clipboard.h"
#include "tests/support/wait.h"
#include "ui/dialog/message_box.h"

using namespace test;

namespace {

constexpr wchar_t popupClass[] = L"kx::PopupMenu";

class GalleryFrame : public FrameFixture {
 protected:
    // Runs the program in the sample folder while the script acts.
    void Run(const std::function<void()>& script, DWORD flags = 0, DWORD view = 0) {
        ClearClipboard();
        CleanSettings::SetText(L"path", folder_.Path());
        CleanSettings::SetNumber(L"flags", flags);
        CleanSettings::SetNumber(L"view", view);
        Open();
        RunFrame([&] {
            SetForegroundWindow(frame.Handle());
            EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == frame.Handle(); }));
            Finger().MoveTo(1, 1).Play();
            script();
        });
    }
    void Press(const std::string& key) { input_.Play(Finger().Key(key)); }
    void Play(Finger& finger) { input_.Play(finger); }
    // The middle of the list's first row; the rows are at least 30 pixels high.
    POINT FirstRow() const { return OnScreen(FindChild(frame.Handle(), L"kx::TouchList"), 60, 15); }
    // A command as the menu gives it.
    void Give(UINT command) { SendMessageW(frame.Handle(), WM_COMMAND, command, 0); }
    void TakeMenu(const char* key, const char* scene) {
        Press(key);
        ASSERT_TRUE(WaitForWindow(popupClass));
        camera.Take(scene);
        Press("Escape");
        EXPECT_TRUE(WaitFor([] { return !FindVisible(popupClass); }));
    }

    const std::wstring& SamplePath() const { return folder_.Path(); }

    Camera camera;

 private:
    const SampleFolder folder_;
    const InputTaken input_;
    // Nothing else runs.
    const OnlyApplications applications_{{}};
};

}  // namespace

TEST_F(GalleryFrame, Files) {
    Run([&] {
        camera.Take("files");
        Press("Down");
        Press("Down");
        camera.Take("files_selected");
        Press("End");
        camera.Take("files_at_the_end");
    });
}

TEST_F(GalleryFrame, FilesInTheMiddle) {
    Run(
        [&] {
            for (int row = 0; row < 11; ++row) {
                Press("Down");
            }
            camera.Take("files_in_the_middle");
        },
        0x0C);
}

TEST_F(GalleryFrame, AnEmptyFolder) {
    Run([&] {
        Press("Down");
        Press("Return");
        EXPECT_TRUE(WaitForCaption(L"\\Gallery\\Journeys and Reports\\Maps"));
        camera.Take("files_empty");
    });
}

TEST_F(GalleryFrame, FilesWithDetails) {
    Run(
        [&] {
            camera.Take("files_details");
            Press("Down");
            Press("Down");
            Press("Down");
            camera.Take("files_details_selected");
        },
        0x0C);
}

TEST_F(GalleryFrame, FilesWithSizes) {
    Run([&] { camera.Take("files_sizes"); }, 0x04);
}

TEST_F(GalleryFrame, FilesMarking) {
    Run([&] {
        Give(ID_SELECT);
        camera.Take("files_marking");
        Press("Down");
        Press("space");
        Press("Down");
        Press("Down");
        Press("space");
        camera.Take("files_marked");
    });
}

TEST_F(GalleryFrame, FilesMenus) {
    Run([&] {
        TakeMenu("F1", "files_actions");
        TakeMenu("F2", "files_menu");
        Press("Down");
        Press("F1");
        ASSERT_TRUE(WaitForWindow(popupClass));
        Press("Down");
        Press("Down");
        camera.Take("files_actions_selected");
        Press("Escape");
        EXPECT_TRUE(WaitFor([] { return !FindVisible(popupClass); }));
    });
}

TEST_F(GalleryFrame, FilesUnderAFinger) {
    Run([&] {
        const HWND list = FindChild(frame.Handle(), L"kx::TouchList");
        const RECT area = ScreenRectangleOf(list);
        const POINT from = {area.left + 60, (area.top + area.bottom) / 2};
        const POINT to = {from.x, from.y - (area.bottom - area.top) / 4};
        Finger finger;
        finger.Down(from).DragTo(from, POINT{to.x, to.y - 1}, 8);
        Play(finger);
        camera.Forget();
        finger = Finger().MoveTo(to);
        Play(finger);
        camera.TakeAsItIs("files_dragged", list);
        finger = Finger().Up();
        Play(finger);
    });
}

TEST_F(GalleryFrame, OpenFile) {
    Run([&] {
        CleanSettings::SetText(L"SelectAppPath", SamplePath());
        CleanSettings::SetNumber(L"SelectAppFlags", 0x800000);
        Press("End");
        PostMessageW(frame.Handle(), WM_COMMAND, ID_OPEN_WITH, 0);
        EXPECT_TRUE(WaitForWindow(L"#32770"));
        camera.Take("open_file");
        Press("Down");
        Press("Down");
        camera.Take("open_file_selected");
        TakeMenu("F2", "open_file_menu");
        Press("Escape");
        EXPECT_TRUE(WaitFor([] { return !FindVisible(L"#32770"); }));
    });
}

TEST_F(GalleryFrame, Applications) {
    Run([&] {
        Give(ID_SHOW_APPLICATIONS);
        camera.Take("applications");
        TakeMenu("F1", "applications_actions");
        TakeMenu("F2", "applications_menu");
    });
}

namespace {

// The processes and modules of a handheld.
void FillSlots(FakeProcesses& device) {
    const wchar_t* const names[] = {L"nk.exe",       L"filesys.exe", L"gwes.exe",    L"device.exe",
                                    L"services.exe", L"shell32.exe", L"calendar.exe"};
    DWORD number = 1;
    for (const wchar_t* name : names) {
        device.processes.push_back(FakeProcess{0x8C0A0000 + number * 0x1F42,
                                               name,
                                               std::wstring(L"C:\\windows\\explorer.exe"),
                                               number * 0x2000000,
                                               number + 2,
                                               {{MEM_FREE, 0x10000},
                                                {MEM_COMMIT, number * 0x34000, MEM_PRIVATE},
                                                {MEM_RESERVE, 0x160000}}});
        ++number;
    }
    device.modules = {{L"calendar.exe", L"C:\\windows\\explorer.exe", 0x0E010000, 0x34000},
                      {L"coredll.dll", L"C:\\windows\\system32\\kernel32.dll", 0x03F60000, 0xA2000},
                      {L"a library with a name that is long.dll",
                       L"C:\\Program Files\\Calendar of the family\\Libraries\\Long names\\a.dll",
                       0x02110000, 0x1000}};
}

}  // namespace

TEST_F(GalleryFrame, Processes) {
    FakeProcesses device;
    FillSlots(device);
    Run([&] {
        Give(ID_SHOW_PROCESSES);
        camera.Take("processes");
        TakeMenu("F2", "processes_menu");
        Press("Down");
        Press("Down");
        camera.Take("processes_selected");
        TakeMenu("F1", "processes_actions");
        PostMessageW(frame.Handle(), WM_COMMAND, ID_STOP, 0);
        EXPECT_TRUE(WaitForWindow(L"#32770"));
        camera.Take("processes_kill");
        Press("Escape");
        EXPECT_TRUE(WaitFor([] { return !FindVisible(L"#32770"); }));
        PostMessageW(frame.Handle(), WM_COMMAND, ID_PROPERTIES, 0);
        EXPECT_TRUE(WaitForWindow(L"#32770"));
        camera.Take("process_information");
        Press("Escape");
        EXPECT_TRUE(WaitFor([] { return !FindVisible(L"#32770"); }));
    });
}

TEST_F(GalleryFrame, ProcessesWithDetails) {
    FakeProcesses device;
    FillSlots(device);
    Run(
        [&] {
            Give(ID_SHOW_PROCESSES);
            Press("Down");
            camera.Take("processes_details");
        },
        0x11C0);
}

TEST_F(GalleryFrame, Dlls) {
    FakeProcesses device;
    FillSlots(device);
    Run([&] {
        Give(ID_SHOW_DLLS);
        camera.Take("dlls");
        TakeMenu("F1", "dlls_actions");
        TakeMenu("F2", "dlls_menu");
    });
}

TEST_F(GalleryFrame, DllsWithDetails) {
    FakeProcesses device;
    FillSlots(device);
    Run(
        [&] {
            Give(ID_SHOW_DLLS);
            Press("Down");
            camera.Take("dlls_details");
        },
        0x3040);
}

TEST_F(GalleryFrame, Status) {
    FakeDevice device;
    device.volumes[L'M'] = FakeVolume{DRIVE_REMOVABLE, uint64_t{2} << 30, uint64_t{1200} << 20};
    Run([&] {
        Give(ID_SHOW_SYSTEM_STATUS);
        camera.Take("status");
        TakeMenu("F2", "status_menu");
        Press("Down");
        camera.Take("status_selected");
        Press("End");
        camera.Take("status_at_the_end");
    });
}

TEST_F(GalleryFrame, StatusOfADeviceThatRunsOut) {
    FakeDevice device;
    device.batteryPercent = 10;
    device.memoryLoad = 97;
    device.availableMemory = SIZE_T{2} << 20;
    device.current.totalFree = uint64_t{1} << 20;
    Run([&] {
        Give(ID_SHOW_SYSTEM_STATUS);
        camera.Take("status_running_out");
        Press("Down");
        camera.Take("status_running_out_selected");
        device.batteryFlag = 8;
        device.batteryPercent = 100;
        device.current.readable = false;
        device.memoryLoad = 89;
        Give(ID_REFRESH);
        camera.Take("status_charging");
        device.batteryFlag = 128;
        Give(ID_REFRESH);
        camera.Take("status_without_a_battery");
    });
}

TEST_F(GalleryFrame, PressedSoftKeys) {
    Run([&] {
        const RECT bar = ScreenRectangleOf(frame.Bar().Handle());
        const int middle = (bar.top + bar.bottom) / 2;
        Finger finger;
        finger.Down(bar.left + 40, middle).Wait(500);
        Play(finger);
        camera.Take("bar_left_pressed");
        finger = Finger().MoveTo(bar.right - 40, middle);
        Play(finger);
        camera.Take("bar_right_pressed");
        finger = Finger().MoveTo(bar.right - 40, bar.top - 60);
        Play(finger);
        // Nothing is left of the press.
        camera.Take("files");
        finger = Finger().Up();
        Play(finger);
    });
}

// Of files: the time of a folder's last access changes with each listing.
TEST_F(GalleryFrame, Properties) {
    Run([&] {
        const auto takeProperties = [&](const char* scene) {
            PostMessageW(frame.Handle(), WM_COMMAND, ID_PROPERTIES, 0);
            const HWND page = WaitForWindow(L"#32770");
            ASSERT_TRUE(page);
            EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == page; }));
            camera.Take(scene);
            Press("Escape");
            EXPECT_TRUE(WaitFor([] { return !FindVisible(L"#32770"); }));
        };
        for (int row = 0; row < 3; ++row) {
            Press("Down");
        }
        takeProperties("files_properties_of_a_long_name");
        Press("Down");
        takeProperties("files_properties");
    });
}

TEST_F(GalleryFrame, SettingsAndAbout) {
    Run([&] {
        for (const auto& [command, scene] : {std::pair(680u, "settings"), {57664u, "about"}}) {
            PostMessageW(frame.Handle(), WM_COMMAND, command, 0);
            const HWND page = WaitForWindow(L"#32770");
            ASSERT_TRUE(page);
            EXPECT_TRUE(WaitFor([&] { return GetForegroundWindow() == page; }));
            camera.Take(scene);
            Press("Escape");
            EXPECT_TRUE(WaitFor([] { return !FindVisible(L"#32770"); }));
        }
    });
}
