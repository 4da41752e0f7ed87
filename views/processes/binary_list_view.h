// What the views of processes and of modules do alike: a list of binaries, each under its icon with
// lines that the display options choose.
#pragma once

#include "views/list_view.h"
#include "views/processes/binary_rows.h"

namespace views {

class BinaryListView : public ListView, private ui::RowPainter<BinaryItem> {
 public:
    void Layout(HDC dc) override;
    void Resume() override;
    void FlagsChanged(DWORD mask, DWORD value) override;
    void Refresh() override;

 protected:
    using Binaries = ui::RowList<BinaryItem>;

    // What makes one of these views different from the other.
    struct Kind {
        // The resource of the bar's menu.
        UINT menu;
        // The text of a failing enumeration.
        UINT failed;
        // The display options after which the list is read anew.
        DWORD watchedFlags;
        // The display option that shows sizes.
        DWORD sizeFlag;
    };
    // `kind` is borrowed.
    BinaryListView(Frame& frame, const Kind& kind);

    const Binaries& List() const { return list_; }
    // Reads the binaries anew and selects the one of an id, if it is there; 0 for none. Shows what
    // fails.
    void RefreshAndSelect(ULONG_PTR id);
    // Shows the selected binary's file in Files; beeps when there is none (GetFileAttributesW).
    void GoToModule();

 private:
    // Adds the binaries to `rows`. What is there when it throws is the list.
    virtual void Read(Binaries::Rows& rows) const = 0;

    std::wstring_view RowName(unsigned row) const override { return list_[row].name; }
    void Enumerate(ULONG_PTR selected);
    void Show(Binaries::Rows rows, ULONG_PTR selected);
    BinaryLines Lines() const;
    int RowHeight(const BinaryItem&) const override { return rows_.Height(Lines()); }
    void DrawRow(const DRAWITEMSTRUCT& place, const BinaryItem& item) const override;
    bool Lacks(const BinaryItem& item) const override { return item.icon == unknownIcon; }
    void Complete(BinaryItem& item) const override { item.icon = IconOf(item.path); }

    const Kind& kind_;
    // Whether rows are being read, or the message about a failure there is on the screen.
    bool refreshing_ = false;
    BinaryRows rows_;
    Binaries list_{*this, *this};
};

}  // namespace views
