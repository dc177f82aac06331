// SPDX-License-Identifier: Apache-2.0
#include "desktop/screen/test_picture.h"

#include <QFileInfo>
#include <QPaintEvent>
#include <QPainter>
#include <QUrl>

#include <algorithm>
#include <cmath>

namespace {

using State = SimulatedMedium::State;

constexpr int frameMs = 80;       ///< Smooth enough, and next to nothing for the machine.
constexpr int turnMs = 4000;      ///< In which the light goes to the right and back.
constexpr int mostAheadMs = 1000; ///< The player reports once a second.

constexpr QRgb bars[] = {0xffc8c8c8, 0xffc8c800, 0xff00c8c8, 0xff00c800,
                         0xffc800c8, 0xffc80000, 0xff0000c8};
constexpr int barCount = sizeof bars / sizeof bars[0];

// Where things begin, as shares of the height. The texts are above, since portals lay theirs below.
constexpr double nameTop = 0.03;
constexpr double timeTop = 0.19;
constexpr double tracksTop = 0.30;
constexpr double lightTop = 0.40;
constexpr double barsTop = 0.50;

QString time(int milliseconds)
{
    const int seconds = milliseconds / 1000;
    return QString("%1:%2:%3")
        .arg(seconds / 3600)
        .arg(seconds / 60 % 60, 2, 10, QChar('0'))
        .arg(seconds % 60, 2, 10, QChar('0'));
}

/** What a viewer would call it: the file's name without its folder and ending. */
QString name(const QString &url)
{
    const QString path = url.section('?', 0, 0);
    const QString base = QFileInfo(path).completeBaseName();
    return QUrl::fromPercentEncoding((base.isEmpty() ? path : base).toUtf8());
}

QString timeLine(const SimulatedMedium &medium, int positionMs)
{
    const QString length = medium.durationMs > 0 ? time(medium.durationMs) : QString("live");
    switch (medium.state) {
    case State::Stopped: return {};
    case State::Starting: return "starting";
    case State::Playing: return time(positionMs) + " / " + length;
    case State::Paused: return time(positionMs) + " / " + length + "   paused";
    }
    return {};
}

} // namespace

TestPicture::TestPicture()
{
    m_frames.setInterval(frameMs);
    connect(&m_frames, &QTimer::timeout, this, &TestPicture::advance);
}

void TestPicture::setMedium(const SimulatedMedium &medium)
{
    m_medium = medium;
    m_sinceChange.start();
    if (medium.state == State::Playing)
        m_frames.start();
    else
        m_frames.stop();
    update();
}

int TestPicture::shownMs() const
{
    const bool runs = m_medium.state == State::Playing;
    return m_medium.positionMs +
           (runs ? int(std::min<qint64>(m_sinceChange.elapsed(), mostAheadMs)) : 0);
}

QRect TestPicture::lightTrack() const
{
    const int top = int(height() * lightTop);
    return {0, top, width(), int(height() * barsTop) - top};
}

void TestPicture::advance()
{
    // All the rest changes with the medium, which is told each second.
    update(lightTrack());
}

void TestPicture::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    // Nearly all frames are those of the light alone.
    painter.setClipRegion(event->region());
    painter.fillRect(event->rect(), Qt::black);
    if (m_medium.state == State::Stopped)
        return;
    const int top = int(height() * barsTop);
    for (int bar = 0; bar < barCount; ++bar) {
        const int left = width() * bar / barCount;
        const int right = width() * (bar + 1) / barCount;
        painter.fillRect(left, top, right - left, height() - top, QColor(bars[bar]));
    }
    const QRect track = lightTrack();
    const double phase = shownMs() % turnMs / double(turnMs);
    const double way = 1 - std::abs(2 * phase - 1);
    const int size = track.height() * 3 / 4;
    painter.fillRect(int(way * (width() - size)), track.top(), size, size, Qt::white);

    painter.setPen(Qt::white);
    const auto line = [&](const QString &text, double from, double to) {
        QFont font = painter.font();
        const int room = int(height() * (to - from));
        font.setPixelSize(std::max(1, room * 2 / 3));
        painter.setFont(font);
        painter.drawText(QRect(0, int(height() * from), width(), room), Qt::AlignCenter,
                         painter.fontMetrics().elidedText(text, Qt::ElideMiddle, width()));
    };
    line(name(m_medium.url), nameTop, timeTop);
    line(timeLine(m_medium, m_medium.positionMs), timeTop, tracksTop);
    line(QString("simulated: audio %1, subtitles %2")
             .arg(m_medium.audioPid)
             .arg(m_medium.subtitlePid),
         tracksTop, lightTop);
}
