// SPDX-License-Identifier: Apache-2.0
/*
 * Shows the plain TV background again, so that the video is covered.
 */
function hide_hole() {
    var withHole = document.getElementById('hole_bg');
    var plain = document.getElementById('ori_bg');
    if (document.querySelector('div.layer_bg#tv') &&
        document.querySelector('div.tv_prev_window') && withHole && plain) {
        withHole.style.display = 'none';
        plain.style.display = 'block';
    } else {
        // hole() does this once it has found the TV layer.
        hole.shown = false;
    }
}

hide_hole();
