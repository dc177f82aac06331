// SPDX-License-Identifier: Apache-2.0
/* The menu, and what the keys do in it. */
(function () {
    'use strict';

    // The clips are there on every desk; addresses of servers play as well.
    var entries = [
        {title: 'First light', address: '/media/demo/first.ts'},
        {title: 'Harbour at dusk', address: '/media/demo/harbour.ts'},
        {title: 'Countdown', address: '/media/demo/countdown.ts'}
    ];
    var chosen = 0;
    var list = document.getElementById('list');

    function show() {
        list.innerHTML = '';
        entries.forEach(function (entry, index) {
            var row = document.createElement('li');
            row.textContent = entry.title;
            row.className = index === chosen ? 'focus' : '';
            list.appendChild(row);
        });
    }

    function move(by) {
        chosen = (chosen + by + entries.length) % entries.length;
        show();
    }

    Keys.set({
        up: function () { move(-1); },
        down: function () { move(1); },
        ok: function () { Player.play(entries[chosen]); },
        back: Player.stop,
        red: function () {
            var events = document.getElementById('events');
            events.hidden = !events.hidden;
        }
    });
    show();
}());
