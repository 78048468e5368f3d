#pragma once

#include <QPlainTextEdit>

#include "platform/qt/ControlViews.h"
#include "platform/ui/EditField.h"

namespace varnith {

// The view of an EditField of several lines. Tab moves on to the next control.
class TextAreaView : public ControlView {
  public:
    TextAreaView(EditField& field, QPlainTextEdit& edit, FrameClock& clock);

    void Update() override;

  private:
    void TellText();
    void TellSelection();
    void Replace(const QString& shown, const QString& text);
    void FollowSelection(const QString& text);

    EditField& field_;
    QPlainTextEdit& edit_;
};

}  // namespace varnith
