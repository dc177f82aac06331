// SPDX-License-Identifier: Apache-2.0
/* All titles that search knows: those of the menu and older ones, which share the same few clips. */
var Catalogue = Entries.concat([
    {title: 'Evening news', note: 'live, without a length', uri: '/media/demo/channel.ts?duration=0', start: 0, live: true},
    {title: 'Night market', note: 'clip, two minutes', uri: '/media/demo/harbour.ts?duration=120', start: 0},
    {title: 'Harbour pilots', note: 'series, episode 1 of 2', uri: '/media/demo/harbour.ts?duration=1500', start: 0},
    {title: 'Harbour pilots', note: 'series, episode 2 of 2', uri: '/media/demo/harbour.ts?duration=1500', start: 0},
    {title: 'Snow line', note: 'film, forty minutes', uri: '/media/demo/night.mkv?duration=2400', start: 0},
    {title: 'The lighthouse', note: 'film, one hour', uri: '/media/demo/night.mkv?duration=3600', start: 0},
    {title: 'Radio Meadow', note: 'live, sound only', uri: '/media/demo/channel.ts?duration=0', start: 0, live: true},
    {title: 'Slow trains', note: 'series, five minutes', uri: '/media/demo/railway.mp4?duration=300', start: 0},
    {title: 'Weather', note: 'clip, thirty seconds', uri: '/media/demo/countdown.ts?duration=30', start: 0},
    {title: 'Test card', note: 'clip, ten minutes', uri: '/media/demo/first.ts?duration=600', start: 0}
]);
