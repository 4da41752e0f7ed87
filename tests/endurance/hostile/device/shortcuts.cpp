// Shortcuts as a PC has them, read by the system and told as a handheld's are. What is spoilt are
// their texts and their ends: of places that lead out of the file a system's own reader dies.
#include "platform/shortcuts.h"

#include "tests/endurance/hostile/device/parts.h"
#include "tests/support/world.h"

namespace hostile {

namespace {

using namespace test;

constexpr size_t room = 780;
constexpr size_t headerSize = 76;

// What a shortcut's head says is there.
constexpr uint32_t hasPlace = 2;
constexpr uint32_t hasComment = 4;
constexpr uint32_t hasArguments = 32;
constexpr uint32_t isWide = 128;

void PutLetters(Block* block, std::string_view text) {
    block->bytes.insert(block->bytes.end(), text.begin(), text.end());
    block->Put8(0);
}

// Where the target lies: a volume, and the path on it.
void PutPlace(Block* block, const std::string& path) {
    constexpr uint32_t size = 28;
    constexpr uint32_t volumeSize = 17;
    const auto length = static_cast<uint32_t>(path.size() + 1);
    block->Say32(size + volumeSize + length + 1);
    block->Say32(size);
    block->Say32(1);
    block->Say32(size);
    block->Say32(size + volumeSize);
    block->Say32(0);
    block->Say32(size + volumeSize + length);
    block->Say32(volumeSize);
    block->Say32(3);
    block->Put32(0x12345678);
    block->Say32(volumeSize - 1);
    PutLetters(block, "");
    PutLetters(block, path);
    PutLetters(block, "");
}

void PutCounted(Block* block, const std::u16string& text) {
    block->Say16(static_cast<unsigned>(text.size()));
    block->PutText(text);
}

Bytes MakeShortcut(Chance& chance, bool* whole) {
    static constexpr const char* targets[] = {"C:\\windows\\notepad.exe", "C:\\a folder\\b.txt",
                                              "D:\\c.exe", "C:\\"};
    static constexpr const char16_t* comments[] = {u"\\windows\\notepad.exe",
                                                   u"\"\\a folder\\b.txt\"", u"\"",
                                                   u"notepad.exe an argument", u"not a command"};
    const bool comment = chance.OneIn(2);
    const bool arguments = chance.OneIn(2);
    Block block;
    block.Put32(headerSize);
    // The class of shortcuts.
    block.Put32(0x00021401);
    block.Put32(0);
    block.Put32(0x000000C0);
    block.Put32(0x46000000);
    block.Say32(hasPlace | isWide | (comment ? hasComment : 0) | (arguments ? hasArguments : 0));
    block.PutZeros(headerSize - block.bytes.size());
    PutPlace(&block, chance.Of(targets));
    if (comment) {
        PutCounted(&block,
                   chance.OneIn(3) ? OddText(chance, 1200) : std::u16string(chance.Of(comments)));
    }
    if (arguments) {
        PutCounted(&block, OddText(chance, chance.OneIn(3) ? 1200 : 20));
    }
    block.Put32(0);
    *whole = !chance.OneIn(8);
    if (!*whole) {
        block.bytes.resize(chance.Dice(block.bytes.size()));
    }
    return block.bytes;
}

// Whether a text stands somewhere in the file.
bool Holds(const Bytes& input, std::wstring_view text) {
    Bytes bytes;
    for (const wchar_t letter : text) {
        bytes.push_back(static_cast<uint8_t>(letter & 0xFF));
        bytes.push_back(static_cast<uint8_t>(letter >> 8));
    }
    return std::search(input.begin(), input.end(), bytes.begin(), bytes.end()) != input.end();
}

// What is told is the comment, or the target in quotes with the arguments behind it.
std::string JudgeShortcut(const Bytes& input, bool whole, bool* accepted) {
    static const TemporaryFolder folder;
    const std::wstring path = folder.MakeFile(
        L"a.lnk", std::string_view(reinterpret_cast<const char*>(input.data()), input.size()));
    const auto command = platform::ShortcutTarget(path.c_str(), room);
    *accepted = command && !command->empty();
    if (!*accepted) {
        return whole && GetLastError() != ERROR_INSUFFICIENT_BUFFER ? "a sound shortcut was refused"
                                                                    : "";
    }
    if (command->size() >= room) {
        return "a command is longer than the room for it";
    }
    if (Holds(input, *command)) {
        return "";
    }
    const std::wstring_view target = platform::CommandPath(*command);
    if (command->front() != L'"' || target.size() + 2 > command->size()) {
        return "a command that the shortcut does not hold";
    }
    const std::wstring_view rest = std::wstring_view(*command).substr(target.size() + 2);
    return rest.empty() || (rest.front() == L' ' && Holds(input, rest.substr(1)))
               ? ""
               : "arguments that the shortcut does not hold";
}

}  // namespace

const Part shortcuts = {"shortcuts", MakeShortcut, JudgeShortcut};

}  // namespace hostile
