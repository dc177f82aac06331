// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QJsonArray>
#include <QJsonObject>
#include <QObject>
#include <QPointer>
#include <QSet>
#include <QString>
#include <QVector>

class QWebFrame;
class QWebView;

/**
 * The windows of the box (the portal, and favourites above it), their frames and documents, under
 * the names by which a client knows them. GUI thread.
 */
class Pages : public QObject
{
    Q_OBJECT

public:
    explicit Pages(QObject *parent = nullptr);

    /** Handles of all open windows, the portal's first. */
    QStringList handles();

    /** The window that the box shows; empty before there is one. */
    QString shown();

    /** The view of a window; none if it is closed. */
    QWebView *view(const QString &handle);

    /** Counts a view that stays as closed. */
    void close(QWebView *view) { m_closed.insert(view); }

    /** The name of a view's window, given once. */
    QString handleOf(QWebView *view);

    /** The frame of a name, the main frame for an empty one; none if it is gone. */
    QWebFrame *frame(const QString &window, const QString &name);

    /** The name of a frame, empty for a main frame. */
    QString nameOf(QWebFrame *frame);

    /** Whether the main frame is still loading, or, for eager clients, before its new document. */
    bool isLoading(QWebView *view, bool eager) const;

    /** Whether the last load that ended did so without an error. */
    bool lastLoadSucceeded(QWebView *view) const;

    /** How many loads of this view have begun. */
    int loadCount(QWebView *view) const;

    /**
     * Calls a command of the page's scripts. The answer holds "value" or "error" with "message";
     * references of windows in it are already names.
     */
    QJsonObject call(QWebFrame *frame, const QString &command, const QJsonArray &arguments);

    /**
     * Runs a function body in the page. An empty object: the result is still to come, ask poll()
     * with the same ticket.
     */
    QJsonObject run(QWebFrame *frame, const QString &body, const QJsonArray &arguments, int ticket,
                    bool async);
    QJsonObject poll(QWebFrame *frame, int ticket);

    /** The same for a script that removed its own frame; asks the main frame. */
    QJsonObject takeKept(QWebFrame *frame, int ticket);

    bool eventFilter(QObject *watched, QEvent *event) override;

signals:
    /** The page wrote to its console, or an error was not caught. */
    void consoleMessage(const QJsonObject &message);

private:
    struct Load
    {
        bool running = false;
        bool committed = true;
        bool succeeded = true;
        int count = 0;
    };

    QVector<QWebView *> views() const;
    void watchView(QWebView *view);
    void watchFrame(QWebFrame *frame);
    void inject(QWebFrame *frame);
    QString ask(QWebFrame *frame, const QString &expression);
    QJsonObject read(QWebFrame *frame, const QString &answer);
    QJsonValue nameWindows(QWebFrame *frame, const QJsonValue &value);
    QJsonValue locateWindows(QWebFrame *frame, const QJsonValue &value, QJsonObject &failure);

    QString m_property;
    bool m_insecure; ///< Certificates that nobody vouches for are good enough.
    QHash<QObject *, Load> m_loads;
    QHash<QObject *, QSet<QString>> m_seen; ///< Ids that were handed out, by frame.
    QHash<QObject *, QString> m_names;
    QSet<const QWebView *> m_closed;
    int m_documents = 0;
    int m_favourites = 0;
    int m_frames = 0;
};
