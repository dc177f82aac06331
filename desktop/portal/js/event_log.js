// SPDX-License-Identifier: Apache-2.0
/* The panel with the events that reached the page, newest first. */
var EventLog = (function () {
    'use strict';

    var mostRows = 40;

    function twoDigits(number) {
        return (number < 10 ? '0' : '') + number;
    }

    function clock(date) {
        return twoDigits(date.getHours()) + ':' + twoDigits(date.getMinutes()) + ':' +
            twoDigits(date.getSeconds());
    }

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
            row.appendChild(cell('event_time', clock(new Date())));
            row.appendChild(cell('event_code', code));
            row.appendChild(cell('event_meaning', meaning));
            rows.insertBefore(row, rows.firstChild);
            if (rows.childNodes.length > mostRows) {
                rows.removeChild(rows.lastChild);
            }
        },
        show: function (shown) {
            document.body.classList[shown ? 'add' : 'remove']('log_shown');
        },
        isShown: function () {
            return document.body.classList.contains('log_shown');
        },
        clock: clock
    };
}());
