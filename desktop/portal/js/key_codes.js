// SPDX-License-Identifier: Apache-2.0
/*
 * What the keys of the remote control are as key codes in a page. The box itself looks for the
 * names EXIT and BACK here: when a portal calls gSTB.InitPlayer(), it sets EXIT to 27.
 */
var key = {
    EXIT: 8, BACK: 8, OK: 13, LEFT: 37, UP: 38, RIGHT: 39, DOWN: 40,
    /* Tab; with Shift it is channel down. */
    CHANNEL: 9,
    /* Back as it arrives in a page that is not the first portal. */
    ESCAPE: 27,
    /* These arrive with Ctrl. */
    RED: 112, GREEN: 113, YELLOW: 114, BLUE: 115,
    /* These arrive with Alt, as the letters R, S, B, F, Y, L and G. */
    PLAY_PAUSE: 82, STOP: 83, REWIND: 66, FORWARD: 70, INFO: 89, AUDIO: 76, HELP: 71,
    /* With Alt as well; the code that the box sends, and a keyboard's own for the same key. */
    MUTE: 96, MUTE_KEY: 192,
    /* Plain keys: on the number pad, and beside Backspace. */
    VOLUME_UP: 107, VOLUME_DOWN: 109, PLUS: 187, MINUS: 189,
    FAVOURITES: 122
};
