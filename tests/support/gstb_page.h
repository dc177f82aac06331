// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "api/vesprelv2.h"
#include "tests/support/signal_trace.h"

#include <QTemporaryDir>
#include <QVariant>
#include <QWebPage>

#include <functional>

/**
 * A page with gSTB in it, the box below a temporary folder that is also the application's home.
 * One at a time, since there is one sound device.
 */
class GstbPage
{
public:
    /** `prepare` puts files below the folder before the box starts. */
    explicit GstbPage(const std::function<void(const QString &folder)> &prepare = {});

    /** Gives the page another object, which must live as long. */
    void publish(const QString &name, QObject &object);

    /** Evaluates a script, in which ROOT stands for the temporary folder. */
    QVariant evaluate(QString script);

    /** Value of an expression as JSON text; "null" for undefined. */
    QString answer(const QString &expression);

    QString path(const QString &name) const { return m_folder.root.filePath(name); }

private:
    /** Set up before gSTB, which reads from it as soon as it is made. */
    struct Folder
    {
        explicit Folder(const std::function<void(const QString &folder)> &prepare);
        QTemporaryDir root;
    };
    Folder m_folder;

public:
    VesprelV2 gSTB;
    SignalTrace requests; ///< What gSTB asked the receiver and the window for.

private:
    QWebPage m_page;
};
