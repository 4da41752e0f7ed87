// Exceptions through several frames, across the library, stored and thrown again.
#include "sample.h"

#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <stdexcept>
#include <variant>
#include <vector>

#include <windows.h>

namespace {
struct Fault : std::runtime_error {
    explicit Fault(int code) : std::runtime_error("fault"), code(code) {}
    int code;
};

int guardsAlive = 0;

struct Guard {
    Guard() { ++guardsAlive; }
    ~Guard() { --guardsAlive; }
};

[[gnu::noinline]] int throwFrom(int depth) {
    Guard guard;
    std::vector<int> memory(4, depth);
    if (depth == 0) {
        throw Fault(42);
    }
    return throwFrom(depth - 1) + memory[0];
}

struct ThrowsWhileMade {
    ThrowsWhileMade() {
        if (!failedOnce) {
            failedOnce = true;
            throw Fault(7);
        }
    }
    static inline bool failedOnce = false;
    int value = 9;
};

ThrowsWhileMade& madeAtSecondTry() {
    static ThrowsWhileMade object;
    return object;
}

template <class Expected>
bool throws(const std::function<void()>& action) {
    try {
        action();
    } catch (const Expected&) {
        return true;
    }
    return false;
}
}  // namespace

void checkExceptions() {
    for (int depth : {0, 1, 6, 200}) {
        int code = 0;
        try {
            throwFrom(depth);
        } catch (const std::exception& error) {
            code = dynamic_cast<const Fault&>(error).code;
        }
        check(code == 42 && guardsAlive == 0,
              (L"thrown through frames: " + numberText(depth)).c_str());
    }

    std::exception_ptr stored;
    try {
        throwFrom(3);
    } catch (...) {
        stored = std::current_exception();
    }
    check(throws<Fault>([&] { std::rethrow_exception(stored); }), L"stored and thrown again");
    stored = nullptr;

    check(throws<std::out_of_range>([] { (void)std::vector<int>(3).at(10); }),
          L"thrown by the library");
    check(throws<std::out_of_range>([] {
              try {
                  (void)std::wstring(L"ab").substr(5);
              } catch (...) {
                  throw;
              }
          }),
          L"thrown on from a catch block");
    check(throws<std::bad_function_call>([] { std::function<void()>()(); }), L"empty function");
    check(throws<std::bad_variant_access>([] {
              std::variant<int, std::wstring> value = L"x";
              (void)std::get<int>(value);
          }),
          L"wrong alternative");
    check(throws<std::bad_alloc>([] { std::vector<char>().resize(0x70000000); }),
          L"memory exhausted");
    check(throws<int>([] {
              try {
                  throw L'x';
              } catch (wchar_t) {
                  throw 5;
              }
          }),
          L"thrown inside a catch block");
    check(throws<Fault>([] { madeAtSecondTry(); }) && madeAtSecondTry().value == 9,
          L"static made at the second try");
    SetLastError(0);
    try {
        throwFrom(2);
    } catch (const Fault&) {
        SetLastError(5);
    }
    check(GetLastError() == 5, L"the last error outlives its handler");
    check(std::uncaught_exceptions() == 0 && !std::current_exception(), L"nothing left under way");
}
