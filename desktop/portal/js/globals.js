// SPDX-License-Identifier: Apache-2.0
/*
 * The globals that the box's own scripts use: it reads stb and module before it translates the
 * channel keys, changes key and stb.profile, and reports events through stbEvent and _debug.
 */
var stb = {
    player: {active_time_shift: false},
    profile: {},
    cur_place: 'main_menu'
};

var key = {EXIT: 8, BACK: 8, OK: 13, LEFT: 37, UP: 38, RIGHT: 39, DOWN: 40};

var module = {
    tv: {
        dom_obj: {
            isHidden: function () {
                return Pager.current() === 'video';
            }
        }
    }
};

function _debug() {
    EventLog.add('debug', Array.prototype.slice.call(arguments).join(' '));
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

    return {
        /* The last code. */
        event: 0,
        onEvent: function (code, params) {
            var meaning = meanings[code] || 'unknown event';
            stbEvent.event = Number(code);
            EventLog.add(String(code), params ? meaning + ' ' + params : meaning);
            listeners.forEach(function (listener) {
                listener(Number(code), params);
            });
        },
        onBroadcastMessage: function (windowId, message) {
            EventLog.add('msg', message + ' (window ' + windowId + ')');
        },
        /* listener(code, params) hears every event from now on. */
        listen: function (listener) {
            listeners.push(listener);
        }
    };
}());
