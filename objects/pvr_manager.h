// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "platform/portal_object.h"

#include <QString>

/**
 * Recordings, as portals see them. Each request is answered by the signal's one receiver, which
 * asks the recording process and may block for its reply timeout; unanswered it gives -1, "{}" or
 * "[]". Task and time texts are passed on unchanged.
 */
class PvrManager : public PortalObject
{
    Q_OBJECT

public:
    explicit PvrManager(QObject *parent = nullptr);
    ~PvrManager() override;

    /** JSON text of the last recording event, which the portal reads back. */
    void setEventParams(const QString &params) { m_eventParams = params; }

    // Promised, called by nobody: recording events come through the window. They leave a trace.
    void OnPvrRecStarted();
    void OnPvrRecFinished();
    void OnPvrRecError();

signals:
    int sCreateTask(QString url, QString fileName, QString startTime, QString endTime);
    void sRemoveTask(int id, int removeType);
    int sChangeEndTime(int id, QString endTime);
    QString sGetTaskByID(int id);
    QString sGetTasksByIDs(QString idList);
    void sSetMaxRecordingCnt(int maxCnt);
    QString sGetAllTasks();

public slots:
    int CreateTask(const QString &url, const QString &fileName, const QString &startTime,
                   const QString &endTime);
    void RemoveTask(int id, int removeType);
    int ChangeEndTime(int id, const QString &endTime);
    QString GetTaskByID(int id);
    QString GetTasksByIDs(const QString &idList);
    void SetMaxRecordingCnt(int maxCnt);
    QString GetAllTasks();
    QString GetEventParams();

private:
    QString m_eventParams;
};
