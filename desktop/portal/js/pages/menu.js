// SPDX-License-Identifier: Apache-2.0
/* The main menu: the entries, the tiles of the other pages, the preview and a row of buttons. */
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
    var tiles = [
        {glyph: '\u2315', label: 'Search', action: 'openSearch'},
        {glyph: '\u25a4', label: 'Media', action: 'openMedia'},
        {glyph: '\u25cf', label: 'Recordings', action: 'openRecordings'},
        {glyph: '\u2605', label: 'Favourites', action: 'openFavourites'},
        {glyph: '\u266a', label: 'Tracks', action: 'openTracks'},
        {glyph: '\u2699', label: 'Settings', action: 'openSettings'},
        {glyph: '\u2139', label: 'Device', action: 'openDevice'},
        {glyph: '\u2328', label: 'Keys', action: 'openKeys'}
    ];
    var tileColumns = 4;
    var tileGrid = Focus.list('tileGrid', renderTile, chooseButton);
    var entryList = Focus.list('entryList', renderEntry, chooseEntry);
    var buttonRow = Focus.list('buttonRow', renderButton, chooseButton);
    var lastList = entryList;

    function renderEntry(item, entry) {
        Rows.text(item, entry.title, entry.note);
    }

    function renderTile(item, tile) {
        item.className = 'tile';
        Rows.add(item, 'span', 'glyph', tile.glyph);
        Rows.add(item, 'span', '', tile.label);
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
        } else if (code === key.DOWN && !Focus.move(entryList, 1)) {
            Focus.activate(tileGrid);
        } else if (code === key.RIGHT) {
            Focus.activate(buttonRow);
        } else if (code === key.OK) {
            Focus.choose(entryList);
        }
    }

    function keyInTiles(code) {
        var atRowEnd = tileGrid.index % tileColumns === tileColumns - 1;
        if (code === key.UP && !Focus.move(tileGrid, -tileColumns)) {
            Focus.activate(entryList);
        } else if (code === key.DOWN) {
            Focus.move(tileGrid, tileColumns);
        } else if (code === key.LEFT && tileGrid.index % tileColumns > 0) {
            Focus.move(tileGrid, -1);
        } else if (code === key.RIGHT && atRowEnd) {
            Focus.activate(buttonRow);
        } else if (code === key.RIGHT) {
            Focus.move(tileGrid, 1);
        } else if (code === key.OK) {
            Focus.choose(tileGrid);
        }
    }

    Focus.fill(tileGrid, tiles);
    Focus.fill(entryList, Entries);
    Focus.fill(buttonRow, buttons);
    stbEvent.listen(markPlaying);

    Pager.register('menu', {
        element: document.querySelector('.main_menu'),
        open: function () {
            // Back where the viewer left for another page.
            Focus.activate(lastList);
            if (Player.entry()) {
                placePreview();
            }
            markPlaying();
        },
        close: function () {
            lastList = [tileGrid, buttonRow].filter(Focus.isActive)[0] || entryList;
        },
        key: function (code) {
            if (Focus.isActive(buttonRow)) {
                keyInButtons(code);
            } else if (Focus.isActive(tileGrid)) {
                keyInTiles(code);
            } else {
                keyInList(code);
            }
            return true;
        }
    });
}());
