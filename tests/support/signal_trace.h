// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QObject>
#include <QStringList>

/**
 * Notes every signal that an object's own class emits, with its arguments, such as "OnPlay(a.ts)",
 * and answers those that ask for something.
 */
class SignalTrace : public QObject
{
public:
    explicit SignalTrace(QObject &sender);

    /** The signals since the start or the last call, oldest first, separated by blanks. */
    QString take();

    /** Answer to signals of a type: texts by "QString", numbers by "int". */
    void answerWith(const QString &text, int number);

    int qt_metacall(QMetaObject::Call call, int id, void **arguments) override;

private:
    QObject &m_sender;
    QStringList m_trace;
    QString m_text;
    int m_number = 0;
};
