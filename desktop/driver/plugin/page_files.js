// SPDX-License-Identifier: Apache-2.0
/*
 * Files for a form's field. A page may not name files, and on a box nobody chooses any: they are
 * dropped on a field of the driver's own, from which the page's field takes them. Evaluated after
 * page_script.js, as a function of its object.
 */
(function (driver) {
    'use strict';

    var fail = driver.fail;
    var size = 40;
    var target = null;
    // What was chosen here before, by field: the files and their paths.
    var chosen = new WeakMap();

    // The paths that the field holds already and keeps, since it takes several.
    driver.define('pathsOf', function (element) {
        var before = chosen.get(element);
        // What clears the field leaves its list, only without files.
        var kept = element.hasAttribute('multiple') && before &&
            before.files === element.files && before.paths.length === element.files.length;
        return kept ? before.paths : [];
    });

    function fire(element, type) {
        var event = document.createEvent('HTMLEvents');
        event.initEvent(type, true, false);
        element.dispatchEvent(event);
    }

    function stop(event) {
        event.stopImmediatePropagation();
    }

    // Shows the driver's field, of which the page is told nothing; answers with its centre.
    driver.define('openDrop', function () {
        target = document.createElement('input');
        target.type = 'file';
        target.multiple = true;
        target.setAttribute('style', 'position: fixed !important; left: 0; top: 0; margin: 0;' +
            'width: ' + size + 'px; height: ' + size + 'px; z-index: 2147483647;');
        document.documentElement.appendChild(target);
        window.addEventListener('change', stop, true);
        target.getBoundingClientRect();
        return [size / 2, size / 2];
    });

    // Gives the element what was dropped.
    driver.define('takeDrop', function (element, paths) {
        window.removeEventListener('change', stop, true);
        var files = target.files;
        document.documentElement.removeChild(target);
        target = null;
        if (files.length !== paths.length) {
            throw fail('unknown error', 'The page did not let the files be dropped.');
        }
        // The engine tells of the change only, and before it is told of the input.
        window.addEventListener('change', stop, true);
        element.files = files;
        window.removeEventListener('change', stop, true);
        chosen.set(element, { files: element.files, paths: paths });
        fire(element, 'input');
        fire(element, 'change');
        return element.files.length;
    });
})
