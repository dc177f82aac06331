// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QPointer>
#include <QWidget>

/**
 * The drop-down list that OK opened: the next key that comes past it, if it would close a list,
 * belongs to the list and not to the page. Once the list is gone, keys are the page's again. GUI
 * thread.
 */
class DropDownList : public QObject
{
    Q_OBJECT

public:
    /** What opens the list has just been posted. */
    void expect();

    /** Whether a list is about to open or open. */
    bool takesNextKey() const;

    /** A key has come: whatever it was, the list has had its share. */
    void forget();

private:
    void look();

    enum class State { None, Expected, Seen };

    State m_state = State::None;
    QPointer<QWidget> m_list; ///< once seen; null again when it is deleted
};
