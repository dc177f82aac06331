// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/transparent_view.h"

#include <QKeyEvent>

const char transparentStyle[] = "background: transparent;";

TransparentView::TransparentView(QWidget *parent)
    : QWebView(parent)
{
    setAttribute(Qt::WA_TranslucentBackground);
    setWindowFlag(Qt::FramelessWindowHint);
    setStyleSheet(transparentStyle);
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
    return QWebView::event(event);
}

bool TransparentView::focusNextPrevChild(bool) { return false; }
