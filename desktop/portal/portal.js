// SPDX-License-Identifier: Apache-2.0
/* Starts the portal: settings, the first page, the player, and what plays at once. */
(function () {
    'use strict';

    function showName() {
        document.getElementById('portalName').textContent =
            Settings.value('portal_name') || 'demo portal';
    }

    function showBoxState() {
        var badge = document.getElementById('boxState');
        badge.textContent = Box.isPresent() ? 'box connected' : 'no box: nothing will play';
        badge.className = Box.isPresent() ? 'badge good' : 'badge bad';
    }

    function autoplay(entry) {
        Video.play(entry);
        if (Player.entry()) {
            PlayerBar.show(true);
        }
    }

    // Without a focused element the engine delivers the Tab of the channel keys twice.
    document.body.focus();
    document.getElementById('routeName').textContent = Player.route();
    showBoxState();
    Settings.listen(showName);
    Settings.read();
    EventLog.show();
    Pager.open('menu');
    Box.stb('InitPlayer');
    if (/[?&]autoplay=1/.test(window.location.search)) {
        autoplay(Entries[0]);
    } else if (Favourites.startsPlaying()) {
        autoplay(Favourites.entry());
    }
    PlayerBar.update();
    setInterval(function () {
        Clock.show();
        PlayerBar.update();
    }, 1000);
}());
