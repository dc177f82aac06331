// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "desktop/driver/session_settings.h"

#include <QJsonObject>
#include <QMap>
#include <QSize>
#include <QString>

/** The box that a session gets, from the capability "vesprel:options". */
struct BoxOptions
{
    QString player; ///< "mpv", "simulated", or empty: mpv where it is installed.
    QString profile = "desk";
    QSize screen; ///< Invalid: the profile's, or 1280x720.
    QString portal = "about:blank";
    QMap<QString, QString> environment; ///< Variables of the program, before the profile's.
};

/** What a client asked for and gets. */
struct SessionRequest
{
    QString pageLoadStrategy = "normal";
    bool strictFileInteractability = false;
    bool acceptInsecureCerts = false;
    Timeouts timeouts;
    PromptHandlers promptHandlers;
    BoxOptions box;
    QJsonObject matched; ///< The capabilities of the answer.
};

/**
 * Chooses from the parameters of New Session: merges what is always asked for with the first
 * alternative that this driver can give. Throws "invalid argument" for what is no valid question
 * and "session not created" where no alternative fits.
 */
SessionRequest chooseCapabilities(const QJsonObject &parameters);

/** The driver's version, for "browserVersion". */
QString driverVersion();
