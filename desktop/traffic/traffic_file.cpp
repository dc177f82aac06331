// SPDX-License-Identifier: Apache-2.0
#include "desktop/traffic/traffic_file.h"

#include "desktop/link/payload.h"
#include "enigma2/frame.h"
#include "enigma2/messages.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

using Direction = TrafficMessage::Direction;

constexpr int formatVersion = 1;
const char versionMember[] = "vesprel-traffic";
const char toReceiver[] = "to receiver";
const char toProgram[] = "to program";

/** What is known of a type of message. */
struct Known
{
    Direction direction;
    int type;
    const char *name;
    PayloadForm form;
};

constexpr Known knownMessages[] = {
#define COMMAND_ROW(number, name, form, ...)                                                       \
    {Direction::ToReceiver, number, #name, PayloadForm::form},
#define EVENT_ROW(number, name, signal, form, ...)                                                 \
    {Direction::ToProgram, number, #name, PayloadForm::form},
#define ANSWER_ROW(number, name, request, form, ...)                                               \
    {Direction::ToProgram, number, #name, PayloadForm::form},
    VESPREL_COMMANDS(COMMAND_ROW) VESPREL_EVENTS(EVENT_ROW) VESPREL_ANSWERS(ANSWER_ROW)
#undef COMMAND_ROW
#undef EVENT_ROW
#undef ANSWER_ROW
};

const Known *findKnown(Direction direction, int type)
{
    for (const Known &known : knownMessages) {
        if (known.direction == direction && known.type == type)
            return &known;
    }
    return nullptr;
}

QJsonArray integers(const QByteArray &payload, int count)
{
    QJsonArray list;
    for (int index = 0; index < count; ++index)
        list.append(integerAt(payload, index));
    return list;
}

/** A text, or what it holds if that is JSON itself. */
QJsonValue textValue(const QString &text)
{
    const QJsonDocument document = QJsonDocument::fromJson(text.toUtf8());
    if (document.isObject())
        return document.object();
    return document.isArray() ? QJsonValue(document.array()) : QJsonValue(text);
}

QJsonValue readableValue(PayloadForm form, const QByteArray &payload)
{
    switch (form) {
    case PayloadForm::Nothing: break;
    case PayloadForm::OnOff: return integerAt(payload, 0) != 0;
    case PayloadForm::Integer: return integerAt(payload, 0);
    case PayloadForm::TwoIntegers: return integers(payload, 2);
    case PayloadForm::Area: return integers(payload, 4);
    case PayloadForm::Utf8: return textValue(QString::fromUtf8(payload));
    case PayloadForm::Latin1: return QString::fromLatin1(payload);
    case PayloadForm::Json: return textValue(QString::fromLatin1(payload));
    }
    return {};
}

QByteArray integerBytes(const QJsonValue &value)
{
    QByteArray bytes;
    const QJsonArray list = value.isArray() ? value.toArray() : QJsonArray{value};
    for (const QJsonValue &item : list)
        bytes += integerPayload(item.isBool() ? int(item.toBool()) : item.toInt());
    return bytes;
}

/** The payload of a message that somebody wrote by hand, from its readable value. */
QByteArray payloadOf(PayloadForm form, const QJsonValue &value)
{
    QString text = value.toString();
    if (value.isObject())
        text = QString::fromUtf8(QJsonDocument(value.toObject()).toJson(QJsonDocument::Compact));
    else if (value.isArray())
        text = QString::fromUtf8(QJsonDocument(value.toArray()).toJson(QJsonDocument::Compact));
    switch (form) {
    case PayloadForm::Nothing: break;
    case PayloadForm::OnOff:
    case PayloadForm::Integer:
    case PayloadForm::TwoIntegers:
    case PayloadForm::Area: return integerBytes(value);
    case PayloadForm::Utf8: return text.toUtf8();
    case PayloadForm::Latin1:
    case PayloadForm::Json: return text.toLatin1();
    }
    return {};
}

QByteArray jsonLine(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

std::optional<Direction> readDirection(const QJsonValue &value)
{
    if (value == QLatin1String(toReceiver))
        return Direction::ToReceiver;
    return value == QLatin1String(toProgram) ? std::optional(Direction::ToProgram) : std::nullopt;
}

std::optional<QByteArray> readRaw(const QString &text)
{
    const auto isDigit = [](QChar digit) {
        return (digit >= '0' && digit <= '9') || (digit >= 'a' && digit <= 'f') ||
               (digit >= 'A' && digit <= 'F');
    };
    // No regular expression, whose engine has too small a stack for what a receiver may send.
    const bool isHex = text.size() % 2 == 0 && std::all_of(text.begin(), text.end(), isDigit);
    return isHex ? std::optional(QByteArray::fromHex(text.toLatin1())) : std::nullopt;
}

std::optional<qint64> readWhole(const QJsonValue &value, double most)
{
    const double number = value.toDouble(-1.0);
    return number >= 0.0 && number <= most ? std::optional(qint64(number)) : std::nullopt;
}

/** Reads a message; what is wrong with it, otherwise empty. */
QString readMessage(const QJsonObject &object, TrafficMessage &message)
{
    const auto ms = readWhole(object.value("ms"), 1e15);
    if (!ms)
        return "\"ms\" is no time in ms";
    if (*ms < message.ms)
        return QString("%1 ms is before the message above it").arg(*ms);
    message.ms = *ms;
    const auto direction = readDirection(object.value("direction"));
    if (!direction)
        return QString("\"direction\" is neither \"%1\" nor \"%2\"").arg(toReceiver, toProgram);
    message.direction = *direction;
    const auto type = readWhole(object.value("type"), std::numeric_limits<int>::max());
    if (!type)
        return "\"type\" is no type of a message";
    message.type = int(*type);
    if (!object.contains("raw")) {
        const Known *known = findKnown(message.direction, message.type);
        message.payload = known ? payloadOf(known->form, object.value("payload")) : QByteArray();
        return {};
    }
    const auto raw = readRaw(object.value("raw").toString("x"));
    if (!raw)
        return "\"raw\" has other characters than pairs of hexadecimal digits";
    if (std::size_t(raw->size()) > largestPayload)
        return "the payload is larger than any that is sent";
    message.payload = *raw;
    return {};
}

/** Reads line after line into a recording. */
class TrafficReader
{
public:
    /** What is wrong with the line, otherwise empty. */
    QString read(const QByteArray &text, int number);

    ParsedTraffic result;

private:
    qint64 m_ms = 0;
};

QString TrafficReader::read(const QByteArray &text, int number)
{
    QJsonParseError error = {};
    const QJsonDocument document = QJsonDocument::fromJson(text, &error);
    if (!document.isObject())
        return "no JSON object: " + error.errorString();
    const QJsonObject object = document.object();
    if (object.contains(versionMember)) {
        return object.value(versionMember).toInt() == formatVersion
                   ? QString()
                   : QString("a recording of another version than %1").arg(formatVersion);
    }
    if (object.contains("connections"))
        return {};
    TrafficMessage message;
    message.ms = m_ms;
    message.line = number;
    const QString failure = readMessage(object, message);
    if (failure.isEmpty()) {
        m_ms = message.ms;
        result.messages += message;
    }
    return failure;
}

} // namespace

QByteArray trafficHeader(const QDateTime &start)
{
    return jsonLine({{versionMember, formatVersion}, {"start", start.toString(Qt::ISODate)}});
}

QByteArray trafficLine(const TrafficMessage &message)
{
    const bool isCommand = message.direction == Direction::ToReceiver;
    const Known *known = findKnown(message.direction, message.type);
    return jsonLine(
        {{"ms", message.ms},
         {"direction", isCommand ? toReceiver : toProgram},
         {"type", message.type},
         {"message", known ? QJsonValue(known->name) : QJsonValue()},
         {"payload", known ? readableValue(known->form, message.payload) : QJsonValue()},
         {"raw", QString::fromLatin1(message.payload.toHex())}});
}

QByteArray connectionLine(qint64 ms, int count)
{
    return jsonLine({{"ms", ms}, {"connections", count}});
}

ParsedTraffic parseTraffic(const QByteArray &text)
{
    TrafficReader reader;
    int number = 0;
    int begin = 0;
    while (begin < text.size()) {
        const int end = text.indexOf('\n', begin);
        const QByteArray content = text.mid(begin, end < 0 ? -1 : end - begin).trimmed();
        begin = end < 0 ? text.size() : end + 1;
        ++number;
        const QString failure = content.isEmpty() ? QString() : reader.read(content, number);
        if (failure.isEmpty())
            continue;
        const QString told = QString("%1: %2").arg(number).arg(failure);
        // A box that lost its power writes no line end.
        if (end >= 0)
            return {{}, told, {}};
        reader.result.warning = told;
    }
    if (!reader.result.messages.isEmpty())
        return reader.result;
    const QString nothing = QString("%1: there is no message in it").arg(number);
    return {{}, reader.result.warning.isEmpty() ? nothing : reader.result.warning, {}};
}
