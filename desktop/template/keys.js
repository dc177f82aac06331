// SPDX-License-Identifier: Apache-2.0
/* The keys of the remote, as the page gets them. The colours come with Ctrl, play and stop with Alt. */
var Keys = (function () {
    'use strict';

    var OK = 13;
    var UP = 38;
    var DOWN = 40;
    var RED = 112;
    var actions = {};

    document.addEventListener('keydown', function (event) {
        var action = {};
        action[OK] = actions.ok;
        action[UP] = actions.up;
        action[DOWN] = actions.down;
        action[window.key.BACK] = action[window.key.EXIT] = actions.back;
        action[RED] = actions.red;
        if (!event.altKey && action[event.keyCode]) {
            action[event.keyCode]();
            event.preventDefault();
        }
    });

    return {
        /* Functions by the names ok, up, down, back and red. */
        set: function (functions) {
            actions = functions;
        }
    };
}());
