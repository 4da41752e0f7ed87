#include "app/settings_page.h"

#include <memory>

#include "app/language.h"
#include "app/settings.h"
#include "res/resource.h"
#include "text/pack/version_info.h"
#include "text/resources.h"
#include "ui/dialog/action.h"
#include "ui/dialog/form_rows.h"
#include "ui/dialog/page.h"

namespace app {

namespace {

class SettingsPage final : public ui::Page {
 public:
    explicit SettingsPage(std::vector<LanguageChoice> choices)
        : Page(IDS_SETTINGS, IDR_DONE_CANCEL), choices_(std::move(choices)) {
        for (size_t index = 0; index < choices_.size(); ++index) {
            if (choices_[index].language == text::Language()) {
                group_->taken = static_cast<int>(index);
            }
        }
    }

    // Kept on purpose: docs/compatibility.md#language-zero
    // 0 when nothing is selected.
    LANGID Chosen() const {
        return group_->taken < 0 ? LANGID{0}
                                 : choices_[static_cast<size_t>(group_->taken)].language;
    }

 protected:
    void Fill(ui::FormList& list) override {
        AddLabel(IDS_TRANSLATED_BY, &translator_);
        // A row of its own even when it is empty, so that the languages stay under the finger.
        auto remark = std::make_unique<ui::ValueRow>(std::wstring(), std::wstring());
        remark_ = remark.get();
        list.AddRow(std::move(remark));
        list.AddRow(std::make_unique<ui::SeparatorRow>());
        ui::ValueRow* languages = nullptr;
        AddLabel(IDS_LANGUAGE, &languages);
        for (size_t index = 0; index < choices_.size(); ++index) {
            list.AddRow(std::make_unique<ui::ChoiceRow>(choices_[index].name, group_,
                                                        static_cast<int>(index)));
        }
        group_->changed = [this](int) { ShowTranslator(); };
        SetTranslator();
    }
    bool OnCommand(WORD command) override {
        if (command != IDOK) {
            return false;
        }
        ui::RunAction(Handle(), IDS_ACTION_FAILED, [this] {
            const LANGID chosen = Chosen();
            WriteNumber(settingLanguage, chosen);
            End(chosen == text::Language() ? IDCANCEL : IDOK);
        });
        return true;
    }

 private:
    void AddLabel(UINT label, ui::ValueRow** row) {
        auto added = std::make_unique<ui::ValueRow>(text::TextOf(label), L"");
        *row = added.get();
        List().AddRow(std::move(added));
    }
    // English shows the program's own maker.
    void SetTranslator() {
        const LANGID chosen = Chosen();
        const bool own = chosen == text::programLanguage;
        platform::UniqueModule pack;
        if (chosen != 0 && !own) {
            pack = OpenPack(chosen);
        }
        const HINSTANCE module = own ? text::ProgramModule() : pack.Get();
        std::optional<text::VersionInfo> info;
        if (module) {
            info = text::VersionInfo::Load(module);
        }
        SetField(translator_, info, own ? L"CompanyName" : L"Translated");
        SetField(remark_, info, own ? L"" : L"TranslatedInfo");
    }
    void SetField(ui::ValueRow* row, const std::optional<text::VersionInfo>& info,
                  const wchar_t* key) const {
        std::optional<std::wstring> value;
        if (info) {
            value = info->GetVersionString(key, Chosen());
        }
        row->SetValue(value ? std::move(*value) : std::wstring());
    }
    void ShowTranslator() {
        ui::RunAction(Handle(), IDS_ACTION_FAILED, [this] { SetTranslator(); });
        List().Remeasure();
    }

    std::vector<LanguageChoice> choices_;
    std::shared_ptr<ui::ChoiceGroup> group_ = std::make_shared<ui::ChoiceGroup>();
    ui::ValueRow* translator_ = nullptr;
    ui::ValueRow* remark_ = nullptr;
};

}  // namespace

std::optional<LANGID> ShowSettings(HWND owner) {
    SettingsPage page(ListLanguages());
    return ui::RunDialog(owner, page) == IDOK ? std::optional(page.Chosen()) : std::nullopt;
}

}  // namespace app
