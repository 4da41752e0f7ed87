// Measures what people wait for, each against a bare loop of the platform calls that it cannot do
// without, in the same run. Prints medians and ratios; judges nothing.
#include <objbase.h>

#include <algorithm>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

#include "platform/desktop/paths.h"
#include "platform/files.h"
#include "tests/support/fake_frame.h"
#include "tests/support/fake_processes.h"
#include "tests/support/heaps.h"
#include "tests/support/host_files.h"
#include "tests/support/unix_command.h"
#include "tests/support/windows_seen.h"
#include "tests/support/world.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/paint/drawing_resources.h"
#include "views/display_flags.h"
#include "views/files/file_transfer.h"
#include "views/files/files_view.h"
#include "views/list_view.h"
#include "views/processes/processes_view.h"

namespace {

using Work = std::function<void()>;

double Milliseconds(const Work& work) {
    LARGE_INTEGER frequency;
    LARGE_INTEGER start;
    LARGE_INTEGER end;
    QueryPerformanceFrequency(&frequency);
    QueryPerformanceCounter(&start);
    work();
    QueryPerformanceCounter(&end);
    return static_cast<double>(end.QuadPart - start.QuadPart) * 1000.0 /
           static_cast<double>(frequency.QuadPart);
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    return values[values.size() / 2];
}

// Runs both in turn, so that a machine that slows down slows both, and compares pair by pair. What
// is done before each is not measured.
void Compare(const char* what, const char* ours, const Work& work, const char* theirs,
             const Work& baseline, int rounds, const Work& before = {},
             const Work& beforeBaseline = {}) {
    std::vector<double> workTimes;
    std::vector<double> baselineTimes;
    std::vector<double> ratios;
    const auto measured = [](const Work& preparation, const Work& measuredWork) {
        if (preparation) {
            preparation();
        }
        return Milliseconds(measuredWork);
    };
    if (rounds > 1) {
        measured(before, work);
        measured(beforeBaseline, baseline);
    }
    for (int round = 0; round < rounds; ++round) {
        const double workTime = measured(before, work);
        const double baselineTime = measured(beforeBaseline, baseline);
        workTimes.push_back(workTime);
        baselineTimes.push_back(baselineTime);
        ratios.push_back(workTime / baselineTime);
    }
    std::printf("%s\n  %s: %.3f ms, %s: %.3f ms, ratio %.3f (%.3f to %.3f)\n", what, ours,
                Median(workTimes), theirs, Median(baselineTimes), Median(ratios),
                *std::min_element(ratios.begin(), ratios.end()),
                *std::max_element(ratios.begin(), ratios.end()));
    std::fflush(stdout);
}

// Against a bare reading and sorting of the names.
void MeasureListing(int files, int rounds) {
    const test::TemporaryFolder folder;
    for (int index = 0; index < files; ++index) {
        // A stride that is coprime to the count: the names are not made in their order.
        folder.MakeFile(L"file " + std::to_wstring(index * 7919 % files) + L".txt");
    }
    test::FakeFrame frame;
    views::FilesView view(frame);
    frame.Open(view);
    const auto list = [&] { view.Navigate(folder.Path().c_str()); };
    const auto bareLoop = [&] {
        platform::FindData found;
        const HANDLE search = platform::FindFirst((folder.Path() + L"\\*").c_str(), &found);
        std::vector<std::wstring> names;
        do {
            names.push_back(found.cFileName);
        } while (platform::FindNext(search, &found));
        FindClose(search);
        std::stable_sort(names.begin(), names.end(), [](const auto& first, const auto& second) {
            return CompareStringW(LOCALE_USER_DEFAULT, NORM_IGNORECASE, first.c_str(), -1,
                                  second.c_str(), -1) == CSTR_LESS_THAN;
        });
    };
    std::printf("%d files: ", files);
    Compare("listing a folder", "the view", list, "bare loop", bareLoop, rounds);
}

// What a heap gives for so many bytes, with its own share.
size_t BytesWithOverhead() {
    constexpr DWORD mostHeaps = 64;
    HANDLE heaps[mostHeaps];
    const DWORD count = GetProcessHeaps(mostHeaps, heaps);
    size_t bytes = 0;
    for (DWORD index = 0; index < count && index < mostHeaps; ++index) {
        PROCESS_HEAP_ENTRY entry = {};
        HeapLock(heaps[index]);
        while (HeapWalk(heaps[index], &entry)) {
            if (entry.wFlags & PROCESS_HEAP_ENTRY_BUSY) {
                bytes += entry.cbData + entry.cbOverhead;
            }
        }
        HeapUnlock(heaps[index]);
    }
    return bytes;
}

void MeasureMemory(int files) {
    const test::TemporaryFolder folder;
    const std::wstring empty = folder.MakeFolder(L"empty");
    const std::wstring full = folder.MakeFolder(L"full");
    test::RunUnixCommand("cd " + test::HostPath(full) + " && seq -f 'file %g.txt' 1 " +
                         std::to_string(files) + " | tr '\\n' '\\0' | xargs -0 touch");
    test::FakeFrame frame;
    views::FilesView view(frame);
    frame.Open(view);
    // What is made once and kept is there.
    view.Navigate(full.c_str());
    view.Navigate(empty.c_str());
    const size_t data = test::BytesOnAllHeaps();
    const size_t all = BytesWithOverhead();
    view.Navigate(full.c_str());
    const auto each = [files](size_t before, size_t after) {
        return (static_cast<double>(after) - static_cast<double>(before)) / files;
    };
    std::printf("%d files: memory of a listed file\n  %.1f bytes, with the heap's share %.1f\n",
                files, each(data, test::BytesOnAllHeaps()), each(all, BytesWithOverhead()));
    test::RunUnixCommand("rm -r " + test::HostPath(full));
}

// A list whose rows cost next to nothing to draw.
class PlainList final : public ui::TouchList<PlainList> {
 public:
    ~PlainList() override {
        Destroy();
        Clear();
    }
    void Open(HWND parent, unsigned rows) {
        Create(L"BenchList", L"", ui::childStyle, RECT{0, 0, 300, 400}, parent);
        for (unsigned row = 0; row < rows; ++row) {
            InsertItem(row, row);
        }
        Layout();
    }
    static SIZE Measure(unsigned, int width, int, ULONG_PTR) { return SIZE{width, 60}; }
    static void DrawItem(const DRAWITEMSTRUCT& row) {
        ui::FillWithSystemColor(row.hDC, row.rcItem, row.itemID % 2 ? COLOR_WINDOW : COLOR_BTNFACE);
    }
    static void EraseBackground(HDC dc, const RECT& area) {
        ui::FillWithSystemColor(dc, area, COLOR_WINDOW);
    }
    static void OnTap(unsigned, ui::GestureResult) {}
    static void DeleteItem(ULONG_PTR) {}
};

// One drag of 200 moves, back and forth.
Work DragOf(PlainList& list) {
    return [&list] {
        ui::GestureInfo gesture;
        gesture.result = ui::GestureDrag;
        gesture.startY = 300;
        gesture.y = 200;
        SendMessageW(list.Handle(), ui::WM_QUERYDRAGTRACKER, 0, reinterpret_cast<LPARAM>(&gesture));
        gesture.tracker->Start(0, 300);
        for (int move = 0; move < 200; ++move) {
            gesture.tracker->Move(0, 300 - (move % 50));
        }
    };
}

void MeasureDrag() {
    test::FakeFrame frame;
    views::FilesView view(frame);
    frame.Open(view);
    PlainList few;
    PlainList many;
    few.Open(frame.Pane(), 10);
    many.Open(frame.Pane(), 100000);
    Compare("200 frames of a drag", "100,000 rows", DragOf(many), "10 rows", DragOf(few), 21);
}

void Redraw(HWND window) {
    RedrawWindow(window, nullptr, nullptr, RDW_INVALIDATE | RDW_UPDATENOW);
}

// The system's own list with the rows that another one shows: in the same place, the same texts in
// the same font with the same icons, beside each other in columns.
class SystemList {
 public:
    SystemList(HWND list, const ui::RowList<views::FileItem, views::FileItemOwner>& rows,
               unsigned shown, bool withDetails) {
        RECT client;
        GetClientRect(list, &client);
        window_ = CreateWindowExW(
            0, WC_LISTVIEWW, L"",
            WS_CHILD | LVS_REPORT | LVS_NOCOLUMNHEADER | LVS_NOSORTHEADER | LVS_SHAREIMAGELISTS, 0,
            0, client.right, client.bottom, GetParent(list), nullptr, nullptr, nullptr);
        SendMessageW(window_, WM_SETFONT, reinterpret_cast<WPARAM>(ui::Fonts().Base()), FALSE);
        ListView_SetImageList(window_, platform::SystemImageList(SHGFI_SMALLICON), LVSIL_SMALL);
        const int details = withDetails ? client.right / 4 : 0;
        AddColumn(0, client.right - 2 * details, LVCFMT_LEFT);
        if (withDetails) {
            AddColumn(1, details, LVCFMT_RIGHT);
            AddColumn(2, details, LVCFMT_LEFT);
        }
        for (unsigned row = 0; row < shown; ++row) {
            const views::FileItem& file = rows[row];
            LVITEMW item = {};
            item.mask = LVIF_TEXT | LVIF_IMAGE;
            item.iItem = static_cast<int>(row);
            item.iImage = file.iconIndex;
            item.pszText = const_cast<wchar_t*>(file.name);
            ListView_InsertItem(window_, &item);
            if (withDetails) {
                SetText(row, 1, text::FormatSize(file.size));
                SetText(row, 2, text::FormatFileTime(file.created, text::Seconds::Without));
            }
        }
    }
    ~SystemList() { DestroyWindow(window_); }
    SystemList(const SystemList&) = delete;
    SystemList& operator=(const SystemList&) = delete;
    HWND Handle() const { return window_; }

