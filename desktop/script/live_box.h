// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/display/display.h"
#include "desktop/script/box_control.h"
#include "desktop/script/program_link.h"

#include <QJsonObject>
#include <QObject>
#include <QTimer>

#include <functional>
#include <memory>

/** The box that runs: its program by way of the plugin, its keys and screen by way of X. */
class LiveBox : public QObject, public BoxControl
{
    Q_OBJECT

public:
    /** The link must outlive it; the display is the one that DISPLAY names. */
    explicit LiveBox(ProgramLink &link, QObject *parent = nullptr);
    ~LiveBox() override;

    void pressKey(const QString &name, const Done &done) override;
    void evaluate(const QString &expression, const Done &done) override;
    void reload(const std::function<void()> &trigger, const Done &done) override;
    BoxAnswer savePicture(const QString &file) override;
    void giveUp() override;
    QString obstacle() const override { return m_obstacle; }

private:
    using Attempt = std::function<void()>;

    bool openDisplay();
    /** Does it, and again a moment after each time that it calls waitFor(). */
    void attempt(const Attempt &what);
    void waitFor(const QString &obstacle);
    void whenLoaded(const std::function<void(const QString &window)> &use);
    void askState(const QString &window, const ProgramLink::Answer &answer);
    void pressSymbol(quint32 symbol, const Done &done);
    void useValue(const QJsonObject &answer, const Done &done);
    void watchReload(int loadsBefore, const Done &done);

    ProgramLink &m_link;
    std::unique_ptr<Display> m_display;
    QTimer m_retry;
    Attempt m_attempt;
    QString m_obstacle;
    quint32 m_mark = 0;
    bool m_hasPortal = false; ///< A page other than the empty first one has been seen.
};
