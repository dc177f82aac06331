// SPDX-License-Identifier: Apache-2.0
/*
 * The driver's side of a page: runs scripts and the commands that the other files define. One copy
 * lives in each document, behind a property whose name no page knows. Evaluated as a function of
 * the property's name and of what page_values.js returned.
 */
(function (property, values) {
    'use strict';

    var parse = JSON.parse;
    var defineProperty = Object.defineProperty;
    var PageFunction = Function;
    var PagePromise = window.Promise;
    var setTimer = window.setTimeout.bind(window);
    var topWindow = window.top;
    var fail = values.fail;
    var success = values.success;
    var failure = values.failure;
    var revive = values.revive;

    var pending = new Map();
    var kept = {};

    // Scripts

    function settle(ticket, text) {
        if (!pending.has(ticket)) {
            return;
        }
        pending.set(ticket, text);
        if (window !== topWindow) {
            // A script that removed its own frame can be asked there only.
            try {
                topWindow[property].keep(ticket, text);
            } catch (e) {
                // Of another origin, or of a document that the driver has not seen.
            }
        }
    }

    function keep(ticket, text) {
        kept = { ticket: ticket, text: text };
    }

    // What came of the script of a frame that is gone.
    function takeKept(ticket) {
        var text = kept.ticket === ticket ? kept.text : '';
        kept = {};
        return text;
    }

    function resolve(ticket, value) {
        var text;
        try {
            text = success(value);
        } catch (e) {
            text = failure(e);
        }
        settle(ticket, text);
    }

    function start(ticket) {
        pending.set(ticket, '');
        return [
            function (value) { resolve(ticket, value); },
            function (reason) { settle(ticket, failure(reason)); }
        ];
    }

    function isThenable(value) {
        return !!value && (typeof value === 'object' || typeof value === 'function') &&
            typeof value.then === 'function';
    }

    // A promise settles the script with what it comes to.
    function settleWith(value, settlers) {
        try {
            if (isThenable(value)) {
                PagePromise.resolve(value).then(settlers[0], settlers[1]);
            } else {
                settlers[0](value);
            }
        } catch (e) {
            settlers[1](e);
        }
    }

    function functionOf(body) {
        try {
            return new PageFunction(body);
        } catch (e) {
            throw e.name === 'EvalError' ? fail('needs function', '') : e;
        }
    }

    function carryOut(script, values, settlers, isAsync) {
        try {
            var result = script.apply(window, values);
            // What an asynchronous script returns counts only if it is a promise.
            if (!isAsync || isThenable(result)) {
                settleWith(result, settlers);
            }
        } catch (e) {
            settlers[1](e);
        }
    }

    // body: the text of a function's body or, where the page forbids making functions of texts,
    // the function. Answers with the result, or with nothing while it is still to come.
    function run(body, argumentText, ticket, isAsync) {
        try {
            var values = revive(parse(argumentText));
            var script = typeof body === 'function' ? body : functionOf(body);
            var settlers = start(ticket);
            if (isAsync) {
                values.push(function (value) {
                    settleWith(value, settlers);
                });
            }
            if (window !== topWindow) {
                // It may remove its own frame, which the engine survives in a timer only.
                setTimer(function () { carryOut(script, values, settlers, isAsync); }, 0);
                return '';
            }
            carryOut(script, values, settlers, isAsync);
        } catch (e) {
            pending.delete(ticket);
            return failure(e);
        }
        return poll(ticket);
    }

    function poll(ticket) {
        var text = pending.get(ticket);
        if (text) {
            pending.delete(ticket);
        }
        return text || '';
    }

    // Commands; each takes the values of its argument list.
    var commands = {};

    function call(name, argumentText) {
        try {
            return success(commands[name].apply(commands, revive(parse(argumentText))));
        } catch (e) {
            return failure(e);
        }
    }

    function define(name, command) {
        commands[name] = command;
    }

    try {
        if (!('webdriver' in window.navigator)) {
            defineProperty(window.Navigator.prototype, 'webdriver', {
                get: function () { return true; }, enumerable: true, configurable: true
            });
        }
    } catch (e) {
        // A page that cannot be told is driven all the same.
    }

    defineProperty(window, property, {
        value: {
            call: call, run: run, poll: poll, keep: keep, takeKept: takeKept, define: define,
            fail: fail, isElement: values.isElement
        }
    });
})
