// SPDX-License-Identifier: Apache-2.0
/**
 * The box behind the page. Every call is guarded, so that the page also opens in a plain browser,
 * where there is no box: questions are then answered with nothing and requests go nowhere.
 */
var Box = (function () {
    'use strict';

    /** Calls a method of one of the program's objects; undefined where there is none. */
    function call(objectName, method, args) {
        var object = window[objectName];
        if (!object || typeof object[method] !== 'function') {
            return undefined;
        }
        return object[method].apply(object, args);
    }

    /** True inside the program, where the page has a view of its own to move. */
    function hasView() {
        return Boolean(window.stbWebWindow);
    }

    /** The JSON text that names the layouts; empty without a box. */
    function layoutText() {
        return call('gSTB', 'LoadUserData', ['keyboard.json']) || '';
    }

    /** The focused field {x, y, w, h} in portal pixels; null when there is none that is usable. */
    function focusedField() {
        var field;
        try {
            field = JSON.parse(call('stbWindowMgr', 'GetFocusedInputInfo', [])).result;
        } catch (notJson) {
            return null;
        }
        if (!field || !isFinite(field.x + field.y + field.w + field.h)) {
            return null;
        }
        return { x: Number(field.x), y: Number(field.y), w: Number(field.w), h: Number(field.h) };
    }

    /** The screen {w, h}; the view is no measure of it, being as small as the keyboard. */
    function screenSize() {
        if (hasView() && screen.width > 0 && screen.height > 0) {
            return { w: screen.width, h: screen.height };
        }
        return { w: window.innerWidth, h: window.innerHeight };
    }

    function setGeometry(g) {
        call('stbWebWindow', 'SetGeometry', [g.x, g.y, g.w, g.h]);
    }

    /** Types a text, or one of the special key texts, into the portal's focused field. */
    function send(text, id) {
        call('stbWebWindow', 'SendVirtualKeypress', [text, id]);
    }

    /** Hides the keyboard, and nothing else: closing the window would close favourites as well. */
    function close() {
        call('gSTB', 'HideVirtualKeyboard', []);
    }

    return {
        hasView: hasView,
        layoutText: layoutText,
        focusedField: focusedField,
        screenSize: screenSize,
        setGeometry: setGeometry,
        send: send,
        close: close
    };
}());
