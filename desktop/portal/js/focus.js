// SPDX-License-Identifier: Apache-2.0
/*
 * Lists whose items are chosen with the arrow keys or the mouse. One list has the focus at a time;
 * its chosen item carries the class "focused". The chosen item of every list carries "chosen".
 */
var Focus = (function () {
    'use strict';

    var active = null;
    var mouseX = -1;
    var mouseY = -1;

    function setClass(item, name, wanted) {
        item.classList[wanted ? 'add' : 'remove'](name);
    }

    function show(list) {
        list.items.forEach(function (item, index) {
            setClass(item, 'chosen', index === list.index);
            setClass(item, 'focused', list === active && index === list.index);
        });
    }

    /* Scrolls a list that is longer than its element. */
    function keepVisible(list) {
        var element = list.element;
        var item = list.items[list.index];
        if (item) {
            element.scrollTop = Math.max(item.offsetTop + item.offsetHeight - element.clientHeight,
                Math.min(element.scrollTop, item.offsetTop));
        }
    }

    /* False for the moves that the engine makes up when items move below a resting mouse. */
    function hasMoved(event) {
        var moved = event.screenX !== mouseX || event.screenY !== mouseY;
        mouseX = event.screenX;
        mouseY = event.screenY;
        return moved;
    }

    function activate(list, index) {
        var previous = active;
        active = list;
        list.index = Math.max(0, Math.min(index, list.items.length - 1));
        if (previous && previous !== list) {
            show(previous);
        }
        show(list);
        keepVisible(list);
    }

    function addItem(list, data, index) {
        var item = document.createElement(list.element.tagName === 'UL' ? 'li' : 'div');
        list.render(item, data);
        item.addEventListener('mousemove', function (event) {
            if (hasMoved(event) && (list !== active || list.index !== index)) {
                activate(list, index);
            }
        });
        item.addEventListener('click', function () {
            activate(list, index);
            list.choose(data, index);
        });
        list.element.appendChild(item);
        list.items.push(item);
    }

    return {
        /*
         * A list inside the element of this id. render(item, data) fills an item, choose(data)
         * is called for OK and for a click.
         */
        list: function (id, render, choose) {
            return {
                element: document.getElementById(id),
                items: [],
                data: [],
                index: 0,
                render: render,
                choose: choose
            };
        },
        /* Shows these data, keeping the chosen index where it still exists. */
        fill: function (list, data) {
            list.element.innerHTML = '';
            list.items = [];
            list.data = data;
            data.forEach(function (one, index) {
                addItem(list, one, index);
            });
            list.index = Math.max(0, Math.min(list.index, data.length - 1));
            show(list);
        },
        activate: function (list) {
            activate(list, list.index);
        },
        isActive: function (list) {
            return list === active;
        },
        /* Moves the choice by some items; false at an end. */
        move: function (list, by) {
            var target = list.index + by;
            if (target < 0 || target >= list.items.length) {
                return false;
            }
            activate(list, target);
            return true;
        },
        choose: function (list) {
            if (list.items.length > 0) {
                list.choose(list.data[list.index], list.index);
            }
        }
    };
}());
