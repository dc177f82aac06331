// SPDX-License-Identifier: Apache-2.0
/**
 * How the focus walks over the keys. Pure: positions in, position out.
 *
 * A position is {row, column, goal}: "goal" is the horizontal place, in columns, that the viewer
 * last chose by moving left or right. Moving up and down keeps it, so that a way across a wide
 * key leads back to where it came from.
 */
var Navigation = (function () {
    'use strict';

    function wrapped(value, count) {
        return (value + count) % count;
    }

    function centre(key) {
        return key.x + key.w / 2;
    }

    /** How far a key lies from a horizontal place; nothing at all when it is straight there. */
    function distance(key, goal) {
        return Math.max(0, Math.abs(centre(key) - goal) - key.w / 2);
    }

    /** The column of the key nearest to a horizontal place; of two the one centred nearer. */
    function nearest(row, goal) {
        var best = 0;
        row.forEach(function (key, column) {
            var closer = distance(key, goal) - distance(row[best], goal);
            if (closer < 0 || (closer === 0 &&
                    Math.abs(centre(key) - goal) < Math.abs(centre(row[best]) - goal))) {
                best = column;
            }
        });
        return best;
    }

    /** The position of a key that the viewer went to directly. */
    function at(rows, row, column) {
        return { row: row, column: column, goal: centre(rows[row][column]) };
    }

    /** One step: "left", "right", "up" or "down"; both ways round the edges. */
    function move(rows, from, direction) {
        var row;
        if (direction === 'left' || direction === 'right') {
            return at(rows, from.row,
                wrapped(from.column + (direction === 'left' ? -1 : 1), rows[from.row].length));
        }
        row = wrapped(from.row + (direction === 'up' ? -1 : 1), rows.length);
        return { row: row, column: nearest(rows[row], from.goal), goal: from.goal };
    }

    return { at: at, nearest: nearest, move: move };
}());
