// SPDX-License-Identifier: Apache-2.0
#include "desktop/driver/capabilities.h"

#include "desktop/driver/arguments.h"
#include "desktop/driver/webdriver_error.h"
#include "platform/screen_size.h"

#include <QJsonArray>
#include <QRegularExpression>
#include <QUrl>
#include <QVersionNumber>

namespace {

const char optionsName[] = "vesprel:options";

void checkProxy(const QJsonValue &value)
{
    if (!value.isObject())
        failArgument("proxy is to be an object");
    const QJsonObject proxy = value.toObject();
    static const QStringList strings = {"proxyType", "proxyAutoconfigUrl", "httpProxy", "sslProxy",
                                        "socksProxy"};
    for (auto member = proxy.begin(); member != proxy.end(); ++member) {
        const QJsonValue given = member.value();
        bool valid = strings.contains(member.key()) && given.isString();
        if (member.key() == "noProxy") {
            valid = given.isArray();
            const QJsonArray hosts = given.toArray();
            for (const QJsonValue &host : hosts)
                valid = valid && host.isString();
        } else if (member.key() == "socksVersion") {
            valid = isInteger(given) && given.toDouble() >= 0 && given.toDouble() <= 255;
        } else if (member.key().endsWith("Proxy") && valid) {
            // A host and perhaps a port, never a whole URL.
            static const QRegularExpression host("^([^/?#\\s:]+|\\[[^]]+\\])(:(\\d{1,5}))?$");
            const auto match = host.match(given.toString().section('@', -1));
            valid = match.hasMatch() && match.captured(3).toInt() <= 65535;
        }
        if (!valid)
            failArgument("proxy has no such member: " + member.key());
    }
    static const QStringList types = {"pac", "direct", "autodetect", "system", "manual"};
    const QString type = proxy.value("proxyType").toString();
    if (!types.contains(type) || (type == "pac" && !proxy.contains("proxyAutoconfigUrl")) ||
        (proxy.contains("socksProxy") != proxy.contains("socksVersion")))
        failArgument("proxy is incomplete");
}

BoxOptions readOptions(const QJsonValue &value)
{
    BoxOptions options;
    if (!value.isObject())
        failArgument("vesprel:options is to be an object");
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        const QString name = member.key();
        const QString text = member.value().toString();
        bool valid = member.value().isString();
        if (name == "player") {
            options.player = text;
            valid = text == "mpv" || text == "simulated";
        } else if (name == "screen") {
            options.screen = screenSize(text);
            valid = valid && options.screen.isValid();
        } else if (name == "profile") {
            options.profile = text;
        } else if (name == "portal") {
            options.portal = text;
            valid = valid && QUrl(text).isValid() && !QUrl(text).scheme().isEmpty();
        } else if (name == "environment") {
            valid = member.value().isObject();
            const QJsonObject variables = member.value().toObject();
            for (auto row = variables.begin(); row != variables.end(); ++row) {
                valid = valid && row.value().isString() && !row.key().contains('=');
                options.environment[row.key()] = row.value().toString();
            }
        } else {
            failArgument("vesprel:options knows no \"" + name + '"');
        }
        if (!valid)
            failArgument("vesprel:options has no such value for \"" + name + '"');
    }
    return options;
}

void checkCapability(const QString &name, const QJsonValue &value)
{
    if (name == "acceptInsecureCerts" || name == "strictFileInteractability") {
        if (!value.isBool())
            failArgument(name + " is to be true or false");
    } else if (name == "browserName" || name == "browserVersion" || name == "platformName") {
        if (!value.isString())
            failArgument(name + " is to be a string");
    } else if (name == "pageLoadStrategy") {
        if (!QStringList{"none", "eager", "normal"}.contains(value.toString()))
            failArgument("pageLoadStrategy is to be none, eager or normal");
    } else if (name == "proxy") {
        checkProxy(value);
    } else if (name == "timeouts") {
        Timeouts ignored;
        readTimeouts(value, ignored);
    } else if (name == "unhandledPromptBehavior") {
        PromptHandlers::read(value);
    } else if (name == optionsName) {
        readOptions(value);
    } else if (!name.contains(':')) {
        failArgument("There is no capability \"" + name + '"');
    }
}

