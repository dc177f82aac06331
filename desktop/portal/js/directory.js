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
     * The answer is script source, two arrays, with the names of files as they are: whoever names a
     * file on a stick can make it any script. So it is read and never run, since what runs in this
     * page may do all that gSTB can. A folder ends in "/", which no name holds; a file in its size.
     * A name that imitates the text between two files reads as two, of which neither is there.
     */
    function parse(source) {
        var listing = {dirs: [], files: []};
        var rest = source;

        function take(pattern) {
            var match = pattern.exec(rest);
            rest = match ? rest.substr(match[0].length) : rest;
            return match;
        }

        function takeAll(pattern, add) {
            var match = take(pattern);
            while (match) {
                add(match);
                match = take(/^, /) && take(pattern);
            }
        }

        if (!take(/^var dirs = \[/)) {
            return null;
        }
        takeAll(/^"([^/]+\/)"/, function (match) {
            listing.dirs.push(match[1]);
        });
        if (!take(/^\];var files = \[/)) {
            return null;
        }
        takeAll(/^\{"name":"([^/]+?)","size":(\d+)\}(?=, \{"name":"|\];$)/, function (match) {
            listing.files.push({name: match[1], size: Number(match[2])});
        });
        return rest === '];' ? listing : null;
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
            listing = parse(String(Box.stb('ListDir', folder)));
            if (!listing) {
                return {entries: [], problem: 'What the box answers is no list of a folder.'};
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
