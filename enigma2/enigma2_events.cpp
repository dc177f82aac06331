// SPDX-License-Identifier: Apache-2.0
/*
 * The way of the receiver's events out of the queue: each raises the signal that the table of
 * messages gives it, which must fit what its payload carries.
 */
#include "enigma2/enigma2.h"

#include "enigma2/private_settings_name.h"
#include "platform/environment.h"

#include <QElapsedTimer>

namespace {

// Short enough for keys and the screen, long enough to be worth the way through the event loop.
constexpr int sliceMilliseconds = 10;

constexpr PayloadForm formOf(void (Enigma2::*)()) { return PayloadForm::Nothing; }
constexpr PayloadForm formOf(void (Enigma2::*)(int)) { return PayloadForm::Integer; }
constexpr PayloadForm formOf(void (Enigma2::*)(int, int)) { return PayloadForm::TwoIntegers; }
constexpr PayloadForm formOf(void (Enigma2::*)(QString)) { return PayloadForm::Utf8; }

constexpr bool fits(PayloadForm form, PayloadForm signal)
{
    return form == signal || (form == PayloadForm::Latin1 && signal == PayloadForm::Utf8);
}

#define CHECK_SIGNAL(number, name, signal, form, ...)                                              \
    static_assert(fits(PayloadForm::form, formOf(&Enigma2::signal)), "wrong form of " #name);
VESPREL_EVENTS(CHECK_SIGNAL)
#undef CHECK_SIGNAL

void call(Enigma2 &link, void (Enigma2::*signal)(), const ReceivedEvent &) { (link.*signal)(); }

void call(Enigma2 &link, void (Enigma2::*signal)(int), const ReceivedEvent &event)
{
    (link.*signal)(event.first);
}

void call(Enigma2 &link, void (Enigma2::*signal)(int, int), const ReceivedEvent &event)
{
    (link.*signal)(event.first, event.second);
}

void call(Enigma2 &link, void (Enigma2::*signal)(QString), const ReceivedEvent &event)
{
    (link.*signal)(event.text);
}

} // namespace

void Enigma2::deliverEvents()
{
    QElapsedTimer slice;
    slice.start();
    // Started first: should an event open a dialog, its event loop delivers what is behind.
    m_nextSlice.start(0);
    while (const auto event = m_events.take()) {
        raise(*event);
        if (slice.hasExpired(sliceMilliseconds))
            return;
    }
    m_nextSlice.stop();
}

void Enigma2::raise(const ReceivedEvent &event)
{
    // Set before the event is told, so that the new portal finds its own settings; in this thread,
    // since libraries read the environment in it, without a lock.
    if (event.event == Event::NewPortal) {
        if (const auto name = privateSettingsName(event.text))
            qputenv(Environment::privateSettingPath, name->toLatin1());
    }
    switch (event.event) {
#define RAISE_SIGNAL(number, name, signal, ...)                                                    \
    case Event::name: call(*this, &Enigma2::signal, event); break;
        VESPREL_EVENTS(RAISE_SIGNAL)
#undef RAISE_SIGNAL
    default: break; // Answers are no events.
    }
}
