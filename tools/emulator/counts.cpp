#include "counts.h"

#include <algorithm>
#include <cstdio>

#include "machine.h"

namespace emulator {

void Counts::Idle() {
    const std::uint64_t now = TheMachine().engine.Instructions();
    if (tellsSteps && now != stepStart_) {
        std::printf("%12llu instructions, %s after message %04x\n",
                    static_cast<unsigned long long>(now - stepStart_), Calls().c_str(), message_);
        std::fflush(stdout);
    }
    stepStart_ = now;
    functions_.clear();
    message_ = 0;
}

void Counts::Took(unsigned message) {
    if (message_ == 0) {
        message_ = message;
    }
}

void Counts::Called(unsigned trap, const std::string& name) {
    if (!tellsSteps) {
        return;
    }
    if (functions_.size() <= trap) {
        functions_.resize(trap + 1);
    }
    Function& function = functions_[trap];
    if (function.calls++ == 0) {
        function.name = name;
    }
}

std::string Counts::Calls() {
    constexpr size_t mostNames = 12;
    std::vector<Function> called;
    unsigned sum = 0;
    for (const Function& function : functions_) {
        sum += function.calls;
        if (function.calls != 0) {
            called.push_back(function);
        }
    }
    std::stable_sort(called.begin(), called.end(), [](const Function& left, const Function& right) {
        return left.calls > right.calls;
    });
    std::string text = std::to_string(sum) + " calls (";
    for (size_t i = 0; i < called.size() && i < mostNames; ++i) {
        text += (i == 0 ? "" : ", ") + called[i].name + ' ' + std::to_string(called[i].calls);
    }
    return text + ')';
}

void Counts::Painted() {
    if (!painted_ && tellsSteps) {
        std::printf("%12llu instructions, %s from the start to the first paint\n",
                    static_cast<unsigned long long>(TheMachine().engine.Instructions()),
                    Calls().c_str());
        std::fflush(stdout);
    }
    painted_ = true;
}

void Counts::PrintFunctions(unsigned limit) const {
    const Machine& machine = TheMachine();
    std::vector<std::uint64_t> sums(machine.symbols.Count() + 1);
    const std::vector<Engine::Block>& blocks = machine.engine.Blocks();
    for (size_t i = 0; i < blocks.size(); ++i) {
        if (blocks[i].runs != 0) {
            const Address address = machine.engine.CodeStart() + 4 * static_cast<Address>(i);
            sums[static_cast<size_t>(machine.symbols.Index(address) + 1)] +=
                blocks[i].runs * blocks[i].instructions;
        }
    }
    std::vector<size_t> order(sums.size());
    for (size_t i = 0; i < order.size(); ++i) {
        order[i] = i;
    }
    std::sort(order.begin(), order.end(),
              [&](size_t left, size_t right) { return sums[left] > sums[right]; });
    const double all = static_cast<double>(machine.engine.Instructions());
    std::printf("%12llu instructions in all\n",
                static_cast<unsigned long long>(machine.engine.Instructions()));
    for (size_t i = 0; i < order.size() && i < limit && sums[order[i]] != 0; ++i) {
        std::printf("%12llu %5.1f %% %s\n", static_cast<unsigned long long>(sums[order[i]]),
                    100.0 * static_cast<double>(sums[order[i]]) / all,
                    machine.symbols.NameAt(static_cast<int>(order[i]) - 1).c_str());
    }
}

}  // namespace emulator
