// SPDX-License-Identifier: Apache-2.0
/*
 * What commands ask of a document. Evaluated after page_visibility.js, as a function of the object
 * of page_script.js.
 */
(function (driver) {
    'use strict';

    var fail = driver.fail;
    var isHtml = driver.isHtml;
    var isXml = driver.isXml;
    var style = driver.style;
    var ancestor = driver.ancestor;
    var visibleText = driver.visibleText;
    var styleOf = window.getComputedStyle.bind(window);

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
        for (var parent = child.parentNode; parent && parent.nodeType === 1;
            child = parent, parent = child.parentNode) {
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

    driver.isActuallyDisabled = isActuallyDisabled;

    driver.define('enabled', function (element) {
        return !isXml(document) && !isDisabled(element);
    });

    driver.define('selected', function (element) {
        if (isHtml(element, 'input') && (element.type === 'checkbox' || element.type === 'radio')) {
            return element.checked;
        }
        return isHtml(element, 'option') && element.selected;
    });

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
