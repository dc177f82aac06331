// SPDX-License-Identifier: Apache-2.0
/* Volume 0 to 100 and mute, with a panel that shows them for a moment. */
var Volume = (function () {
    'use strict';

    var hideTimer = 0;

    function show() {
        var volume = Box.stb('GetVolume') || 0;
        var muted = Box.stb('GetMute') === 1;
        var text = Box.isPresent() ? 'Volume ' + volume : 'No box, no sound';
        document.getElementById('volumeText').textContent = muted ? 'Sound off' : text;
        document.getElementById('volumeLevel').style.width = (muted ? 0 : volume) + '%';
        document.body.classList.add('volume_shown');
        clearTimeout(hideTimer);
        hideTimer = setTimeout(function () {
            document.body.classList.remove('volume_shown');
        }, 2000);
    }

    return {
        changeBy: function (amount) {
            var volume = (Box.stb('GetVolume') || 0) + amount;
            Box.stb('SetMute', 0);
            Box.stb('SetVolume', Math.max(0, Math.min(100, volume)));
            show();
        },
        toggleMute: function () {
            Box.stb('SetMute', Box.stb('GetMute') === 1 ? 0 : 1);
            show();
        }
    };
}());
