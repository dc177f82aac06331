// SPDX-License-Identifier: Apache-2.0
/* The box's storage as bars, one for each volume. */
var StorageBars = (function () {
    'use strict';

    var most = 4;

    function add(parent, volume) {
        var size = Number(volume.size) || 0;
        var free = Number(volume.freeSize) || 0;
        var row = Rows.add(parent, 'div', 'storage_row', '');
        var bar;
        Rows.add(row, 'span', 'storage_name', volume.label + '  ' + volume.mountPath);
        Rows.add(row, 'span', 'storage_free', Texts.bytes(free) + ' of ' + Texts.bytes(size) + ' free');
        bar = Rows.add(row, 'div', 'progress', '');
        Rows.add(bar, 'div', 'progress_done', '').style.width =
            (size > 0 ? Math.min(100, 100 * (size - free) / size) : 0) + '%';
    }

    return {
        /* Asks for the storage; blocks for up to three seconds when the receiver is silent. */
        show: function () {
            var element = document.getElementById('storageBars');
            // An unanswered question leaves the place of the result empty, which is no JSON.
            var volumes = Box.parse(Box.stb('GetStorageInfo', '{}'), {}).result;
            element.textContent = '';
            if (!(volumes instanceof Array) || volumes.length === 0) {
                element.textContent = Box.isPresent() ? 'The receiver tells of no storage.' : '(no box)';
                return;
            }
            volumes.slice(0, most).forEach(function (volume) {
                add(element, volume);
            });
        }
    };
}());
