#include <gtest/gtest.h>

#include "text/resources.h"

namespace {

struct ProgramText {
    UINT id;
    const wchar_t* text;
};

// The misspellings belong to the texts.
constexpr ProgramText programTexts[] = {
    {100, L"Vantor"},
    {130, L"Exit"},
    {131, L"Ok"},
    {132, L"Done"},
    {133, L"Yes"},
    {134, L"No"},
    {135, L"Cancel"},
    {136, L"Retry"},
    {137, L"Ignore"},
    {140, L"Unexpected error."},
    {141, L"Warning"},
    {142, L"Error"},
    {147, L"Settings"},
    {150, L"Cannot create main window"},
    {151, L"Cannot create window%n%1"},
    {152, L"The action can't be completed%n%1"},
    {200, L"Application execution failed."},
    {220, L"Can't quit application%n%1"},
    {240, L"Can't enumerate process%n%1"},
    {241, L"Can't terminate process%n%1"},
    {245, L"Can't enumerate dlls%n%1"},
    {250, L"Can't rename '%1' %n%2"},
    {251, L"Can't create schortcut for '%1' %n%2"},
    {252, L"Can't paste data from clipboard%n%1"},
    {253, L"Can't past '%1' %n%2"},
    {254, L"The destination already contains a folder named '%1'."},
    {255, L"The destination already contains a file named '%1'."},
    {256, L"Can't delete %1%n%2"},
    {350,
     L"Are you sure you want to end selected application?\n\nIf you end a system critical "
     L"application it might result an unpredictable device state.\nContinue anyway?"},
    {351,
     L"Are you sure you want to end selected process?\n\nIf you end a system critical process it "
     L"might result an unpredictable device state.\nContinue anyway?"},
    {352,
     L"The destination already contains a folder named%n'%1'.%nDo you still want to merge this "
     L"folders?"},
    {353, L"The destination folder is a subfolder of the source folder."},
    {354,
     L"The destination already contains a file named%n'%1'.%nWould you like to overwrite existing "
     L"file?"},
    {355, L"Are you sure you want to permanently delete these %1!i! items?%n"},
    {356, L"Are you sure you want to permanently delete this file?%n%1"},
    {357, L"Are you sure you want to permanently delete this folder?%n%1"},
    {358, L"Are you sure you want to finish all running application?"},
    {359,
     L"Can't delete %1 because it is being used by another process.\n\nWould you like to close all "
     L"running applications and try it again?"},
    {800, L"Applications (%1!i!)"},
    {801, L"Processes (%1!i!)"},
    {802, L"System Status"},
    {803, L"Dlls (%1!i!)"},
    {810, L"[%1!x!] %2"},
    {811, L"Not answering"},
    {820, L"New Folder"},
    {821, L"New Folder %1!i!"},
    {822, L"%1 - Copy"},
    {823, L"%1 - Copy (%2!i!)"},
    {824, L"Copying %1"},
    {825, L"Moving %1"},
    {826, L"Deleting %1"},
    {827, L"%1 done"},
    {828, L"Stopped before %1. What came before it is done, the rest is as it was."},
    {945, L"Open File"},
    {950, L"Process Information"},
    {951, L"Process id:"},
    {952, L"Threads number:"},
    {953, L"Load address:"},
    {954, L"Virtul memory:"},
    {955, L"commited (%1!i!):"},
    {956, L"reserved (%1!i!):"},
    {957, L"Heaps:"},
    {960, L"Window Information"},
    {961, L"Window handle: %1!#x!"},
    {962, L"owner process PID: %1!#x!"},
    {970, L"Properties"},
    {971, L"Type:"},
    {972, L"Location:"},
    {973, L"Size:"},
    {974, L"Type:"},
    {975, L"Target:"},
    {976, L"Created:"},
    {977, L"Modified:"},
    {978, L"Accessed:"},
    {979, L"Attributes:"},
    {980, L"Read-only"},
    {981, L"Hidden"},
    {982, L"Archive"},
    {983, L"Compressed"},
    {984, L"Encrypted"},
    {985, L"System"},
    {986, L"ROM Module"},
    {987, L"In ROM"},
    {988, L"ROM Static Ref"},
    {989, L"Unknown"},
    {990, L"bytes"},
    {991, L"KB"},
    {992, L"MB"},
    {993, L"GB"},
    {994, L"TB"},
    {996, L"Translated by:"},
    {997, L"Language:"},
    {998,
     L"Language option will be applied next time when application start.\nWould you like to "
     L"restart application right now?"},
    {999, L"Language changed"},
    {1007, L"Battery"},
    {1008, L"Memory"},
    {1009, L"Storage"},
    {1011, L"%1!i!%%"},
    {1012, L"charging (%1!i!%%)"},
    {1013, L"%2 free of %1"},
};

bool IsKnown(UINT id) {
    for (const ProgramText& known : programTexts) {
        if (known.id == id) {
            return true;
        }
    }
    return false;
}

}  // namespace

TEST(ProgramTexts, ReadAsPeopleKnowThem) {
    for (const ProgramText& known : programTexts) {
        EXPECT_EQ(text::LoadText(known.id), known.text) << known.id;
    }
}

TEST(ProgramTexts, AreNoMoreThanThese) {
    for (UINT id = 0; id < 4096; ++id) {
        if (!IsKnown(id)) {
            EXPECT_EQ(text::LoadText(id), L"<resource not found>") << id;
        }
    }
}
