// The Dlls view: the modules that one process has loaded.
#pragma once

#include "views/processes/binary_list_view.h"

namespace views {

class DllsView final : public BinaryListView {
 public:
    explicit DllsView(Frame& frame);

    // Shows the modules of the argument's process.
    bool Activate(const ViewArgument& argument) override;
    std::wstring Title() const override;
    void UpdateMenu(HMENU menu) override;
    bool Command(WORD command) override;
    std::span<const KeyEntry> Keys() const override;

 private:
    static const Kind kind;
    static const CommandEntry<DllsView> commands[];

    bool Allows(WORD command) const override;

    // Throws W32Fault when there is no snapshot; however the walk over it ends, what it has found
    // is the list.
    void Read(Binaries::Rows& rows) const override;
    void ShowProperties();

    DWORD processId_ = 0;
};

}  // namespace views
