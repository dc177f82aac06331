// SPDX-License-Identifier: Apache-2.0
/*
 * Besides key, the globals that the box's own scripts use: it reads stb and module before it
 * translates the channel keys, changes stb.profile, and reports events through stbEvent and _debug.
 * Each page that can be on top needs them, or gets a script error instead of an event.
 */
var stb = {
    player: {active_time_shift: false},
    profile: {},
    /* 'tv' where the channel keys are to arrive as Tab and Shift+Tab. */
    cur_place: 'main_menu'
};

var module = {
    tv: {
        dom_obj: {
            /* False while a menu lies over the TV picture, which then keeps the channel keys. */
            isHidden: function () {
                return stb.cur_place === 'tv';
            }
        }
    }
};

/* What the box's scripts have to say is for developers: it goes to the box's log. */
function _debug() {
    Box.stb('Debug', Array.prototype.slice.call(arguments).join(' '));
}

var stbEvent = (function () {
    'use strict';

    var meanings = {
        '1': 'playback ended',
        '4': 'playback started',
        '7': 'audio tracks changed',
        '9': 'subtitle tracks changed',
        '34': 'recording finished',
        '35': 'recording failed',
        '39': 'recording started'
    };
    var listeners = [];
    var messageListeners = [];

    /* Events of recordings come with JSON text, as {"id":5}. */
    function taskOf(params) {
        var id = Box.parse(params, {}).id;
        return id === undefined ? '' : ', task ' + id;
    }

    return {
        /* The last code. */
        event: 0,
        onEvent: function (code, params) {
            stbEvent.event = Number(code);
            EventLog.add(String(code), (meanings[code] || 'unknown event') + taskOf(params));
            listeners.forEach(function (listener) {
                listener(Number(code), params);
            });
        },
        onBroadcastMessage: function (windowId, message) {
            EventLog.add('msg', message + ' (window ' + windowId + ')');
            messageListeners.forEach(function (listener) {
                listener(message);
            });
        },
        /* listener(code, params) hears every event from now on. */
        listen: function (listener) {
            listeners.push(listener);
        },
        /* listener(message) hears every message from now on, as "storage.mount". */
        listenToMessages: function (listener) {
            messageListeners.push(listener);
        }
    };
}());
