// SPDX-License-Identifier: Apache-2.0
/*
 * Lets the driver work inside the program: loaded as a generic plugin of Qt by
 * QT_QPA_GENERIC_PLUGINS=vesprel-driver, with the driver's socket in VESPREL_DRIVER_SOCKET.
 */
#include "desktop/driver/plugin/command_server.h"

#include <QGenericPlugin>

class DriverPlugin : public QGenericPlugin
{
    Q_OBJECT
    Q_PLUGIN_METADATA(IID QGenericPluginFactoryInterface_iid FILE "driver_plugin.json")

public:
    QObject *create(const QString &name, const QString &) override
    {
        const QString socket = qEnvironmentVariable("VESPREL_DRIVER_SOCKET");
        // Programs that this one starts are not driven.
        qunsetenv("QT_QPA_GENERIC_PLUGINS");
        qunsetenv("QT_PLUGIN_PATH");
        qunsetenv("VESPREL_DRIVER_SOCKET");
        if (name != "vesprel-driver" || socket.isEmpty())
            return nullptr;
        auto *server = new CommandServer;
        server->connectTo(socket);
        return server;
    }
};

#include "driver_plugin.moc"
