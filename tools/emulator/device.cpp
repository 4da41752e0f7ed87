#include "device.h"

#include <cstdlib>
#include <fstream>
#include <map>

#include "stop.h"

namespace emulator {

namespace {

constexpr std::uint64_t kilobyte = 1024;

// One line: a word for what is described, then name=value, values with blanks in quotes.
class Line {
 public:
    Line(const std::string& file, unsigned number, const std::string& text)
        : place_(file + ":" + std::to_string(number)) {
        size_t at = text.find_first_not_of(' ');
        if (at == std::string::npos || text[at] == '#') {
            return;
        }
        const size_t end = std::min(text.find(' ', at), text.size());
        kind_ = text.substr(at, end - at);
        at = end;
        while ((at = text.find_first_not_of(' ', at)) != std::string::npos) {
            const size_t equals = text.find('=', at);
            if (equals == std::string::npos) {
                Stop("%s: \"%s\" has no value", place_.c_str(), text.c_str() + at);
            }
            const bool quoted = equals + 1 < text.size() && text[equals + 1] == '"';
            const size_t start = equals + (quoted ? 2 : 1);
            const size_t stop = text.find(quoted ? '"' : ' ', start);
            if (quoted && stop == std::string::npos) {
                Stop("%s: a quote is not closed", place_.c_str());
            }
            values_[text.substr(at, equals - at)] =
                text.substr(start, std::min(stop, text.size()) - start);
            at = stop == std::string::npos ? text.size() : stop + 1;
        }
    }

    const std::string& Kind() const { return kind_; }

    std::string Take(const char* name) {
        const auto found = values_.find(name);
        if (found == values_.end()) {
            Stop("%s: %s needs %s=...", place_.c_str(), kind_.c_str(), name);
        }
        std::string value = found->second;
        values_.erase(found);
        return value;
    }
    std::string Take(const char* name, const std::string& otherwise) {
        return values_.count(name) ? Take(name) : otherwise;
    }
    template <class Number>
    Number TakeNumber(const char* name) {
        return Parse<Number>(name, Take(name));
    }
    template <class Number>
    Number TakeNumber(const char* name, Number otherwise) {
        return values_.count(name) ? TakeNumber<Number>(name) : otherwise;
    }
    bool TakeFlag(const char* name, bool otherwise) {
        const std::string value = Take(name, otherwise ? "yes" : "no");
        if (value != "yes" && value != "no") {
            Stop("%s: %s is yes or no", place_.c_str(), name);
        }
        return value == "yes";
    }
    void Finish() const {
        if (!values_.empty()) {
            Stop("%s: %s has no %s", place_.c_str(), kind_.c_str(), values_.begin()->first.c_str());
        }
    }
    [[noreturn]] void Refuse(const char* why) const {
        Stop("%s: %s %s", place_.c_str(), kind_.c_str(), why);
    }

 private:
    template <class Number>
    Number Parse(const char* name, const std::string& value) {
        char* end = nullptr;
        const long long number = std::strtoll(value.c_str(), &end, 0);
        if (value.empty() || *end) {
            Stop("%s: %s is a number, not \"%s\"", place_.c_str(), name, value.c_str());
        }
        return static_cast<Number>(number);
    }

