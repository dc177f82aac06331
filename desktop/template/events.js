// SPDX-License-Identifier: Apache-2.0
/* What the box tells the portal: it calls the functions of stbEvent. */
var Events = (function () {
    'use strict';

    var handlers = {};

    function note(text) {
        var list = document.getElementById('events');
        var row = document.createElement('li');
        row.textContent = text;
        list.insertBefore(row, list.firstChild);
        while (list.childNodes.length > 12) {
            list.removeChild(list.lastChild);
        }
    }

    return {
        PLAY_END: '1',
        PLAY_START: '4',
        AUDIO_TRACKS: '7',
        SUBTITLE_TRACKS: '9',

        note: note,

        /* Calls the function whenever the event of this code comes. */
        on: function (code, handler) {
            handlers[code] = handler;
        },

        handle: function (code, params) {
            note('event ' + code + (params ? ' ' + params : ''));
            if (handlers[code]) {
                handlers[code](params);
            }
        }
    };
}());

// The box also uses these names of the page.
window.stb = {profile: {}};
window.key = {EXIT: 27, BACK: 8};
window._debug = function () {
    'use strict';
    Events.note(Array.prototype.join.call(arguments, ' '));
};
window.stbEvent = {
    onEvent: function (code, params) {
        'use strict';
        Events.handle(code, params);
    },
    onBroadcastMessage: function (id, message) {
        'use strict';
        Events.note('storage ' + message);
    }
};
