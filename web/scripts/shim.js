// SPDX-License-Identifier: Apache-2.0
/*
 * Completes the player interface that portals expect: the methods of stbPlayer, the manager's
 * list, and a download manager that declines everything.
 */
(function () {
    var silent = [
        'clearStatistics', 'drawSubtitle', 'loadExternalSubtitles', 'rotate',
        'setTeletextViewport', 'teletextCommand', 'reset', 'execExternalProtocolCommand',
        'resetOptions'
    ];
    var answers = {setHttpHeaders: true, setOption: true, getOption: ''};

    // A method that only leaves a trace in the box's log and gives a fixed answer.
    function traced(owner, name, answer) {
        return function () {
            gSTB.Debug(owner + '.' + name);
            return answer;
        };
    }

    stbPlayerManager.list = [stbPlayer];

    stbPlayer.play = function (config) {
        gSTB.Debug('player0 debug');
        gSTB.PlayConfig(JSON.stringify(config));
    };
    stbPlayer.stop = function () { gSTB.Stop(); };
    stbPlayer.pause = function () { gSTB.Pause(); };
    stbPlayer.resume = function () { gSTB.Continue(); };
    // The box takes the size before the position.
    stbPlayer.setViewport = function (viewport, clip) {
        gSTB.SetViewport(viewport['width'], viewport['height'], viewport['x'], viewport['y']);
    };
    silent.forEach(function (name) {
        stbPlayer[name] = traced('stbPlayer', name);
    });
    Object.keys(answers).forEach(function (name) {
        stbPlayer[name] = traced('stbPlayer', name, answers[name]);
    });

    var downloads = {
        AddJob: false, AddMeasureJob: false, StartJob: false, StopJob: false,
        GetMeasureInfo: '[]', GetQueueInfo: '[]',
        AdjustJobPriority: undefined, AdjustJobPriorityV2: undefined, DeleteJob: undefined,
        InvalidateCatalog: undefined, PlayDownloadedMedia: undefined, RestoreJobs: undefined
    };
    window.stbDownloadManager = {};
    Object.keys(downloads).forEach(function (name) {
        stbDownloadManager[name] = traced('stbDownloadManager', name, downloads[name]);
    });
})();
