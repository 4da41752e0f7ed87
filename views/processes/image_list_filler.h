// What the lists of processes and modules do alike.
#pragma once

#include "platform/handles.h"
#include "views/processes/image_item.h"
#include "views/view.h"

namespace views {

// Empties a list and fills it anew under the wait cursor. At its end, also when a fault passes, the
// list is laid out, the wanted item selected and the frame told.
class ImageListFiller {
 public:
    // `selected` is the id of the item to select, 0 for none.
    ImageListFiller(Frame& frame, ViewList& list, ULONG_PTR selected);
    ~ImageListFiller();
    ImageListFiller(const ImageListFiller&) = delete;
    ImageListFiller& operator=(const ImageListFiller&) = delete;

    // Inserts an item by its base, before those of the same base.
    void Insert(std::unique_ptr<ImageItem> item);

 private:
    const platform::WaitCursor cursor_;
    Frame& frame_;
    ViewList& list_;
    ULONG_PTR selected_;
    unsigned selectedRow_ = ui::noRow;
};

// Sets a flag for as long as it lives.
class Raised {
 public:
    explicit Raised(bool& flag) : flag_(flag), before_(std::exchange(flag, true)) {}
    ~Raised() { flag_ = before_; }
    Raised(const Raised&) = delete;
    Raised& operator=(const Raised&) = delete;

 private:
    bool& flag_;
    const bool before_;
};

// Shows an item's file in Files; beeps when there is none (GetFileAttributesW).
void GoToImage(Frame& frame, const ImageItem& item);

}  // namespace views
