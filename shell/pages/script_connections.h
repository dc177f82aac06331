// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QPointer>
#include <QVector>

class PageStack;

/**
 * The connections that pages' scripts make from signals of the box's objects. The engine keeps one
 * for as long as the object lives, with everything that its function reaches; here it goes with
 * the page that made it. Connections of the program itself are not touched.
 *
 * The engine does not tell which page makes a connection: it is the current view's. One that the
 * page below a favourites page, or the keyboard's page, makes meanwhile goes with the current
 * view's page, too. GUI thread.
 */
class ScriptConnections : public QObject
{
    Q_OBJECT

public:
    ScriptConnections(const PageStack &pages, QObject *parent);

    /** Takes charge of the scripts' connections from an object's signals. */
    void watch(QObject *published);

    /** Undoes all connections of a view's page. */
    void drop(const QObject *view);

    /** Undoes the connections of all pages, but deletes nothing: their scripts never return. */
    void abandon();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    struct Child
    {
        QPointer<QObject> object;
        const QObject *view = nullptr;
    };

    const PageStack &m_pages;
    QVector<Child> m_children;
};
