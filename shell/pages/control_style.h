// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QPalette>
#include <QProxyStyle>

class QWebView;

/**
 * Draws the native controls of pages so that they can be read. The views' style sheet makes the
 * grounds in their palette transparent, and the engine would draw check boxes, fields and lists
 * with that as well; this style draws them with colours of its own, marks the focus for a viewer
 * on a sofa, and gives the popup of a drop-down list a ground and a selection. GUI thread.
 */
class ControlStyle : public QProxyStyle
{
    Q_OBJECT

public:
    ControlStyle();

    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override;
    void drawControl(ControlElement element, const QStyleOption *option, QPainter *painter,
                     const QWidget *widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex *option,
                            QPainter *painter, const QWidget *widget) const override;

    using QProxyStyle::polish;
    void polish(QWidget *widget) override;

private:
    QPalette m_palette;
};

/** Makes a view's page draw its controls in this way. What a page styles itself stays so. */
void showControls(QWebView *view);

/**
 * The controls' colours come from the view's palette, the page's ground from the page's: keeps the
 * first opaque and the second transparent. To be called whenever the style sheet may have set
 * either.
 */
void keepControlPalette(QWebView *view);
