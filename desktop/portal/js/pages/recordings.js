// SPDX-License-Identifier: Apache-2.0
/* Recordings: a form for a new one, the list of all, and what can be done with the chosen one. */
(function () {
    'use strict';

    var recordingEvents = {34: 'finished', 35: 'failed', 39: 'started'};
    var form = Form.create('recordingForm', [
        {kind: 'choice', name: 'entry', label: 'Record', options: Entries.map(function (entry) {
            return {value: entry.uri, label: entry.title};
        })},
        {kind: 'text', name: 'fileName', label: 'File name, or none', value: ''},
        {kind: 'choice', name: 'minutes', label: 'From now, for', options: numbers([1, 10, 30, 60, 120], ' min')},
        {kind: 'button', label: 'Create', press: create},
        {kind: 'choice', name: 'most', label: 'At most at a time', options: numbers([1, 2, 5, 100], '')},
        {kind: 'button', label: 'Set this limit', press: setMost}
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
        Rows.text(item, task.id + '  ' + (task.fileName || task.url), RecordingTasks.clock(task.startTime) +
            ' to ' + RecordingTasks.clock(task.endTime) + ', ' + RecordingTasks.stateName(task));
        item.classList.add('task_' + RecordingTasks.stateName(task));
    }

    function report(outcome) {
        var element = document.getElementById('recordingState');
        element.className = 'state_text ' + (outcome.good ? 'good' : 'bad');
        element.textContent = outcome.text;
    }

    function refresh() {
        Focus.fill(tasks, RecordingTasks.all());
        document.getElementById('recordingCount').textContent =
            tasks.items.length === 0 ? 'No recordings' : 'Recordings: ' + tasks.items.length;
        if (tasks.items.length === 0 && !Focus.isActive(form.list)) {
            Focus.activate(form.list);
        }
    }

    function create() {
        var values = Form.values(form);
        report(RecordingTasks.create(Player.resolve(values.entry), values.fileName, Number(values.minutes)));
        refresh();
    }

    function setMost() {
        var most = Form.values(form).most;
        RecordingTasks.setMost(Number(most));
        report(Box.isPresent() ? {good: true, text: 'Asked for at most ' + most + ' at a time.'} :
            {good: false, text: 'No box: nothing is recorded.'});
    }

    function remove(type, text) {
        return function (task) {
            RecordingTasks.remove(task, type);
            return {good: true, text: 'Asked to remove task ' + task.id + text + '.'};
        };
    }

    function act(action) {
        if (tasks.items.length > 0) {
            report(action.run(tasks.data[tasks.index]));
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

    Focus.fill(taskActions, [
        {label: 'End +10 min', run: function (task) {
            return RecordingTasks.moveEnd(task, 10);
        }},
        {label: 'End -10 min', run: function (task) {
            return RecordingTasks.moveEnd(task, -10);
        }},
        {label: 'Remove', run: remove(RecordingTasks.removeTask, ', keeping its file')},
        {label: 'Remove with file', run: remove(RecordingTasks.removeTaskAndFile, ' and its file')}
    ]);

    stbEvent.listen(function (code) {
        if (recordingEvents[code] && Pager.current() === 'recordings') {
            report({good: code !== 35, text: 'Recording ' + recordingEvents[code] + ' ' +
                RecordingTasks.eventText() + '.'});
            // The box waits for the receiver here, so not from within the event itself.
            setTimeout(refresh, 0);
        }
    });

    Pager.register('recordings', {
        element: document.getElementById('page_recordings'),
        open: function () {
            Focus.activate(form.list);
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
