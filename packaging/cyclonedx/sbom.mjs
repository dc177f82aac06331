// SPDX-License-Identifier: Apache-2.0
// node sbom.mjs DEB FILE: see packaging/sbom.
import * as Cdx from '@cyclonedx/cyclonedx-library';
import {PackageURL} from 'packageurl-js';
import {execFileSync} from 'node:child_process';
import {createHash} from 'node:crypto';
import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';

const [deb, output] = process.argv.slice(2);
const run = (command, ...words) => execFileSync(
    command, words, {encoding: 'utf8', maxBuffer: 1 << 28, stdio: ['ignore', 'pipe', 'ignore']});
const fields = ['Package', 'Version', 'Architecture', 'source:Package', 'source:Version',
    'Depends', 'Pre-Depends', 'Provides', 'Homepage'];

// Stanzas of control data as objects.
function stanzas(text) {
    return text.split(/\n\n+/).filter(Boolean).map(stanza => Object.fromEntries(
        stanza.replace(/\n[ \t]+/g, ' ').split('\n').map(line => line.match(/^([^:]+):\s*(.*)$/))
            .filter(Boolean).map(found => [found[1], found[2]])));
}

const record = fields.map(field => '${' + field + '}').join('\t') + '\n';
const installed = new Map();
const providers = new Map();
run('dpkg-query', '-W', '-f', '${db:Status-Abbrev}\t' + record).split('\n').forEach(line => {
    const [status, ...values] = line.split('\t');
    if (!status.startsWith('ii'))
        return;
    const entry = Object.fromEntries(fields.map((field, i) => [field, values[i]]));
    installed.set(entry.Package, entry);
    (entry.Provides || '').split(',').map(text => text.trim().split(' ')[0]).filter(Boolean)
        .forEach(name => providers.set(name, entry.Package));
});

// What dpkg knows of a package that is installed here, or apt of one that is not; else nothing.
function known(name) {
    if (installed.has(name) || providers.has(name))
        return installed.get(name) || installed.get(providers.get(name));
    let entry;
    try {
        entry = stanzas(run('apt-cache', 'show', '--no-all-versions', name))[0];
    } catch {
        return undefined;
    }
    if (!entry)
        return undefined;
    const source = (entry.Source || entry.Package).match(/^(\S+)(?: \((.*)\))?$/);
    return Object.assign(entry,
        {'source:Package': source[1], 'source:Version': source[2] || entry.Version});
}

