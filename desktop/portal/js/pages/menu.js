/* The main menu: the entries, the preview and a row of buttons. */
(function () {
    'use strict';

    var screenWidth = 1280;
    var buttons = [
        {label: '-10 s', action: 'seekBack'},
        {label: 'Pause', action: 'togglePause'},
        {label: '+10 s', action: 'seekForward'},
        {label: 'Stop', action: 'stop'},
        {label: 'Vol -', action: 'volumeDown'},
        {label: 'Vol +', action: 'volumeUp'},
        {label: 'Mute', action: 'toggleMute'}
    ];
    var entryList = Focus.list('entryList', renderEntry, chooseEntry);
    var buttonRow = Focus.list('buttonRow', renderButton, chooseButton);

    function renderEntry(item, entry) {
        var title = document.createElement('b');
        var note = document.createElement('small');
        title.textContent = entry.title;
        note.textContent = entry.note;
        item.appendChild(title);
        item.appendChild(note);
    }

    function renderButton(item, button) {
        item.className = 'button';
        item.textContent = button.label;
    }

    /* The first choice plays in the preview, the second opens the full screen. */
    function chooseEntry(entry) {
        if (Player.entry() === entry) {
            Pager.open('video');
            return;
        }
        Player.play(entry);
        placePreview();
        markPlaying();
    }

    function chooseButton(button) {
        Actions.run(button.action);
    }

    /* Puts the video where the page leaves it open. */
    function placePreview() {
        var rect = document.getElementById('preview').getBoundingClientRect();
        var scale = screenWidth / window.innerWidth;
        Player.setWindow({
            x: Math.round(rect.left * scale),
            y: Math.round(rect.top * scale),
            width: Math.round(rect.width * scale),
            height: Math.round(rect.height * scale)
        });
    }

    function markPlaying() {
        entryList.items.forEach(function (item, index) {
            var plays = entryList.data[index] === Player.entry();
            item.classList[plays ? 'add' : 'remove']('playing');
        });
    }

    function keyInButtons(code) {
        if (code === key.UP) {
            Focus.activate(entryList);
        } else if (code === key.RIGHT) {
            Focus.move(buttonRow, 1);
        } else if (code === key.LEFT && !Focus.move(buttonRow, -1)) {
            Focus.activate(entryList);
        } else if (code === key.OK) {
            Focus.choose(buttonRow);
        }
    }

    function keyInList(code) {
        if (code === key.UP) {
            Focus.move(entryList, -1);
        } else if (code === key.DOWN) {
            Focus.move(entryList, 1);
        } else if (code === key.RIGHT) {
            Focus.activate(buttonRow);
        } else if (code === key.OK) {
            Focus.choose(entryList);
        }
    }

    Focus.fill(entryList, Entries);
    Focus.fill(buttonRow, buttons);
    stbEvent.listen(markPlaying);

    Pager.register('menu', {
        element: document.querySelector('.main_menu'),
        open: function () {
            if (!Focus.isActive(buttonRow)) {
                Focus.activate(entryList);
            }
            if (Player.entry()) {
                placePreview();
            }
            markPlaying();
        },
        key: function (code) {
            if (Focus.isActive(buttonRow)) {
                keyInButtons(code);
            } else {
                keyInList(code);
            }
            return true;
        }
    });
}());
