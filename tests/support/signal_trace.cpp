// SPDX-License-Identifier: Apache-2.0
#include "tests/support/signal_trace.h"

#include <QMetaMethod>
#include <QVariant>

SignalTrace::SignalTrace(QObject &sender)
    : m_sender(sender)
{
    const QMetaObject &meta = *sender.metaObject();
    const int own = QObject::staticMetaObject.methodCount();
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        // A slot number of this object for each signal, beyond those that the class knows.
        if (meta.method(i).methodType() == QMetaMethod::Signal)
            QMetaObject::connect(&sender, i, this, own + i, Qt::DirectConnection);
    }
}

QString SignalTrace::take()
{
    const QString trace = m_trace.join(' ');
    m_trace.clear();
    return trace;
}

void SignalTrace::answerWith(const QString &text, int number)
{
    m_text = text;
    m_number = number;
}

int SignalTrace::qt_metacall(QMetaObject::Call call, int id, void **arguments)
{
    const int own = QObject::qt_metacall(call, id, arguments);
    if (own < 0 || call != QMetaObject::InvokeMetaMethod)
        return own;
    const QMetaMethod signal = m_sender.metaObject()->method(own);
    QStringList values;
    for (int i = 0; i < signal.parameterCount(); ++i)
        values.append(QVariant(signal.parameterType(i), arguments[i + 1]).toString());
    m_trace.append(signal.name() + '(' + values.join(',') + ')');
    if (signal.returnType() == QMetaType::QString && arguments[0])
        *static_cast<QString *>(arguments[0]) = m_text;
    if (signal.returnType() == QMetaType::Int && arguments[0])
        *static_cast<int *>(arguments[0]) = m_number;
    return -1;
}
