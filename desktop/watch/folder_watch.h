// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QByteArray>
#include <QHash>
#include <QObject>
#include <QSocketNotifier>
#include <QString>
#include <QStringList>
#include <QTimer>

#include <memory>

/**
 * Tells when a file below a folder has changed, whichever way an editor saves it, and when the
 * folder itself was made anew. Hidden names, "node_modules" and what editors leave beside a file
 * are not looked at. Changes that follow each other closely are told once.
 */
class FolderWatch : public QObject
{
    Q_OBJECT

public:
    explicit FolderWatch(QObject *parent = nullptr);
    ~FolderWatch() override;

    /** Begins to watch; what went wrong as a sentence, empty when all of the folder is watched. */
    QString start(const QString &folder);

signals:
    /** This was the last change, as a path below the folder. */
    void changed(const QString &name);

private:
    QString addTree(const QString &folder);
    void readSome();
    void take(int descriptor, unsigned int mask, const QString &name);
    void lookForFolder();

    int m_inotify;
    std::unique_ptr<QSocketNotifier> m_notifier;
    QTimer m_settle;  ///< Runs while changes may still follow.
    QTimer m_missing; ///< Runs while the folder is not there.
    QString m_folder;
    QHash<int, QString> m_folders; ///< By the watch's number.
    QString m_changed;
};
