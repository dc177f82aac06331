// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <QHash>
#include <QObject>
#include <QRect>
#include <QSocketNotifier>
#include <QWindow>

#include <memory>
#include <vector>

#include <xcb/xcb.h>

/**
 * The program's window on the display, seen from the receiver: where it is, so that the video can
 * be below it, and in which order window managers stack the two. Looks at windows over a
 * connection of its own.
 */
class ProgramWindow : public QObject
{
    Q_OBJECT

public:
    /** Keeps the program's window directly above this window of ours, which must outlive this. */
    explicit ProgramWindow(QWindow &plane);
    ~ProgramWindow() override;

    /** Follows the first window of this process from now on; 0: of none. */
    void follow(qint64 processId);

signals:
    /** The window is visible and covers this area (px of the display). */
    void placed(const QRect &area);

private:
    void readEvents();
    bool takeEvents();
    void search();
    void watch(xcb_window_t window);
    void look();
    void stackAbovePlane();
    bool isShown() const;
    bool isOfProcess(xcb_window_t window) const;
    std::vector<quint32> numbers(xcb_window_t window, const char *property) const;
    xcb_atom_t atom(const char *name) const;

    QWindow &m_plane;
    xcb_connection_t *m_connection;
    xcb_window_t m_root = XCB_NONE;
    xcb_window_t m_window = XCB_NONE;
    qint64 m_processId = 0;
    QRect m_area;
    std::unique_ptr<QSocketNotifier> m_notifier;
    mutable QHash<QByteArray, xcb_atom_t> m_atoms;
};
