// SPDX-License-Identifier: Apache-2.0
/* Folders of the box and what is in them. */
var Directory = (function () {
    'use strict';

    var extensions = ['.ts', '.m2ts', '.mkv', '.mp4', '.avi', '.mpg', '.mov', '.mp3', '.flac'];

    function byName(a, b) {
        return a.name.toLowerCase() < b.name.toLowerCase() ? -1 : 1;
    }

    function shown(entry) {
        return entry.name.charAt(0) !== '.';
    }

    /*
     * The answer is script source: two arrays with the names as they are. A quote in a name makes
     * it something else, so it is run inside a function where it cannot touch names of this page.
     */
    function evaluate(source) {
        return new Function(source + 'return {dirs: dirs, files: files};')();
    }

    function isFolder(path) {
        return Box.stb('IsFolderExist', path) === true;
    }

    return {
        /*
         * What is in the folder, whose path ends in "/": {entries, problem}. An entry is
         * {name, path, folder, size}, a problem one line for the viewer or empty.
         */
        read: function (folder) {
            var listing;
            if (!Box.isPresent()) {
                return {entries: [], problem: 'No box: there are no files to list.'};
            }
            Box.stb('SetListFilesExt', extensions.concat(extensions.map(function (extension) {
                return extension.toUpperCase();
            })).join(' '));
            try {
                listing = evaluate(Box.stb('ListDir', folder));
            } catch (error) {
                return {entries: [], problem: 'This folder cannot be listed: a name in it holds a ' +
                    'quote or a backslash, which the box passes on as it is (' + error.message + ').'};
            }
            return {
                entries: listing.dirs.map(function (name) {
                    return {name: name, path: folder + name, folder: true, size: 0};
                }).filter(shown).sort(byName).concat(listing.files.map(function (file) {
                    return {name: file.name, path: folder + file.name, folder: false, size: file.size};
                }).filter(shown).sort(byName)),
                problem: isFolder(folder) ? '' : 'There is no folder of this name.'
            };
        }
    };
}());
