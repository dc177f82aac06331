// SPDX-License-Identifier: Apache-2.0
/*
 * The portal's settings as the box keeps them, one small file for each portal. Only texts are
 * kept, and a blank in one of them makes the whole file unreadable for the next reader.
 */
var Settings = (function () {
    'use strict';

    var names = ['language', 'timezone_conf', 'clock_format', 'portal_name', 'portal_note',
        'favourite', 'favourite_autostart', 'recordings_at_once', 'saved_at'];
    var values = {};
    var listeners = [];

    function withoutBlanks(text) {
        return text.replace(/\s/g, '_');
    }

    return {
        withoutBlanks: withoutBlanks,
        /* Asks the box and returns {name: text}; what was never saved has the box's default. */
        read: function () {
            values = Box.parse(Box.stb('GetEnv', JSON.stringify({varList: names})), {}).result || {};
            listeners.forEach(function (listener) {
                listener(values);
            });
            return values;
        },
        /* The value as last read; empty where there is none. */
        value: function (name) {
            return values[name] || '';
        },
        /*
         * Stores these texts, with blanks replaced, and reads them back. The box never reports a
         * failure; only a text of this moment that comes back shows that the file was written.
         */
        save: function (changed) {
            var stored = {saved_at: String(Date.now())};
            Object.keys(changed).forEach(function (name) {
                stored[name] = withoutBlanks(changed[name]);
            });
            Box.stb('SetEnv', JSON.stringify(stored));
            Settings.read();
            return values.saved_at === stored.saved_at;
        },
        /* listener(values) hears what each reading gave. */
        listen: function (listener) {
            listeners.push(listener);
        }
    };
}());
