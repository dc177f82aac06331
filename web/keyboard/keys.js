// SPDX-License-Identifier: Apache-2.0
/**
 * The keys of one page of the keyboard: what each shows, sends and does, and where it lies.
 *
 * A key has
 *   id      its name; lower case, and free of quotes and backslashes, since the receiving side
 *           puts it into a script text unescaped
 *   label   what it shows
 *   kind    "char", "special" or "space", for the style sheet
 *   send    the text for the portal, or
 *   action  what this page does itself: "shift", "page", "layout" or "close"
 *   on      set while the state behind the key is: "once" or "lock" (shift), "page" (symbols)
 *   x, w    left edge and width, in columns
 */
var Keys = (function () {
    'use strict';

    /** Width of the whole keyboard in columns: the characters and the column of special keys. */
    var COLUMNS = Layouts.columns + 2;

    var SHIFT_LABELS = { off: '⇧', once: '⬆', lock: '⇪' };

    /** A name for a character key: the character itself, or its code where that is unsafe. */
    function charId(text) {
        if (text.length > 1) {
            return text.replace(/[^a-z]/g, '');
        }
        if (/[0-9]/.test(text) || text.toLowerCase() !== text.toUpperCase()) {
            return text;
        }
        return 'u' + ('000' + text.charCodeAt(0).toString(16)).slice(-4);
    }

    /** The character a letter key gives, shifted or not. */
    function shifted(text, state) {
        if (state.shift === 'off' || text.length > 1) {
            return text;
        }
        return Layouts.letters[state.layout].upper[text] || text.toUpperCase();
    }

    function charKey(text, state) {
        var given = shifted(text, state);
        return {
            id: charId(text), label: given, kind: 'char', send: given, w: text.length > 1 ? 2 : 1
        };
    }

    function sendKey(id, label, text, width) {
        return { id: id, label: label, kind: 'special', send: text, w: width };
    }

    function actionKey(id, label, action, width) {
        return { id: id, label: label, kind: 'special', action: action, w: width };
    }

    /** The special keys at the right end of the four character rows, top to bottom. */
    function rightColumn(state) {
        var symbols = state.page === 'symbols';
        var letters = Layouts.letters[state.layout].abc;
        var page = actionKey('page', symbols ? letters : '?#&', 'page', 2);
        var shift = actionKey('shift', SHIFT_LABELS[state.shift], 'shift', 2);
        if (symbols) {
            page.on = 'page';
        }
        if (state.shift !== 'off') {
            shift.on = state.shift;
        }
        return [
            sendKey('backspace', '⌫', 'BackSpace', 2),
            page,
            sendKey('enter', '↵', 'Enter', 2),
            shift
        ];
    }

    /** The row below the characters. */
    function bottomRow(state) {
        var space = sendKey('space', Layouts.letters[state.layout].title, 'Space', 6);
        space.kind = 'space';
        return [
            actionKey('close', '✕', 'close', 2),
            actionKey('layout', '⇄ ' + state.nextLayout.toUpperCase(), 'layout', 2),
            space,
            sendKey('start', '⇤', 'Up', 1),
            sendKey('left', '←', 'Left', 1),
            sendKey('right', '→', 'Right', 1),
            sendKey('end', '⇥', 'Down', 1)
        ];
    }

    /** Gives every key of a row its left edge. */
    function laidOut(row) {
        var x = 0;
        row.forEach(function (key) {
            key.x = x;
            x += key.w;
        });
        return row;
    }

    /**
     * All rows of keys for a state with "layout" and "nextLayout" (names), "page" ("letters" or
     * "symbols") and "shift" ("off", "once" or "lock").
     */
    function rows(state) {
        var chars = state.page === 'symbols' ? Layouts.symbols
            : Layouts.letters[state.layout].rows;
        var right = rightColumn(state);
        var all = [Layouts.digits].concat(chars).map(function (line, at) {
            var row = line.split(' ').map(function (text) {
                return charKey(text, state);
            });
            return laidOut(row.concat(right[at]));
        });
        all.push(laidOut(bottomRow(state)));
        return all;
    }

    return { columns: COLUMNS, rows: rows };
}());