QJsonObject validated(const QJsonValue &value)
{
    if (!value.isObject())
        failArgument("Capabilities are to be objects");
    QJsonObject result;
    const QJsonObject object = value.toObject();
    for (auto member = object.begin(); member != object.end(); ++member) {
        if (member.value().isNull())
            continue;
        checkCapability(member.key(), member.value());
        result[member.key()] = member.value();
    }
    return result;
}

QJsonObject merged(const QJsonObject &always, const QJsonObject &first)
{
    QJsonObject result = always;
    for (auto member = first.begin(); member != first.end(); ++member) {
        if (result.contains(member.key()))
            failArgument("\"" + member.key() + "\" is asked for twice");
        result[member.key()] = member.value();
    }
    return result;
}

bool versionFits(const QString &wanted)
{
    static const QRegularExpression form("^\\s*(<=|>=|<|>)?\\s*([0-9.]+)\\s*$");
    const QRegularExpressionMatch match = form.match(wanted);
    if (!match.hasMatch())
        return false;
    const int order = QVersionNumber::compare(QVersionNumber::fromString(driverVersion()),
                                              QVersionNumber::fromString(match.captured(2)));
    const QString sign = match.captured(1);
    return (order == 0 && sign != "<" && sign != ">") || (order < 0 && sign.startsWith('<')) ||
           (order > 0 && sign.startsWith('>'));
}

bool fits(const QJsonObject &wanted)
{
    const auto is = [&wanted](const char *name, const char *given) {
        return !wanted.contains(QLatin1String(name)) ||
               wanted.value(QLatin1String(name)).toString() == QLatin1String(given);
    };
    // The box has no proxy settings, so that it connects directly and can do nothing else.
    const QJsonObject proxy = wanted.value("proxy").toObject();
    return is("browserName", "vesprel") && is("platformName", "linux") &&
           (!wanted.contains("browserVersion") ||
            versionFits(wanted.value("browserVersion").toString())) &&
           (proxy.isEmpty() || proxy.value("proxyType").toString() == "direct");
}

SessionRequest accepted(const QJsonObject &wanted)
{
    SessionRequest request;
    request.pageLoadStrategy = wanted.value("pageLoadStrategy").toString("normal");
    request.strictFileInteractability = wanted.value("strictFileInteractability").toBool();
    request.acceptInsecureCerts = wanted.value("acceptInsecureCerts").toBool();
    if (wanted.contains("timeouts"))
        readTimeouts(wanted.value("timeouts"), request.timeouts);
    if (wanted.contains("unhandledPromptBehavior"))
        request.promptHandlers = PromptHandlers::read(wanted.value("unhandledPromptBehavior"));
    if (wanted.contains(optionsName))
        request.box = readOptions(wanted.value(optionsName));
    request.matched = {
        {"browserName", "vesprel"},
        {"browserVersion", driverVersion()},
        {"platformName", "linux"},
        {"acceptInsecureCerts", request.acceptInsecureCerts},
        {"pageLoadStrategy", request.pageLoadStrategy},
        {"proxy", wanted.value("proxy").toObject()},
        {"setWindowRect", true},
        {"strictFileInteractability", request.strictFileInteractability},
        {"timeouts", timeoutsObject(request.timeouts)},
        {"unhandledPromptBehavior", request.promptHandlers.toJson()},
    };
    return request;
}

} // namespace

QString driverVersion() { return VESPREL_VERSION; }

SessionRequest chooseCapabilities(const QJsonObject &parameters)
{
    const QJsonValue question = parameters.value("capabilities");
    if (!question.isObject())
        failArgument("\"capabilities\" is to be an object");
    const QJsonValue given = question.toObject().value("alwaysMatch");
    const QJsonObject always = given.isUndefined() ? QJsonObject() : validated(given);
    QJsonValue alternatives = question.toObject().value("firstMatch");
    if (alternatives.isUndefined())
        alternatives = QJsonArray{QJsonObject()};
    if (!alternatives.isArray() || alternatives.toArray().isEmpty())
        failArgument("\"firstMatch\" is to be an array that is not empty");
    QVector<QJsonObject> candidates;
    const QJsonArray alternativeArray = alternatives.toArray();
    for (const QJsonValue &alternative : alternativeArray)
        candidates += validated(alternative);
    for (QJsonObject &candidate : candidates)
        candidate = merged(always, candidate);
    for (const QJsonObject &candidate : std::as_const(candidates)) {
        if (fits(candidate))
            return accepted(candidate);
    }
    fail("session not created",
         "No alternative fits: this is vesprel " + driverVersion() + " on linux, without a proxy.");
}
