#include "views/processes/image_list_filler.h"

namespace views {

namespace {

// The first row whose base is not less.
unsigned LowerBound(const ViewList& list, ULONG_PTR base) {
    unsigned first = 0;
    unsigned count = list.GetCount();
    while (count > 0) {
        const unsigned half = count / 2;
        if (ImageOf(list.GetItemData(first + half)).base < base) {
            first += half + 1;
            count -= half + 1;
        } else {
            count = half;
        }
    }
    return first;
}

}  // namespace

ImageListFiller::ImageListFiller(Frame& frame, ViewList& list, ULONG_PTR selected)
    : frame_(frame), list_(list), top_(list.GetTopIndex()), selected_(selected) {
    list_.Clear();
}

ImageListFiller::~ImageListFiller() {
    if (finished_) {
        return;
    }
    try {
        Finish();
    } catch (...) {
        // The fault that is on its way is told.
    }
}

void ImageListFiller::Finish() {
    finished_ = true;
    list_.Layout();
    list_.SetTopIndex(top_);
    list_.SetSelection(selectedRow_);
    frame_.TitleChanged();
    frame_.MenuStateChanged();
}

void ImageListFiller::Insert(std::unique_ptr<ImageItem> item) {
    const unsigned row = LowerBound(list_, item->base);
    const bool selected = selected_ != 0 && item->id == selected_;
    list_.InsertItem(row, reinterpret_cast<ULONG_PTR>(item.get()));
    static_cast<void>(item.release());
    if (selected) {
        selectedRow_ = row;
    } else if (selectedRow_ != ui::noRow && row <= selectedRow_) {
        ++selectedRow_;
    }
}

void GoToImage(Frame& frame, const ImageItem& item) {
    if (item.path.empty() || GetFileAttributesW(item.path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        MessageBeep(~0u);
        return;
    }
    frame.SwitchTo(ViewIndex::Files, ViewArgument{0, item.path});
}

}  // namespace views
