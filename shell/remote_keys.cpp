/*
 * The remote control's keys on their way to the page.
 */
#include "shell/window.h"

bool Window::eventFilter(QObject *watched, QEvent *event)
{
    return QMainWindow::eventFilter(watched, event);
}
