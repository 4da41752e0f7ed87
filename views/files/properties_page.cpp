#include "views/properties_page.h"

#include <algorithm>

#include "platform/handles.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/clipped_text.h"
#include "ui/drawing_resources.h"
#include "ui/form_rows.h"
#include "ui/page.h"
#include "views/files/file_properties.h"

namespace views {

namespace {

enum PropertiesText : UINT {
    textCaption = 970,
    textType = 971,
    textLocation = 972,
    textSize = 973,
    textTargetType = 974,
    textTarget = 975,
    textCreated = 976,
    textModified = 977,
    textAccessed = 978,
    textAttributes = 979,
    textReadOnly = 980,
    textHidden = 981,
    textArchive = 982,
    textCompressed = 983,
    textEncrypted = 984,
    textSystem = 985,
    textRomModule = 986,
    textInRom = 987,
    textRomStaticReference = 988,
    textUnknown = 989,
};

struct AttributeLine {
    UINT label;
    DWORD bit;
};

// A handheld gives encrypted files and those in its ROM the same bit.
constexpr AttributeLine attributeLines[] = {
    {textReadOnly, 0x0001},  {textHidden, 0x0002},     {textArchive, 0x0020},
    {textSystem, 0x0004},    {textCompressed, 0x0800}, {textEncrypted, 0x0040},
    {textRomModule, 0x2000}, {textInRom, 0x0040},      {textRomStaticReference, 0x1000},
};

std::wstring OrUnknown(const std::wstring& text) {
    return text.empty() ? std::wstring(text::LoadText(textUnknown)) : text;
}

class PropertiesPage final : public ui::Page {
 public:
    explicit PropertiesPage(FileProperties properties)
        : Page(textCaption, ui::barDone), properties_(std::move(properties)) {}

 protected:
    void Fill(ui::FormList& list) override {
        MeasureLabels();
        list.AddRow(std::make_unique<ui::HeadingRow>(std::wstring(properties_.Name()),
                                                     properties_.icons, properties_.iconIndex));
        list.AddRow(std::make_unique<ui::SeparatorRow>());
        AddValue(textType, OrUnknown(properties_.typeName));
        AddValue(textLocation, properties_.Location());
        if (properties_.HasSize()) {
            AddValue(textSize, text::FormatSizeWithBytes(properties_.Size()));
        }
        if (properties_.shortcut) {
            AddValue(textTargetType, OrUnknown(properties_.shortcut->typeName));
            AddValue(textTarget, properties_.shortcut->target);
        }
        AddTime(textCreated, properties_.data.ftCreationTime);
        AddTime(textModified, properties_.data.ftLastWriteTime);
        AddTime(textAccessed, properties_.data.ftLastAccessTime);
        AddValue(textAttributes, std::wstring());
        for (const AttributeLine& line : attributeLines) {
            list.AddRow(std::make_unique<ui::CheckRow>(
                std::wstring(text::LoadText(line.label)),
                (properties_.data.dwFileAttributes & line.bit) != 0));
        }
    }

 private:
    void MeasureLabels() {
        const platform::WindowDC dc(Handle());
        const platform::Selected font(dc, ui::Fonts().Base());
        for (UINT label = textType; label < textAttributes; ++label) {
            labelWidth_ = std::max(labelWidth_, ui::TextWidth(dc, text::LoadText(label)));
        }
    }
    void AddValue(UINT label, std::wstring value) {
        List().AddRow(std::make_unique<ui::ValueRow>(std::wstring(text::LoadText(label)),
                                                     std::move(value), labelWidth_));
    }
    void AddTime(UINT label, const FILETIME& time) {
        AddValue(label, text::FormatFileTime(time, text::Seconds::With));
    }

    FileProperties properties_;
    int labelWidth_ = 0;
};

}  // namespace

void ShowProperties(HWND owner, const std::wstring& path) {
    PropertiesPage page(ReadFileProperties(owner, path));
    ui::RunDialog(owner, page);
}

}  // namespace views
