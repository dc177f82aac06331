// SPDX-License-Identifier: Apache-2.0
/*
 * From the keys of the remote control to actions. Colour keys arrive as Ctrl+F1 to Ctrl+F4 and the
 * media keys as letters with Alt; an ordinary browser sends the plain function keys.
 */
(function () {
    'use strict';

    var plainKeys = {};
    var altKeys = {};

    plainKeys[key.RED] = 'toggleLog';
    plainKeys[key.GREEN] = 'toggleRoute';
    plainKeys[key.YELLOW] = 'openTracks';
    plainKeys[key.BLUE] = 'toggleFullScreen';
    plainKeys[key.VOLUME_UP] = plainKeys[key.PLUS] = 'volumeUp';
    plainKeys[key.VOLUME_DOWN] = plainKeys[key.MINUS] = 'volumeDown';
    plainKeys[key.FAVOURITES] = 'openFavourites';
    altKeys[key.PLAY_PAUSE] = 'togglePause';
    altKeys[key.STOP] = 'stop';
    altKeys[key.REWIND] = 'seekBack';
    altKeys[key.FORWARD] = 'seekForward';
    altKeys[key.INFO] = 'toggleFullScreen';
    altKeys[key.AUDIO] = 'openTracks';
    altKeys[key.HELP] = 'openKeys';
    altKeys[key.MUTE] = altKeys[key.MUTE_KEY] = 'toggleMute';

    function actionOf(event) {
        if (event.altKey) {
            return altKeys[event.keyCode];
        }
        if (event.keyCode === key.CHANNEL) {
            return event.shiftKey ? 'previous' : 'next';
        }
        // With Ctrl the box says that it goes to stand-by.
        if (event.keyCode === key.FAVOURITES && event.ctrlKey) {
            return undefined;
        }
        return plainKeys[event.keyCode];
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
                event.keyCode === key.ESCAPE) {
            Pager.back();
            return true;
        }
        return Pager.key(event.keyCode);
    }

    document.addEventListener('keydown', function (event) {
        if (!TextField.takes(event) && handle(event)) {
            event.preventDefault();
            PlayerBar.updateTwice();
        }
    });
}());
