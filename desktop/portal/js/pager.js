// SPDX-License-Identifier: Apache-2.0
/*
 * The page switcher. A page is an object with any of: element, open(previous), close(), key(code)
 * and back(); the last two return true when they used the key. Sub-pages lie over the main menu, which stays
 * displayed below them; only the video hides it.
 */
var Pager = (function () {
    'use strict';

    var pages = {};
    var current = '';

    function display(page, shown) {
        if (page && page.element) {
            page.element.style.display = shown ? 'block' : 'none';
        }
    }

    function leave(next) {
        var page = pages[current];
        if (!page) {
            return;
        }
        if (page.close) {
            page.close();
        }
        if (current !== 'menu' || next === 'video') {
            display(page, false);
        }
    }

    return {
        register: function (name, page) {
            pages[name] = page;
        },
        current: function () {
            return current;
        },
        open: function (name) {
            var previous = current;
            leave(name);
            current = name;
            display(pages.menu, name !== 'video');
            display(pages[name], true);
            document.body.className = document.body.className.replace(/\bat_\w+/g, '') + ' at_' + name;
            stb.cur_place = name === 'video' ? 'tv' : 'main_menu';
            if (pages[name].open) {
                pages[name].open(previous);
            }
        },
        /* The back() of a sub-page. */
        toMenu: function () {
            Pager.open('menu');
            return true;
        },
        key: function (code) {
            var page = pages[current];
            return page.key ? page.key(code) : false;
        },
        back: function () {
            var page = pages[current];
            return page.back ? page.back() : false;
        }
    };
}());