 private:
    void AddColumn(int number, int width, int format) const {
        LVCOLUMNW column = {};
        column.mask = LVCF_FMT | LVCF_WIDTH;
        column.fmt = format;
        column.cx = width;
        ListView_InsertColumn(window_, number, &column);
    }
    void SetText(unsigned row, int column, std::wstring text) const {
        ListView_SetItemText(window_, static_cast<int>(row), column, text.data());
    }

    HWND window_;
};

// A full screen of a folder's rows, drawn as WM_PAINT draws it, against the system's own list with
// the same rows, and against the one copy that no control can do without.
void MeasurePainting(bool withDetails) {
    const test::TemporaryFolder folder;
    for (int index = 0; index < 40; ++index) {
        folder.MakeFile(L"file " + std::to_wstring(index) + L".txt",
                        std::string(static_cast<size_t>(index) * 100, 'x'));
    }
    test::FakeFrame frame;
    frame.flags = withDetails ? views::flagShowFileSize | views::flagShowFileDate : 0;
    views::FilesView view(frame);
    frame.Open(view);
    view.Navigate(folder.Path().c_str());
    const HWND list = test::FindChild(frame.Handle(), views::ListView::listClass);
    auto& rows = *static_cast<ui::RowList<views::FileItem, views::FileItemOwner>*>(
        reinterpret_cast<ui::Window*>(GetWindowLongPtrW(list, GWLP_USERDATA)));
    Redraw(list);
    RECT client;
    GetClientRect(list, &client);
    const unsigned shown = rows.HitTest(POINT{0, client.bottom - 1}) + 1;
    const SystemList peer(list, rows, shown, withDetails);
    std::printf("a full screen of %u rows%s: ", shown, withDetails ? " with sizes and dates" : "");
    const auto draw = [](HWND window) {
        return [window] {
            for (int frames = 0; frames < 10; ++frames) {
                Redraw(window);
            }
        };
    };
    // Each is seen while it is drawn.
    const auto seen = [](HWND window, HWND hidden) {
        ShowWindow(hidden, SW_HIDE);
        ShowWindow(window, SW_SHOW);
        UpdateWindow(window);
    };
    const Work before = [&] { seen(list, peer.Handle()); };
    const Work beforePeer = [&] { seen(peer.Handle(), list); };
    Compare("10 frames", "the list", draw(list), "the system's list", draw(peer.Handle()), 51,
            before, beforePeer);
    seen(list, peer.Handle());
    const platform::WindowDC dc(list);
    const ui::OffscreenBitmap picture(dc, client);
    Compare(
        "one frame", "the list", [&] { Redraw(list); }, "bare BitBlt", [&] { picture.Show(); }, 51);
}

// Never asked: nothing is in the way.
class NoPrompts final : public views::TransferPrompts {
 public:
    views::TransferAnswer AskConflict(const std::wstring&, views::EntryKind,
                                      views::EntryDepth) override {
        return views::answerStop;
    }
    void TellOtherKind(const std::wstring&, views::EntryKind) override {}
    views::TransferAnswer AskAfterFailure(const std::wstring&, const std::wstring&, bool,
                                          views::FailedEntry) override {
        return views::answerStop;
    }
    bool OnProgress(const std::wstring&) override { return true; }
};

void CopyBare(const std::wstring& source, const std::wstring& destination) {
    CreateDirectoryW(destination.c_str(), nullptr);
    platform::FindData found;
    const HANDLE search = platform::FindFirst((source + L"\\*").c_str(), &found);
    do {
        const std::wstring from = source + L'\\' + found.cFileName;
        const std::wstring to = destination + L'\\' + found.cFileName;
        if (found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) {
            CopyBare(from, to);
        } else {
            CopyFileW(from.c_str(), to.c_str(), FALSE);
        }
    } while (platform::FindNext(search, &found));
    FindClose(search);
}

void MeasureCopying() {
    const test::TemporaryFolder folder;
    const std::wstring source = folder.MakeFolder(L"source");
    for (int number = 0; number < 20; ++number) {
        const std::wstring inner = L"source\\folder " + std::to_wstring(number);
        folder.MakeFolder(inner);
        for (int file = 0; file < 100; ++file) {
            folder.MakeFile(inner + L"\\file " + std::to_wstring(file), std::string(4000, 'x'));
        }
    }
    NoPrompts prompts;
    int copies = 0;
    const auto next = [&] { return folder.Path() + L"\\copy " + std::to_wstring(copies++); };
    std::printf("2,000 files: ");
    Compare(
        "copying a tree", "the program",
        [&] { views::FileTransfer(prompts).CopyItem(source, next()); }, "bare loop",
        [&] { CopyBare(source, next()); }, 11);
}

// 500 processes, against the same questions to the platform without a list.
void MeasureProcesses() {
    test::FakeProcesses device;
    for (DWORD number = 0; number < 500; ++number) {
        device.processes.push_back(test::FakeProcess{4 * (number + 1), L"explorer.exe",
                                                     L"C:\\windows\\explorer.exe",
                                                     (number * 7919ull % 500 + 1) << 20});
    }
    test::FakeFrame frame;
    views::ProcessesView view(frame);
    frame.Open(view);
    const auto bareWalk = [] {
        const platform::UniqueHandle snapshot(CreateToolhelp32Snapshot(TH32CS_SNAPPROCESS, 0));
        PROCESSENTRY32W entry = {};
        entry.dwSize = sizeof entry;
        for (BOOL found = Process32FirstW(snapshot.Get(), &entry); found;
             found = Process32NextW(snapshot.Get(), &entry)) {
            HMODULE module = nullptr;
            DWORD needed = 0;
            const platform::UniqueHandle memory(OpenProcess(
                PROCESS_QUERY_INFORMATION | PROCESS_VM_READ, FALSE, entry.th32ProcessID));
            EnumProcessModules(memory.Get(), &module, sizeof module, &needed);
            const platform::UniqueHandle process(
                OpenProcess(PROCESS_QUERY_LIMITED_INFORMATION, FALSE, entry.th32ProcessID));
            wchar_t path[MAX_PATH];
            DWORD length = MAX_PATH;
            QueryFullProcessImageNameW(process.Get(), 0, path, &length);
        }
    };
    std::printf("500 processes: ");
    Compare(
        "refreshing the list", "the view", [&] { view.Refresh(); }, "bare walk", bareWalk, 11);
}

}  // namespace

int main(int count, char** arguments) {
    CoInitializeEx(nullptr, COINIT_MULTITHREADED);
    InitCommonControls();
    text::SetProgramModule(GetModuleHandleW(nullptr));
    ui::Resources().Load();
    // One part by its name, or all.
    const std::string part = count > 1 ? arguments[1] : "";
    if (part == "--memory") {
        MeasureMemory(10000);
        return 0;
    }
    if (part == "--painting") {
        MeasurePainting(true);
        MeasurePainting(false);
        return 0;
    }
    MeasureDrag();
    MeasurePainting(true);
    MeasurePainting(false);
    MeasureCopying();
    MeasureProcesses();
    MeasureListing(1000, 7);
    MeasureMemory(10000);
    if (part == "--large") {
        MeasureListing(10000, 5);
    }
    return 0;
}
