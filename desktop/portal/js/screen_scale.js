// SPDX-License-Identifier: Apache-2.0
/*
 * Boxes have screens of 720, 1080 or more lines, and pages of this portal are drawn once for all
 * of them: 64 rem wide and 36 rem high. Here a rem gets its size, so that the whole page is seen;
 * on a screen that is not 16:9 the style sheet centres it.
 */
(function () {
    'use strict';

    var remsAcross = 64;
    var remsDown = 36;

    function fit() {
        var rem = Math.min(window.innerWidth / remsAcross, window.innerHeight / remsDown);
        document.documentElement.style.fontSize = rem + 'px';
    }

    fit();
    window.addEventListener('resize', fit);
}());
