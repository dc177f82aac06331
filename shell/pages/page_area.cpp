// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/page_area.h"

#include <QEvent>
#include <QMdiSubWindow>

PageArea::PageArea(QWidget *parent)
    : QMdiArea(parent)
{
    setBackground(QBrush(Qt::transparent));
}

QMdiSubWindow *PageArea::addPane(QWidget *widget, Qt::WindowFlags flags)
{
    QMdiSubWindow *pane = addSubWindow(widget, Qt::FramelessWindowHint | flags);
    pane->setSystemMenu(nullptr);
    return pane;
}

void PageArea::resizeEvent(QResizeEvent *event)
{
    QMdiArea::resizeEvent(event);
    emit resized(viewport()->size());
}

bool PageArea::eventFilter(QObject *watched, QEvent *event)
{
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    return !key && QMdiArea::eventFilter(watched, event);
}
