// SPDX-License-Identifier: Apache-2.0
/*
 * Shows the TV background with the hole, so that the video is seen.
 */
function show_hole() {
    var withHole = document.getElementById('hole_bg');
    var plain = document.getElementById('ori_bg');
    if (document.querySelector('div.layer_bg#tv') &&
        document.querySelector('div.tv_prev_window') && withHole && plain) {
        withHole.style.display = 'block';
        plain.style.display = 'none';
    } else {
        // hole() does this once it has found the TV layer.
        hole.shown = true;
    }
}

show_hole();
