// SPDX-License-Identifier: Apache-2.0
/*
 * What the on-screen keyboard needs in the portal: where the focused field is, and entering keys
 * into it.
 */

(function () {
    // Fields that take text; all other elements with a value, buttons among them, keep theirs.
    var textTypes = ['text', 'search', 'url', 'tel', 'email', 'password', 'number', 'date',
                     'datetime', 'datetime-local', 'month', 'time', 'week'];

    // The focused element, or null when nothing but the page itself has the focus.
    function focusedElement() {
        var element = document.activeElement;
        return element === document.body || element === document.documentElement ? null : element;
    }

    // What has the focus in a frame, as far as its document is of the same origin.
    function focusedInside(frame) {
        try {
            return frame.contentDocument.activeElement;
        } catch (foreign) {
            return null;
        }
    }

    // The focused text field, in a frame of the page as well, or null.
    function focusedField() {
        var element = focusedElement();
        while (element && (element.tagName === 'IFRAME' || element.tagName === 'FRAME'))
            element = focusedInside(element);
        var isField = element && (element.tagName === 'TEXTAREA' ||
            (element.tagName === 'INPUT' && textTypes.indexOf(element.type) >= 0));
        return isField ? element : null;
    }

    // The focused text field if it may be changed, or null.
    function writableField() {
        var ctrl = focusedField();
        return ctrl && !ctrl.readOnly && !ctrl.disabled ? ctrl : null;
    }

    // A number on its way, such as "-" or "3e", which its field would take for nothing: kept here
    // until it is one. What the page does to the field ends it, and so does a move of the caret.
    var unfinishedNumber = /^[-+]?\d*\.?\d*(e[-+]?)?$/i;
    var unfinished = null;

    // The text of a field and where its caret is.
    function entered(ctrl) {
        if (unfinished && unfinished.ctrl === ctrl && unfinished.shown === ctrl.value)
            return unfinished;
        return {text: ctrl.value, caret: getCursortPosition(ctrl)};
    }

    // Gives a field its text, an unfinished number as far as it is one; false when the field takes
    // nothing of it, and stays as it was.
    function enter(ctrl, text, caret) {
        var shown = ctrl.value;
        var shownCaret = getCursortPosition(ctrl);
        ctrl.value = text;
        if (ctrl.value || !text) {
            setCaretPosition(ctrl, caret);
            return true;
        }
        if (!unfinishedNumber.test(text)) {
            ctrl.value = shown;
            placeCaret(ctrl, shownCaret);
            return false;
        }
        ctrl.value = text.replace(/[-+.e]+$/i, '');
        placeCaret(ctrl, ctrl.value.length);
        unfinished = {ctrl: ctrl, shown: ctrl.value, text: text, caret: caret};
        return true;
    }

    // As much of a text as still fits into a field, in whole characters.
    function fitting(ctrl, text) {
        var limit = ctrl.getAttribute('maxlength') === null ? -1 : ctrl.maxLength;
        if (limit < 0 || ctrl.value.length + text.length <= limit)
            return text;
        return text.slice(0, Math.max(0, limit - ctrl.value.length))
            .replace(/[\uD800-\uDBFF]$/, '');
    }

    // Replaces length characters before the caret by text and tells the page of it.
    function replaceBeforeCaret(ctrl, length, text) {
        var now = entered(ctrl);
        var start = now.text.slice(0, now.caret - length) + text;
        if (!enter(ctrl, start + now.text.slice(now.caret), start.length))
            return;
        var event = document.createEvent('Event');
        event.initEvent('input', false, true);
        ctrl.dispatchEvent(event);
    }

    // Moves the caret by one character; the ends stay the ends.
    function moveCaret(ctrl, step) {
        var caret = getCursortPosition(ctrl) + step;
        setCaretPosition(ctrl, Math.max(0, Math.min(ctrl.value.length, caret)));
    }

    function GetFocusInputPos() {
        var element = focusedField() || focusedElement();
        if (!element)
            return {x: 0, y: 0, w: 0, h: 0};
        var box = element.getBoundingClientRect();
        var x = box.left;
        var y = box.top;
        // The box of a field in a frame counts from that frame's corner.
        for (var view = element.ownerDocument.defaultView; view !== window; view = view.parent) {
            var frame = view.frameElement;
            x += frame.getBoundingClientRect().left + frame.clientLeft;
            y += frame.getBoundingClientRect().top + frame.clientTop;
        }
        return {x: x, y: y, w: box.width, h: box.height};
    }

    function getCursortPosition(ctrl) {
        // Fields such as numbers may have no caret that scripts can see; theirs counts as the end.
        return typeof ctrl.selectionStart === 'number' ? ctrl.selectionStart : ctrl.value.length;
    }

    function placeCaret(ctrl, pos) {
        if (typeof ctrl.selectionStart === 'number')
            ctrl.setSelectionRange(pos, pos);
    }

    // A negative position means the end.
    function setCaretPosition(ctrl, pos) {
        unfinished = null;
        placeCaret(ctrl, pos < 0 ? ctrl.value.length : pos);
    }

    function keyboardWrite(text) {
        var ctrl = writableField();
        if (!ctrl)
            return;
        var fits = fitting(ctrl, text);
        if (fits || !text)
            replaceBeforeCaret(ctrl, 0, fits);
    }

    function keyboardDel() {
        var ctrl = writableField();
        if (!ctrl)
            return;
        var now = entered(ctrl);
        var before = now.text.slice(0, now.caret);
        // Characters outside the basic plane are a pair of units; half of one is no character.
        if (before)
            replaceBeforeCaret(ctrl, /[\uD800-\uDBFF][\uDC00-\uDFFF]$/.test(before) ? 2 : 1, '');
    }

    function KeyboardPress(text, id) {
        if (text === 'Enter') {
            gSTB.HideVirtualKeyboard();
            return;
        }
        var ctrl = focusedField();
        if (!ctrl)
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

    // What portals and the box call; the rest stays in here.
    window.GetFocusInputPos = GetFocusInputPos;
    window.getCursortPosition = getCursortPosition;
    window.setCaretPosition = setCaretPosition;
    window.keyboardWrite = keyboardWrite;
    window.keyboardDel = keyboardDel;
    window.KeyboardPress = KeyboardPress;
})();
