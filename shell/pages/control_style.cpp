// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/control_style.h"

#include <QCoreApplication>
#include <QPainter>
#include <QPointer>
#include <QStyleOption>
#include <QWebPage>
#include <QWebSettings>
#include <QWebView>

namespace {

constexpr QRgb focusColour = 0xffffb000;

// Neither style nor palette reach the ground of a closed drop-down list: the style sheet draws it.
// A ground that differs from the engine's own makes the engine draw the list as a box, which then
// needs its mark of the focus from here as well.
const char listStyle[] = "select:not([multiple]):not([size]) { background-color: #fefefe; }"
                         "select:not([multiple]):not([size]):focus"
                         " { outline: 3px solid #ffb000; outline-offset: -3px; }";

const char popupStyle[] =
    "* { background: #ffffff; color: #000000; font-size: %1px; }"
    "QAbstractItemView { border: 2px solid #303030; outline: none; selection-color: #ffffff; }";

/** Lends an option other colours while it is drawn, whatever its type. */
class Recoloured
{
public:
    Recoloured(const QStyleOption *option, const QPalette &palette)
        : m_option(const_cast<QStyleOption *>(option))
        , m_own(m_option->palette)
    {
        m_option->palette = palette;
        // What can't be chosen looks like it.
        m_option->palette.setCurrentColorGroup(m_own.currentColorGroup());
    }

    ~Recoloured() { m_option->palette = m_own; }

    Recoloured(const Recoloured &) = delete;
    Recoloured &operator=(const Recoloured &) = delete;

private:
    QStyleOption *m_option;
    QPalette m_own;
};

/** Inside the control: what lies around it is not painted again when the focus goes. */
void markFocus(const QStyleOption *option, QPainter *painter)
{
    if (!(option->state & QStyle::State_HasFocus))
        return;
    const int width = option->rect.height() < 20 ? 2 : 3;
    painter->save();
    painter->setPen(QPen(QColor(focusColour), width, Qt::SolidLine, Qt::SquareCap, Qt::MiterJoin));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(
        option->rect.adjusted(width / 2, width / 2, -(width + 1) / 2, -(width + 1) / 2));
    painter->restore();
}

bool isOpaque(const QPalette &palette) { return palette.base().color().alpha() == 255; }

} // namespace

ControlStyle::ControlStyle()
    : m_palette(standardPalette())
{
}

void ControlStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option,
                                 QPainter *painter, const QWidget *widget) const
{
    const Recoloured recoloured(option, m_palette);
    // The style sheet leaves a field's ground out.
    if (element == PE_FrameLineEdit)
        painter->fillRect(option->rect.adjusted(1, 1, -1, -1), m_palette.base());
    QProxyStyle::drawPrimitive(element, option, painter, widget);
    if (element == PE_FrameLineEdit || element == PE_PanelButtonCommand ||
        element == PE_IndicatorCheckBox || element == PE_IndicatorRadioButton)
        markFocus(option, painter);
}

void ControlStyle::drawControl(ControlElement element, const QStyleOption *option,
                               QPainter *painter, const QWidget *widget) const
{
    const Recoloured recoloured(option, m_palette);
    QProxyStyle::drawControl(element, option, painter, widget);
}

void ControlStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                                      QPainter *painter, const QWidget *widget) const
{
    const Recoloured recoloured(option, m_palette);
    QProxyStyle::drawComplexControl(control, option, painter, widget);
    if (control == CC_Slider)
        markFocus(option, painter);
}

void ControlStyle::polish(QWidget *widget)
{
    QProxyStyle::polish(widget);
    // A style sheet of its own goes before the one that it inherits from the view.
    if (widget->inherits("QComboBoxPrivateContainer") && widget->styleSheet().isEmpty()) {
        const QWidget *view = widget->parentWidget();
        const int height = view ? view->window()->height() : 0;
        widget->setStyleSheet(QString(popupStyle).arg(qMax(16, height / 26)));
    }
}

void showControls(QWebView *view)
{
    // One for all views; below each view's style sheet, which asks it for what it does not draw.
    static QPointer<ControlStyle> style;
    if (!style) {
        style = new ControlStyle;
        style->setParent(QCoreApplication::instance());
    }
    view->setStyle(style);
    // For all pages, since a view gets its page later.
    QWebSettings::globalSettings()->setUserStyleSheetUrl(
        QUrl("data:text/css;charset=utf-8;base64," + QByteArray(listStyle).toBase64()));
}

void keepControlPalette(QWebView *view)
{
    if (!isOpaque(view->palette()))
        view->setPalette(view->style()->standardPalette());
    // The page's palette follows the view's; its base is the ground of the page.
    QPalette ground = view->page()->palette();
    if (isOpaque(ground)) {
        ground.setBrush(QPalette::Base, Qt::transparent);
        view->page()->setPalette(ground);
    }
}
