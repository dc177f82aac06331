// SPDX-License-Identifier: Apache-2.0
/* The box's recording tasks. Times go to the receiver as seconds since 1970, in text. */
var RecordingTasks = (function () {
    'use strict';

    var stateNames = ['unknown', 'waiting', 'recording', 'failed', 'finished'];
    var refusals = {
        '-1': 'no answer, or a wrong parameter',
        '-3': 'the end is not after the start',
        '-4': 'there is no such task',
        '-5': 'no recording can have this file name',
        '-6': 'a file of this name exists',
        '-7': 'the box cannot open this address',
        '-8': 'the box cannot open this file',
        '-9': 'too many tasks wait or record'
    };

    function seconds(time) {
        return String(Math.round(time / 1000));
    }

    /* What the box answered: done where it is 0 or more, else a refusal. */
    function outcome(answer, done) {
        if (answer === undefined) {
            return {good: false, text: 'No box: nothing is recorded.'};
        }
        return answer >= 0 ? {good: true, text: done.replace('%1', answer)} :
            {good: false, text: 'Refused: ' + (refusals[answer] || 'answer ' + answer) + '.'};
    }

    return {
        removeTask: 0,
        removeTaskAndFile: 3,
        /* All tasks in the order of their making. */
        all: function () {
            var tasks = Box.parse(Box.recordings('GetAllTasks'), []);
            return tasks instanceof Array ? tasks : [];
        },
        stateName: function (task) {
            return stateNames[task.state] || stateNames[0];
        },
        /* The clock time of a task's time text; texts that are no number stay as they are. */
        clock: function (time) {
            return /^\d+$/.test(time) ? EventLog.clock(new Date(time * 1000)).substr(0, 5) : time;
        },
        /* Records the address from now on, for some minutes; {good, text} tells what came of it. */
        create: function (uri, fileName, minutes) {
            var now = Date.now();
            /* A file that exists is not recorded into again. */
            fileName = fileName || 'recording-' + seconds(now) + '.ts';
            return outcome(Box.recordings('CreateTask', uri, fileName, seconds(now),
                seconds(now + minutes * 60000)), 'Task %1 was created.');
        },
        /* Moves the end by some minutes, negative ones back. */
        moveEnd: function (task, minutes) {
            var end = String(Number(task.endTime) + minutes * 60);
            return outcome(Box.recordings('ChangeEndTime', task.id, end),
                'Task ' + task.id + ' now ends at ' + RecordingTasks.clock(end) + '.');
        },
        /* The box does not tell what came of these two. */
        remove: function (task, type) {
            Box.recordings('RemoveTask', task.id, type);
        },
        setMost: function (count) {
            Box.recordings('SetMaxRecordingCnt', count);
        },
        /* The text that came with the last recording event. */
        eventText: function () {
            return Box.recordings('GetEventParams') || '';
        }
    };
}());
