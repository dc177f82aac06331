// SPDX-License-Identifier: Apache-2.0
/* How numbers and times read on the screen. */
var Texts = (function () {
    'use strict';

    function twoDigits(number) {
        return (number < 10 ? '0' : '') + number;
    }

    return {
        twoDigits: twoDigits,
        /* "1 folder", "2 folders". */
        count: function (number, noun) {
            return number + ' ' + noun + (number === 1 ? '' : 's');
        },
        /* "20:15:07" of a Date. */
        clock: function (date) {
            return twoDigits(date.getHours()) + ':' + twoDigits(date.getMinutes()) + ':' +
                twoDigits(date.getSeconds());
        },
        /* "2026-01-31" of a Date. */
        day: function (date) {
            return date.getFullYear() + '-' + twoDigits(date.getMonth() + 1) + '-' +
                twoDigits(date.getDate());
        },
        /* "1:05" or "2:00:00" of whole seconds. */
        duration: function (seconds) {
            var hours = Math.floor(seconds / 3600);
            var minutes = Math.floor(seconds / 60) % 60;
            return (hours > 0 ? hours + ':' + twoDigits(minutes) : minutes) + ':' +
                twoDigits(seconds % 60);
        },
        /* "12 kB", "3.4 MB" or "271 GB". */
        bytes: function (bytes) {
            if (bytes < 1e6) {
                return Math.ceil(bytes / 1e3) + ' kB';
            }
            return bytes < 1e9 ? (bytes / 1e6).toFixed(1) + ' MB' :
                (bytes / 1e9).toFixed(bytes < 1e10 ? 1 : 0) + ' GB';
        }
    };
}());
