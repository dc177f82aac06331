// SPDX-License-Identifier: Apache-2.0
/*
 * Before and after input: whether an element can be reached, where it is, and what is done to form
 * fields without keys. Evaluated after page_visibility.js, as a function of the object of
 * page_script.js.
 */
(function (driver) {
    'use strict';

    var fail = driver.fail;
    var isHtml = driver.isHtml;
    var style = driver.style;

    function closest(element, names) {
        while (element && names.indexOf(element.localName) < 0) {
            element = element.parentNode;
        }
        return element || null;
    }

    // An option is reached through the list that holds it.
    function containerOf(element) {
        if (!isHtml(element, 'option') && !isHtml(element, 'optgroup')) {
            return element;
        }
        return closest(element, ['datalist']) || closest(element, ['select']) || element;
    }

    // The engine tells no boxes of the shapes in a drawing.
    function firstBox(element) {
        var box = element.getClientRects()[0];
        var isShape = element.namespaceURI === 'http://www.w3.org/2000/svg';
        return box || (isShape && style(element, 'display') !== 'none' ?
            element.getBoundingClientRect() : null);
    }

    // The centre of what is inside the viewport of the first box.
    function centre(element) {
        var box = firstBox(element);
        if (!box) {
            return null;
        }
        var left = Math.max(0, Math.min(box.left, box.right));
        var right = Math.min(window.innerWidth, Math.max(box.left, box.right));
        var top = Math.max(0, Math.min(box.top, box.bottom));
        var bottom = Math.min(window.innerHeight, Math.max(box.top, box.bottom));
        return [Math.floor((left + right) / 2), Math.floor((top + bottom) / 2)];
    }

    function isInside(point) {
        return point[0] >= 0 && point[1] >= 0 && point[0] < window.innerWidth &&
            point[1] < window.innerHeight;
    }

    // Whether the element would be painted at the point if it took pointer events.
    function isInView(element) {
        var point = centre(element);
        var box = firstBox(element);
        return !!point && isInside(point) && box.right > 0 && box.bottom > 0 &&
            box.left < window.innerWidth && box.top < window.innerHeight &&
            style(element, 'visibility') !== 'hidden';
    }

    function isObscured(element) {
        var point = centre(element);
        var top = document.elementFromPoint(point[0], point[1]);
        if (top && element.contains(top)) {
            return null;
        }
        return top || document.documentElement;
    }

    function scrollTo(element) {
        if (isInView(element) && !isObscured(element)) {
            return;
        }
        element.scrollIntoView(false);
        if (!isInView(element)) {
            element.scrollIntoViewIfNeeded();
        }
    }

    function describe(element) {
        return '<' + element.localName + (element.id ? ' id="' + element.id + '"' : '') + '>';
    }

    function fire(target, type) {
        var event = document.createEvent('HTMLEvents');
        event.initEvent(type, true, type === 'click');
        target.dispatchEvent(event);
    }

    function fireMouse(target, type) {
        var event = document.createEvent('MouseEvents');
        event.initMouseEvent(type, true, true, window, 1, 0, 0, 0, 0, false, false, false, false, 0,
            null);
        target.dispatchEvent(event);
    }

    function isDisabledOption(option) {
        for (var e = option; e && e.nodeType === 1; e = e.parentNode) {
            if (['option', 'optgroup', 'select', 'fieldset'].indexOf(e.localName) >= 0 &&
                e.hasAttribute('disabled')) {
                return true;
            }
        }
        return false;
    }

    function preventDefault(event) {
        event.preventDefault();
    }

    function choose(option, list) {
        fireMouse(list, 'mouseover');
        fireMouse(list, 'mousemove');
        // Or the engine would open the list, above everything, for the options to be chosen from.
        window.addEventListener('mousedown', preventDefault, true);
        fireMouse(list, 'mousedown');
        window.removeEventListener('mousedown', preventDefault, true);
        list.focus();
        if (!isDisabledOption(option)) {
            var before = option.selected;
            option.selected = list.multiple ? !before : true;
            if (!before || list.multiple) {
                fire(list, 'input');
                fire(list, 'change');
            }
        }
        fireMouse(list, 'mouseup');
        fireMouse(list, 'click');
    }

    // Scrolls to the element. Answers with the point to click, or with nothing when an option was
    // chosen, which needs no pointer.
    driver.define('click', function (element) {
        if (isHtml(element, 'input') && element.type === 'file') {
            throw fail('invalid argument', 'A field for files cannot be clicked; send it keys.');
        }
        var container = containerOf(element);
        scrollTo(container);
        if (!isInView(container)) {
            throw fail('element not interactable', describe(element) + ' cannot be scrolled into view.');
        }
        var top = isObscured(container);
        if (top) {
            var box = firstBox(container);
            if (box.width === 0 || box.height === 0) {
                throw fail('element not interactable', describe(element) + ' has no size.');
            }
            throw fail('element click intercepted',
                describe(top) + ' would take the click on ' + describe(element) + '.');
        }
        if (isHtml(element, 'option') && isHtml(container, 'select')) {
            choose(element, container);
            return null;
        }
        return centre(container);
    });

    driver.define('centre', function (element) {
        var point = centre(element);
        if (!point) {
            throw fail('move target out of bounds', describe(element) + ' has no box.');
        }
        return point;
    });

    // The part of the element's box that the viewport shows after scrolling to it.
    driver.define('picture', function (element) {
        element.scrollIntoViewIfNeeded();
        var box = element.getBoundingClientRect();
        return {
            x: Math.floor(box.left), y: Math.floor(box.top),
            width: Math.ceil(box.right) - Math.floor(box.left),
            height: Math.ceil(box.bottom) - Math.floor(box.top)
        };
    });

    // Fields

    var typed = ['text', 'search', 'url', 'tel', 'email', 'password', 'number', 'date', 'month',
        'week', 'time', 'datetime', 'datetime-local'];

    function stateOfField(element) {
        var type = (element.getAttribute('type') || 'text').toLowerCase();
        return typed.indexOf(type) >= 0 ? type : element.type;
    }

    function isMutable(element) {
        return !driver.isActuallyDisabled(element) && !element.readOnly;
    }

    function isEditableField(element) {
        if (isHtml(element, 'textarea')) {
            return true;
        }
        return isHtml(element, 'input') &&
            (typed.indexOf(stateOfField(element)) >= 0 ||
             ['range', 'color', 'file'].indexOf(element.type) >= 0);
    }

    function isEditableContent(element) {
        return element.isContentEditable || document.designMode === 'on';
    }

    function isFocusable(element) {
        return element === document.body || element === document.documentElement ||
            (element.tabIndex >= 0 && !element.disabled) || element.hasAttribute('tabindex') ||
            isEditableContent(element) || isEditableField(element);
    }

    function hasBox(element) {
        return !!firstBox(element) && style(element, 'visibility') !== 'hidden';
    }

    driver.define('clear', function (element) {
        var field = isEditableField(element);
        if (field ? !isMutable(element) : !isEditableContent(element)) {
            throw fail('invalid element state', describe(element) + ' cannot be edited.');
        }
        scrollTo(element);
        var reachable = element === document.body || element === document.documentElement ||
            (hasBox(element) && isInView(element));
        if (!reachable) {
            throw fail('element not interactable', describe(element) + ' cannot be reached.');
        }
        if (!field) {
            if (element.innerHTML !== '') {
                element.focus();
                element.innerHTML = '';
                element.blur();
            }
            return null;
        }
        var empty = element.type === 'file' ? element.files.length === 0 : element.value === '';
        if (empty && (!element.willValidate || element.validity.valid)) {
            return null;
        }
        element.focus();
        element.value = '';
        fire(element, 'input');
        fire(element, 'change');
        element.blur();
        return null;
    });

    function putCaretAtEnd(element) {
        if (typeof element.setSelectionRange === 'function') {
            try {
                element.setSelectionRange(element.value.length, element.value.length);
            } catch (e) {
                // Some kinds of fields have no caret that a script can move.
            }
            return;
        }
        var range = document.createRange();
        range.selectNodeContents(element);
        range.collapse(false);
        var selection = window.getSelection();
        selection.removeAllRanges();
        selection.addRange(range);
    }

    // Makes the element ready for text: answers with "file", with "done" where the value is set at
    // once, or with "type" when the element has the focus and waits for keys.
    driver.define('prepareTyping', function (element, text, strictFiles) {
        var file = isHtml(element, 'input') && element.type === 'file';
        if (!file || strictFiles) {
            scrollTo(element);
            if (!isFocusable(element) || (!hasBox(element) && element !== document.body &&
                    element !== document.documentElement) || driver.isActuallyDisabled(element)) {
                throw fail('element not interactable', describe(element) + ' takes no keys.');
            }
        }
        if (file) {
            element.focus();
            return element.multiple ? 'files' : 'file';
        }
        var type = stateOfField(element);
        if (isHtml(element, 'input') && (type === 'range' || type === 'color')) {
            if (!isMutable(element)) {
                throw fail('element not interactable', describe(element) + ' cannot be changed.');
            }
            element.focus();
            element.value = text;
            if (element.validity && element.validity.badInput) {
                throw fail('invalid argument', describe(element) + ' takes no such value.');
            }
            fire(element, 'input');
            fire(element, 'change');
            return 'done';
        }
        if (document.activeElement !== element) {
            element.focus();
            if (isEditableField(element) || isEditableContent(element)) {
                putCaretAtEnd(element);
            }
        }
        window.focus();
        if (isHtml(element, 'iframe') || isHtml(element, 'frame')) {
            // Keys go to the page in it.
            element.contentWindow.focus();
        }
        return 'type';
    });
})
