#include "platform/qt/AccessibleFactory.h"

#include <QAccessibleWidget>

#include "platform/qt/AccessibleListbox.h"
#include "platform/qt/CanvasView.h"
#include "platform/qt/LabelWidget.h"
#include "platform/qt/ListboxWidget.h"

namespace varnith {

namespace {

class AccessibleLink : public QAccessibleWidget {
  public:
    explicit AccessibleLink(LabelWidget& label)
        : QAccessibleWidget(&label, QAccessible::Link), label_(label) {}

    QString text(QAccessible::Text kind) const override {
        return kind == QAccessible::Name ? label_.text() : QAccessibleWidget::text(kind);
    }
    QStringList actionNames() const override { return {pressAction()}; }
    void doAction(const QString& action) override {
        if (action == pressAction()) label_.Press(label_.rect().center());
    }

  private:
    LabelWidget& label_;
};

QAccessibleInterface* Make(const QString& /*class_name*/, QObject* object) {
    if (auto* table = dynamic_cast<ListboxWidget*>(object)) return new AccessibleListbox(*table);
    if (auto* canvas = dynamic_cast<CanvasWidget*>(object))
        return new QAccessibleWidget(canvas, QAccessible::Graphic);
    auto* label = dynamic_cast<LabelWidget*>(object);
    return label && label->IsLink() ? new AccessibleLink(*label) : nullptr;
}

}  // namespace

void InstallAccessibleFactory() {
    QAccessible::installFactory(Make);
}

}  // namespace varnith
