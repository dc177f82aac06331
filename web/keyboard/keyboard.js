// SPDX-License-Identifier: Apache-2.0
/**
 * The keyboard itself: its state, and what the viewer's keys do to it.
 *
 * The view never has the window system's focus, since the portal must keep its focused field;
 * keys are taken from the document and the focus is a state of this page's own.
 */
(function () {
    'use strict';

    var DIRECTIONS = { 37: 'left', 38: 'up', 39: 'right', 40: 'down' };
    var OK = 13;
    var BACKSPACE = 8;
    var ESCAPE = 27;

    // One press shifts the next letter, a second one all that follow, a third one none.
    var NEXT_SHIFT = { off: 'once', once: 'lock', lock: 'off' };

    var layouts = LayoutChoice.choose(Box.layoutText());
    var current = 0;
    var page = 'letters';
    var shift = 'off';
    var rows = [];
    var focus;

    /** Shows the keys for the present state; the focus stays where it is on the keyboard. */
    function refresh() {
        rows = Keys.rows({
            layout: layouts[current],
            nextLayout: layouts[(current + 1) % layouts.length],
            page: page,
            shift: shift
        });
        View.show(rows);
        if (focus) {
            focus.column = Navigation.nearest(rows[focus.row], focus.goal);
            View.setFocus(focus.row, focus.column);
        }
    }

    function focusOn(position) {
        focus = position;
        View.setFocus(focus.row, focus.column);
    }

    var actions = {
        shift: function () {
            shift = NEXT_SHIFT[shift];
            refresh();
        },
        page: function () {
            page = page === 'letters' ? 'symbols' : 'letters';
            refresh();
        },
        layout: function () {
            current = (current + 1) % layouts.length;
            page = 'letters';
            refresh();
        },
        close: Box.close
    };

    /** Does what the focused key stands for. */
    function press() {
        var key = rows[focus.row][focus.column];
        if (key.action) {
            actions[key.action]();
        } else {
            Box.send(key.send, key.id);
            if (shift === 'once' && key.kind === 'char') {
                shift = 'off';
                refresh();
            }
        }
        View.flash();
    }

    document.addEventListener('keydown', function (event) {
        if (DIRECTIONS[event.keyCode]) {
            focusOn(Navigation.move(rows, focus, DIRECTIONS[event.keyCode]));
        } else if (event.keyCode === OK) {
            press();
        } else if (event.keyCode === BACKSPACE || event.keyCode === ESCAPE) {
            Box.close();
        } else {
            return;
        }
        event.preventDefault();
    });

    // Digits of the remote control, and the letters of a keyboard attached to the box.
    document.addEventListener('keypress', function (event) {
        var text = String.fromCharCode(event.charCode);
        var control = event.charCode < 32 || event.charCode === 127;
        if (control || event.ctrlKey || event.altKey || event.metaKey) {
            return;
        }
        event.preventDefault();
        // The portal's side cannot receive a single quote.
        if (text !== '\'') {
            Box.send(text === ' ' ? 'Space' : text, 'typed');
        }
    });

    // A press of the mouse must not begin a selection of the labels.
    document.addEventListener('mousedown', function (event) {
        event.preventDefault();
    });

    document.addEventListener('click', function (event) {
        var hit = View.keyAt(event);
        if (hit) {
            focusOn(Navigation.at(rows, hit.row, hit.column));
            press();
        }
    });

    /** Places the keyboard away from the focused field. */
    function place() {
        var size = Box.screenSize();
        var geometry = Placement.place(size, Box.focusedField(), Placement.size(size));
        View.setGeometry(geometry, !Box.hasView());
        Box.setGeometry(geometry);
    }

    place();
    refresh();
    // The middle of the letters, from where every key is near.
    focusOn(Navigation.at(rows, 2, 5));
}());