// The packages that a field of relations leads to: of alternatives the first that is there.
function targets(relations) {
    return (relations || '').split(',').map(text => text.trim()).filter(Boolean)
        .map(group => group.split('|').map(text => text.trim().split(/[ :(]/)[0]))
        .map(names => names.find(name => installed.has(name) || providers.has(name)) || names[0])
        .map(known).filter(Boolean);
}

// Names of licenses that a package's copyright file gives, if it is one that machines can read.
function licenses(root, name) {
    let text = '';
    try {
        text = fs.readFileSync(`${root}/usr/share/doc/${name}/copyright`, 'utf8');
    } catch {
        return [];
    }
    if (!/^Format:.*copyright-format/m.test(text))
        return [];
    return [...new Set([...text.matchAll(/^License:[ \t]*(\S.*)$/gm)].map(found => found[1].trim()))]
        .sort();
}

// The installed packages whose libraries the programs in the folder name.
function linked(folder) {
    const names = new Set(fs.readdirSync(folder, {recursive: true})
        .map(file => path.join(folder, file))
        .filter(file => fs.lstatSync(file).isFile() &&
            fs.readFileSync(file).subarray(0, 4).toString('latin1') === '\x7fELF')
        .flatMap(file => [...run('readelf', '-dW', file)
            .matchAll(/\(NEEDED\).*\[(.*)\]/g)].map(found => found[1])));
    const places = new Map([...run('/sbin/ldconfig', '-p')
        .matchAll(/^\t(\S+) .*=> (\S+)$/gm)].map(found => [found[1], found[2]]).reverse());
    return new Map([...names].sort().map(name => {
        const place = places.get(name);
        const owner = place && [place, fs.realpathSync(place), place.replace(/^\/usr/, '')]
            .map(file => {
                try {
                    return run('dpkg', '-S', file).split(/[:,]/)[0];
                } catch {
                    return undefined;
                }
            }).find(Boolean);
        if (!owner)
            throw new Error(`no package here has ${name}`);
        return [name, owner];
    }));
}

const distribution = fs.readFileSync('/etc/os-release', 'utf8').match(/^VERSION_CODENAME=(.*)$/m)[1];
const time = new Date(process.env.SOURCE_DATE_EPOCH
    ? process.env.SOURCE_DATE_EPOCH * 1000 : Date.now());
const unpacked = fs.mkdtempSync(path.join(os.tmpdir(), 'vesprel-sbom.'));
process.on('exit', () => fs.rmSync(unpacked, {recursive: true}));
run('dpkg-deb', '-x', deb, unpacked);
const own = stanzas(run('dpkg-deb', '-f', deb))[0];
// What a foreign processor's libraries are is not known here.
const native = own.Architecture === run('dpkg', '--print-architecture').trim();
const libraries = native ? linked(unpacked) : new Map();

function component(entry, type, root, vendor) {
    const result = new Cdx.Models.Component(type, entry.Package, {
        bomRef: `${entry.Package}@${entry.Version}`,
        version: entry.Version,
        purl: new PackageURL('deb', vendor, entry.Package, entry.Version,
            {arch: entry.Architecture, distro: distribution}, undefined)
    });
    licenses(root, entry.Package).forEach(
        name => result.licenses.add(new Cdx.Models.NamedLicense(name)));
    result.properties.add(new Cdx.Models.Property('debian:source',
        `${entry['source:Package']} ${entry['source:Version']}`));
    [...libraries].filter(([, owner]) => owner === entry.Package).forEach(
        ([name]) => result.properties.add(new Cdx.Models.Property('linked', name)));
    return result;
}

const subject = component(Object.assign(
    {'source:Package': own.Source || own.Package, 'source:Version': own.Version}, own),
Cdx.Enums.ComponentType.Application, unpacked, 'vesprel');
subject.hashes.set(Cdx.Enums.HashAlgorithm['SHA-256'],
    createHash('sha256').update(fs.readFileSync(deb)).digest('hex'));
const bom = new Cdx.Models.Bom({metadata: new Cdx.Models.Metadata({
    component: subject,
    timestamp: time
})});

const components = new Map();

// Adds a package and all that it depends on; what only recommendations lead to is optional.
function add(entry, scope) {
    const known = components.get(entry.Package);
    if (known)
        return known;
    const added = component(entry, Cdx.Enums.ComponentType.Library, '', 'debian');
    added.scope = scope;
    components.set(entry.Package, added);
    bom.components.add(added);
    targets(entry['Pre-Depends']).concat(targets(entry.Depends))
        .forEach(next => added.dependencies.add(add(next, scope).bomRef));
    return added;
}

const {Required, Optional} = Cdx.Enums.ComponentScope;
targets(own['Pre-Depends']).concat(targets(own.Depends)).forEach(
    entry => subject.dependencies.add(add(entry, Required).bomRef));
targets(own.Recommends).forEach(
    entry => subject.dependencies.add(add(entry, Optional).bomRef));

const missing = [...libraries].filter(([, owner]) => !components.has(owner));
if (missing.length)
    throw new Error(`linked, but no dependency leads to it: ${missing.join('; ')}`);

const text = new Cdx.Serialize.JsonSerializer(
    new Cdx.Serialize.JSON.Normalize.Factory(Cdx.Spec.Spec1dot6))
    .serialize(bom, {sortLists: true, space: 2});
const errors = await new Cdx.Validation.JsonStrictValidator(Cdx.Spec.Version.v1dot6).validate(text);
if (errors)
    throw new Error(`not valid: ${JSON.stringify(errors)}`);
fs.writeFileSync(output, text + '\n');
console.log(`${path.basename(output)}: ${components.size} packages, ${libraries.size} libraries ` +
    'linked, valid CycloneDX 1.6');
