// SPDX-License-Identifier: Apache-2.0
/**
 * The keyboard as the viewer sees it: the panel, its keys, and the highlight on the focused key.
 *
 * Each key element carries its id as "data-key", and its place as "data-row" and "data-column".
 */
var View = (function () {
    'use strict';

    // The panel's height in rem, to which all measures in the style sheet refer.
    var PANEL_REM = 30.4;

    // Long enough to be seen, short enough for quick typing.
    var FLASH_MS = 120;

    var panel = document.getElementById('panel');
    var elements = [];
    var focused = null;

    /** Sizes the panel; in a plain browser, which has no view to move, it is also moved here. */
    function setGeometry(g, moved) {
        document.documentElement.style.fontSize = g.h / PANEL_REM + 'px';
        panel.style.left = (moved ? g.x : 0) + 'px';
        panel.style.top = (moved ? g.y : 0) + 'px';
        panel.style.width = g.w + 'px';
        panel.style.height = g.h + 'px';
    }

    function keyElement(key, row, column) {
        var element = document.createElement('div');
        var cap = document.createElement('div');
        element.className = 'key ' + key.kind + (key.on ? ' on ' + key.on : '');
        element.style.left = key.x * 100 / Keys.columns + '%';
        element.style.width = key.w * 100 / Keys.columns + '%';
        element.setAttribute('data-key', key.id);
        element.setAttribute('data-row', row);
        element.setAttribute('data-column', column);
        cap.className = 'cap';
        cap.appendChild(document.createTextNode(key.label));
        element.appendChild(cap);
        return element;
    }

    /** Shows rows of keys in place of those shown before; no key has the focus then. */
    function show(rows) {
        panel.innerHTML = '';
        focused = null;
        elements = rows.map(function (keys, row) {
            var line = document.createElement('div');
            line.className = 'row';
            panel.appendChild(line);
            return keys.map(function (key, column) {
                return line.appendChild(keyElement(key, row, column));
            });
        });
    }

    /** Moves the highlight. */
    function setFocus(row, column) {
        if (focused) {
            focused.classList.remove('focused');
        }
        focused = elements[row][column];
        focused.classList.add('focused');
    }

    /** Shows for a moment that the focused key was pressed. */
    function flash() {
        var pressed = focused;
        pressed.classList.add('pressed');
        setTimeout(function () {
            pressed.classList.remove('pressed');
        }, FLASH_MS);
    }

    /** The {row, column} of the key that a mouse event hit, or null. */
    function keyAt(event) {
        var element = event.target;
        while (element && element !== panel) {
            if (element.getAttribute && element.hasAttribute('data-key')) {
                return {
                    row: Number(element.getAttribute('data-row')),
                    column: Number(element.getAttribute('data-column'))
                };
            }
            element = element.parentNode;
        }
        return null;
    }

    return { setGeometry: setGeometry, show: show, setFocus: setFocus, flash: flash, keyAt: keyAt };
}());
