// SPDX-License-Identifier: Apache-2.0
#include "shell/keys/drop_down_list.h"

#include <QApplication>

void DropDownList::expect()
{
    m_state = State::Expected;
    // Queued behind the click that was posted before.
    QMetaObject::invokeMethod(this, &DropDownList::look, Qt::QueuedConnection);
}

void DropDownList::look()
{
    m_list = QApplication::activePopupWidget();
    if (m_state == State::Expected && m_list)
        m_state = State::Seen;
}

bool DropDownList::takesNextKey() const
{
    return m_state == State::Expected || (m_state == State::Seen && m_list && m_list->isVisible());
}

void DropDownList::forget() { m_state = State::None; }