    std::string place_;
    std::string kind_;
    std::map<std::string, std::string> values_;
};

}  // namespace

void Device::ReadLine(const std::string& file, unsigned number, const std::string& text) {
    Line line(file, number, text);
    const std::string& kind = line.Kind();
    if (kind.empty()) {
        return;
    }
    if (kind == "screen") {
        width = line.TakeNumber<int>("width");
        height = line.TakeNumber<int>("height");
        dotsPerInch = line.TakeNumber<int>("dots");
        caption = line.TakeNumber<int>("caption");
    } else if (kind == "like") {
        Read(file.substr(0, file.rfind('/') + 1) + line.Take("description"));
    } else if (kind == "system") {
        versionMajor = line.TakeNumber<unsigned>("major");
        versionMinor = line.TakeNumber<unsigned>("minor");
        sharesTexts = line.TakeFlag("texts", true);
    } else if (kind == "library") {
        Library library;
        library.name = line.Take("name");
        library.present = line.TakeFlag("present", true);
        library.names = line.TakeFlag("names", true);
        library.numbers = line.TakeFlag("numbers", true);
        libraries.push_back(library);
    } else if (kind == "stack") {
        stackSize = static_cast<Address>(line.TakeNumber<Address>("kilobytes") * kilobyte);
    } else if (kind == "memory") {
        memory = static_cast<Address>(line.TakeNumber<Address>("kilobytes") * kilobyte);
        memoryUsed = static_cast<Address>(line.TakeNumber<Address>("used") * kilobyte);
    } else if (kind == "store") {
        store = static_cast<Address>(line.TakeNumber<Address>("kilobytes") * kilobyte);
        storeFree = static_cast<Address>(line.TakeNumber<Address>("free") * kilobyte);
        storeIdentity = line.TakeFlag("identity", true);
    } else if (kind == "battery") {
        battery.present = line.TakeFlag("present", true);
        battery.online = line.TakeFlag("online", false);
        battery.percent = line.TakeNumber<unsigned>("percent");
        battery.backupPercent = line.TakeNumber<unsigned>("backup", 100);
        battery.minutesLeft = line.TakeNumber<unsigned>("minutes", 0);
        battery.millivolts = line.TakeNumber<unsigned>("millivolts", 0);
        battery.milliamperes = line.TakeNumber<int>("milliamperes", 0);
        battery.temperature = line.TakeNumber<int>("temperature", 0);
        battery.chemistry = line.Take("chemistry", "LION");
    } else if (kind == "card") {
        Card card;
        card.folder = line.Take("folder");
        card.size = line.TakeNumber<std::uint64_t>("kilobytes") * kilobyte;
        card.free = line.TakeNumber<std::uint64_t>("free") * kilobyte;
        card.store = line.Take("store", "");
        card.profile = line.Take("profile", "");
        card.identity = line.TakeFlag("identity", true);
        cards.push_back(card);
    } else if (kind == "process") {
        Process process;
        process.name = line.Take("name");
        process.path = line.Take("path", "\\Windows\\" + process.name);
        process.id = line.TakeNumber<Address>("id");
        process.threads = line.TakeNumber<unsigned>("threads", 1u);
        process.slot = line.TakeNumber<Address>("slot");
        process.pages = line.TakeNumber<Address>("pages", 16u);
        processes.push_back(process);
    } else if (processes.empty()) {
        line.Refuse("belongs to no process");
    } else if (kind == "module") {
        Module module;
        module.name = line.Take("name");
        module.path = line.Take("path", "\\Windows\\" + module.name);
        module.base = line.TakeNumber<Address>("base");
        module.size = line.TakeNumber<Address>("size");
        module.uses = line.TakeNumber<unsigned>("uses", 1u);
        processes.back().modules.push_back(module);
    } else if (kind == "heap") {
        HeapBlocks blocks;
        blocks.size = line.TakeNumber<Address>("size");
        blocks.count = line.TakeNumber<unsigned>("count", 1u);
        blocks.free = line.TakeFlag("free", false);
        processes.back().heap.push_back(blocks);
    } else {
        line.Refuse("is nothing that a device has");
    }
    line.Finish();
}

Device::Library Device::LibraryCalled(const std::string& name) const {
    for (const Library& library : libraries) {
        if (library.name == name) {
            return library;
        }
    }
    Library whole;
    whole.name = name;
    return whole;
}

void Device::Read(const std::string& path) {
    std::ifstream file(path);
    if (!file) {
        Stop("the device's description %s cannot be read", path.c_str());
    }
    unsigned number = 0;
    for (std::string line; std::getline(file, line);) {
        ReadLine(path, ++number, line);
    }
}

}  // namespace emulator
