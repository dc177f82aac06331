// SPDX-License-Identifier: Apache-2.0
/* Search: a field that filters the catalogue while its text is typed. */
(function () {
    'use strict';

    var columns = 2;
    var input = null;
    var fieldRow = Focus.list('searchField', renderField, editField);
    var results = Focus.list('searchResults', function (item, entry) {
        Rows.text(item, entry.title, entry.note);
    }, Video.play);

    function renderField(item) {
        input = Rows.add(item, 'input', 'row_input', '');
        input.type = 'text';
        input.placeholder = 'OK opens the keyboard';
        input.addEventListener('input', filter);
    }

    function editField() {
        TextField.edit(input, function () {
            if (results.items.length > 0) {
                Focus.activate(results);
            }
        });
    }

    /* Shows the titles in which each word of the text occurs. */
    function filter() {
        var words = input.value.toLowerCase().split(/\s+/);
        var found = Catalogue.filter(function (entry) {
            var text = (entry.title + ' ' + entry.note).toLowerCase();
            return words.every(function (word) {
                return text.indexOf(word) >= 0;
            });
        });
        results.index = 0;
        Focus.fill(results, found);
        document.getElementById('searchCount').textContent =
            found.length + ' of ' + Catalogue.length + ' titles';
    }

    function keyInField(code) {
        if (code === key.DOWN && results.items.length > 0) {
            Focus.activate(results);
        } else if (code === key.OK) {
            Focus.choose(fieldRow);
        }
    }

    function keyInResults(code) {
        if (code === key.UP && !Focus.move(results, -columns)) {
            Focus.activate(fieldRow);
        } else if (code === key.DOWN) {
            Focus.move(results, columns);
        } else if (code === key.LEFT || code === key.RIGHT) {
            Focus.move(results, code === key.LEFT ? -1 : 1);
        } else if (code === key.OK) {
            Focus.choose(results);
        }
    }

    Focus.fill(fieldRow, [{}]);
    filter();

    Pager.register('search', {
        element: document.getElementById('page_search'),
        open: function (previous) {
            Focus.activate(previous === 'video' ? results : fieldRow);
        },
        close: TextField.finish,
        key: function (code) {
            if (Focus.isActive(results)) {
                keyInResults(code);
            } else {
                keyInField(code);
            }
            return true;
        },
        back: Pager.toMenu
    });
}());
