// SPDX-License-Identifier: Apache-2.0
/* The clock in the head line, in the form that the settings ask for. */
var Clock = (function () {
    'use strict';

    return {
        show: function () {
            var now = new Date();
            var hours = now.getHours();
            var minutes = ':' + Texts.twoDigits(now.getMinutes());
            document.getElementById('clock').textContent = Settings.value('clock_format') === '12h' ?
                (hours % 12 || 12) + minutes + (hours < 12 ? ' am' : ' pm') : hours + minutes;
        }
    };
}());

Settings.listen(Clock.show);
