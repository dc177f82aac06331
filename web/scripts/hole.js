// SPDX-License-Identifier: Apache-2.0
/*
 * Lets the video show through the portal's TV background: once the TV layer exists, its background
 * is redrawn on two canvases, one with a hole where the preview window is and one without, which
 * are then shown in turn.
 */
function hole() {
    var layer = document.querySelector('div.layer_bg#tv');
    var preview = document.querySelector('div.tv_prev_window');
    if (!layer || !preview) {
        // The portal builds its TV layer long after its document; ask again later.
        setTimeout(hole, 5000);
        return;
    }

    var layerStyle = getComputedStyle(layer);
    var previewStyle = getComputedStyle(preview);
    var width = parseInt(layerStyle.width, 10) || 0;
    var height = parseInt(layerStyle.height, 10) || 0;
    var place = {
        left: parseInt(previewStyle.left, 10) || 0,
        top: parseInt(previewStyle.top, 10) || 0,
        width: parseInt(previewStyle.width, 10) || 0,
        height: parseInt(previewStyle.height, 10) || 0,
        padding: parseInt(previewStyle.paddingLeft, 10) || 0
    };

    function addCanvas(id, zIndex) {
        var canvas = document.createElement('canvas');
        canvas.id = id;
        canvas.width = width;
        canvas.height = height;
        canvas.style.position = 'absolute';
        canvas.style.left = '0px';
        canvas.style.top = '0px';
        canvas.style.zIndex = zIndex;
        layer.appendChild(canvas);
        return canvas.getContext('2d');
    }

    // The image of a computed background, or null for a background without one.
    function backgroundImage(style) {
        var match = /^url\(["']?(.*?)["']?\)$/.exec(style.backgroundImage);
        if (!match)
            return null;
        var image = new Image();
        image.onload = draw;
        image.src = match[1];
        return image;
    }

    function drawImage(context, image, x, y, w, h) {
        if (image && image.complete && image.naturalWidth > 0)
            context.drawImage(image, x, y, w, h);
    }

    function draw() {
        [holeContext, plainContext].forEach(function (context) {
            context.clearRect(0, 0, width, height);
            drawImage(context, layerImage, 0, 0, width, height);
        });
        drawImage(holeContext, previewImage, place.left, place.top,
                  place.width + 2 * place.padding, place.height + 2 * place.padding);
        holeContext.clearRect(place.left + place.padding, place.top + place.padding,
                              place.width, place.height);
    }

    var holeContext = addCanvas('hole_bg', -2);
    var plainContext = addCanvas('ori_bg', -1);
    var layerImage = backgroundImage(layerStyle);
    var previewImage = backgroundImage(previewStyle);
    draw();

    layer.style.background = 'transparent';
    preview.style.background = 'transparent';

    // What the portal asked for before its TV layer was there.
    if (hole.shown !== undefined)
        (hole.shown ? show_hole : hide_hole)();
}

hole();
