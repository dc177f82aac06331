// SPDX-License-Identifier: Apache-2.0
/*
 * Turns values of a page into JSON and back, and hands out references to its elements. Keeps the
 * engine's own functions, since pages replace them. Evaluated as a function of a text that begins
 * every reference of this document.
 */
(function (prefix) {
    'use strict';

    var elementKey = 'element-6066-11e4-a52e-4f735466cecf';
    var frameKey = 'frame-075b-4da1-b6ba-e579c2d3230a';
    var windowKey = 'window-fcc6-11e5-b4f8-330a88ab9d7f';

    var quote = JSON.stringify;
    var stringOf = Object.prototype.toString;
    var owns = Object.prototype.hasOwnProperty;
    var keysOf = Object.keys;
    var isArray = Array.isArray;
    var isFinite = window.isFinite;

    // References: ids of nodes, and the nodes of ids. A page that made very many has those dropped
    // that left the document; they are stale anyway.
    var ids = new WeakMap();
    var nodes = new Map();
    var idOf = WeakMap.prototype.get.bind(ids);
    var rememberId = WeakMap.prototype.set.bind(ids);
    var nodeOf = Map.prototype.get.bind(nodes);
    var rememberNode = Map.prototype.set.bind(nodes);
    var forgetNode = Map.prototype.delete.bind(nodes);
    var eachNode = Map.prototype.forEach.bind(nodes);
    var count = 0;
    var alive = 0;
    var bound = 5000;
    var used = [];

    function fail(code, message, details) {
        var error = { driverError: code, text: message };
        if (details) {
            error.details = details;
        }
        return error;
    }

    function isConnected(node) {
        var owner = node.ownerDocument;
        return !!owner && !!owner.defaultView && owner.contains(node);
    }

    function sweep() {
        eachNode(function (node, id) {
            if (!isConnected(node)) {
                forgetNode(id);
                alive -= 1;
            }
        });
        bound = Math.max(5000, 2 * alive);
    }

    function reference(node) {
        var id = idOf(node);
        if (!id) {
            count += 1;
            id = prefix + count;
            rememberId(node, id);
            if (alive >= bound) {
                sweep();
            }
            alive += 1;
        }
        rememberNode(id, node);
        used[used.length] = id;
        return id;
    }

    function isElement(value) {
        return !!value && typeof value === 'object' && value.nodeType === 1 &&
            typeof value.tagName === 'string' && !!value.ownerDocument;
    }

    function isWindow(value) {
        // The only thing that a window of another origin still says.
        try {
            return stringOf.call(value) === '[object Window]' || value === value.window;
        } catch (e) {
            return false;
        }
    }

    function element(id) {
        var node = nodeOf(id);
        if (!node) {
            throw fail('missing node', id);
        }
        if (!isConnected(node)) {
            throw fail('stale element reference', 'The element is no longer in the document.');
        }
        return node;
    }

    // The way from the top window to a window, as the numbers of the frames.
    function framePath(target) {
        var path = [];
        while (target !== target.parent) {
            var parent = target.parent;
            if (!parent) {
                throw fail('stale element reference', 'The window is closed.');
            }
            var index = 0;
            while (index < parent.length && parent[index] !== target) {
                index += 1;
            }
            path.unshift(index);
            target = parent;
        }
        return path;
    }

    function windowAt(path) {
        var target = window.top;
        for (var i = 0; i < path.length; i += 1) {
            target = target[path[i]];
        }
        return target;
    }

    // Values to JSON

    var collections = ['[object Array]', '[object Arguments]', '[object NodeList]',
        '[object HTMLCollection]', '[object FileList]', '[object HTMLOptionsCollection]',
        '[object HTMLAllCollection]', '[object HTMLFormControlsCollection]',
        '[object DOMTokenList]', '[object RadioNodeList]'];
    var hosts = ['[object File]', '[object Blob]', '[object ClientRect]', '[object Location]',
        '[object Screen]', '[object TextMetrics]', '[object TimeRanges]', '[object ValidityState]'];

    function textOfNode(value) {
        if (!isConnected(value)) {
            throw fail('stale element reference', 'The element is no longer in the document.');
        }
        return '{"' + elementKey + '":' + quote(reference(value)) + '}';
    }

    function textOfWindow(value) {
        if (!value.parent || value.closed) {
            throw fail('stale element reference', 'The window is closed.');
        }
        var path = framePath(value);
        return '{"' + (path.length ? frameKey : windowKey) + '":{"path":[' + path.join() + ']}}';
    }

    // The engine's own objects, such as files and boxes, have their members in their prototypes.
    function namesOf(value) {
        var names = keysOf(value);
        var name;
        if (hosts.indexOf(stringOf.call(value)) >= 0) {
            names = [];
            for (name in value) {
                if (typeof value[name] !== 'function') {
                    names.push(name);
                }
            }
        }
        return names;
    }

    function textOfMembers(value, seen) {
        if (seen.indexOf(value) >= 0) {
            throw fail('javascript error', 'The value refers to itself.');
        }
        seen.push(value);
        var parts = [];
        var i;
        if (isArray(value) || collections.indexOf(stringOf.call(value)) >= 0) {
            for (i = 0; i < value.length; i += 1) {
                parts[i] = textOf(value[i], seen);
            }
            seen.pop();
            return '[' + parts.join() + ']';
        }
        var names = namesOf(value);
        for (i = 0; i < names.length; i += 1) {
            parts[i] = quote(names[i]) + ':' + textOf(value[names[i]], seen);
        }
        seen.pop();
        return '{' + parts.join() + '}';
    }

    function textOf(value, seen) {
        switch (typeof value) {
        case 'boolean':
            return value ? 'true' : 'false';
        case 'number':
            return isFinite(value) ? quote(value) : 'null';
        case 'string':
            return quote(value);
        case 'symbol':
            throw fail('javascript error', 'A symbol has no value in JSON.');
        }
        if (value === undefined || value === null) {
            return 'null';
        }
        if (seen.length > 400) {
            throw fail('javascript error', 'The value is nested too deeply.');
        }
        if (isWindow(value)) {
            return textOfWindow(value);
        }
        if (isElement(value)) {
            return textOfNode(value);
        }
        if (typeof value.nodeType === 'number' && typeof value.nodeName === 'string' &&
                !isArray(value)) {
            throw fail('javascript error', 'A node that is no element has no value in JSON.');
        }
        if (owns.call(value, 'toJSON') && typeof value.toJSON === 'function') {
            return textOf(value.toJSON(), seen);
        }
        return textOfMembers(value, seen);
    }

    // Values from JSON

    function revive(value) {
        if (isArray(value)) {
            return value.map(revive);
        }
        if (!value || typeof value !== 'object') {
            return value;
        }
        if (owns.call(value, elementKey)) {
            return element(value[elementKey]);
        }
        if (owns.call(value, frameKey) || owns.call(value, windowKey)) {
            return windowAt((value[frameKey] || value[windowKey]).path);
        }
        var result = {};
        keysOf(value).forEach(function (name) {
            result[name] = revive(value[name]);
        });
        return result;
    }

    function success(value) {
        used = [];
        var text = textOf(value, []);
        return '{"value":' + text + ',"ids":[' + used.map(quoted).join() + ']}';
    }

    function quoted(text) {
        return quote(text);
    }

    function failure(error) {
        if (error && error.driverError) {
            return '{"error":' + quote(error.driverError) + ',"message":' + quote(error.text) +
                (error.details ? ',"details":' + quote(error.details) : '') + '}';
        }
        var message = '';
        var stack = '';
        try {
            message = String(error);
            stack = String((error && error.stack) || '');
        } catch (e) {
            message = 'An error that has no text.';
        }
        return '{"error":"javascript error","message":' + quote(message) +
            ',"stack":' + quote(stack) + '}';
    }

    return {
        fail: fail, isElement: isElement, revive: revive, success: success, failure: failure
    };
})
