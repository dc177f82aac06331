/* Starts the portal: scale, clock, mouse, the first page, and ?autoplay=1. */
(function () {
    'use strict';

    var designHeight = 720;
    var designRem = 20;

    function scale() {
        var size = designRem * window.innerHeight / designHeight;
        document.documentElement.style.fontSize = size + 'px';
    }

    function showClock() {
        document.getElementById('clock').textContent = EventLog.clock(new Date()).substr(0, 5);
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

    function autoplay() {
        Player.play(Entries[0]);
        if (Player.entry()) {
            Pager.open('video');
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
    showClock();
    EventLog.show(true);
    Pager.open('menu');
    Box.stb('InitPlayer');
    if (/[?&]autoplay=1/.test(window.location.search)) {
        autoplay();
    }
    PlayerBar.update();
    setInterval(function () {
        showClock();
        PlayerBar.update();
    }, 1000);
}());
