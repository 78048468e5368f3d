#pragma once

#include <QElapsedTimer>

#include "platform/qt/ControlViews.h"
#include "platform/qt/ListboxModel.h"
#include "platform/qt/ListboxWidget.h"
#include "platform/ui/Listbox.h"

namespace varnith {

// The view of a Listbox. The list tells only that something has changed, and this finds out what. It tells
// the table of appended rows less often than of the rest, because the table lays itself out anew for them.
class ListboxView : public ControlView {
  public:
    ListboxView(Listbox& list, ListboxWidget& table, FrameClock& clock);
    ~ListboxView() override;

    void Update() override;
    QWidget& LastTabStop() const override;

  private:
    bool NewRowsCanWait() const;
    void FollowRows();
    void FollowHighlight();
    void FollowSorting();
    void RepaintChangedRows();

    Listbox& list_;
    ListboxWidget& table_;
    ListboxModel model_;
    QElapsedTimer since_rows_;  // since the table was last told of rows
};

}  // namespace varnith
