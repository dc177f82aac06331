// SPDX-License-Identifier: Apache-2.0
/*
 * The scripts that the engine runs: the keyboard page, the scripts put into portals, the demo
 * portal, and those of a driver on a desktop. They keep to ES5, so anything younger is an error
 * here, and so is every name that neither ES5, the engine nor one of these scripts defines.
 */
'use strict';

const fs = require('fs');
const path = require('path');
const js = require('./build/lint/eslint/node_modules/@eslint/js');

// What these scripts use of the engine; it has no fetch.
const engine = [
    'window', 'document', 'console', 'location', 'navigator', 'screen', 'setTimeout',
    'clearTimeout', 'setInterval', 'clearInterval', 'getComputedStyle', 'Image', 'Map', 'WeakMap',
    'XMLHttpRequest', 'XMLSerializer', 'alert', 'confirm', 'prompt'
];
// What the box publishes in a portal or in the keyboard page.
const box = [
    'gSTB', 'stb', 'stbPlayer', 'stbPlayerManager', 'pvrManager', 'stbWindowMgr', 'stbWebWindow',
    'stbStorage', 'timeShift', 'stbSurface', 'stbDownloadManager', 'Vkb'
];

// The scripts of a folder share their globals, as those of a page do.
function globalsOf(folder) {
    const names = {};
    if (!fs.existsSync(path.join(__dirname, folder)))
        return names;
    fs.readdirSync(path.join(__dirname, folder), {recursive: true})
        .filter(file => file.endsWith('.js'))
        .forEach(file => {
            const text = fs.readFileSync(path.join(__dirname, folder, file), 'utf8');
            for (const found of text.matchAll(/^(?:var|function) (\w+)/gm))
                names[found[1]] = 'readonly';
        });
    return names;
}

function scriptsOf(folder) {
    const globals = globalsOf(folder);
    engine.concat(box).forEach(name => { globals[name] = globals[name] || 'readonly'; });
    return {
        files: [folder + '/**/*.js'],
        languageOptions: {ecmaVersion: 5, sourceType: 'script', globals: globals},
        linterOptions: {reportUnusedDisableDirectives: 'error'},
        rules: Object.assign({}, js.configs.recommended.rules, {
            'eqeqeq': 'error',
            'no-caller': 'error',
            'no-eval': 'error',
            'no-redeclare': ['error', {builtinGlobals: false}],
            'no-self-compare': 'error',
            'no-throw-literal': 'error',
            'no-unused-vars': ['error', {vars: 'local', args: 'none', caughtErrors: 'none'}],
            'no-use-before-define': ['error', {functions: false, variables: false}]
        })
    };
}

module.exports = ['web/keyboard', 'web/scripts', 'desktop/portal', 'desktop/template',
    'desktop/driver/plugin', 'soak/pages'].map(scriptsOf);
