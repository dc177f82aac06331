// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QString>
#include <QStringList>

/** The command line of the receiver. */
struct ReceiverOptions
{
    enum class Player { Automatic, Mpv, Simulated };

    Player player = Player::Automatic;
    QString portal;          ///< The address that is announced to programs; empty: none.
    QString scriptFile;      ///< Empty: no script.
    QString reportFile;      ///< Of the script, a JUnit report; empty: none.
    QString controlSocket;   ///< Where the program's plugin is served for scripts; empty: nowhere.
    QString recordFile;      ///< The link's messages go there; empty: nowhere.
    QString replayFile;      ///< Whose messages are sent instead of own ones; empty: none.
    bool wantsCheck = false; ///< Only to read the files and to name those that would be written.
    QString watchedFolder; ///< The portal is loaded again when a file of it changes; empty: never.
    bool isSilent = false; ///< No sound.
    QString readyFile;     ///< To be made when the socket is served; empty: none.
    bool wantsHelp = false;
    bool wantsVersion = false;
    QString failure; ///< What is wrong with the command line, otherwise empty.
};

/** Reads the command line; the first argument is the program's own name. */
ReceiverOptions parseReceiverOptions(const QStringList &arguments);

/** The text of --help. Needs an application object. */
QString receiverHelp();
