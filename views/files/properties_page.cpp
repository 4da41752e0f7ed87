#include "views/properties_page.h"
#include "res/resource.h"

#include <algorithm>

#include "platform/handles.h"
#include "text/format.h"
#include "text/resources.h"
#include "ui/dialog/form_rows.h"
#include "ui/dialog/page.h"
#include "ui/paint/clipped_text.h"
#include "ui/paint/drawing_resources.h"
#include "views/files/file_properties.h"

namespace views {

namespace {

struct AttributeLine {
    UINT label;
    DWORD bit;
};

// Kept on purpose: docs/compatibility.md#same-bit
// A handheld gives encrypted files and those in its ROM the same bit.
constexpr AttributeLine attributeLines[] = {
    {IDS_READ_ONLY, 0x0001},  {IDS_HIDDEN, 0x0002},     {IDS_ARCHIVE, 0x0020},
    {IDS_SYSTEM, 0x0004},     {IDS_COMPRESSED, 0x0800}, {IDS_ENCRYPTED, 0x0040},
    {IDS_ROM_MODULE, 0x2000}, {IDS_IN_ROM, 0x0040},     {IDS_ROM_STATIC_REFERENCE, 0x1000},
};

std::wstring OrUnknown(const std::wstring& text) {
    return text.empty() ? text::TextOf(IDS_UNKNOWN) : text;
}

class PropertiesPage final : public ui::Page {
 public:
    explicit PropertiesPage(FileProperties properties)
        : Page(IDS_PROPERTIES, IDR_DONE), properties_(std::move(properties)) {}

 protected:
    void Fill(ui::FormList& list) override {
        MeasureLabels();
        list.AddRow(std::make_unique<ui::HeadingRow>(std::wstring(properties_.Name()),
                                                     properties_.icons, properties_.iconIndex));
        list.AddRow(std::make_unique<ui::SeparatorRow>());
        AddValue(IDS_TYPE, OrUnknown(properties_.typeName));
        AddValue(IDS_LOCATION, properties_.Location());
        if (properties_.HasSize()) {
            AddValue(IDS_SIZE, text::FormatSizeWithBytes(properties_.Size()));
        }
        if (properties_.shortcut) {
            AddValue(IDS_TARGET_TYPE, OrUnknown(properties_.shortcut->typeName));
            AddValue(IDS_TARGET, properties_.shortcut->target);
        }
        AddTime(IDS_CREATED, properties_.data.ftCreationTime);
        AddTime(IDS_MODIFIED, properties_.data.ftLastWriteTime);
        AddTime(IDS_ACCESSED, properties_.data.ftLastAccessTime);
        AddValue(IDS_ATTRIBUTES, std::wstring());
        for (const AttributeLine& line : attributeLines) {
            list.AddRow(std::make_unique<ui::CheckRow>(
                text::TextOf(line.label), (properties_.data.dwFileAttributes & line.bit) != 0));
        }
    }

 private:
    void MeasureLabels() {
        const platform::WindowDC dc(Handle());
        const platform::Selected font(dc, ui::Fonts().Base());
        for (UINT label = IDS_TYPE; label < IDS_ATTRIBUTES; ++label) {
            labelWidth_ = std::max(labelWidth_, ui::TextWidth(dc, text::LoadText(label)));
        }
    }
    void AddValue(UINT label, std::wstring value) {
        List().AddRow(
            std::make_unique<ui::ValueRow>(text::TextOf(label), std::move(value), labelWidth_));
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
