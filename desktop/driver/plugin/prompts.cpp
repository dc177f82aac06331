// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/plugin/prompts.h"

#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QThread>
#include <QTimer>

namespace {

bool isPrompt(QObject *object)
{
    const auto *dialog = qobject_cast<QDialog *>(object);
    return dialog && dialog->isModal();
}

/** What the dialog says: that of a message box, otherwise of its labels. */
QString textOf(const QDialog &dialog)
{
    if (const auto *box = qobject_cast<const QMessageBox *>(&dialog))
        return box->text();
    if (const auto *message = dialog.findChild<QLabel *>("message"))
        return message->text();
    QStringList lines;
    for (const QLabel *label : dialog.findChildren<QLabel *>()) {
        if (!label->text().isEmpty())
            lines += label->text();
    }
    return lines.join('\n');
}

bool hasCancel(const QDialog &dialog)
{
    if (const auto *box = qobject_cast<const QMessageBox *>(&dialog))
        return box->standardButtons() & (QMessageBox::Cancel | QMessageBox::No);
    for (const QDialogButtonBox *buttons : dialog.findChildren<QDialogButtonBox *>()) {
        if (buttons->standardButtons() & (QDialogButtonBox::Cancel | QDialogButtonBox::No))
            return true;
    }
    return dialog.findChildren<QPushButton *>().size() > 1;
}

QAbstractButton *button(const QDialog &dialog, QDialogButtonBox::ButtonRole role)
{
    for (const QDialogButtonBox *box : dialog.findChildren<QDialogButtonBox *>()) {
        for (QAbstractButton *candidate : box->buttons()) {
            if (box->buttonRole(candidate) == role)
                return candidate;
        }
    }
    return nullptr;
}

void press(QDialog &dialog, bool accept)
{
    using Role = QDialogButtonBox::ButtonRole;
    QAbstractButton *chosen = button(dialog, accept ? Role::AcceptRole : Role::RejectRole);
    if (!chosen && accept)
        chosen = button(dialog, Role::YesRole);
    if (!chosen && !accept)
        chosen = button(dialog, hasCancel(dialog) ? Role::NoRole : Role::AcceptRole);
    if (chosen)
        chosen->click();
    else if (accept)
        dialog.accept();
    else
        dialog.reject();
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
            const QPointer<QDialog> dialog(static_cast<QDialog *>(watched));
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

QDialog *Prompts::current() const
{
    if (isPrompt(QApplication::activeModalWidget()))
        return static_cast<QDialog *>(QApplication::activeModalWidget());
    for (QWidget *widget : QApplication::allWidgets()) {
        if (isPrompt(widget) && widget->isVisible())
            return static_cast<QDialog *>(widget);
    }
    return nullptr;
}

QJsonObject Prompts::open() const
{
    const QDialog *dialog = current();
    if (!dialog)
        return {};
    const char *type = dialog->findChild<QLineEdit *>() ? "prompt"
                       : hasCancel(*dialog)             ? "confirm"
                                                        : "alert";
    return {{"type", type}, {"text", textOf(*dialog)}};
}

bool Prompts::close(bool accept, std::function<void()> done)
{
    QDialog *dialog = current();
    if (!dialog)
        return false;
    press(*dialog, accept);
    waitForLeft(QThread::currentThread()->loopLevel(), done);
    return true;
}

void Prompts::waitForLeft(int level, const std::function<void()> &done)
{
    // The dialog's loop ends when this returns to it, but may still serve a timer before.
    QTimer::singleShot(1, this, [this, level, done] {
        if (QThread::currentThread()->loopLevel() >= level && level > 1 && !current())
            waitForLeft(level, done);
        else
            done();
    });
}

bool Prompts::setText(const QString &text)
{
    QDialog *dialog = current();
    auto *field = dialog ? dialog->findChild<QLineEdit *>() : nullptr;
    if (field)
        field->setText(text);
    return field;
}
