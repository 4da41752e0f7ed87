// A program that uses what C++20 programs use, and prints a line for each thing that holds.
#include "sample.h"

#include "platform/ce/late_function.h"
#include "platform/ce/runtime/exception_globals.h"
#include "sample_resources.h"

#include <windows.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <ranges>
#include <set>
#include <string>
#include <unordered_map>
#include <variant>
#include <vector>

namespace {
int failures = 0;

struct Order {
    Order() { lines.push_back(L"made"); }
    ~Order() {
        say(L"static destructor, lines " + numberText(static_cast<long long>(lines.size())));
    }
    std::vector<std::wstring> lines;
};

Order order;
const std::set<std::wstring> names{L"beta", L"alpha", L"gamma"};

struct Shape {
    virtual ~Shape() = default;
    virtual int area() const = 0;
};

struct Square : Shape {
    explicit Square(int side) : side(side) {}
    int area() const override { return side * side; }
    int side;
};

struct Fixed : Shape {
    int area() const override { return 6; }
};

struct Counted {
    Counted() { ++made; }
    static inline int made = 0;
};

// The guard of the static must not touch its neighbours, so both are looked at.
struct Neighbours {
    unsigned before = 0x11111111;
    unsigned after = 0x22222222;
};
Neighbours neighbours;

Counted& onlyOne() {
    static Counted object;
    return object;
}

struct ThreadReport {
    int caught = 0;
    bool foreign = false;
    DWORD identifier = 0;
};

DWORD WINAPI threadMain(void* parameter) {
    auto* report = static_cast<ThreadReport*>(parameter);
    report->foreign = std::current_exception() != nullptr;
    int caught = 0;
    for (int i = 0; i < 20; ++i) {
        try {
            throw i;
        } catch (int) {
            ++caught;
        }
    }
    report->caught = caught;
    report->identifier = GetCurrentThreadId();
    runtime::releaseThread();
    return 0;
}

// Leaves a register changed that a called function must preserve.
[[gnu::noinline]] void destroyRegister() {
    asm volatile("mov r9, #0");
}

LRESULT CALLBACK windowProcedure(HWND window, UINT message, WPARAM first, LPARAM second) {
    if (message == WM_USER) {
        checkExceptions();
        return 17;
    }
    if (message == WM_USER + 1) {
        destroyRegister();
    }
    if (message == WM_USER + 2) {
        throw 1;
    }
    return DefWindowProcW(window, message, first, second);
}

void checkContainers() {
    check(order.lines.size() == 1 && names.size() == 3 && *names.begin() == L"alpha",
          L"static initialisers");
    std::wstring text = L"Grüße";
    for (int i = 0; i < 100; ++i) {
        text += L"\u20ac\u0416";
    }
    check(text.size() == 205 && text.find(L"\u0416", 10) == 10, L"wide string");
    check(std::wstring(L"ab") < L"b" && std::wstring(L"a\uffff") > L"a\u0001", L"wide comparison");

    std::map<std::wstring, std::vector<int>> map;
    map[L"k"] = {3, 1, 2};
    std::ranges::sort(map[L"k"]);
    check(map[L"k"] == std::vector{1, 2, 3}, L"map, vector, sort");
    std::unordered_map<std::wstring, int> hashed;
    for (int i = 0; i < 50; ++i) {
        hashed[numberText(i)] = i;
    }
    check(hashed.size() == 50 && hashed.at(L"49") == 49, L"hash map");

    std::vector<std::unique_ptr<Shape>> shapes;
    shapes.push_back(std::make_unique<Square>(4));
    shapes.push_back(std::make_unique<Fixed>());
    int sum = 0;
    for (const auto& shape : shapes) {
        sum += shape->area() + (dynamic_cast<Square*>(shape.get()) != nullptr ? 100 : 0);
    }
    check(sum == 122, L"virtual functions, dynamic_cast");
    std::function<int(int)> add = [&](int value) { return value + sum; };
    check(add(4) == 126, L"function");
    auto shared = std::make_shared<Fixed>();
    std::weak_ptr<Shape> weak = shared;
    check(weak.lock()->area() == 6, L"shared pointer");
    std::optional<std::wstring> nothing;
    check(!nothing && nothing.value_or(L"other") == L"other", L"optional");
    std::variant<int, std::wstring> either = L"x";
    check(std::get<std::wstring>(either) == L"x", L"variant");
}

void checkNumbers() {
    double product = 1.0;
    for (int i = 1; i < 10; ++i) {
        product = product * i / 1.5;
    }
    check(product > 9439 && product < 9440, L"double");
    const long long large = 123456789012345LL;
    check(numberText(large / 7) == L"17636684144620" && large % 1000 == 345, L"64-bit division");
}

void checkAtomics() {
    static std::atomic<int> word{5};
    word += 3;
    word.fetch_sub(1);
    int expected = 7;
    const bool exchanged = word.compare_exchange_strong(expected, 9);
    int wrong = 1;
    const bool refused = !word.compare_exchange_strong(wrong, 2) && wrong == 9;
    check(exchanged && refused && word.exchange(1) == 9 && word.load() == 1, L"atomic word");

    static struct {
        std::atomic<unsigned char> first{1};
        std::atomic<bool> flag{false};
        std::atomic<unsigned short> half{0x1234};
    } parts;
    const bool before = parts.flag.exchange(true);
    unsigned short wanted = 0x1234;
    const bool swapped = parts.half.compare_exchange_strong(wanted, 0xABCD);
    check(!before && swapped && parts.first == 1 && parts.flag && parts.half == 0xABCD,
          L"atomic bytes");
}

void checkResources(HINSTANCE module) {
    wchar_t text[64];
    const int length = LoadStringW(module, GREETING_TEXT, text, 64);
    check(length == 19 && std::wstring(text) == L"Grüße aus der Datei", L"text from the resources");
    HRSRC data = FindResourceW(module, MAKEINTRESOURCEW(PICTURE_DATA), MAKEINTRESOURCEW(10));
    const auto* bytes = static_cast<const char*>(LockResource(LoadResource(module, data)));
    check(bytes != nullptr && SizeofResource(module, data) == 7 &&
              std::memcmp(bytes, "picture", 7) == 0,
          L"picture from the resources");
}

// Gives whether the thread's identifiers agree.
bool runThread(ThreadReport* report, DWORD creator) {
    DWORD identifier = 0;
    const HANDLE thread = CreateThread(nullptr, 0, threadMain, report, 0, &identifier);
    return WaitForSingleObject(thread, INFINITE) == WAIT_OBJECT_0 && CloseHandle(thread) &&
           report->identifier == identifier && identifier != creator;
}

void checkThreads(DWORD creator) {
    ThreadReport reports[2];
    bool agree = runThread(&reports[0], creator);
    // A thread knows nothing of the exceptions that another has under way.
    try {
        throw 1;
    } catch (int) {
        agree = runThread(&reports[1], creator) && agree && std::current_exception() != nullptr;
    }
    check(reports[0].caught == 20 && reports[1].caught == 20 && !reports[0].foreign &&
              !reports[1].foreign,
          L"exceptions in other threads");
    check(
        agree && reports[0].identifier != reports[1].identifier && GetCurrentThreadId() == creator,
        L"threads with identifiers of their own");
}

void checkLateFunctions(HWND window) {
    using platform::ce::LateFunction;
    constexpr wchar_t shell[] = L"aygshell.dll";
    LateFunction<BOOL(HWND, DWORD)> named(shell, L"SHFullScreen");
    LateFunction<HWND(HWND, DWORD)> numbered(shell, nullptr, 188);
    LateFunction<int()> later(L"coredll.dll", L"FindFirstStore");
    check(named.Find() && named.Find()(window, 0) && !named.Find()(nullptr, 0) && numbered.Find() &&
              !numbered.Find()(window, 0) && !later.Find(),
          L"functions that are looked up");
}

void checkSystem(HINSTANCE module, const std::wstring& wanted) {
    WNDCLASSW description{};
    description.lpfnWndProc = windowProcedure;
    description.hInstance = module;
    description.lpszClassName = L"Sample";
    RegisterClassW(&description);
    const HWND window = CreateWindowExW(0, L"Sample", L"Sample", 0, 0, 0, 10, 10, nullptr, nullptr,
                                        module, nullptr);
    DWORD process = 0;
    const DWORD thread = GetWindowThreadProcessId(window, &process);
    check(window != nullptr && GetCurrentThreadId() == thread && GetCurrentProcessId() == process,
          L"identifiers from the kernel's page");
    checkLateFunctions(window);
    checkThreads(thread);
    if (wanted == L"destroy register") {
        SendMessageW(window, WM_USER + 1, 0, 0);
    }
    if (wanted == L"throw into system") {
        SendMessageW(window, WM_USER + 2, 0, 0);
    }
    check(SendMessageW(window, WM_USER, 0, 0) == 17, L"called back by the system");
}

// Does on demand what the emulator must notice, so that its silence otherwise means something.
void misbehave(const std::wstring& wanted) {
    static const unsigned constant[2] = {1, 2};
    const unsigned* words = constant;
    asm("" : "+r"(words));  // Hides from the compiler where the words stand.
    if (wanted == L"read unaligned") {
        say(numberText(
            *reinterpret_cast<const volatile unsigned*>(reinterpret_cast<const char*>(words) + 1)));
    }
    if (wanted == L"write constant") {
        *const_cast<volatile unsigned*>(words) = 3;
    }
    if (wanted == L"write code") {
        *reinterpret_cast<volatile unsigned*>(&say) = 0;
    }
    if (wanted == L"run data") {
        reinterpret_cast<void (*)()> (&neighbours)();
    }
    if (wanted == L"throw out") {
        throw 1;
    }
    if (wanted == L"free twice") {
        void* memory = LocalAlloc(0, 4);
        LocalFree(memory);
        LocalFree(memory);
    }
}
}  // namespace

void say(const std::wstring& line) {
    OutputDebugStringW((line + L"\r\n").c_str());
}

void check(bool holds, const wchar_t* what) {
    failures += holds ? 0 : 1;
    say((holds ? L"ok " : L"FAILED ") + std::wstring(what));
}

std::wstring numberText(long long value) {
    std::wstring digits;
    do {
        digits.insert(digits.begin(), static_cast<wchar_t>(L'0' + value % 10));
        value /= 10;
    } while (value != 0);
    return digits;
}

int WINAPI wWinMain(HINSTANCE module, HINSTANCE, LPWSTR commandLine, int) {
    static_assert(sizeof(wchar_t) == 2);
    say(L"arguments: " + std::wstring(commandLine));
    misbehave(commandLine);
    checkContainers();
    checkNumbers();
    checkAtomics();
    onlyOne();
    onlyOne();
    check(Counted::made == 1 && neighbours.before == 0x11111111 && neighbours.after == 0x22222222,
          L"function-local static");
    checkResources(module);
    checkSystem(module, commandLine);
    return failures == 0 ? 23 : 1;
}
