// SPDX-License-Identifier: Apache-2.0
/* What the rows of lists are made of. */
var Rows = (function () {
    'use strict';

    function add(parent, tagName, className, text) {
        var element = document.createElement(tagName);
        element.className = className;
        element.textContent = text;
        return parent.appendChild(element);
    }

    return {
        /* Adds an element with this text and returns it. */
        add: add,
        /* A title with a smaller note below it. */
        text: function (item, title, note) {
            add(item, 'b', '', title);
            add(item, 'small', '', note);
        },
        /* One line: a name at the left and a value at the right. */
        pair: function (item, name, value) {
            add(item, 'span', 'row_name', name);
            add(item, 'span', 'row_value', value);
        }
    };
}());
