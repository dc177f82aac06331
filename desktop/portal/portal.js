// SPDX-License-Identifier: Apache-2.0
/* Starts the portal: scale, clock, mouse, settings, the first page, and what plays at once. */
(function () {
    'use strict';

    var designHeight = 720;
    var designRem = 20;

    function scale() {
        var size = designRem * window.innerHeight / designHeight;
        document.documentElement.style.fontSize = size + 'px';
    }

    function showClock() {
        var now = new Date();
        var hours = now.getHours();
        var minutes = EventLog.clock(now).substr(2, 3);
        document.getElementById('clock').textContent = Settings.value('clock_format') === '12h' ?
            (hours % 12 || 12) + minutes + (hours < 12 ? ' am' : ' pm') : hours + minutes;
    }

    function showSettings() {
        document.getElementById('portalName').textContent =
            Settings.value('portal_name') || 'demo portal';
        showClock();
    }

    function showBoxState() {
        var badge = document.getElementById('boxState');
        badge.textContent = Box.isPresent() ? 'box connected' : 'no box: nothing will play';
        badge.className = Box.isPresent() ? 'badge good' : 'badge bad';
    }

    function connectMouse() {
        document.addEventListener('click', function (event) {
            var element = event.target;
            while (element && element.getAttribute) {
                if (element.getAttribute('data-action')) {
                    Actions.run(element.getAttribute('data-action'));
                    return;
                }
                element = element.parentNode;
            }
        });
        document.getElementById('preview').addEventListener('click', function () {
            Actions.run('toggleFullScreen');
        });
    }

    function autoplay(entry) {
        Video.play(entry);
        if (Player.entry()) {
            PlayerBar.show(true);
        }
    }

    scale();
    // Without a focused element the engine delivers the Tab of the channel keys twice.
    document.body.focus();
    window.addEventListener('resize', scale);
    connectMouse();
    document.getElementById('routeName').textContent = Player.route();
    showBoxState();
    Settings.listen(showSettings);
    Settings.read();
    showSettings();
    EventLog.show(true);
    Pager.open('menu');
    Box.stb('InitPlayer');
    if (/[?&]autoplay=1/.test(window.location.search)) {
        autoplay(Entries[0]);
    } else if (Favourites.startsPlaying()) {
        autoplay(Favourites.entry());
    }
    PlayerBar.update();
    setInterval(function () {
        showClock();
        PlayerBar.update();
    }, 1000);
}());
