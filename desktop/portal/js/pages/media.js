// SPDX-License-Identifier: Apache-2.0
/* The media browser: folders of the box from a start folder on, which ?media= can name. */
(function () {
    'use strict';

    var start = startFolder();
    var folder = start;
    var list = Focus.list('mediaList', render, choose);

    function startFolder() {
        var match = /[?&]media=([^&]*)/.exec(window.location.search);
        var path = match ? decodeURIComponent(match[1]) : '/media/';
        return path.charAt(path.length - 1) === '/' ? path : path + '/';
    }

    function render(item, entry) {
        item.classList.add(entry.folder ? 'row_folder' : 'row_file');
        Rows.pair(item, entry.name, entry.folder ? 'folder' : Texts.bytes(entry.size));
    }

    function show() {
        var content = Directory.read(folder);
        var files = content.entries.filter(function (entry) {
            return !entry.folder;
        });
        document.getElementById('mediaPath').textContent = folder;
        document.getElementById('mediaState').textContent = content.problem ||
            Texts.count(content.entries.length - files.length, 'folder') + ', ' +
            Texts.count(files.length, 'file');
        document.getElementById('mediaState').className =
            'state_text' + (content.problem ? ' bad' : '');
        Focus.fill(list, content.entries);
        Focus.activate(list);
    }

    function choose(entry) {
        if (entry.folder) {
            folder = entry.path;
            list.index = 0;
            show();
        } else {
            Video.play({title: entry.name, note: folder, uri: entry.path, start: 0});
        }
    }

    /* The row of that name becomes the chosen one. */
    function select(name) {
        list.data.forEach(function (entry, index) {
            list.index = entry.name === name ? index : list.index;
        });
        Focus.activate(list);
    }

    function up() {
        var parts = /^(.*\/)([^/]+\/)$/.exec(folder);
        folder = parts[1];
        show();
        select(parts[2]);
    }

    // A disk that comes or goes is seen at once.
    stbEvent.listenToMessages(function (message) {
        if (/^storage\./.test(message) && Pager.current() === 'media') {
            show();
        }
    });

    Pager.register('media', {
        element: document.getElementById('page_media'),
        open: function (previous) {
            if (previous === 'menu') {
                folder = start;
                list.index = 0;
            }
            show();
        },
        key: function (code) {
            if (code === key.UP || code === key.DOWN) {
                Focus.move(list, code === key.UP ? -1 : 1);
            } else if (code === key.OK || code === key.RIGHT) {
                Focus.choose(list);
            } else if (code === key.LEFT && folder !== start) {
                up();
            }
            return true;
        },
        back: function () {
            if (folder === start) {
                return Pager.toMenu();
            }
            up();
            return true;
        }
    });
}());
