// SPDX-License-Identifier: Apache-2.0
/* The page that lists what the keys do: on the remote control, and on the keyboard of a PC. */
(function () {
    'use strict';

    var rows = [
        ['Remote', 'Keyboard', ''],
        ['Arrows, OK', 'arrows, Enter', 'choose and play; a second OK opens the full screen'],
        ['Back', 'Esc, Backspace', 'from a page or the video to the menu, from there out'],
        ['Info, blue', 'Y, F4', 'menu or full screen'],
        ['Play/pause, stop', 'R, S', 'pause, go on, stop'],
        ['Rewind, forward', 'B, F', '10 seconds back or on'],
        ['Channel + and \u2212', 'Page Up, Page Down', 'next and previous entry, over the video'],
        ['Volume + and \u2212, mute', '+, \u2212, `', 'sound of the box'],
        ['Red', 'F1', 'event log on and off, beside the menu or over the video'],
        ['Green', 'F2', 'play through gSTB or through stbPlayer'],
        ['Yellow, audio', 'F3, L', 'audio and subtitle tracks'],
        ['Favourites', 'F11', 'opens and closes the favourites'],
        ['Help', 'G', 'this page'],
        ['Exit', 'Home, U', 'leaves the portal: the receiver\u2019s, not the portal\u2019s key'],
        ['Applications', 'F12', 'the receiver\u2019s too'],
        ['Power', 'power key', 'stand-by and back, the receiver\u2019s too']
    ];

    rows.forEach(function (texts) {
        var row = document.getElementById('keyTable').insertRow(-1);
        texts.forEach(function (text) {
            row.insertCell(-1).textContent = text;
        });
    });

    Pager.register('keys', {
        element: document.getElementById('page_keys'),
        back: Pager.toMenu
    });
}());
