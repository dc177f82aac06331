// SPDX-License-Identifier: Apache-2.0
/*
 * What a portal of the soak does when its server asks for it, and what it keeps and tells: every
 * event and key that it hears and every command that it gives, in order. A number counts the
 * loads of all pages; commands carry it, so that none is like another.
 */
/* global LIFE */
var stb = {profile: {}, player: {}}, key = {}, module = {tv: {}}, stbEvent;

var PER_LIFE = 100000, REPORT_MS = 100, PATIENCE = 20;
var heard = {events: [], keys: [], boxKeys: [], commands: [], notes: []};
var batches = [], reports = 0, commandCount = 0, failures = 0, lastAction = 0, waits = 0,
    isBusy = false;

function _debug() {}

function lastRecording() {
    var text = pvrManager.GetEventParams();
    return text ? JSON.parse(text).id : 0;
}

// Only once the receiver has announced a portal has that portal settings of its own.
var hasSettings = location.search.indexOf('announced') > 0;

function stored() {
    var own = hasSettings ? JSON.parse(gSTB.GetEnv('{"varList":["count"]}')).result.count : '';
    return {data: gSTB.LoadUserData('count'), cfg: gSTB.ReadCFG().split('\n')[0], settings: own,
            hasSettings: hasSettings};
}

function store(count) {
    gSTB.SaveUserData('count', count);
    gSTB.WriteCFG('count=' + count + '\n' + new Array(2000).join('#'));
    if (hasSettings)
        gSTB.SetEnv('{"count":"' + count + '"}');
}

stbEvent = {
    onEvent: function (code, parameters) {
        var number = lastRecording();
        heard.events.push(code + ' ' + number);
        if (parameters && JSON.parse(parameters).id !== number)
            heard.notes.push('parameters ' + parameters + ' of ' + number);
        if (failures > 0 && failures--)
            throw new Error('a script that fails');
    },
    onBroadcastMessage: function (from, message) {
        heard.events.push(message.replace('storage.', '') + ' ' + lastRecording());
    }
};

document.onkeydown = function (event) {
    var name = (event.ctrlKey ? 'C' : '') + (event.altKey ? 'A' : '') + event.keyCode;
    if (name === 'A80' || name === 'A81')
        heard.boxKeys.push(name === 'A80' ? 'mount' : 'unmount');
    else if (name === 'C122')
        heard.notes.push('standby');
    // Those with which the viewer leaves the portal or favourites come or not.
    else if (!isBusy && name !== '36' && name !== '122')
        heard.keys.push(name);
};

// Every command has its number, under which the receiver keeps it as well.
function command(kind, give) {
    var number = LIFE * PER_LIFE + (++commandCount);
    heard.commands.push(kind + ' ' + number);
    return give(number);
}

function play(number) { gSTB.Play('ffmpeg http://127.0.0.1:9/' + number + '.ts'); }
function seek(number) { gSTB.SetPosTimeEx(number); }
function audio(number) { gSTB.SetAudioPID(number); }
function record(number) {
    return pvrManager.CreateTask('http://127.0.0.1:9/' + number + '.ts', '/media/a.ts', '1', '2');
}
function look(number) { return JSON.parse(pvrManager.GetTaskByID(number)).id; }
function change(number) { return pvrManager.ChangeEndTime(number, '3'); }

function later(act) { setTimeout(act, 0); }

function request(kind, give) {
    var begin = Date.now(), number, answer;
    answer = command(kind, function (given) { number = given; return give(given); });
    if (kind === 1905 ? answer !== 0 : answer !== number)
        heard.notes.push('answer ' + answer + ' after ' + (Date.now() - begin) + ' ms');
}

function say() {
    var get = new XMLHttpRequest();
    get.open('GET', '/said?' + lastAction, false);
    get.send();
}

// Keys that are pressed once the server has heard of this are the dialog's.
function dialog(open) {
    say();
    heard.notes.push('said ' + open());
}

var actions = {
    zap: function (count) {
        var index;
        for (index = 0; index < count; ++index)
            command(1000, play);
        command(1012, audio);
    },
    record: function () {
        request(1903, record);
        request(1906, look);
        request(1905, change);
        gSTB.GetStorageInfo('{}');
        pvrManager.GetAllTasks();
    },
    store: function (count) {
        store(count);
        heard.notes.push('stored ' + count + ' ' + (hasSettings ? 1 : 0));
    },
    reload: function () { location.reload(); },
    go: function (query) { location.href = location.pathname + '?' + query; },
    alert: function () { dialog(function () { return alert('An alert'); }); },
    confirm: function () { dialog(function () { return confirm('Really?'); }); },
    prompt: function (text) { dialog(function () { return prompt('Name?', text); }); },
    keyboard: function () {
        isBusy = true;
        document.getElementById('field').value = '';
        document.getElementById('field').focus();
        gSTB.ShowVirtualKeyboard();
    },
    typed: function () {
        var field = document.getElementById('field');
        heard.notes.push('typed ' + field.value);
    },
    hide: function () {
        gSTB.HideVirtualKeyboard();
        document.getElementById('field').blur();
        isBusy = false;
    },
    favourites: function (url) {
        stbWindowMgr.openWebFavorites(url, 1);
        heard.notes.push('opened ' + lastRecording());
    },
    close: function () {
        stbWebWindow.close();
        say();
    },
    fail: function (count) {
        failures = Number(count);
        later(function () { throw new Error('a timer that fails'); });
    },
    loop: function () { later(function () { for (;;); }); },
    garbage: function () { window.kept = new Array(1e6).join('x') + Date.now(); },
    look: function () { request(1906, look); },
    rest: function () { clearInterval(seeking); }
};

// What nobody has confirmed yet is told again; the server knows each batch by its number.
function gather(isLast) {
    var name, batch = {number: ++reports, isLast: isLast, recording: lastRecording()};
    for (name in heard) {
        batch[name] = heard[name];
        heard[name] = [];
    }
    batches.push(batch);
    return JSON.stringify({life: LIFE, batches: batches});
}

function act(action) {
    if (action.id <= lastAction)
        return;
    lastAction = action.id;
    document.getElementById('what').textContent = action.name;
    setTimeout(function () {
        actions[action.name](action.argument);
        heard.notes.push('done ' + action.id);
    }, 0);
}

function report() {
    var post = new XMLHttpRequest(), count;
    // The engine forgets a request without a word when the page begins to load another.
    if (waits > 0 && waits++ < PATIENCE)
        return;
    waits = 1;
    post.open('POST', '/report');
    post.onreadystatechange = function () {
        if (post.readyState !== 4)
            return;
        waits = 0;
        if (post.status !== 200)
            return;
        batches.splice(0, count);
        if (post.responseText)
            act(JSON.parse(post.responseText));
    };
    post.send(gather(false));
    count = batches.length;
}

window.onunload = function () {
    var post, text = gather(true), tries;
    for (tries = 0; tries < 3; ++tries) {
        post = new XMLHttpRequest();
        post.open('POST', '/report', false);
        try {
            post.send(text);
            return;
        } catch (failed) {
            gSTB.Debug('a last report failed: ' + failed);
        }
    }
};

heard.notes.push('arrived ' + lastRecording());
setInterval(report, REPORT_MS);
var seeking = setInterval(function () { command(1005, seek); }, 250);

window.onload = function () {
    gSTB.InitPlayer();
    heard.notes.push('loaded ' + JSON.stringify(stored()));
};
