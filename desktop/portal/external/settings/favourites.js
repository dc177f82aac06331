// SPDX-License-Identifier: Apache-2.0
/*
 * The page that chooses the favourite entry. The focus is the document's own, since the box looks
 * for the focused element when OK is pressed.
 */
(function () {
    'use strict';

    var favourite = document.getElementById('favourite');
    var autostart = document.getElementById('autostart');
    var state = document.getElementById('state');
    var closeButton = document.getElementById('close');
    var controls = [favourite, autostart, closeButton];

    function fill() {
        var values = Settings.read();
        Entries.forEach(function (entry) {
            var option = document.createElement('option');
            option.value = Settings.withoutBlanks(entry.title);
            option.textContent = entry.title;
            option.selected = option.value === values.favourite;
            favourite.appendChild(option);
        });
        autostart.checked = values.favourite_autostart === 'yes';
    }

    function save() {
        var kept = Settings.save({
            favourite: favourite.value,
            favourite_autostart: autostart.checked ? 'yes' : 'no'
        });
        state.className = 'state_text ' + (kept ? 'good' : 'bad');
        state.textContent = kept ? 'Saved.' : 'Not kept: no box, or no portal announced to it yet.';
    }

    function close() {
        if (Box.isPresent()) {
            Box.webWindow('close');
        } else {
            window.history.back();
        }
    }

    function moveFocus(by) {
        var index = controls.indexOf(document.activeElement) + by;
        controls[Math.max(0, Math.min(index, controls.length - 1))].focus();
    }

    /* In an ordinary browser OK reaches the page. */
    function choose() {
        if (document.activeElement === autostart) {
            autostart.checked = !autostart.checked;
            save();
        } else if (document.activeElement === closeButton) {
            close();
        }
    }

    var handlers = {};
    handlers[key.UP] = function () {
        moveFocus(-1);
    };
    handlers[key.DOWN] = function () {
        moveFocus(1);
    };
    handlers[key.OK] = choose;
    handlers[key.BACK] = close;
    handlers[key.ESCAPE] = close;

    document.addEventListener('keydown', function (event) {
        if (handlers[event.keyCode] && !event.altKey && !event.ctrlKey) {
            event.preventDefault();
            handlers[event.keyCode]();
        }
    });
    favourite.addEventListener('change', save);
    autostart.addEventListener('change', save);
    closeButton.addEventListener('click', close);

    fill();
    favourite.focus();
}());
