// SPDX-License-Identifier: Apache-2.0
// A box for selenium-webdriver: the usual driver, and the commands that only a box has.
'use strict';

const { Builder } = require('selenium-webdriver');
const { Command } = require('selenium-webdriver/lib/command');

const commands = {
    boxKey: ['POST', 'key'],
    boxReceiver: ['POST', 'receiver'],
    boxCommands: ['GET', 'commands'],
    boxLog: ['GET', 'log'],
    boxMessages: ['GET', 'messages'],
    boxScreen: ['GET', 'screen'],
    boxPlaying: ['POST', 'playing']
};

async function startBox(portal, options = {}) {
    const driver = await new Builder()
        .usingServer(process.env.VESPREL_DRIVER || 'http://127.0.0.1:4444')
        .withCapabilities({ browserName: 'vesprel', 'vesprel:options': { ...options, portal } })
        .build();
    for (const [name, [method, path]] of Object.entries(commands)) {
        driver.getExecutor().defineCommand(name, method, `/session/:sessionId/vesprel/${path}`);
    }
    const run = (name, parameters = {}) =>
        driver.execute(new Command(name).setParameters(parameters));
    return Object.assign(driver, {
        press: (key, times = 1) => run('boxKey', { key, times }),
        receiver: (line) => run('boxReceiver', { line }),
        commands: () => run('boxCommands'),
        log: () => run('boxLog'),
        messages: () => run('boxMessages'),
        screen: () => run('boxScreen'),
        waitUntilPlaying: (seconds = 10) => run('boxPlaying', { timeout: seconds * 1000 })
    });
}

module.exports = { startBox };
