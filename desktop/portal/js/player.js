// SPDX-License-Identifier: Apache-2.0
/* Playback through either of the box's two interfaces. Times are in seconds. */
var Player = (function () {
    'use strict';

    var startedEvent = 4;
    var endedEvent = 1;
    var states = {stopped: 0, starting: 1, playing: 2, paused: 3};
    var route = 'gSTB';
    var entry = null;
    var pendingStart = 0;

    /* The path of a file beside this page, or its address when it came over the network. */
    function resolve(uri) {
        var link;
        if (uri.charAt(0) === '/' || uri.indexOf('://') >= 0) {
            return uri;
        }
        link = document.createElement('a');
        link.href = uri;
        return link.protocol === 'file:' ? decodeURIComponent(link.pathname) + link.search : link.href;
    }

    function throughStb(uri, start) {
        // This call takes no position; the seek follows when playback has started.
        pendingStart = start;
        Box.stb('Play', uri);
    }

    function throughPlayer(uri, start) {
        pendingStart = 0;
        Box.player('play', {uri: uri, position: start});
    }

    stbEvent.listen(function (code) {
        if (code === startedEvent && pendingStart > 0) {
            Box.stb('SetPosTime', pendingStart);
            pendingStart = 0;
        } else if (code === endedEvent) {
            entry = null;
        }
    });

    return {
        resolve: resolve,
        states: states,
        route: function () {
            return route;
        },
        toggleRoute: function () {
            route = route === 'gSTB' ? 'stbPlayer' : 'gSTB';
        },
        /* The entry that plays, null when none does. */
        entry: function () {
            return entry;
        },
        state: function () {
            return entry ? Box.playState() : states.stopped;
        },
        play: function (newEntry) {
            if (!Box.isPresent()) {
                EventLog.add('!', 'no box to play ' + newEntry.uri);
                return;
            }
            entry = newEntry;
            if (route === 'gSTB') {
                throughStb(resolve(entry.uri), entry.start);
            } else {
                throughPlayer(resolve(entry.uri), entry.start);
            }
        },
        stop: function () {
            entry = null;
            if (route === 'gSTB') {
                Box.stb('Stop');
            } else {
                Box.player('stop');
            }
        },
        togglePause: function () {
            var paused = Player.state() === states.paused;
            if (route === 'gSTB') {
                Box.stb(paused ? 'Continue' : 'Pause');
            } else {
                Box.player(paused ? 'resume' : 'pause');
            }
        },
        /* Moves by some seconds, negative ones back; within the medium, and never in a live one. */
        seekBy: function (seconds) {
            var length = Player.length();
            var target = Math.max(0, Player.position() + seconds);
            if (entry && !entry.live) {
                Box.stb('SetPosTime', length > 0 ? Math.min(length, target) : target);
            }
        },
        position: function () {
            return Box.stb('GetPosTime') || 0;
        },
        /* 0 where there is no length. */
        length: function () {
            return entry && entry.live ? 0 : Box.stb('GetMediaLen') || 0;
        },
        /* The video window in px of a 1280 px wide screen; null is the full screen. */
        setWindow: function (place) {
            if (!entry) {
                return;
            }
            if (!place) {
                Box.stb('SetPIG', 1, 0, 0, 0);
            } else if (route === 'gSTB') {
                Box.stb('SetViewport', place.width, place.height, place.x, place.y);
            } else {
                Box.player('setViewport', place, place);
            }
        }
    };
}());
