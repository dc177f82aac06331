// SPDX-License-Identifier: Apache-2.0
#pragma once

#include "enigma2/frame.h"
#include "enigma2/messages.h"

class AnswerMailbox;
class EventQueue;
class QLocalSocket;
class QString;
struct ReceivedEvent;

/**
 * Cuts what the receiver sends into messages: events go to the queue, answers to the mailbox. All
 * of it belongs to the reader thread; the queue and the mailbox are the only ways out.
 */
class MessageReader
{
public:
    /** Both live as long as the reader; they may be used by other threads meanwhile. */
    MessageReader(EventQueue &events, AnswerMailbox &answers);

    /**
     * Takes all that can be read from the socket and handles it, until interruption of the thread
     * is requested.
     */
    void ReadMessages(QLocalSocket &socket);

    /** Handles one message. A payload that is too short reads as zeros, unknown types are dropped.
     */
    void HandleMessage(std::int32_t type, std::string_view payload);

private:
    /** Feeds the splitter all that can be read; the number of bytes. */
    int feedFrom(QLocalSocket &socket);
    void handleEvent(const EventRow &row, std::string_view payload);
    void handleAnswer(const AnswerRow &row, std::string_view payload);

    EventQueue &m_events;
    AnswerMailbox &m_answers;
    FrameSplitter m_splitter;
};
