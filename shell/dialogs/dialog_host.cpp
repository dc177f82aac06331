// SPDX-License-Identifier: Apache-2.0
#include "shell/dialogs/dialog_host.h"

#include "platform/log_record.h"
#include "shell/dialogs/dialog_keys.h"
#include "shell/dialogs/dialog_panel.h"

#include <QApplication>
#include <QEventLoop>
#include <QKeyEvent>
#include <QWebPage>

#include <cstdlib>

namespace {

// Each open dialog keeps a script on the stack, and events can open more while nobody is looking.
constexpr int mostOpen = 8;

// A script that has asked as often as this in one go, unheard, will not come to an end.
constexpr int mostSelfAnswered = 1000;

/** A drop-down list is a window of its own: it lies above everything and takes all keys. */
void closeOpenList()
{
    if (QWidget *list = QApplication::activePopupWidget())
        list->close();
}

} // namespace

/** One open dialog, on the stack of the script that waits for it. */
struct DialogHost::Level
{
    QPointer<DialogPanel> panel;
    QEventLoop loop;
    bool accepted = false;
};

DialogHost::DialogHost(QWidget *window)
    : QObject(window)
    , m_window(window)
{
    window->installEventFilter(this);
}

DialogHost::~DialogHost() { answerAll(); }

DialogAnswer DialogHost::ask(const Dialog &dialog, QWebPage *page)
{
    return answersItself(page) ? answerItself(dialog) : show(dialog);
}

bool DialogHost::answersItself(const QWebPage *page) const
{
    return !m_window->isVisible() || m_standby || !m_pending.isEmpty() || page == m_left ||
           m_levels.size() >= mostOpen;
}

DialogAnswer DialogHost::answerItself(const Dialog &dialog)
{
    if (m_selfAnswered++ == 0) {
        logRecord("Dialog answered by itself:", dialog.origin, dialog.text.left(200));
        QMetaObject::invokeMethod(
            this, [this] { m_selfAnswered = 0; }, Qt::QueuedConnection);
    }
    if (m_selfAnswered > mostSelfAnswered)
        abandonPages();
    // A page that is being left hears that it may be: its question is whether it wants to be.
    return {m_leaving && dialog.kind == Dialog::Kind::Confirm, QString()};
}

DialogAnswer DialogHost::show(const Dialog &dialog)
{
    closeOpenList();
    const QPointer<DialogHost> self(this);
    Level level;
    level.panel = new DialogPanel(dialog, m_window);
    connect(level.panel, &DialogPanel::decided, &level.loop, [&level](bool accepted) {
        level.accepted = accepted;
        level.loop.quit();
        // Keys that wait behind the one that answered are no second answer.
        level.panel->hide();
    });
    m_levels.append(&level);
    watchKeys();
    logRecord("Dialog:", dialog.origin, dialog.text.left(200));

    level.loop.exec();

    if (!self)
        return {};
    const DialogAnswer answer = {level.accepted,
                                 level.panel ? level.panel->enteredText() : QString("")};
    delete level.panel;
    m_levels.removeOne(&level);
    watchKeys();
    // Queued: the script that asked has to return first.
    if (m_levels.isEmpty() && !m_pending.isEmpty())
        QMetaObject::invokeMethod(this, &DialogHost::runPending, Qt::QueuedConnection);
    return answer;
}

void DialogHost::setStandby(bool standby)
{
    m_standby = standby;
    if (!standby)
        return;
    closeOpenList();
    answerAll();
}

void DialogHost::answerAll()
{
    for (Level *level : qAsConst(m_levels)) {
        level->loop.quit();
        if (level->panel)
            level->panel->hide();
    }
}

void DialogHost::whenAnswered(const std::function<void()> &act)
{
    if (m_levels.isEmpty() && m_pending.isEmpty()) {
        act();
        return;
    }
    m_pending.append(act);
    answerAll();
}

void DialogHost::runPending()
{
    while (m_levels.isEmpty() && !m_pending.isEmpty())
        m_pending.takeFirst()();
}

void DialogHost::leave(QWebPage *page, const std::function<void()> &load)
{
    m_left = page;
    m_leaving = true;
    load();
    m_leaving = false;
}

void DialogHost::pageArrived(const QWebPage *page)
{
    if (page == m_left)
        m_left.clear();
}

void DialogHost::pageFinished(const QWebPage *page)
{
    // A new load first ends the one before it, and says so.
    if (!m_leaving)
        pageArrived(page);
}

void DialogHost::abandonPages()
{
    logRecord("Dialogs without end, pages abandoned");
    m_selfAnswered = 0;
    // What waits below on the stack can't return before this does, but its dialogs go now.
    answerAll();
    m_levels.clear();
    watchKeys();
    emit pagesAbandoned();
    QMetaObject::invokeMethod(this, &DialogHost::runPending, Qt::QueuedConnection);
    // Only the end of the process ends this loop, and the script would go on asking.
    QEventLoop().exec();
    std::_Exit(EXIT_SUCCESS);
}

void DialogHost::watchKeys()
{
    if (m_levels.isEmpty() && m_heldKey == 0)
        QCoreApplication::instance()->removeEventFilter(this);
    else
        QCoreApplication::instance()->installEventFilter(this);
}

bool DialogHost::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == m_window && event->type() == QEvent::Hide)
        answerAll();
    // Keys that the box posts to the page are meant for the page.
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (key && event->spontaneous())
        return takesKey(*static_cast<QKeyEvent *>(event));
    return QObject::eventFilter(watched, event);
}

bool DialogHost::takesKey(const QKeyEvent &event)
{
    const bool press = event.type() == QEvent::KeyPress;
    if (m_levels.isEmpty()) {
        // What is left of the press that closed the dialog is not the page's either.
        const bool held = event.key() == m_heldKey && (!press || event.isAutoRepeat());
        if (!event.isAutoRepeat()) {
            m_heldKey = 0;
            watchKeys();
        }
        return held;
    }
    if (!press)
        return true;
    const QPointer<DialogPanel> panel = m_levels.last()->panel;
    m_heldKey = event.key();
    if (dialogKeyOf(event.key()) == DialogKey::Box && !event.isAutoRepeat())
        emit boxKey(event.key());
    if (panel && panel->isVisible())
        panel->pressKey(event);
    return true;
}
