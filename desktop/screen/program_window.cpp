// SPDX-License-Identifier: Apache-2.0
#include "desktop/screen/program_window.h"

#include "desktop/display/xcb_reply.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr quint32 longestProperty = 4096; ///< In words; lists of windows are shorter.

void selectEvents(xcb_connection_t *connection, xcb_window_t window, quint32 events)
{
    xcb_change_window_attributes(connection, window, XCB_CW_EVENT_MASK, &events);
}

} // namespace

ProgramWindow::ProgramWindow(QWindow &plane)
    : m_plane(plane)
    , m_connection(xcb_connect(nullptr, nullptr))
{
    if (xcb_connection_has_error(m_connection))
        return;
    m_root = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data->root;
    // With a window manager its lists change, without one windows appear.
    selectEvents(m_connection, m_root,
                 XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
    m_notifier = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(m_connection),
                                                   QSocketNotifier::Read);
    // A receiver that starts behind the program belongs below it; a window manager knows that of
    // the pair.
    if (numbers(m_root, "_NET_SUPPORTING_WM_CHECK").empty())
        m_plane.lower();
    connect(m_notifier.get(), &QSocketNotifier::activated, this, &ProgramWindow::readEvents);
    xcb_flush(m_connection);
}

ProgramWindow::~ProgramWindow()
{
    m_notifier.reset();
    xcb_disconnect(m_connection);
}

void ProgramWindow::follow(qint64 processId)
{
    if (xcb_connection_has_error(m_connection))
        return;
    m_processId = processId;
    watch(XCB_NONE);
    search();
    readEvents();
}

void ProgramWindow::readEvents()
{
    // Which events they were doesn't matter: what is there now is looked at. That takes answers of
    // the server, which may bring further events with them.
    while (takeEvents()) {
        if (m_window == XCB_NONE || !isOfProcess(m_window))
            search();
        look();
    }
    if (xcb_connection_has_error(m_connection))
        m_notifier->setEnabled(false);
}

bool ProgramWindow::takeEvents()
{
    bool anything = false;
    while (const auto event = owned(xcb_poll_for_event(m_connection)))
        anything = true;
    return anything && m_processId != 0;
}

void ProgramWindow::search()
{
    if (m_processId == 0 || xcb_connection_has_error(m_connection))
        return;
    std::vector<quint32> windows = numbers(m_root, "_NET_CLIENT_LIST");
    if (windows.empty()) {
        const auto tree = owned(
            xcb_query_tree_reply(m_connection, xcb_query_tree(m_connection, m_root), nullptr));
        if (!tree)
            return;
        const xcb_window_t *children = xcb_query_tree_children(tree.get());
        windows.assign(children, children + xcb_query_tree_children_length(tree.get()));
    }
    const auto found = std::find_if(windows.begin(), windows.end(),
                                    [this](xcb_window_t window) { return isOfProcess(window); });
    watch(found == windows.end() ? xcb_window_t(XCB_NONE) : *found);
}

void ProgramWindow::watch(xcb_window_t window)
{
    if (window == m_window)
        return;
    m_window = window;
    m_area = {};
    if (window == XCB_NONE)
        return;
    selectEvents(m_connection, window,
                 XCB_EVENT_MASK_STRUCTURE_NOTIFY | XCB_EVENT_MASK_PROPERTY_CHANGE);
    // To a window manager that makes the two a pair: above each other with nothing in between.
    const quint32 plane = quint32(m_plane.winId());
    xcb_change_property(m_connection, XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_TRANSIENT_FOR,
                        XCB_ATOM_WINDOW, 32, 1, &plane);
    xcb_flush(m_connection);
    look();
}

void ProgramWindow::look()
{
    if (m_window == XCB_NONE || !isShown())
        return;
    const auto geometry = owned(
        xcb_get_geometry_reply(m_connection, xcb_get_geometry(m_connection, m_window), nullptr));
    const auto origin = owned(xcb_translate_coordinates_reply(
        m_connection, xcb_translate_coordinates(m_connection, m_window, m_root, 0, 0), nullptr));
    if (!geometry || !origin)
        return;
    const QRect area(origin->dst_x, origin->dst_y, geometry->width, geometry->height);
    if (area != m_area) {
        m_area = area;
        emit placed(area);
    }
    stackAbovePlane();
}

void ProgramWindow::stackAbovePlane()
{
    const std::vector<quint32> order = numbers(m_root, "_NET_CLIENT_LIST_STACKING");
    if (order.empty()) {
        // No window manager: whoever asks stacks.
        const quint32 below[] = {m_window, XCB_STACK_MODE_BELOW};
        xcb_configure_window(m_connection, xcb_window_t(m_plane.winId()),
                             XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, below);
        xcb_flush(m_connection);
        return;
    }
    const auto program = std::find(order.begin(), order.end(), m_window);
    const auto plane = std::find(order.begin(), order.end(), quint32(m_plane.winId()));
    const std::vector<quint32> active = numbers(m_root, "_NET_ACTIVE_WINDOW");
    // Another window between the two would be seen where the video belongs. Only while the program
    // has the keys, so that nobody's window is covered.
    if (program == order.end() || plane == order.end() || plane + 1 == program || active.empty() ||
        active.front() != m_window)
        return;
    m_plane.raise();
}

bool ProgramWindow::isShown() const
{
    const auto attributes = owned(xcb_get_window_attributes_reply(
        m_connection, xcb_get_window_attributes(m_connection, m_window), nullptr));
    return attributes && attributes->map_state == XCB_MAP_STATE_VIEWABLE;
}

bool ProgramWindow::isOfProcess(xcb_window_t window) const
{
    const std::vector<quint32> owner = numbers(window, "_NET_WM_PID");
    if (owner.empty() || owner.front() != m_processId)
        return false;
    const auto attributes = owned(xcb_get_window_attributes_reply(
        m_connection, xcb_get_window_attributes(m_connection, window), nullptr));
    // Neither lists that drop down nor windows that only hold the clipboard.
    return attributes && !attributes->override_redirect &&
           attributes->_class == XCB_WINDOW_CLASS_INPUT_OUTPUT &&
           attributes->map_state != XCB_MAP_STATE_UNMAPPED;
}

std::vector<quint32> ProgramWindow::numbers(xcb_window_t window, const char *property) const
{
    const auto answer = owned(
        xcb_get_property_reply(m_connection,
                               xcb_get_property(m_connection, 0, window, atom(property),
                                                XCB_GET_PROPERTY_TYPE_ANY, 0, longestProperty),
                               nullptr));
    if (!answer || answer->format != 32)
        return {};
    std::vector<quint32> result(std::size_t(xcb_get_property_value_length(answer.get())) /
                                sizeof(quint32));
    std::memcpy(result.data(), xcb_get_property_value(answer.get()),
                result.size() * sizeof(quint32));
    return result;
}

xcb_atom_t ProgramWindow::atom(const char *name) const
{
    xcb_atom_t &known = m_atoms[name];
    if (known == XCB_NONE) {
        const auto answer = owned(xcb_intern_atom_reply(
            m_connection, xcb_intern_atom(m_connection, 0, quint16(std::strlen(name)), name),
            nullptr));
        known = answer ? answer->atom : xcb_atom_t(XCB_NONE);
    }
    return known;
}
