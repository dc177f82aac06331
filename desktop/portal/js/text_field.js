// SPDX-License-Identifier: Apache-2.0
/*
 * Typing into one input element at a time. On the box it opens the on-screen keyboard, which then
 * gets all keys. Its Enter key and Back close it through gSTB, which can be asked; its own close key
 * tells nobody, but the next key that reaches this page proves that it is gone.
 */
var TextField = (function () {
    'use strict';

    // Until the keyboard's page has loaded, keys still arrive here; they are meant for it.
    var loadingMs = 1000;
    var pollMs = 300;
    var backspace = 8;
    var escape = 27;
    var input = null;
    var accepted = null;
    var openedAt = 0;
    var timer = 0;

    function release() {
        var left = input;
        clearInterval(timer);
        input = null;
        left.blur();
        document.body.focus();
    }

    /* The keyboard has closed itself: the text is complete. */
    function accept() {
        var notify = accepted;
        release();
        notify();
    }

    function watch() {
        if (Box.stb('IsVirtualKeyboardActive') === false) {
            accept();
        }
    }

    function finish() {
        if (!input) {
            return;
        }
        release();
        // After its own close key the box still counts the keyboard as open.
        if (Box.stb('IsVirtualKeyboardActive')) {
            Box.stb('HideVirtualKeyboard');
        }
    }

    /* True for a key that leaves the field rather than being text for it. */
    function leaves(event) {
        var back = event.keyCode === escape || event.keyCode === backspace && Box.isPresent();
        return back || event.altKey || event.ctrlKey || event.keyCode === key.OK ||
            event.keyCode === key.UP || event.keyCode === key.DOWN;
    }

    return {
        /* Types into the element from now on; onAccepted() is called when Enter ends that. */
        edit: function (element, onAccepted) {
            if (input) {
                release();
            }
            input = element;
            accepted = onAccepted;
            openedAt = Date.now();
            input.focus();
            input.setSelectionRange(input.value.length, input.value.length);
            if (Box.isPresent()) {
                Box.stb('ShowVirtualKeyboard');
                timer = setInterval(watch, pollMs);
            }
        },
        /* Ends typing, if any, and puts the keyboard away. */
        finish: finish,
        /* True when a key belongs to the field; one that leaves it ends typing and goes on. */
        takes: function (event) {
            if (!input) {
                return false;
            }
            if (Box.isPresent() && Date.now() - openedAt < loadingMs) {
                event.preventDefault();
                return true;
            }
            if (!Box.isPresent() && event.keyCode === key.OK) {
                event.preventDefault();
                accept();
                return true;
            }
            if (leaves(event)) {
                finish();
                return false;
            }
            return true;
        }
    };
}());
