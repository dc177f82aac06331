// SPDX-License-Identifier: Apache-2.0
/**
 * Which layouts to offer, and in which order.
 *
 * The box answers with JSON text that names the layouts and, apart from that, their order.
 */
var LayoutChoice = (function () {
    'use strict';

    /** Parses the box's answer; null when it is not JSON or not of the expected shape. */
    function parse(text) {
        var answer;
        try {
            answer = JSON.parse(text);
        } catch (notJson) {
            return null;
        }
        if (!answer || !Array.isArray(answer.layouts) || !Array.isArray(answer.order)) {
            return null;
        }
        return answer;
    }

    /** The names to offer for the box's answer; all built-in ones when it names none of them. */
    function choose(text) {
        var answer = parse(text);
        var chosen = [];
        if (answer) {
            // Named layouts that the order forgets come last rather than being lost.
            chosen = answer.order.concat(answer.layouts).filter(function (name, at, all) {
                return answer.layouts.indexOf(name) >= 0 && Layouts.names.indexOf(name) >= 0 &&
                    all.indexOf(name) === at;
            });
        }
        return chosen.length > 0 ? chosen : Layouts.names.slice();
    }

    return { choose: choose };
}());
