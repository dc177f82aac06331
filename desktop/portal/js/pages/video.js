/* The full-screen video: nothing but the transparent page, and the player bar when it is asked. */
(function () {
    'use strict';

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
            Pager.open('menu');
        }
    });

    Pager.register('video', {
        open: function () {
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
        back: function () {
            Pager.open('menu');
            return true;
        }
    });
}());
