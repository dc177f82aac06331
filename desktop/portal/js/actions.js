// SPDX-License-Identifier: Apache-2.0
/* What colour keys, media keys and the mouse can start, by name. */
var Actions = (function () {
    'use strict';

    var actions = {
        toggleLog: function () {
            EventLog.toggle(Pager.current() === 'video');
        },
        toggleRoute: function () {
            Player.toggleRoute();
            document.getElementById('routeName').textContent = Player.route();
        },
        openTracks: function () {
            Pager.open(Pager.current() === 'tracks' ? 'menu' : 'tracks');
        },
        openKeys: function () {
            Pager.open(Pager.current() === 'keys' ? 'menu' : 'keys');
        },
        openSearch: function () {
            Pager.open('search');
        },
        openMedia: function () {
            Pager.open('media');
        },
        openRecordings: function () {
            Pager.open('recordings');
        },
        openSettings: function () {
            Pager.open('settings');
        },
        openDevice: function () {
            Pager.open('device');
        },
        openFavourites: function () {
            Favourites.open();
        },
        back: function () {
            Pager.back();
        },
        toggleFullScreen: function () {
            if (Pager.current() === 'video') {
                Pager.back();
            } else if (Player.entry()) {
                Pager.open('video');
            }
        },
        togglePause: function () {
            Player.togglePause();
        },
        stop: function () {
            Player.stop();
            if (Pager.current() === 'video') {
                Pager.back();
            }
        },
        seekBack: function () {
            Player.seekBy(-10);
        },
        seekForward: function () {
            Player.seekBy(10);
        },
        next: function () {
            Pager.key(key.DOWN);
        },
        previous: function () {
            Pager.key(key.UP);
        },
        volumeUp: function () {
            Volume.changeBy(5);
        },
        volumeDown: function () {
            Volume.changeBy(-5);
        },
        toggleMute: function () {
            Volume.toggleMute();
        }
    };

    return {
        run: function (name) {
            actions[name]();
            PlayerBar.updateTwice();
        }
    };
}());
