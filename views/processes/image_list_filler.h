// What the lists of processes and modules do alike.
#pragma once

#include "platform/handles.h"
#include "views/processes/image_item.h"
#include "views/view.h"

namespace views {

// Empties a list and fills it anew under the wait cursor.
class ImageListFiller {
 public:
    // `selected` is the id of the item to select, 0 for none.
    ImageListFiller(Frame& frame, ViewList& list, ULONG_PTR selected);
    // Finishes what a fault has left unfinished; a second fault, as of memory, is let go for it.
    ~ImageListFiller();
    ImageListFiller(const ImageListFiller&) = delete;
    ImageListFiller& operator=(const ImageListFiller&) = delete;

    // Inserts an item by its base, before those of the same base.
    void Insert(std::unique_ptr<ImageItem> item);
    // Lays the list out, selects the wanted item and tells the frame.
    void Finish();

 private:
    const platform::WaitCursor cursor_;
    Frame& frame_;
    ViewList& list_;
    // The row at the top, which stays where it was as far as the new rows allow.
    unsigned top_;
    ULONG_PTR selected_;
    unsigned selectedRow_ = ui::noRow;
    bool finished_ = false;
};

// Shows an item's file in Files; beeps when there is none (GetFileAttributesW).
void GoToImage(Frame& frame, const ImageItem& item);

}  // namespace views
