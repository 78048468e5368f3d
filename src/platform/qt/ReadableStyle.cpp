#include "platform/qt/ReadableStyle.h"

#include <QPainter>
#include <QStyleOption>

#include "platform/qt/TextColours.h"

namespace varnith {

// A menu bar asks for the arrow that it shows where it is too narrow for its menus. No window of the program
// is so narrow. To read that one picture, Qt would load all its plug-ins for pictures at the start.
QIcon ReadableStyle::standardIcon(StandardPixmap kind, const QStyleOption* option,
                                  const QWidget* widget) const {
    if (kind == SP_ToolBarHorizontalExtensionButton) return {};
    return QProxyStyle::standardIcon(kind, option, widget);
}

void ReadableStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
    // Only the check boxes of a dark desktop are drawn otherwise.
    const auto* box =
        element == PE_IndicatorCheckBox ? qstyleoption_cast<const QStyleOptionButton*>(option) : nullptr;
    if (!box || box->palette.base().color().lightness() > box->palette.text().color().lightness()) {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        return;
    }
    // Fusion derives the outline from this colour.
    QStyleOptionButton readable(*box);
    readable.palette.setColor(QPalette::Window, box->palette.text().color());
    QProxyStyle::drawPrimitive(element, &readable, painter, widget);
}

void ReadableStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
    if (element != CE_FocusFrame) return QProxyStyle::drawControl(element, option, painter, widget);
    const QPalette& colours = option->palette;
    painter->fillRect(option->rect, ReadableOn(colours.color(QPalette::Window),
                                               colours.color(QPalette::Active, QPalette::Highlight)));
}

}  // namespace varnith
