// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/plugin/prompts.h"

#include <QApplication>
#include <QEvent>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QThread>
#include <QTimer>
#include <QWidget>
#include <QWindow>

// Of QtGui, as QtTest uses it: a key as it comes from the display.
Q_GUI_EXPORT void qt_handleKeyEvent(QWindow *window, QEvent::Type type, int key,
                                    Qt::KeyboardModifiers modifiers, const QString &text,
                                    bool autorepeat, ushort count);

namespace {

constexpr int longestEntry = 1000; ///< Characters that a prompt of the box holds at most.

/** A dialog of the box: a panel that covers the window. */
bool isPrompt(const QObject *object)
{
    return qstrcmp(object->metaObject()->className(), "DialogPanel") == 0;
}

bool isForText(const QWidget &dialog) { return dialog.findChild<QLabel *>("field"); }

QString kindOf(const QWidget &dialog)
{
    if (isForText(dialog))
        return "prompt";
    return dialog.findChildren<QPushButton *>().size() > 1 ? "confirm" : "alert";
}

QString messageOf(const QWidget &dialog)
{
    const auto *text = dialog.findChild<QPlainTextEdit *>();
    return text ? text->toPlainText() : QString();
}

void press(QWidget &dialog, bool accept)
{
    QMetaObject::invokeMethod(&dialog, "decided", Q_ARG(bool, accept));
}

void pressKey(QWidget &dialog, int key, const QString &text)
{
    QWindow *window = dialog.window()->windowHandle();
    for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease})
        qt_handleKeyEvent(window, type, key, Qt::NoModifier, text, false, 1);
}

} // namespace

Prompts::Prompts(QObject *parent)
    : QObject(parent)
{
    qApp->installEventFilter(this);
}

bool Prompts::eventFilter(QObject *watched, QEvent *event)
{
    if (event->type() == QEvent::Show && isPrompt(watched)) {
        if (m_acceptAll) {
            const QPointer<QWidget> dialog(static_cast<QWidget *>(watched));
            QTimer::singleShot(0, this, [dialog] {
                if (dialog)
                    press(*dialog, true);
            });
        } else {
            emit opened();
        }
    }
    return QObject::eventFilter(watched, event);
}

QWidget *Prompts::current() const
{
    QWidget *topmost = nullptr;
    const auto windows = QApplication::topLevelWidgets();
    for (const QWidget *window : windows) {
        // In the order in which they lie above each other.
        for (QObject *child : window->children()) {
            if (isPrompt(child) && static_cast<QWidget *>(child)->isVisible())
                topmost = static_cast<QWidget *>(child);
        }
    }
    return topmost;
}

QJsonObject Prompts::open() const
{
    const QWidget *dialog = current();
    if (!dialog)
        return {};
    return {{"type", kindOf(*dialog)}, {"text", messageOf(*dialog)}};
}

bool Prompts::close(bool accept, const std::function<void()> &done)
{
    QWidget *dialog = current();
    if (!dialog)
        return false;
    const QPointer<QWidget> closed(dialog);
    press(*dialog, accept);
    waitForLeft(closed, QThread::currentThread()->loopLevel(), done);
    return true;
}

void Prompts::waitForLeft(const QPointer<QWidget> &closed, int level,
                          const std::function<void()> &done)
{
    // The dialog's loop ends when this returns to it, but may still serve a timer before. Then the
    // script goes on, perhaps to its next dialog.
    QTimer::singleShot(1, this, [this, closed, level, done] {
        const bool inLoop = QThread::currentThread()->loopLevel() >= level && level > 1;
        const QWidget *next = current();
        if (inLoop && (!next || next == closed))
            waitForLeft(closed, level, done);
        else
            done();
    });
}

bool Prompts::setText(const QString &text)
{
    QWidget *dialog = current();
    if (!dialog || !isForText(*dialog))
        return false;
    for (int count = 0; count < longestEntry; ++count)
        pressKey(*dialog, Qt::Key_Delete, {});
    if (!text.isEmpty())
        pressKey(*dialog, Qt::Key_unknown, text);
    return true;
}
