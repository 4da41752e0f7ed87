// Values of the registry.
#include "app/settings.h"

#include <set>

#include "app/language.h"
#include "faults/fault.h"
#include "tests/endurance/hostile/host/system.h"
#include "tests/endurance/hostile/parts.h"

namespace hostile {

namespace {

constexpr wchar_t valueName[] = L"value";

void PutValue(Block* block, Chance& chance, const Bytes& data, unsigned type) {
    static constexpr unsigned types[] = {0, 1, 2, 3, 4, 5, 7, 11, 0xFFFFFFFF};
    block->Say32(chance.OneIn(3) ? chance.Of(types) : type);
    block->Say16(static_cast<unsigned>(data.size()));
    block->bytes.insert(block->bytes.end(), data.begin(), data.end());
}

Value TakeValue(Taker* taker) {
    Value value;
    value.name = valueName;
    value.type = taker->Take(4);
    value.data = taker->TakeBytes(taker->Take(2));
    return value;
}

// A value, and the one that has taken its place when it is asked for again.
Bytes MakeNumber(Chance& chance, bool* whole) {
    Block block;
    for (int time = 0; time < 2; ++time) {
        Bytes data(chance.OneIn(2) ? 4 : chance.Dice(12), 7);
        PutValue(&block, chance, data, REG_DWORD);
    }
    *whole = false;
    return Spoil(block, chance);
}

std::string JudgeNumber(const Bytes& input, bool, bool* accepted) {
    Taker taker(input);
    answers = System();
    answers.values = {TakeValue(&taker)};
    answers.valuesLater = {TakeValue(&taker)};
    const std::optional<DWORD> number = app::ReadNumber(valueName);
    *accepted = number.has_value();
    const Value& value = answers.values[0];
    const bool sound = value.type == REG_DWORD && value.data.size() == 4;
    if (answers.held != 0) {
        return "a key was kept open";
    }
    return number.has_value() == sound && (!number || Taker(value.data).Take(4) == *number)
               ? ""
               : "a number that is not there";
}

Bytes MakeText(Chance& chance, bool* whole) {
    Block block;
    for (int time = 0; time < 2; ++time) {
        Block text;
        text.PutText(OddText(chance, 20));
        text.PutZeros(chance.Dice(6));
        text.PutText(OddText(chance, chance.OneIn(3) ? 9 : 0));
        PutValue(&block, chance, text.bytes, REG_SZ);
        if (time == 0 && !chance.OneIn(3)) {
            block.PutBlock(Block(block));
            break;
        }
    }
    *whole = false;
    return chance.OneIn(3) ? block.bytes : Spoil(block, chance);
}

std::string JudgeText(const Bytes& input, bool, bool* accepted) {
    Taker taker(input);
    answers = System();
    answers.values = {TakeValue(&taker)};
    answers.valuesLater = {TakeValue(&taker)};
    const std::optional<std::wstring> text = app::ReadText(valueName);
    *accepted = text.has_value();
    if (answers.held != 0) {
        return "a key was kept open";
    }
    if (!text) {
        return "";
    }
    if (answers.values[0].type != REG_SZ || answers.valuesLater[0].type != REG_SZ) {
        return "a text of another type";
    }
    const std::wstring stored = TextOf(answers.valuesLater[0].data);
    return *text == stored.substr(0, stored.find(L'\0')) ? "" : "a text that is not there";
}

Bytes MakeLanguages(Chance& chance, bool* whole) {
    static constexpr const char16_t* names[] = {
        u"vantor.exe.0407.ui", u"VANTOR.EXE.040c.ui", u"vantor.exe.0000.ui", u"vantor.exe.zzzz.ui",
        u"vantor.exe.04070.u", u"vantor.exe",         u"vantor.exe-0411.ui", u"vantor.exe.FFFF.xx"};
    Block block;
    for (unsigned value = chance.Dice(5); value-- > 0;) {
        std::u16string name = chance.Of(names);
        if (chance.OneIn(3)) {
            name[chance.Dice(name.size())] = static_cast<char16_t>(chance.Dice(128));
        }
        if (chance.OneIn(30)) {
            name += OddText(chance, 300);
        }
        block.Say16(static_cast<unsigned>(name.size()));
        block.PutText(name);
        Block path;
        path.PutText(OddText(chance, chance.OneIn(20) ? 300 : 12));
        path.PutZeros(chance.Dice(4));
        PutValue(&block, chance, path.bytes, REG_SZ);
    }
    *whole = false;
    return chance.OneIn(2) ? block.bytes : Spoil(block, chance);
}

// The language in a name, by another reader; 0 for none.
unsigned LanguageIn(const std::wstring& name) {
    constexpr std::wstring_view pattern = L"VANTOR.EXE.hhhh.??";
    if (name.size() != pattern.size()) {
        return 0;
    }
    unsigned language = 0;
    for (size_t at = 0; at < name.size(); ++at) {
        const wchar_t letter = name[at];
        const wchar_t upper =
            letter >= L'a' && letter <= L'z' ? static_cast<wchar_t>(letter - 32) : letter;
        if (pattern[at] == L'h') {
            const size_t digit = std::wstring_view(L"0123456789ABCDEF").find(upper);
            if (digit == std::wstring_view::npos) {
                return 0;
            }
            language = language * 16 + static_cast<unsigned>(digit);
        } else if (pattern[at] != L'?' && pattern[at] != upper) {
            return 0;
        }
    }
    return language;
}

std::string JudgeLanguages(const Bytes& input, bool, bool* accepted) {
    Taker taker(input);
    answers = System();
    std::set<unsigned> expected = {0x0409};
    bool fails = false;
    while (!taker.AtEnd()) {
        const std::wstring name = TextOf(taker.TakeBytes(2 * taker.Take(2)));
        Value value = TakeValue(&taker);
        value.name = name.substr(0, name.find(L'\0'));
        // Half a character is one.
        Bytes halves = value.data;
        halves.resize(halves.size() + halves.size() % 2);
        const std::wstring data = TextOf(halves);
        fails = fails || value.name.size() >= 260 || value.data.size() > 520;
        if (!fails && value.type == REG_SZ && IsThere(data.substr(0, data.find(L'\0'))) &&
            LanguageIn(value.name) % 5 != 0) {
            expected.insert(LanguageIn(value.name));
        }
        answers.values.push_back(value);
    }
    std::set<unsigned> found;
    try {
        for (const app::LanguageChoice& choice : app::ListLanguages()) {
            if (choice.name.empty() || !found.insert(choice.language).second) {
                return "a language without a name, or twice";
            }
        }
        *accepted = found.size() > 1;
    } catch (const faults::W32Fault&) {
        return fails ? "" : "the languages could not be listed";
    }
    if (answers.held != 0) {
        return "a key or a search was kept open";
    }
    return fails || found != expected ? "the languages are others" : "";
}

}  // namespace

const Part numbers = {"numbers", MakeNumber, JudgeNumber};
const Part texts = {"texts", MakeText, JudgeText};
const Part languages = {"languages", MakeLanguages, JudgeLanguages};

}  // namespace hostile
