// SPDX-License-Identifier: Apache-2.0
#include "tests/desktop/driver/driver_client.h"

#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QJsonArray>
#include <QJsonDocument>
#include <QNetworkReply>
#include <QRegularExpression>

DriverClient::~DriverClient()
{
    m_process.terminate();
    m_process.waitForFinished();
}

bool DriverClient::start(const QStringList &options)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("TMPDIR", m_folder.path());
    m_process.setProcessEnvironment(environment);
    m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    m_process.start(VESPREL_DRIVER, QStringList{"--port", "0"} + options);
    while (!m_process.canReadLine()) {
        if (!m_process.waitForReadyRead(30000))
            return false;
    }
    m_port = QString(m_process.readLine()).section(':', -1).toInt();
    return m_port > 0;
}

DriverClient::Answer DriverClient::send(const QByteArray &method, const QString &path,
                                        const QByteArray &body)
{
    QNetworkRequest request(QUrl(QString("http://127.0.0.1:%1%2").arg(m_port).arg(path)));
    request.setHeader(QNetworkRequest::ContentTypeHeader, "application/json");
    QNetworkReply *reply = m_network.sendCustomRequest(request, method, body);
    QEventLoop loop;
    QObject::connect(reply, &QNetworkReply::finished, &loop, &QEventLoop::quit);
    loop.exec();
    reply->deleteLater();
    const QJsonObject answer = QJsonDocument::fromJson(reply->readAll()).object();
    return {reply->attribute(QNetworkRequest::HttpStatusCodeAttribute).toInt(),
            answer.value("value")};
}

DriverClient::Answer DriverClient::begin(const QJsonObject &capabilities)
{
    QJsonObject wanted = capabilities;
    if (!wanted.contains("vesprel:options"))
        wanted["vesprel:options"] = QJsonObject{{"player", "simulated"}};
    const QJsonObject question{{"capabilities", QJsonObject{{"alwaysMatch", wanted}}}};
    const Answer answer = send("POST", "/session", QJsonDocument(question).toJson());
    m_session = answer.value.toObject().value("sessionId").toString();
    return answer;
}

QString DriverClient::inSession(const QString &command) const
{
    return "/session/" + m_session + (command.isEmpty() ? QString() : "/" + command);
}

DriverClient::Answer DriverClient::script(const QString &text)
{
    return post("execute/sync",
                QJsonDocument(QJsonObject{{"script", text}, {"args", QJsonArray()}}).toJson());
}

QString DriverClient::element(const QString &selector)
{
    const QJsonObject question{{"using", "css selector"}, {"value", selector}};
    const Answer answer = post("element", QJsonDocument(question).toJson());
    return answer.value.toObject().value("element-6066-11e4-a52e-4f735466cecf").toString();
}

DriverClient::Child DriverClient::read(qint64 id)
{
    QFile stat(QString("/proc/%1/stat").arg(id));
    if (!stat.open(QIODevice::ReadOnly))
        return {};
    // id (name) state parent ..., where the name may be anything.
    const QString text = QString::fromUtf8(stat.readAll());
    const int end = text.lastIndexOf(')');
    const QStringList fields = text.mid(end + 2).split(' ');
    const int begin = text.indexOf('(') + 1;
    return {text.mid(begin, end - begin), fields.value(1).toLongLong(), fields.value(0) != "Z"};
}

QList<qint64> DriverClient::children(const QString &name) const
{
    QList<qint64> result;
    for (const QString &entry : QDir("/proc").entryList({"[0-9]*"}, QDir::Dirs)) {
        const Child child = read(entry.toLongLong());
        // What is confined is a child's child.
        const bool own = child.parent == m_process.processId() ||
                         (child.parent > 1 && read(child.parent).parent == m_process.processId());
        if (child.runs && own && (name.isEmpty() || child.name == name))
            result += entry.toLongLong();
    }
    return result;
}

bool DriverClient::isRunning(qint64 id) { return read(id).runs; }

QString DriverClient::boxRoot() const
{
    const QDir folder(m_folder.path());
    return folder.filePath(folder.entryList({"vesprel-driver.*"}, QDir::Dirs).value(0) + "/box");
}

QStringList DriverClient::files() const
{
    return QDir(m_folder.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden);
}
