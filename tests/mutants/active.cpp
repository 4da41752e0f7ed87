// Goes into the changed program: which change is active, and which ones a test has come by.
#include <windows.h>

#include <cstdlib>

namespace mutants {

bool On(unsigned number) noexcept;
void BeginTest(const char* hits);
void EndTest(unsigned milliseconds);

namespace {

// Room for the numbers of all changes, then the test's time.
constexpr DWORD hitsSize = 65536 + 4;

// A file that the test and the programs it starts share: a byte for each change.
unsigned char* hits = nullptr;

void Map(const char* path) {
    if (hits != nullptr) {
        UnmapViewOfFile(hits);
        hits = nullptr;
    }
    const HANDLE file =
        CreateFileA(path, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                    OPEN_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr);
    if (file == INVALID_HANDLE_VALUE) {
        std::abort();
    }
    const HANDLE mapping = CreateFileMappingA(file, nullptr, PAGE_READWRITE, 0, hitsSize, nullptr);
    hits = static_cast<unsigned char*>(MapViewOfFile(mapping, FILE_MAP_WRITE, 0, 0, hitsSize));
    CloseHandle(mapping);
    CloseHandle(file);
    if (hits == nullptr) {
        std::abort();
    }
}

// The environment is read before the program does anything.
unsigned ReadActive() {
    const DWORD error = GetLastError();
    char text[1024] = "";
    if (GetEnvironmentVariableA("VANTOR_MUTANT_HITS", text, sizeof(text)) != 0) {
        Map(text);
    }
    unsigned number = 0;
    if (GetEnvironmentVariableA("VANTOR_MUTANT", text, sizeof(text)) != 0) {
        number = static_cast<unsigned>(std::strtoul(text, nullptr, 10));
    }
    SetLastError(error);
    return number;
}

unsigned Active() {
    static const unsigned active = ReadActive();
    return active;
}

}  // namespace

bool On(unsigned number) noexcept {
    const bool active = Active() == number;
    if (hits != nullptr) {
        hits[number] = 1;
    }
    return active;
}

void BeginTest(const char* path) {
    Active();
    SetEnvironmentVariableA("VANTOR_MUTANT_HITS", path);
    Map(path);
}

void EndTest(unsigned milliseconds) {
    for (unsigned i = 0; i < 4; ++i) {
        hits[hitsSize - 4 + i] = static_cast<unsigned char>(milliseconds >> (8 * i));
    }
}

}  // namespace mutants
