// SPDX-License-Identifier: Apache-2.0
/*
 * What can be played. uri is a path of the box, an address, or a name relative to this page; start
 * is where playback begins, in seconds. Of what is live nobody knows a length: whatever the receiver
 * tells of one then counts for what it has kept, and the portal offers no seeking.
 */
var Entries = [
    {title: 'First light', note: 'clip, one minute', uri: '/media/demo/first.ts', start: 0},
    {title: 'Harbour at dusk', note: 'clip, two audio tracks', uri: '/media/demo/harbour.ts', start: 0},
    {title: 'Mountain railway', note: 'film, goes on at 0:20', uri: '/media/demo/railway.mp4?duration=90', start: 20},
    {title: 'Demo channel', note: 'live, without a length', uri: '/media/demo/channel.ts?duration=0', start: 0, live: true},
    {title: 'Countdown', note: 'clip, ten seconds', uri: '/media/demo/countdown.ts?duration=10', start: 0},
    {title: 'Long night', note: 'film, two hours', uri: '/media/demo/night.mkv?duration=7200', start: 0}
];
