// SPDX-License-Identifier: Apache-2.0
#include "desktop/link/message_text.h"

#include "desktop/link/payload.h"
#include "platform/one_line.h"

namespace {

QString areaText(const QByteArray &payload)
{
    const int x = integerAt(payload, 0);
    const int y = integerAt(payload, 1);
    const int width = integerAt(payload, 2);
    const int height = integerAt(payload, 3);
    if (x == 0 && y == 0 && width == 0 && height == 0)
        return "full screen";
    return QString("%1,%2 %3x%4").arg(x).arg(y).arg(width).arg(height);
}

/** What stands for %1 in the words of a message. */
QString payloadText(PayloadForm form, const QByteArray &payload)
{
    switch (form) {
    case PayloadForm::Nothing: break;
    case PayloadForm::TwoIntegers: // The second one stands for %2.
    case PayloadForm::Integer: return QString::number(integerAt(payload, 0));
    case PayloadForm::OnOff: return integerAt(payload, 0) != 0 ? "on" : "off";
    case PayloadForm::Area: return areaText(payload);
    case PayloadForm::Utf8: return oneLine(QString::fromUtf8(payload));
    case PayloadForm::Latin1:
    case PayloadForm::Json: return oneLine(QString::fromLatin1(payload));
    }
    return QString();
}

QString describe(const char *words, PayloadForm form, const QByteArray &payload)
{
    if (form == PayloadForm::Nothing)
        return words;
    const QString text = QString(words).arg(payloadText(form, payload));
    if (form == PayloadForm::TwoIntegers)
        return text.arg(integerAt(payload, 1));
    return text.trimmed();
}

} // namespace

QString describeCommand(int type, const QByteArray &payload)
{
    const CommandRow *row = findCommand(type);
    if (!row)
        return QString("unknown command %1 (%2 bytes)").arg(type).arg(payload.size());
    return describe(row->words, row->form, payload);
}

QString describeEvent(Event event, const QByteArray &payload)
{
    const int type = static_cast<int>(event);
    if (const EventRow *row = findEvent(type))
        return describe(row->words, row->form, payload);
    if (const AnswerRow *row = findAnswer(type))
        return describe(row->words, row->form, payload);
    return QString("event %1").arg(type);
}
