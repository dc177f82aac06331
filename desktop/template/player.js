// SPDX-License-Identifier: Apache-2.0
/* Plays one thing at a time through gSTB; in an ordinary browser nothing plays. */
var Player = (function () {
    'use strict';

    var box = window.gSTB;
    var playing = null;

    function text(seconds) {
        var rest = seconds % 60;
        return Math.floor(seconds / 60) + ':' + (rest < 10 ? '0' : '') + rest;
    }

    function show() {
        var length = playing && box ? box.GetMediaLen() : 0;
        var position = playing && box ? box.GetPosTime() : 0;
        document.getElementById('title').textContent = playing ? playing.title : 'Nothing plays';
        document.getElementById('time').textContent = playing ?
            text(position) + (length ? ' / ' + text(length) : '') : '';
        document.getElementById('done').style.width =
            (length ? Math.min(100, 100 * position / length) : 0) + '%';
    }

    function stop() {
        playing = null;
        if (box) {
            box.Stop();
        }
        show();
    }

    if (box) {
        box.InitPlayer();
        // Where the video is, on a screen 1280 px wide: beside the menu.
        box.SetViewport(800, 450, 480, 92);
    }
    Events.on(Events.PLAY_START, show);
    Events.on(Events.PLAY_END, stop);
    setInterval(show, 1000);
    show();

    return {
        play: function (entry) {
            playing = entry;
            if (box) {
                box.Play(entry.address);
            }
            show();
        },
        stop: stop
    };
}());
