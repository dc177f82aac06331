// SPDX-License-Identifier: Apache-2.0
/* The settings form, and beside it what the box made of it. */
(function () {
    'use strict';

    var form = Form.create('settingsForm', [
        {kind: 'choice', name: 'language', label: 'Language', options: [
            {value: 'en', label: 'English'}, {value: 'de', label: 'Deutsch'},
            {value: 'ru', label: 'Русский'}, {value: 'uk', label: 'Українська'},
            {value: 'tr', label: 'Türkçe'}
        ]},
        {kind: 'choice', name: 'timezone_conf', label: 'Time zone', options: [
            'Europe/Kiev', 'Europe/London', 'Europe/Berlin', 'Europe/Istanbul', 'Asia/Almaty',
            'America/New_York', 'UTC'
        ].map(function (zone) {
            return {value: zone, label: zone};
        })},
        {kind: 'choice', name: 'clock_format', label: 'Clock', options: [
            {value: '12h', label: '12 hours'}, {value: '24h', label: '24 hours'}
        ]},
        {kind: 'text', name: 'portal_name', label: 'Portal name'},
        {kind: 'text', name: 'portal_note', label: 'Note'},
        {kind: 'button', label: 'Save', press: save}
    ]);

    function report(className, text) {
        var element = document.getElementById('settingsState');
        element.className = 'state_text ' + className;
        element.textContent = text;
    }

    /* What the box gives for each setting of the form. */
    function showKept(values) {
        var table = document.getElementById('settingsKept');
        table.innerHTML = '';
        form.list.data.forEach(function (row) {
            var line;
            if (row.name) {
                line = table.insertRow(-1);
                line.insertCell(-1).textContent = row.label;
                line.insertCell(-1).textContent = values[row.name] || '(empty)';
            }
        });
    }

    function reportOpened(values) {
        var time = Number(values.saved_at);
        if (!Box.isPresent()) {
            report('bad', 'No box: nothing can be kept.');
        } else if (time > 0) {
            report('good', 'Kept by the box, last saved at ' + Texts.clock(new Date(time)) + '.');
        } else {
            report('', 'Nothing is saved yet; these are the defaults of the box.');
        }
    }

    function save() {
        var values = Form.values(form);
        var hadBlanks = Object.keys(values).some(function (name) {
            return Settings.withoutBlanks(values[name]) !== values[name];
        });
        var kept = Settings.save(values);
        var stored = Settings.read();
        showKept(stored);
        if (kept) {
            Form.assign(form, stored);
        }
        if (!Box.isPresent()) {
            report('bad', 'No box: nothing was kept.');
        } else if (kept) {
            report('good', 'Saved and read back.' + (hadBlanks ? ' Blanks became underscores.' : ''));
        } else {
            report('bad', 'The box kept nothing. Has no portal been announced yet? It names its ' +
                'file after the portal that the receiver announces (there: portal ' +
                window.location.href.replace(/[?#].*/, '') + ').');
        }
    }

    Pager.register('settings', {
        element: document.getElementById('page_settings'),
        open: function () {
            var values = Settings.read();
            Form.assign(form, values);
            showKept(values);
            reportOpened(values);
            form.list.index = 0;
            Focus.activate(form.list);
        },
        close: TextField.finish,
        key: function (code) {
            Form.key(form, code);
            return true;
        },
        back: Pager.toMenu
    });
}());
