// SPDX-License-Identifier: Apache-2.0
/* Recordings: a form for a new one, the list of all, and what can be done with the chosen one. */
(function () {
    'use strict';

    var eventTexts = {34: ' is finished.', 35: ' has failed.', 39: ' has begun.'};
    var failedEvent = 35;
    var form = Form.create('recordingForm', [
        {kind: 'choice', name: 'entry', label: 'Record', options: Entries.map(function (entry) {
            return {value: entry.uri, label: entry.title};
        })},
        {kind: 'text', name: 'fileName', label: 'File name, or none', value: ''},
        {kind: 'choice', name: 'minutes', label: 'From now, for', options: numbers([1, 10, 30, 60, 120], ' min')},
        {kind: 'button', label: 'Create', press: create},
        {kind: 'choice', name: 'most', label: 'At most at a time', options: numbers([1, 2, 5, 100], ''),
            changed: function (value) {
                report(RecordingTasks.setMost(value));
            }}
    ]);
    var tasks = Focus.list('recordingTasks', renderTask, function () {
        Focus.activate(taskActions);
    });
    var taskActions = Focus.list('taskActions', function (item, action) {
        item.className = 'button wide_button';
        item.textContent = action.label;
    }, function (action) {
        act(action);
    });

    function numbers(list, unit) {
        return list.map(function (number) {
            return {value: String(number), label: number + unit};
        });
    }

    function renderTask(item, task) {
        Rows.text(item, RecordingTasks.title(task), 'task ' + task.id + ', ' +
            RecordingTasks.clock(task.startTime) + ' to ' + RecordingTasks.clock(task.endTime) +
            ', ' + RecordingTasks.stateText(task));
        item.classList.add('task_' + RecordingTasks.stateName(task));
    }

    function report(outcome) {
        var element = document.getElementById('recordingState');
        element.className = 'state_text ' + (outcome.good ? 'good' : 'bad');
        element.textContent = outcome.text;
    }

    function refresh() {
        Focus.fill(tasks, RecordingTasks.all());
        document.getElementById('recordingCount').textContent = tasks.items.length === 0 ?
            'No recordings' : Texts.count(tasks.items.length, 'recording');
        document.getElementById('taskActions').style.visibility =
            tasks.items.length === 0 ? 'hidden' : 'visible';
        if (tasks.items.length === 0 && !Focus.isActive(form.list)) {
            Focus.activate(form.list);
        }
    }

    function create() {
        var values = Form.values(form);
        var entry = Entries.filter(function (one) {
            return one.uri === values.entry;
        })[0];
        report(RecordingTasks.create(entry, values.fileName, Number(values.minutes)));
        refresh();
    }

    function act(action) {
        var task = tasks.data[tasks.index];
        var outcome = task && action.run(task);
        if (outcome) {
            report(outcome);
            refresh();
        }
    }

    function keyInForm(code) {
        if (!Form.key(form, code) && (code === key.RIGHT || code === key.DOWN) && tasks.items.length > 0) {
            Focus.activate(tasks);
        }
    }

    function keyInTasks(code) {
        if (code === key.LEFT) {
            Focus.activate(form.list);
        } else if (code === key.UP) {
            Focus.move(tasks, -1);
        } else if (code === key.DOWN && !Focus.move(tasks, 1)) {
            Focus.activate(taskActions);
        } else if (code === key.OK) {
            Focus.choose(tasks);
        }
    }

    function keyInActions(code) {
        if (code === key.UP) {
            Focus.activate(tasks);
        } else if (code === key.LEFT && !Focus.move(taskActions, -1)) {
            Focus.activate(tasks);
        } else if (code === key.RIGHT) {
            Focus.move(taskActions, 1);
        } else if (code === key.OK) {
            Focus.choose(taskActions);
        }
    }

    /* Opens the video over this page; what cannot be played yet gets a line instead. */
    function play(task) {
        var entry = RecordingTasks.recorded(task);
        if (!entry) {
            return {good: false, text: 'Task ' + task.id + ' has recorded nothing yet.'};
        }
        Video.play(entry);
        return null;
    }

    Focus.fill(taskActions, [
        {label: 'Play', run: play},
        {label: 'End +10 min', run: function (task) {
            return RecordingTasks.moveEnd(task, 10);
        }},
        {label: 'End \u221210 min', run: function (task) {
            return RecordingTasks.moveEnd(task, -10);
        }},
        {label: 'Remove', run: function (task) {
            return RecordingTasks.remove(task, false);
        }},
        {label: 'Delete file', run: function (task) {
            return RecordingTasks.remove(task, true);
        }}
    ]);

    stbEvent.listen(function (code, params) {
        if (eventTexts[code] && Pager.current() === 'recordings') {
            report({good: code !== failedEvent, text: 'Task ' + Box.parse(params, {}).id + eventTexts[code]});
            // The box waits for the receiver here, so not from within the event itself.
            setTimeout(refresh, 0);
        }
    });

    Pager.register('recordings', {
        element: document.getElementById('page_recordings'),
        open: function (previous) {
            if (previous !== 'video') {
                Settings.read();
                RecordingTasks.applyMost();
                Form.assign(form, {most: RecordingTasks.most()});
                report({good: true, text: ''});
            }
            Focus.activate(previous === 'video' ? taskActions : form.list);
            refresh();
        },
        close: TextField.finish,
        key: function (code) {
            if (Focus.isActive(tasks)) {
                keyInTasks(code);
            } else if (Focus.isActive(taskActions)) {
                keyInActions(code);
            } else {
                keyInForm(code);
            }
            return true;
        },
        back: function () {
            if (Focus.isActive(taskActions)) {
                Focus.activate(tasks);
                return true;
            }
            return Pager.toMenu();
        }
    });
}());
