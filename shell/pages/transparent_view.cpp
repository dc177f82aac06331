// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/transparent_view.h"

#include "shell/pages/control_style.h"

#include <QKeyEvent>

const char transparentStyle[] = "background: transparent;";

TransparentView::TransparentView(QWidget *parent)
    : QWebView(parent)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowFlag(Qt::FramelessWindowHint);
    showControls(this);
    setStyleSheet(transparentStyle);
    // The page hears of the menu key, but a browser's menu is no viewer's business.
    setContextMenuPolicy(Qt::PreventContextMenu);
}

void TransparentView::enable(std::initializer_list<QWebSettings::WebAttribute> attributes)
{
    for (const QWebSettings::WebAttribute attribute : attributes)
        settings()->setAttribute(attribute, true);
}

bool TransparentView::event(QEvent *event)
{
    if (event->type() == QEvent::KeyPress) {
        const auto *key = static_cast<QKeyEvent *>(event);
        const bool tab = key->key() == Qt::Key_Tab || key->key() == Qt::Key_Backtab;
        if (tab && !(key->modifiers() & (Qt::ControlModifier | Qt::AltModifier))) {
            // What the page answers, whether it has a focused element now, would make the toolkit
            // look for another widget and the remote go dead.
            page()->focusNextPrevChild(key->key() == Qt::Key_Tab &&
                                       !(key->modifiers() & Qt::ShiftModifier));
            return true;
        }
    }
    const bool handled = QWebView::event(event);
    if (event->type() == QEvent::PaletteChange || event->type() == QEvent::Polish ||
        event->type() == QEvent::Show)
        keepControlPalette(this);
    return handled;
}

bool TransparentView::focusNextPrevChild(bool) { return false; }
