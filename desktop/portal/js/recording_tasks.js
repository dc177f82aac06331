// SPDX-License-Identifier: Apache-2.0
/*
 * The box's recording tasks. Times go to the receiver as seconds since 1970, in text. A file name
 * is the whole path, so that the portal knows where to play the recording from.
 */
var RecordingTasks = (function () {
    'use strict';

    var folder = '/media/recordings/';
    var waiting = 1;
    var stateNames = ['unknown', 'waiting', 'recording', 'failed', 'finished'];
    var noBox = {good: false, text: 'No box: nothing is recorded.'};
    var errors = {
        '-1': 'no answer, or a wrong parameter',
        '-2': 'the box has no memory left',
        '-3': 'the end is not after the start',
        '-4': 'there is no such task',
        '-5': 'no recording can have this file name',
        '-6': 'a file of this name exists',
        '-7': 'the box cannot open this address',
        '-8': 'the box cannot open this file',
        '-9': 'too many tasks wait or record',
        '-10': 'the stream came to its end',
        '-11': 'the box cannot write, perhaps its disk is full'
    };

    function seconds(time) {
        return String(Math.round(time / 1000));
    }

    function errorText(code) {
        return errors[code] || 'error ' + code;
    }

    /* What the box answered: done where it is 0 or more, else a refusal. */
    function outcome(answer, done) {
        if (answer === undefined) {
            return noBox;
        }
        return answer >= 0 ? {good: true, text: done.replace('%1', answer)} :
            {good: false, text: 'Refused: ' + errorText(answer) + '.'};
    }

    function find(test) {
        return RecordingTasks.all().filter(test)[0];
    }

    /* As "Night-market_2026-01-31_20-15-07.ts": no two have the same, and the box can keep it. */
    function nameFor(title, date) {
        return title.replace(/[^A-Za-z0-9]+/g, '-') + '_' + Texts.day(date) + '_' +
            Texts.clock(date).replace(/:/g, '-') + '.ts';
    }

    return {
        /* All tasks in the order of their making. */
        all: function () {
            var tasks = Box.parse(Box.recordings('GetAllTasks'), []);
            return tasks instanceof Array ? tasks : [];
        },
        stateName: function (task) {
            return stateNames[task.state] || stateNames[0];
        },
        /* The state in words, and why a recording failed. */
        stateText: function (task) {
            return RecordingTasks.stateName(task) +
                (task.errorCode < 0 ? ': ' + errorText(task.errorCode) : '');
        },
        /* The name of the task's file without its folder. */
        title: function (task) {
            return (task.fileName || task.url).replace(/^.*\//, '');
        },
        /* The clock time of a task's time text; texts that are no number stay as they are. */
        clock: function (time) {
            return /^\d+$/.test(time) ? Texts.clock(new Date(time * 1000)).substr(0, 5) : time;
        },
        /*
         * Records an entry from now on, for some minutes; {good, text} tells what came of it. An
         * empty name gives one of its own.
         */
        create: function (entry, name, minutes) {
            var now = new Date();
            var path = folder + (name ? name.replace(/(\.ts)?$/, '.ts') : nameFor(entry.title, now));
            var same = find(function (task) {
                return task.fileName === path;
            });
            return same ? {good: false, text: 'Task ' + same.id + ' already has this file name.'} :
                outcome(Box.recordings('CreateTask', Player.resolve(entry.uri), path,
                    seconds(now.getTime()), seconds(now.getTime() + minutes * 60000)),
                'Task %1 was created.');
        },
        /* Moves the end by some minutes, negative ones back. */
        moveEnd: function (task, minutes) {
            var end = String(Number(task.endTime) + minutes * 60);
            return outcome(Box.recordings('ChangeEndTime', task.id, end),
                'Task ' + task.id + ' now ends at ' + RecordingTasks.clock(end) + '.');
        },
        /* Removes the task and keeps what was recorded, or takes every file with it. */
        remove: function (task, withFiles) {
            Box.recordings('RemoveTask', task.id, withFiles ? 3 : 1);
            // The box does not tell what came of it; the list does.
            return find(function (one) {
                return one.id === task.id;
            }) ? {good: false, text: 'Task ' + task.id + ' is still there.'} :
                {good: true, text: 'Task ' + task.id + ' is removed' +
                    (withFiles ? ' with its file.' : ', its file stays in ' + folder + '.')};
        },
        /* Something that can be played once the recording has begun; null before. */
        recorded: function (task) {
            return task.state === waiting ? null : {title: RecordingTasks.title(task),
                note: 'recording', uri: task.fileName, start: 0};
        },
        /*
         * The box knows how many tasks may wait or record at a time, but not how to tell it. So
         * the portal keeps the number and says it before it shows it.
         */
        most: function () {
            return Settings.value('recordings_at_once') || '2';
        },
        applyMost: function () {
            Box.recordings('SetMaxRecordingCnt', Number(RecordingTasks.most()));
        },
        setMost: function (count) {
            var kept = Settings.save({recordings_at_once: count});
            Box.recordings('SetMaxRecordingCnt', Number(count));
            if (!Box.isPresent()) {
                return noBox;
            }
            return {good: kept, text: 'Up to ' + Texts.count(Number(count), 'recording') +
                ' at a time' + (kept ? '.' : ', but the box does not keep this number.')};
        }
    };
}());
