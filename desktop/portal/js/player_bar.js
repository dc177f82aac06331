// SPDX-License-Identifier: Apache-2.0
/* Title, state, times and progress of what plays, wherever the page shows them. */
var PlayerBar = (function () {
    'use strict';

    var stateNames = ['Stopped', 'Starting', 'Playing', 'Paused'];
    var shownSeconds = 5;
    /* ms in which the receiver has told of a seek. */
    var answerTime = 150;
    var hideTimer = 0;
    var answerTimer = 0;

    function forEach(selector, change) {
        Array.prototype.forEach.call(document.querySelectorAll(selector), change);
    }

    function setText(selector, text) {
        forEach(selector, function (element) {
            element.textContent = text;
        });
    }

    /* "0:12 / 1:00", or what is known of that. */
    function times(entry, position, length) {
        if (!entry || entry.live) {
            return entry ? 'live' : '';
        }
        return Texts.duration(position) + (length > 0 ? ' / ' + Texts.duration(length) : '');
    }

    function hint(entry) {
        return 'OK pauses' + (entry && entry.live ? '' : ', left and right go 10 seconds back and on') +
            ', up and down change the channel, Back leaves the video; through ' + Player.route();
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
            setText('.now_time', times(entry, position, length));
            setText('.bar_hint', hint(entry));
            setProgress(position, length);
            document.body.setAttribute('data-state', entry ? stateNames[state].toLowerCase() : 'stopped');
        },
        /* After a key: shows what it changed at once, and what the receiver answers. */
        updateTwice: function () {
            PlayerBar.update();
            clearTimeout(answerTimer);
            answerTimer = setTimeout(PlayerBar.update, answerTime);
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
