// SPDX-License-Identifier: Apache-2.0
/* The box's objects, each call guarded: in an ordinary browser they are absent. */
var Box = (function () {
    'use strict';

    var absent = null;

    function object(name) {
        return typeof window[name] === 'undefined' ? absent : window[name];
    }

    /* Calls name of the object with the arguments; undefined where there is none. */
    function call(target, name, args) {
        if (!target || typeof target[name] === 'undefined') {
            return undefined;
        }
        try {
            return target[name].apply(target, args);
        } catch (error) {
            EventLog.add('!', name + ': ' + error);
            return undefined;
        }
    }

    /* JSON text from the box; fallback where it is empty or broken. */
    function parse(text, fallback) {
        try {
            return JSON.parse(text);
        } catch (error) {
            return fallback;
        }
    }

    return {
        isPresent: function () {
            return object('gSTB') !== absent;
        },
        /* gSTB's method of this name with the further arguments. */
        stb: function (name) {
            return call(object('gSTB'), name, Array.prototype.slice.call(arguments, 1));
        },
        /* The player object's method of this name with the further arguments. */
        player: function (name) {
            return call(object('stbPlayer'), name, Array.prototype.slice.call(arguments, 1));
        },
        /* pvrManager's method of this name with the further arguments. */
        recordings: function (name) {
            return call(object('pvrManager'), name, Array.prototype.slice.call(arguments, 1));
        },
        /* stbWindowMgr's method of this name with the further arguments. */
        windows: function (name) {
            return call(object('stbWindowMgr'), name, Array.prototype.slice.call(arguments, 1));
        },
        /* stbWebWindow's method of this name with the further arguments. */
        webWindow: function (name) {
            return call(object('stbWebWindow'), name, Array.prototype.slice.call(arguments, 1));
        },
        parse: parse,
        /* 0 stopped, 1 starting, 2 playing, 3 paused. */
        playState: function () {
            var player = object('stbPlayer');
            return player && typeof player.state === 'number' ? player.state : 0;
        },
        /* A list that the box gives as JSON text; [] where it has none. */
        list: function (name) {
            var value = parse(Box.stb(name), []);
            return value instanceof Array ? value : [];
        }
    };
}());
