// SPDX-License-Identifier: Apache-2.0
/*
 * What of an element a viewer sees: whether it is shown, and its text. Evaluated after
 * page_script.js, as a function of its object, and gives the other scripts what they share.
 */
(function (driver) {
    'use strict';

    function style(element, name) {
        var computed = element.ownerDocument.defaultView.getComputedStyle(element, null);
        return computed ? computed.getPropertyValue(name) : '';
    }

    function isHtml(element, name) {
        return element.namespaceURI === 'http://www.w3.org/1999/xhtml' &&
            element.localName === name;
    }

    function isXml(owner) {
        return owner.contentType === 'text/xml' || owner.contentType === 'application/xml' ||
            (owner.xmlVersion !== null && owner.xmlVersion !== undefined &&
             !(owner.documentElement &&
               owner.documentElement.namespaceURI === 'http://www.w3.org/1999/xhtml'));
    }

    function parentElement(element) {
        var parent = element.parentNode;
        return parent && parent.nodeType === 1 ? parent : null;
    }

    function ancestor(element, test) {
        while (element && !test(element)) {
            element = parentElement(element);
        }
        return element || null;
    }

    // What is shown

    function hasSize(element) {
        var box = element.getBoundingClientRect();
        if (box.width > 0 && box.height > 0) {
            return true;
        }
        if (element.localName === 'path' && (box.width > 0 || box.height > 0)) {
            return parseInt(style(element, 'stroke-width'), 10) > 0;
        }
        // A box without a size of its own may still show what flows out of it.
        return style(element, 'overflow') !== 'hidden' &&
            Array.prototype.some.call(element.childNodes, function (node) {
                return (node.nodeType === 3 && /\S/.test(node.nodeValue)) ||
                    (node.nodeType === 1 && style(node, 'display') !== 'none' && hasSize(node));
            });
    }

    function isDisplayedBox(element) {
        for (; element; element = parentElement(element)) {
            if (style(element, 'display') === 'none') {
                return false;
            }
        }
        return true;
    }

    function opacityIsZero(element) {
        for (; element; element = parentElement(element)) {
            if (parseFloat(style(element, 'opacity')) === 0) {
                return true;
            }
        }
        return false;
    }

    function isClippedAway(element) {
        var box = element.getBoundingClientRect();
        var root = element.ownerDocument.documentElement;
        if (style(element, 'position') === 'fixed') {
            return false;
        }
        for (var parent = parentElement(element); parent && parent !== root;
            parent = parentElement(parent)) {
            if (style(parent, 'overflow-x') === 'hidden' || style(parent, 'overflow-y') === 'hidden') {
                var outer = parent.getBoundingClientRect();
                var inside = box.right > outer.left && box.left < outer.right &&
                    box.bottom > outer.top && box.top < outer.bottom;
                if (!inside) {
                    // What lies before the scrolled area cannot be reached, what lies in it can.
                    var reachable = parent.scrollWidth > parent.clientWidth ||
                        parent.scrollHeight > parent.clientHeight;
                    return !reachable || outer.width === 0 || outer.height === 0;
                }
            }
            if (style(parent, 'position') === 'fixed') {
                return false;
            }
        }
        return box.right + window.pageXOffset < 0 || box.bottom + window.pageYOffset < 0;
    }

    function isShown(element, ignoreOpacity) {
        if (isHtml(element, 'body')) {
            return true;
        }
        if (isHtml(element, 'option') || isHtml(element, 'optgroup')) {
            var select = ancestor(element, function (e) { return isHtml(e, 'select'); });
            return !!select && isShown(select, true);
        }
        if (isHtml(element, 'area')) {
            return isShownMap(parentElement(element), ignoreOpacity);
        }
        if (isHtml(element, 'map')) {
            return isShownMap(element, ignoreOpacity);
        }
        if (isHtml(element, 'noscript') ||
            (isHtml(element, 'input') && element.type === 'hidden')) {
            return false;
        }
        var visibility = style(element, 'visibility');
        if (visibility === 'hidden' || visibility === 'collapse' || !isDisplayedBox(element)) {
            return false;
        }
        if (!ignoreOpacity && opacityIsZero(element)) {
            return false;
        }
        return hasSize(element) && !isClippedAway(element);
    }

    function isShownMap(map, ignoreOpacity) {
        var image = map && map.name &&
            map.ownerDocument.querySelector('[usemap="#' + map.name + '"]');
        return !!image && isShown(image, ignoreOpacity);
    }

    // The text that a reader sees

    function isBlock(display) {
        return display !== 'inline' && display !== 'inline-block' && display !== 'inline-table' &&
            display !== 'none' && display !== 'table-cell' && display !== 'table-column' &&
            display !== 'table-column-group';
    }

    function lastLine(lines) {
        return lines.length ? lines[lines.length - 1] : '';
    }

    function transformed(text, transform) {
        switch (transform) {
        case 'capitalize':
            return text.replace(/(^|[^'_0-9A-Za-z\u00C0-\u02AF])([0-9A-Za-z\u00C0-\u02AF])/g,
                function (all, before, letter) { return before + letter.toUpperCase(); });
        case 'uppercase':
            return text.toUpperCase();
        case 'lowercase':
            return text.toLowerCase();
        }
        return text;
    }

    function addText(node, lines, space, transform) {
        var text = node.nodeValue.replace(/[\u200b\u200e\u200f]/g, '').replace(/\r\n|\r/g, '\n');
        if (space === 'normal' || space === 'nowrap') {
            text = text.replace(/\n/g, ' ');
        }
        text = space === 'pre' || space === 'pre-wrap' ?
            text.replace(/[ \f\t\v\u2028\u2029]/g, '\u00a0') :
            text.replace(/[ \f\t\v\u2028\u2029]+/g, ' ');
        text = transformed(text, transform);
        var line = lines.pop() || '';
        if (/ $/.test(line) && text.charAt(0) === ' ') {
            text = text.slice(1);
        }
        var parts = (line + text).split('\n');
        Array.prototype.push.apply(lines, parts);
    }

    function addLines(element, lines) {
        if (isHtml(element, 'br')) {
            lines.push('');
            return;
        }
        var display = style(element, 'display');
        var isCell = isHtml(element, 'td') || display === 'table-cell';
        var block = !isCell && isBlock(display);
        if (block && /\S/.test(lastLine(lines))) {
            lines.push('');
        }
        var shown = isShown(element, true);
        var space = style(element, 'white-space');
        var transform = style(element, 'text-transform');
        Array.prototype.forEach.call(element.childNodes, function (node) {
            if (node.nodeType === 3 && shown) {
                addText(node, lines, space, transform);
            } else if (node.nodeType === 1) {
                addLines(node, lines);
            }
        });
        var line = lastLine(lines);
        if (isCell && line && !/ $/.test(line)) {
            lines[lines.length - 1] += ' ';
        }
        if (block && /\S/.test(line)) {
            lines.push('');
        }
    }

    function visibleText(element) {
        var lines = [];
        addLines(element, lines);
        return lines.map(function (line) {
            return line.replace(/^[ \t\n\f\r\v]+|[ \t\n\f\r\v]+$/g, '');
        }).join('\n').replace(/^[ \t\n\f\r\v]+|[ \t\n\f\r\v]+$/g, '').replace(/\u00a0/g, ' ');
    }

    driver.isHtml = isHtml;
    driver.style = style;
    driver.isXml = isXml;
    driver.ancestor = ancestor;
    driver.visibleText = visibleText;

    driver.define('text', visibleText);

    driver.define('displayed', function (element) { return isShown(element, false); });
})
