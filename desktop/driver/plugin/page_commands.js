// SPDX-License-Identifier: Apache-2.0
/*
 * What commands ask of a document. Evaluated after page_script.js, as a function of its object.
 */
(function (driver) {
    'use strict';

    var fail = driver.fail;
    var styleOf = window.getComputedStyle.bind(window);

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

    // Finding

    function linkTest(using, value) {
        return using === 'link text' ?
            function (link) { return visibleText(link).trim() === value; } :
            function (link) { return visibleText(link).indexOf(value) >= 0; };
    }

    function byXpath(root, value) {
        var owner = root.ownerDocument || root;
        var found = owner.evaluate(value, root, null, 7, null);
        var result = [];
        for (var i = 0; i < found.snapshotLength; i += 1) {
            var node = found.snapshotItem(i);
            if (!driver.isElement(node)) {
                throw fail('invalid selector', 'The expression finds something else than elements.');
            }
            result.push(node);
        }
        return result;
    }

    function search(root, using, value) {
        switch (using) {
        case 'css selector':
            return root.querySelectorAll(value);
        case 'tag name':
            return root.getElementsByTagName(value);
        case 'xpath':
            return byXpath(root, value);
        }
        return Array.prototype.filter.call(root.querySelectorAll('a'), linkTest(using, value));
    }

    driver.define('find', function (using, value, root, onlyFirst) {
        if (!root && !document.documentElement) {
            throw fail('no such element', 'The document is empty.');
        }
        var found;
        try {
            found = search(root || document, using, value);
        } catch (e) {
            throw e.driverError ? e : fail('invalid selector', String(e));
        }
        found = Array.prototype.slice.call(found, 0, onlyFirst ? 1 : undefined);
        return found;
    });

    driver.define('active', function () {
        if (!document.activeElement) {
            throw fail('no such element', 'No element is active.');
        }
        return document.activeElement;
    });

    driver.define('shadow', function () {
        throw fail('no such shadow root', 'The element has no shadow root.');
    });

    driver.define('frameIndex', function (element) {
        if (element.localName !== 'frame' && element.localName !== 'iframe') {
            throw fail('no such frame', 'The element is no frame.');
        }
        for (var i = 0; i < window.length; i += 1) {
            if (window[i] === element.contentWindow) {
                return i;
            }
        }
        throw fail('no such frame', 'The frame shows no page.');
    });

    // State

    var booleanAttributes = ('allowfullscreen allowpaymentrequest allowusermedia async autofocus ' +
        'autoplay checked compact complete controls declare default defaultchecked ' +
        'defaultselected defer disabled ended formnovalidate hidden indeterminate iscontenteditable ' +
        'ismap itemscope loop multiple muted nohref nomodule noresize noshade novalidate nowrap ' +
        'open paused playsinline pubdate readonly required reversed scoped seamless seeking ' +
        'selected truespeed typemustmatch willvalidate').split(' ');

    driver.define('attribute', function (element, name) {
        if (booleanAttributes.indexOf(name.toLowerCase()) >= 0) {
            return element.hasAttribute(name) ? 'true' : null;
        }
        return element.getAttribute(name);
    });

    driver.define('property', function (element, name) {
        var value = element[name];
        return typeof value === 'function' ? {} : value;
    });

    driver.define('css', function (element, name) {
        return isXml(document) ? '' : style(element, name);
    });

    driver.define('text', visibleText);

    driver.define('name', function (element) {
        return isHtml(element, element.localName) ? element.tagName.toLowerCase() : element.tagName;
    });

    driver.define('rect', function (element) {
        var box = element.getBoundingClientRect();
        return {
            x: box.left + window.pageXOffset, y: box.top + window.pageYOffset,
            width: box.width, height: box.height
        };
    });

    function isActuallyDisabled(element) {
        if (['button', 'input', 'select', 'textarea', 'optgroup', 'option', 'fieldset']
            .indexOf(element.localName) < 0) {
            return false;
        }
        if (element.hasAttribute('disabled')) {
            return true;
        }
        // A fieldset disables what it holds, except in its first legend.
        var child = element;
        for (var parent = parentElement(element); parent;
            child = parent, parent = parentElement(parent)) {
            if (isHtml(parent, 'fieldset') && parent.hasAttribute('disabled') &&
                child !== parent.querySelector('legend')) {
                return true;
            }
        }
        return false;
    }

    function isDisabled(element) {
        if (isHtml(element, 'option') || isHtml(element, 'optgroup')) {
            return isActuallyDisabled(element) || !!ancestor(element, function (e) {
                return (isHtml(e, 'optgroup') || isHtml(e, 'select')) && isActuallyDisabled(e);
            });
        }
        return isActuallyDisabled(element);
    }

    driver.define('enabled', function (element) {
        return !isXml(document) && !isDisabled(element);
    });

    driver.define('selected', function (element) {
        if (isHtml(element, 'input') && (element.type === 'checkbox' || element.type === 'radio')) {
            return element.checked;
        }
        return isHtml(element, 'option') && element.selected;
    });

    driver.define('displayed', function (element) { return isShown(element, false); });

    driver.define('url', function () { return document.URL || 'about:blank'; });
    driver.define('title', function () { return window.top.document.title; });

    driver.define('source', function () {
        var root = document.documentElement;
        if (isXml(document) || !root) {
            return new XMLSerializer().serializeToString(document);
        }
        return root.outerHTML;
    });

    driver.define('userAgent', function () { return window.navigator.userAgent; });

    driver.define('size', function () { return [window.innerWidth, window.innerHeight]; });

    driver.define('outerRect', function () {
        return {
            x: window.screenX, y: window.screenY,
            width: window.outerWidth, height: window.outerHeight
        };
    });

    // Where the content of a child frame begins in this window.
    driver.define('frameOffset', function (element) {
        var box = element.getBoundingClientRect();
        var computed = styleOf(element, null);
        return [
            box.left + element.clientLeft + (parseFloat(computed.paddingLeft) || 0),
            box.top + element.clientTop + (parseFloat(computed.paddingTop) || 0)
        ];
    });

    driver.define('frameElement', function (index) {
        var frames = document.querySelectorAll('iframe, frame');
        for (var i = 0; i < frames.length; i += 1) {
            if (frames[i].contentWindow === window[index]) {
                return frames[i];
            }
        }
        throw fail('no such window', 'The frame is gone.');
    });
})
