// SPDX-License-Identifier: Apache-2.0
/*
 * What the on-screen keyboard needs in the portal: where the focused field is, and entering keys
 * into it.
 */

// The focused element, or null when nothing but the page itself has the focus.
function focusedInput() {
    var element = document.activeElement;
    return element === document.body || element === document.documentElement ? null : element;
}

function GetFocusInputPos() {
    var element = focusedInput();
    if (!element)
        return {x: 0, y: 0, w: 0, h: 0};
    var box = element.getBoundingClientRect();
    return {x: box.left, y: box.top, w: box.width, h: box.height};
}

function getCursortPosition(ctrl) {
    // Fields such as numbers have no caret that scripts can see; theirs counts as the end.
    return typeof ctrl.selectionStart === 'number' ? ctrl.selectionStart : ctrl.value.length;
}

// A negative position means the end.
function setCaretPosition(ctrl, pos) {
    var target = pos < 0 ? ctrl.value.length : pos;
    if (typeof ctrl.selectionStart === 'number')
        ctrl.setSelectionRange(target, target);
}

// Replaces length characters before the caret by text and tells the page of it.
function replaceBeforeCaret(ctrl, length, text) {
    var caret = getCursortPosition(ctrl);
    ctrl.value = ctrl.value.slice(0, caret - length) + text + ctrl.value.slice(caret);
    setCaretPosition(ctrl, caret - length + text.length);
    var event = document.createEvent('Event');
    event.initEvent('input', false, true);
    ctrl.dispatchEvent(event);
}

function keyboardWrite(text) {
    replaceBeforeCaret(document.activeElement, 0, text);
}

function keyboardDel() {
    var ctrl = document.activeElement;
    var caret = getCursortPosition(ctrl);
    if (caret > 0) {
        // Characters outside the basic plane are a pair of units; half of one is no character.
        var isPair = /[\uD800-\uDBFF][\uDC00-\uDFFF]$/.test(ctrl.value.slice(0, caret));
        replaceBeforeCaret(ctrl, isPair ? 2 : 1, '');
    }
}

// Moves the caret by one character; the ends stay the ends.
function moveCaret(ctrl, step) {
    var caret = getCursortPosition(ctrl) + step;
    setCaretPosition(ctrl, Math.max(0, Math.min(ctrl.value.length, caret)));
}

function KeyboardPress(text, id) {
    if (text === 'Enter') {
        gSTB.HideVirtualKeyboard();
        return;
    }
    var ctrl = focusedInput();
    if (!ctrl || typeof ctrl.value !== 'string')
        return;
    switch (text) {
    case 'BackSpace': keyboardDel(); break;
    case 'Space': keyboardWrite(' '); break;
    case 'Up': setCaretPosition(ctrl, 0); break;
    case 'Down': setCaretPosition(ctrl, -1); break;
    case 'Left': moveCaret(ctrl, -1); break;
    case 'Right': moveCaret(ctrl, 1); break;
    default: keyboardWrite(text);
    }
}
