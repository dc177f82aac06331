// SPDX-License-Identifier: Apache-2.0
// The demo portal's own suite; copy it and put your portal's pages in their place.
'use strict';

const assert = require('node:assert');
const path = require('node:path');
const { pathToFileURL } = require('node:url');
const { afterEach, beforeEach, test } = require('node:test');
const { By, until } = require('selenium-webdriver');
const { startBox } = require('./box');

const demo = pathToFileURL(path.resolve(__dirname, '../../../portal/index.html')).href;
let box;

beforeEach(async () => {
    box = await startBox(process.env.PORTAL || demo, { player: 'simulated' });
    await box.wait(until.elementLocated(By.css('#entryList li')), 5000);
});

afterEach(() => box.quit());

test('the menu lists what can be played', async () => {
    const first = await box.findElement(By.css('#entryList li'));
    assert.match(await first.getText(), /First light/);
});

test('OK plays the first clip', async () => {
    await box.press('ok');
    await box.waitUntilPlaying();
    assert.ok((await box.commands()).some((line) => line.includes('/media/demo/first.ts')));
});

test('green changes how the portal plays', async () => {
    const route = await box.findElement(By.id('routeName'));
    const before = await route.getText();
    await box.press('green');
    assert.notStrictEqual(await route.getText(), before);
});

test('storage is announced', async () => {
    await box.receiver('usb mount');
    await box.wait(async () => {
        const rows = await box.findElement(By.id('eventRows'));
        return /storage\.mount/.test(await rows.getText());
    }, 5000);
});
