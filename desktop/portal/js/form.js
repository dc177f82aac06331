// SPDX-License-Identifier: Apache-2.0
/*
 * A column of form rows. A row is {kind, name, label, ...} with kind
 * 'choice': options, a list of {value, label}; left and right step through them, and changed(value),
 *           if there is one, hears of each step,
 * 'text': typed with the on-screen keyboard,
 * 'button': press() is called for OK.
 */
var Form = (function () {
    'use strict';

    function showChoice(item, row) {
        item.querySelector('.row_value').textContent = '\u2039 ' + row.options[row.index].label + ' \u203a';
    }

    function step(form, row, by) {
        var item = form.list.items[form.list.data.indexOf(row)];
        row.index = (row.index + by + row.options.length) % row.options.length;
        showChoice(item, row);
        if (row.changed) {
            row.changed(row.options[row.index].value);
        }
    }

    function renderText(item, row) {
        var input;
        Rows.add(item, 'span', 'row_name', row.label);
        input = Rows.add(item, 'input', 'row_input', '');
        input.type = 'text';
        input.value = row.value;
        input.addEventListener('input', function () {
            row.value = input.value;
        });
    }

    function render(item, row) {
        item.classList.add('row_' + row.kind);
        if (row.kind === 'text') {
            renderText(item, row);
        } else {
            Rows.pair(item, row.label, '');
            if (row.kind === 'choice') {
                showChoice(item, row);
            }
        }
    }

    function choose(form, row) {
        if (row.kind === 'choice') {
            step(form, row, 1);
        } else if (row.kind === 'button') {
            TextField.finish();
            row.press();
        } else {
            TextField.edit(form.list.items[form.list.index].querySelector('input'), function () {
                Focus.move(form.list, 1);
            });
        }
    }

    /* Sets a row's value; a choice that does not have it keeps its own. */
    function assign(row, value) {
        if (row.kind === 'text') {
            row.value = value;
        } else if (row.kind === 'choice') {
            row.options.forEach(function (option, index) {
                row.index = option.value === value ? index : row.index;
            });
        }
    }

    return {
        /* Shows the rows in the list element of this id. */
        create: function (id, rows) {
            var form = {};
            form.list = Focus.list(id, render, function (row) {
                choose(form, row);
            });
            rows.forEach(function (row) {
                row.index = row.index || 0;
                row.value = row.value || '';
            });
            Focus.fill(form.list, rows);
            return form;
        },
        /* The named values; those of buttons are not part of them. */
        values: function (form) {
            var values = {};
            form.list.data.forEach(function (row) {
                if (row.name) {
                    values[row.name] = row.kind === 'choice' ? row.options[row.index].value : row.value;
                }
            });
            return values;
        },
        /* Shows those of the named values that there are. */
        assign: function (form, values) {
            form.list.data.forEach(function (row) {
                if (typeof values[row.name] === 'string') {
                    assign(row, values[row.name]);
                }
            });
            Focus.fill(form.list, form.list.data);
        },
        /* Handles an arrow or OK; false for what the rows have no use for, as at an end. */
        key: function (form, code) {
            var row = form.list.data[form.list.index];
            if (code === key.UP || code === key.DOWN) {
                return Focus.move(form.list, code === key.UP ? -1 : 1);
            }
            if (code === key.OK) {
                Focus.choose(form.list);
                return true;
            }
            if (row.kind === 'choice' && (code === key.LEFT || code === key.RIGHT)) {
                step(form, row, code === key.LEFT ? -1 : 1);
                return true;
            }
            return false;
        }
    };
}());
