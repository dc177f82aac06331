// SPDX-License-Identifier: Apache-2.0
/* The sub-page that lists what the keys of the remote control do. */
(function () {
    'use strict';

    var rows = [
        ['Arrows, OK', 'choose and play; a second OK opens the full screen'],
        ['Back', 'from a sub-page or the video to the menu, from there out'],
        ['Info', 'switches between the menu and the full screen'],
        ['Play/pause, Stop', 'pause, go on, stop'],
        ['Rewind, Forward', 'go 10 seconds back or on'],
        ['Channel + and -', 'next and previous entry, over the video'],
        ['Volume + and -, Mute', 'sound of the box'],
        ['Red', 'event log on and off'],
        ['Green', 'play through gSTB or through stbPlayer'],
        ['Yellow', 'audio and subtitle tracks'],
        ['Blue', 'menu or full screen']
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
