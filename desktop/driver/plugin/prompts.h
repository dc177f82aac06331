// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QJsonObject>
#include <QObject>
#include <QPointer>

#include <functional>

class QWidget;

/**
 * The dialogs that pages open: alert, confirm and prompt. While one is shown the page's script
 * stands still inside an event loop of the dialog's own. They are known by what they are made of,
 * since the program has no part of the driver. GUI thread.
 */
class Prompts : public QObject
{
    Q_OBJECT

public:
    explicit Prompts(QObject *parent = nullptr);

    /** {"type": "alert" | "confirm" | "prompt", "text": ...}; empty without a dialog. */
    QJsonObject open() const;

    /**
     * Presses OK or Cancel (OK where there is no Cancel) and calls done when the script that
     * waited for the dialog runs again or has ended. False without a dialog.
     */
    bool close(bool accept, const std::function<void()> &done);

    /** Writes into the field of a prompt. False without a dialog that has a field. */
    bool setText(const QString &text);

    /** While set, dialogs are accepted as they appear: a page may not hold up its own leaving. */
    void acceptAll(bool accept) { m_acceptAll = accept; }

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /** A dialog is about to take the page's script into its event loop. */
    void opened();

private:
    QWidget *current() const;
    void waitForLeft(const QPointer<QWidget> &closed, int level, const std::function<void()> &done);

    bool m_acceptAll = false;
};
