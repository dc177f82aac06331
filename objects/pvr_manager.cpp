// SPDX-License-Identifier: Apache-2.0
#include "objects/pvr_manager.h"

#include "platform/log_record.h"

PvrManager::PvrManager(QObject *parent)
    : PortalObject(parent)
{
    logRecord("PvrManager");
}

PvrManager::~PvrManager() { logRecord("~PvrManager"); }

void PvrManager::OnPvrRecStarted() { logRecord("OnPvrRecStarted"); }

void PvrManager::OnPvrRecFinished() { logRecord("OnPvrRecFinished"); }

void PvrManager::OnPvrRecError() { logRecord("OnPvrRecError"); }

int PvrManager::CreateTask(const QString &url, const QString &fileName, const QString &startTime,
                           const QString &endTime)
{
    logRecord("CreateTask", url, " ", fileName, " ", startTime, " ", endTime);
    const int id = emit sCreateTask(url, fileName, startTime, endTime);
    return loggedResult(id, "CreateTask");
}

void PvrManager::RemoveTask(int id, int removeType)
{
    logRecord("RemoveTask");
    emit sRemoveTask(id, removeType);
}

int PvrManager::ChangeEndTime(int id, const QString &endTime)
{
    logRecord("ChangeEndTime");
    return emit sChangeEndTime(id, endTime);
}

QString PvrManager::GetTaskByID(int id) { return emit sGetTaskByID(id); }

QString PvrManager::GetTasksByIDs(const QString &idList) { return emit sGetTasksByIDs(idList); }

void PvrManager::SetMaxRecordingCnt(int maxCnt)
{
    logRecord("SetMaxRecordingCnt", maxCnt);
    emit sSetMaxRecordingCnt(maxCnt);
}

QString PvrManager::GetAllTasks() { return emit sGetAllTasks(); }

QString PvrManager::GetEventParams() { return m_eventParams; }
