// SPDX-License-Identifier: Apache-2.0
/*
 * The panel with the events that reached the page, newest first. It belongs to the menu and the
 * recordings; over the video, which it would hide, it comes only when it is asked for there.
 */
var EventLog = (function () {
    'use strict';

    var mostRows = 40;

    function cell(className, text) {
        var span = document.createElement('span');
        span.className = className;
        span.textContent = text;
        return span;
    }

    return {
        /* code is short ('4', 'usb', '!'), meaning one line. */
        add: function (code, meaning) {
            var rows = document.getElementById('eventRows');
            var row = document.createElement('div');
            row.className = 'event_row';
            row.appendChild(cell('event_time', Texts.clock(new Date())));
            row.appendChild(cell('event_code', code));
            row.appendChild(cell('event_meaning', meaning));
            rows.insertBefore(row, rows.firstChild);
            if (rows.childNodes.length > mostRows) {
                rows.removeChild(rows.lastChild);
            }
        },
        /* Shows the panel beside the menu. */
        show: function () {
            document.body.classList.add('log_shown');
        },
        /* Switches the panel of the menu, or the one over the video. */
        toggle: function (isOverVideo) {
            document.body.classList.toggle(isOverVideo ? 'log_over_video' : 'log_shown');
        }
    };
}());
