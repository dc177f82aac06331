// SPDX-License-Identifier: Apache-2.0
#include "desktop/check/payload_fault.h"

#include "desktop/link/message_text.h"
#include "platform/one_line.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QTextCodec>

namespace {

constexpr int longestShown = 100; ///< Bytes of a payload.

int integerCount(PayloadForm form)
{
    switch (form) {
    case PayloadForm::Integer:
    case PayloadForm::OnOff: return 1;
    case PayloadForm::TwoIntegers: return 2;
    case PayloadForm::Area: return 4;
    case PayloadForm::Nothing:
    case PayloadForm::Latin1:
    case PayloadForm::Utf8:
    case PayloadForm::Json: break;
    }
    return 0;
}

QString shown(const QByteArray &payload)
{
    return '"' + oneLine(QString::fromUtf8(payload.left(longestShown))) + '"';
}

/** The text of a payload, which ends at its first NUL. */
QByteArray textBytes(const QByteArray &payload) { return payload.split('\0').first(); }

QString formFault(PayloadForm form, const QByteArray &payload)
{
    if (form == PayloadForm::Latin1 || form == PayloadForm::Utf8) {
        const QByteArray bytes = textBytes(payload);
        if (bytes.isEmpty())
            return "has an empty text";
        QTextCodec::ConverterState state;
        QTextCodec::codecForName("UTF-8")->toUnicode(bytes.constData(), bytes.size(), &state);
        if (form == PayloadForm::Utf8 && (state.invalidChars > 0 || state.remainingChars > 0))
            return "has a text that is no UTF-8: " + shown(bytes);
        return QString();
    }
    const int size = integerCount(form) * 4;
    if (payload.size() != size)
        return QString("has a payload of %1 bytes, not %2").arg(payload.size()).arg(size);
    return QString();
}

bool isTrackList(const QJsonDocument &document)
{
    if (!document.isArray())
        return false;
    const QJsonArray tracks = document.array();
    for (const QJsonValue &track : tracks) {
        if (!track.toObject()["pid"].isDouble() || !track.toObject().contains("lang"))
            return false;
    }
    return true;
}

} // namespace

QString eventFault(const EventRow &row, const QByteArray &payload)
{
    const QString fault = formFault(row.form, payload);
    const bool isList = row.event == Event::AudioPids || row.event == Event::SubtitlePids;
    if (fault.isEmpty() && isList && !isTrackList(QJsonDocument::fromJson(textBytes(payload))))
        return "is no JSON array of objects with pid and lang: " + shown(payload);
    return fault;
}

QString answerFault(const AnswerRow &row, const QByteArray &payload)
{
    const QString fault = formFault(row.form, payload);
    if (!fault.isEmpty() || row.form != PayloadForm::Utf8)
        return fault;
    const QJsonDocument document = QJsonDocument::fromJson(textBytes(payload));
    if (document.isNull())
        return "is no JSON: " + shown(payload);
    const bool wantsObject = row.request == Command::PvrGetTaskById;
    if (row.request != Command::GetStorageInfo && document.isObject() != wantsObject)
        return QString("is no JSON %1: %2").arg(wantsObject ? "object" : "array", shown(payload));
    return QString();
}

QString messageName(int type, const QByteArray &payload)
{
    return QString("%1 (%2)").arg(type).arg(
        describeEvent(static_cast<Event>(type), payload.left(longestShown)));
}
