// SPDX-License-Identifier: Apache-2.0
/**
 * Where the keyboard goes. Pure: screen and field in, rectangle out, all in pixels.
 *
 * The keyboard docks at a screen edge so that it stays put from field to field of one form, and
 * leaves that edge only for a field that it would cover.
 */
var Placement = (function () {
    'use strict';

    // Proportions on a screen of 720 lines; everything else is scaled from them.
    var LINES = 720;
    var WIDTH = 940;
    var HEIGHT = 304;
    var EDGE = 14;
    var GAP = 8;

    // Below this share of its size the letters can no longer be read from a sofa.
    var SMALLEST = 0.6;

    function scale(screen) {
        return Math.min(screen.w / (LINES * 16 / 9), screen.h / LINES);
    }

    /** The size {w, h} of the keyboard on a screen {w, h}. */
    function size(screen) {
        return { w: Math.round(WIDTH * scale(screen)), h: Math.round(HEIGHT * scale(screen)) };
    }

    /** The part of a field that is on the screen; null when nothing of it is. */
    function visible(screen, field) {
        var left = Math.max(field.x, 0);
        var top = Math.max(field.y, 0);
        var right = Math.min(field.x + field.w, screen.w);
        var bottom = Math.min(field.y + field.h, screen.h);
        if (!(right > left && bottom > top)) {
            return null;
        }
        return { x: left, y: top, w: right - left, h: bottom - top };
    }

    /** Free areas around a field in order of preference: below, above, right, left. */
    function freeAreas(screen, field, edge, gap) {
        var right = field.x + field.w + gap;
        var bottom = field.y + field.h + gap;
        var inner = { w: screen.w - 2 * edge, h: screen.h - 2 * edge };
        return [
            { x: edge, y: bottom, w: inner.w, h: screen.h - edge - bottom },
            { x: edge, y: edge, w: inner.w, h: field.y - gap - edge, atTop: true },
            { x: right, y: edge, w: screen.w - edge - right, h: inner.h },
            { x: edge, y: edge, w: field.x - gap - edge, h: inner.h }
        ];
    }

    /** The share of its size that the keyboard can have in an area, at most 1. */
    function share(area, wanted) {
        return Math.min(1, area.w / wanted.w, area.h / wanted.h);
    }

    /** Docks a keyboard of that share of its size in an area: centred, at the bottom or top. */
    function docked(area, wanted, part) {
        var w = Math.floor(wanted.w * part);
        var h = Math.floor(wanted.h * part);
        return {
            x: Math.floor(area.x + (area.w - w) / 2),
            y: Math.floor(area.atTop ? area.y : area.y + area.h - h),
            w: w,
            h: h
        };
    }

    /**
     * The rectangle {x, y, w, h} for a keyboard of size "wanted" and the focused field, which may
     * be null. Shrinks the keyboard a little rather than covering the field.
     */
    function place(screen, field, wanted) {
        var edge = Math.round(EDGE * scale(screen));
        var gap = Math.round(GAP * scale(screen));
        var whole = { x: edge, y: edge, w: screen.w - 2 * edge, h: screen.h - 2 * edge };
        var seen = field ? visible(screen, field) : null;
        var best;
        if (!seen) {
            return docked(whole, wanted, 1);
        }
        best = freeAreas(screen, seen, edge, gap).reduce(function (found, area) {
            return share(area, wanted) > share(found, wanted) ? area : found;
        });
        if (share(best, wanted) >= SMALLEST) {
            return docked(best, wanted, share(best, wanted));
        }
        // The field leaves no room on any side: cover the half with less of it.
        whole.atTop = seen.y > screen.h - (seen.y + seen.h);
        return docked(whole, wanted, 1);
    }

    return { size: size, place: place };
}());
