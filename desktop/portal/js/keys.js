// SPDX-License-Identifier: Apache-2.0
/*
 * Keys of the remote control. Colour keys arrive as Ctrl+F1 to Ctrl+F4 and the media keys as
 * letters with Alt; an ordinary browser sends the plain function keys.
 */
(function () {
    'use strict';

    var colourKeys = {112: 'toggleLog', 113: 'toggleRoute', 114: 'openTracks', 115: 'toggleFullScreen'};
    var altKeys = {
        82: 'togglePause', // R
        83: 'stop', // S
        66: 'seekBack', // B
        70: 'seekForward', // F
        89: 'toggleFullScreen', // Y, the Info key
        76: 'openTracks', // L
        71: 'openKeys', // G
        96: 'toggleMute',
        192: 'toggleMute'
    };
    var plainKeys = {107: 'volumeUp', 109: 'volumeDown', 187: 'volumeUp', 189: 'volumeDown'};
    var channelKey = 9;
    // The box sets key.EXIT to this for the first portal only; later ones get the key all the same.
    var escape = 27;

    function actionOf(event) {
        if (event.altKey) {
            return altKeys[event.keyCode];
        }
        if (event.keyCode === channelKey) {
            return event.shiftKey ? 'previous' : 'next';
        }
        return colourKeys[event.keyCode] || plainKeys[event.keyCode];
    }

    /* True when the key did something or would do harm if the engine took it. */
    function handle(event) {
        var action = actionOf(event);
        if (action) {
            Actions.run(action);
            return true;
        }
        if (event.altKey || event.ctrlKey) {
            return false;
        }
        if (event.keyCode === key.BACK || event.keyCode === key.EXIT ||
                event.keyCode === escape) {
            Pager.back();
            return true;
        }
        return Pager.key(event.keyCode);
    }

    document.addEventListener('keydown', function (event) {
        if (!TextField.takes(event) && handle(event)) {
            event.preventDefault();
            PlayerBar.update();
        }
    });
}());
