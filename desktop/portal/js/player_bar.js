// SPDX-License-Identifier: Apache-2.0
/* Title, state, times and progress of what plays, wherever the page shows them. */
var PlayerBar = (function () {
    'use strict';

    var stateNames = ['Stopped', 'Starting', 'Playing', 'Paused'];
    var shownSeconds = 5;
    var hideTimer = 0;

    function forEach(selector, change) {
        Array.prototype.forEach.call(document.querySelectorAll(selector), change);
    }

    function setText(selector, text) {
        forEach(selector, function (element) {
            element.textContent = text;
        });
    }

    function time(seconds) {
        var hours = Math.floor(seconds / 3600);
        var minutes = Math.floor(seconds / 60) % 60;
        var rest = seconds % 60;
        return (hours > 0 ? hours + ':' + (minutes < 10 ? '0' : '') : '') + minutes + ':' +
            (rest < 10 ? '0' : '') + rest;
    }

    function setProgress(position, length) {
        var share = length > 0 ? Math.min(100, 100 * position / length) : 0;
        forEach('#preview .progress_done, #playerBar .progress_done', function (element) {
            element.style.width = share + '%';
        });
    }

    return {
        update: function () {
            var entry = Player.entry();
            var state = Player.state();
            var position = entry ? Player.position() : 0;
            var length = entry ? Player.length() : 0;
            setText('.now_title', entry ? entry.title : '');
            setText('.now_state', stateNames[state] || '');
            setText('.now_time', !entry ? '' : time(position) + (length > 0 ? ' / ' + time(length) : ' live'));
            setText('.bar_hint', 'through ' + Player.route() + ' - OK pauses, left and right seek by 10 s, Back leaves the video');
            setProgress(position, length);
            document.body.setAttribute('data-state', entry ? stateNames[state].toLowerCase() : 'stopped');
        },
        /* Shows the bar over the video; it goes by itself unless it is to stay. */
        show: function (stay) {
            clearTimeout(hideTimer);
            document.body.classList.add('bar_shown');
            if (!stay) {
                hideTimer = setTimeout(PlayerBar.hide, shownSeconds * 1000);
            }
        },
        hide: function () {
            clearTimeout(hideTimer);
            document.body.classList.remove('bar_shown');
        },
        isShown: function () {
            return document.body.classList.contains('bar_shown');
        }
    };
}());

stbEvent.listen(PlayerBar.update);
