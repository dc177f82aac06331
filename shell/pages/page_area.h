// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QMdiArea>

/**
 * The transparent area that holds the pages and the keyboard. It is no workplace of windows: a
 * viewer's key neither closes a sub-window nor goes from one to the next. GUI thread.
 */
class PageArea : public QMdiArea
{
    Q_OBJECT

public:
    /** An empty area with a transparent background. */
    explicit PageArea(QWidget *parent);

    /** Adds a frameless sub-window without the menu that Ctrl+W and its like belong to. */
    QMdiSubWindow *addPane(QWidget *widget, Qt::WindowFlags flags = {});

signals:
    /** The area has this size now (px). */
    void resized(const QSize &size);

protected:
    void resizeEvent(QResizeEvent *event) override;

    /** Leaves Ctrl+Tab and its like to the page. */
    bool eventFilter(QObject *watched, QEvent *event) override;
};
