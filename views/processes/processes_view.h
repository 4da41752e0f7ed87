// The Processes view: what runs on the device, in the order of its place in memory.
#pragma once

#include "platform/toolhelp.h"
#include "views/processes/binary_list_view.h"

namespace views {

class ProcessesView final : public BinaryListView {
 public:
    explicit ProcessesView(Frame& frame);

    // Selects the process of the argument's id.
    bool Activate(const ViewArgument& argument) override;
    std::wstring Title() const override;
    void UpdateMenu(HMENU menu) override;
    bool Command(WORD command) override;
    std::span<const KeyEntry> Keys() const override;

 private:
    static const Kind kind;
    static const CommandEntry<ProcessesView> commands[];

    bool Allows(WORD command) const override;

    // Throws W32Fault; however the walk over a snapshot ends, what it has found is the list.
    void Read(Binaries::Rows& rows) const override;
    std::unique_ptr<BinaryItem> MakeItem(const platform::ProcessEntry& entry) const;

    // The selected process's id.
    DWORD SelectedProcess() const { return static_cast<DWORD>(List().Selected()->id); }
    void Kill();
    // Ends a process. Throws W32Fault.
    void EndProcess(DWORD processId);
    void ShowModules();
    void ShowInformation();
};

}  // namespace views
