// SPDX-License-Identifier: Apache-2.0
/* The sub-page with the audio and subtitle tracks of what plays. */
(function () {
    'use strict';

    var currentAudio = 0;
    var currentSubtitle = 0;
    /* ms in which the receiver has told of a change. */
    var answerTime = 150;
    var timer = 0;
    var audio = Focus.list('audioTracks', function (item, track) {
        render(item, track, currentAudio);
    }, function (track) {
        select('SetAudioPID', track);
    });
    var subtitles = Focus.list('subtitleTracks', function (item, track) {
        render(item, track, currentSubtitle);
    }, function (track) {
        select('SetSubtitlePID', track);
    });

    function render(item, track, current) {
        var language = track.lang instanceof Array ? track.lang[0] : track.lang;
        item.className = !track.none && track.pid === current ? 'playing' : '';
        Rows.text(item, language || 'unknown', track.none ? '' : 'pid ' + track.pid);
    }

    function select(method, track) {
        if (!track.none) {
            Box.stb(method, track.pid);
            setTimeout(refresh, answerTime);
        }
    }

    function tracks(method) {
        var list = Box.list(method);
        return list.length > 0 ? list : [{none: true, lang: Box.isPresent() ? 'No tracks' : 'No box'}];
    }

    function refresh() {
        currentAudio = Box.stb('GetAudioPID');
        currentSubtitle = Box.stb('GetSubtitlePID');
        Focus.fill(audio, tracks('GetAudioPIDs'));
        Focus.fill(subtitles, tracks('GetSubtitlePIDs'));
    }

    function active() {
        return Focus.isActive(subtitles) ? subtitles : audio;
    }

    Pager.register('tracks', {
        element: document.getElementById('page_tracks'),
        open: function () {
            refresh();
            Focus.activate(audio);
            // The receiver tells the box, not the page, which track it has changed to.
            timer = setInterval(refresh, 1000);
        },
        close: function () {
            clearInterval(timer);
        },
        key: function (code) {
            if (code === key.UP || code === key.DOWN) {
                Focus.move(active(), code === key.UP ? -1 : 1);
            } else if (code === key.LEFT) {
                Focus.activate(audio);
            } else if (code === key.RIGHT) {
                Focus.activate(subtitles);
            } else if (code === key.OK) {
                Focus.choose(active());
            }
            return true;
        },
        back: Pager.toMenu
    });
}());
