// SPDX-License-Identifier: Apache-2.0
#include "shell/pages/script_connections.h"

#include "shell/pages/page_stack.h"

#include <QChildEvent>
#include <QWebView>

namespace {

bool isConnection(const QObject *object)
{
    return object && object->inherits("JSC::Bindings::QtConnectionObject");
}

} // namespace

ScriptConnections::ScriptConnections(const PageStack &pages, QObject *parent)
    : QObject(parent)
    , m_pages(pages)
{
}

void ScriptConnections::watch(QObject *published) { published->installEventFilter(this); }

void ScriptConnections::drop(const QObject *view)
{
    const QVector<Child> children = m_children;
    m_children.clear();
    for (const Child &child : children) {
        if (!child.object)
            continue;
        if (child.view != view) {
            m_children.append(child);
        } else if (isConnection(child.object)) {
            // Later, since this can be the very connection that brought us here; but now it is
            // disconnected.
            QObject::disconnect(child.object->parent(), nullptr, child.object, nullptr);
            child.object->deleteLater();
        }
    }
}

void ScriptConnections::abandon()
{
    const QVector<Child> children = m_children;
    m_children.clear();
    for (const Child &child : children) {
        if (isConnection(child.object))
            QObject::disconnect(child.object->parent(), nullptr, child.object, nullptr);
    }
}

bool ScriptConnections::eventFilter(QObject *watched, QEvent *event)
{
    // The engine makes each connection an object of its own, a child of the sender.
    if (event->type() == QEvent::ChildAdded)
        m_children.append({static_cast<QChildEvent *>(event)->child(), m_pages.currentView()});
    return QObject::eventFilter(watched, event);
}
