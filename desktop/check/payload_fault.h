// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/messages.h"

#include <QByteArray>
#include <QString>

/** What is wrong with the payload of an event, as the end of a sentence; empty when nothing is. */
QString eventFault(const EventRow &row, const QByteArray &payload);

/** The same for an answer. */
QString answerFault(const AnswerRow &row, const QByteArray &payload);

/** Number and words of a message of the receiver, fit for one line. Any type, any payload. */
QString messageName(int type, const QByteArray &payload);
