// SPDX-License-Identifier: Apache-2.0
/*
 * The full-screen video: nothing but the transparent page, and the player bar when it is asked.
 * Leaving it opens the page that it was opened from.
 */
var Video = (function () {
    'use strict';

    var openedFrom = 'menu';

    function leave() {
        Pager.open(openedFrom);
        return true;
    }

    function zap(by) {
        var count = Entries.length;
        var index = Entries.indexOf(Player.entry());
        Player.play(Entries[(index + by + count) % count]);
    }

    var handlers = {};
    handlers[key.LEFT] = function () {
        Player.seekBy(-10);
    };
    handlers[key.RIGHT] = function () {
        Player.seekBy(10);
    };
    handlers[key.OK] = function () {
        Player.togglePause();
    };
    handlers[key.UP] = function () {
        zap(-1);
    };
    handlers[key.DOWN] = function () {
        zap(1);
    };

    stbEvent.listen(function (code) {
        if (code === 1 && Pager.current() === 'video') {
            leave();
        }
    });

    Pager.register('video', {
        open: function (previous) {
            openedFrom = previous || 'menu';
            Player.setWindow(null);
            PlayerBar.show();
        },
        close: PlayerBar.hide,
        key: function (code) {
            if (handlers[code]) {
                handlers[code]();
            }
            PlayerBar.show();
            return true;
        },
        back: leave
    });

    return {
        /* Plays an entry in full; without a box nothing opens. */
        play: function (entry) {
            Player.play(entry);
            if (Player.entry()) {
                Pager.open('video');
            }
        }
    };
}());
