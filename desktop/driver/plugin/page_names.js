// SPDX-License-Identifier: Apache-2.0
/*
 * The role and the name by which an element is known to who cannot see it. Evaluated after
 * page_visibility.js, as a function of the object of page_script.js.
 */
(function (driver) {
    'use strict';

    var isHtml = driver.isHtml;
    var style = driver.style;

    var roles = {
        article: 'article', aside: 'complementary', button: 'button', datalist: 'listbox',
        dd: 'definition', details: 'group', dialog: 'dialog', dt: 'term', fieldset: 'group',
        figure: 'figure', footer: 'contentinfo', form: 'form', h1: 'heading', h2: 'heading',
        h3: 'heading', h4: 'heading', h5: 'heading', h6: 'heading', header: 'banner',
        hr: 'separator', li: 'listitem', main: 'main', math: 'math', menu: 'list', nav: 'navigation',
        ol: 'list', optgroup: 'group', option: 'option', output: 'status', p: 'paragraph',
        progress: 'progressbar', section: 'region', summary: 'button', table: 'table',
        tbody: 'rowgroup', td: 'cell', textarea: 'textbox', tfoot: 'rowgroup', th: 'columnheader',
        thead: 'rowgroup', tr: 'row', ul: 'list'
    };
    var inputRoles = {
        button: 'button', checkbox: 'checkbox', email: 'textbox', image: 'button',
        number: 'spinbutton', radio: 'radio', range: 'slider', reset: 'button',
        search: 'searchbox', submit: 'button', tel: 'textbox', text: 'textbox', url: 'textbox'
    };

    driver.define('role', function (element) {
        var given = (element.getAttribute('role') || '').trim().split(/\s+/)[0];
        if (given) {
            return given === 'presentation' ? 'none' : given;
        }
        switch (element.localName) {
        case 'a':
        case 'area':
            return element.hasAttribute('href') ? 'link' : 'generic';
        case 'img':
            return element.getAttribute('alt') === '' ? 'none' : 'img';
        case 'input':
            return inputRoles[element.type] || 'textbox';
        case 'select':
            return element.multiple || element.size > 1 ? 'listbox' : 'combobox';
        }
        return roles[element.localName] || 'generic';
    });

    function textOf(node, visited) {
        if (node.nodeType === 3) {
            return node.nodeValue;
        }
        if (node.nodeType !== 1 || visited.indexOf(node) >= 0 || style(node, 'display') === 'none') {
            return '';
        }
        return nameOf(node, visited.concat([node]), true);
    }

    function nameFromReferences(element, visited) {
        return (element.getAttribute('aria-labelledby') || '').trim().split(/\s+/).map(function (id) {
            var other = id && document.getElementById(id);
            return other ? nameOf(other, visited.concat([other]), true) : '';
        }).join(' ').trim();
    }

    function nameFromLabels(element, visited) {
        return Array.prototype.map.call(element.labels || [], function (label) {
            return textOf(label, visited.concat([element]));
        }).join(' ').trim();
    }

    function ownName(element) {
        if (isHtml(element, 'input') && ['button', 'submit', 'reset'].indexOf(element.type) >= 0) {
            return element.value || { submit: 'Submit', reset: 'Reset' }[element.type] || '';
        }
        return element.getAttribute('alt') || '';
    }

    var namedByContent = ['a', 'button', 'h1', 'h2', 'h3', 'h4', 'h5', 'h6', 'option', 'summary',
        'td', 'th', 'label', 'legend', 'caption', 'tr', 'li'];

    function nameOf(element, visited, fromContent) {
        var name = (visited.length < 2 && nameFromReferences(element, visited)) ||
            (element.getAttribute('aria-label') || '').trim() ||
            nameFromLabels(element, visited) || ownName(element);
        if (!name && (fromContent || namedByContent.indexOf(element.localName) >= 0 ||
                      element.hasAttribute('role'))) {
            name = Array.prototype.map.call(element.childNodes, function (node) {
                return textOf(node, visited);
            }).join('').replace(/\s+/g, ' ').trim();
        }
        return name || element.getAttribute('title') || element.getAttribute('placeholder') || '';
    }

    driver.define('label', function (element) { return nameOf(element, [element], false); });
})
