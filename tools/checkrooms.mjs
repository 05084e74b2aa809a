// Checks that every include and import goes where the table of rooms in docs/architecture.md
// allows, that no folders include each other in a circle, and that no folder has more files than a
// reader can take in.
import { execFileSync } from 'node:child_process';
import { existsSync, readFileSync } from 'node:fs';
import path from 'node:path';
import { fileURLToPath } from 'node:url';

const top = fileURLToPath(new URL('..', import.meta.url));
const mostFilesInFolder = 25;
const pictures = /\.(png|svg)$/;
const sampleFolders = /\/seeds\//;
const sources = /\.(cpp|h|in|ts|mjs|vue|css)$/;

const files = execFileSync('git', ['ls-files', '--cached', '--others', '--exclude-standard'], {
    cwd: top,
    encoding: 'utf8',
})
    .split('\n')
    .filter((file) => file && existsSync(path.join(top, file)));
const known = new Set(files);

/** The rooms of the table: folder → folders that it may include; "all" is every folder. */
function readTable() {
    const text = readFileSync(path.join(top, 'docs/architecture.md'), 'utf8');
    const folders = (cell) => [...cell.matchAll(/`([^`]+)\/`/g)].map((match) => match[1]);
    const rooms = new Map();
    for (const row of text.matchAll(/^\|(.*)\|.*\|(.*)\|$/gm)) {
        const allowed = row[2].trim() === 'all' ? 'all' : folders(row[2]);
        for (const folder of folders(row[1])) rooms.set(folder, allowed);
    }
    if (rooms.size === 0) throw new Error('docs/architecture.md has no table of rooms');
    return rooms;
}

/** The file that an import means, of those with a path inside the project; null for packages. */
function imported(file, name) {
    if (!name.startsWith('.') && !name.startsWith('@/')) return null;
    const base = name.startsWith('@/')
        ? path.join('page/src', name.slice(2))
        : path.join(path.dirname(file), name);
    const endings = ['', '.ts', '.mjs', '.d.mts', '.vue', '/index.ts'];
    return endings.map((ending) => base + ending).find((candidate) => known.has(candidate)) ?? null;
}

/** The project's files that a source file includes or imports. */
function targetsOf(file) {
    const text = readFileSync(path.join(top, file), 'utf8');
    if (/\.(cpp|h)$/.test(file)) {
        const names = [...text.matchAll(/^\s*#\s*include\s*"([^"]+)"/gm)].map((match) => match[1]);
        return names.filter((name) => known.has(name));
    }
    const names = text.matchAll(/\b(?:from|import)\s*\(?\s*['"]([^'"]+)['"]/g);
    return [...names].map((match) => imported(file, match[1])).filter(Boolean);
}

/** The innermost room that a file lies in, or null. */
function roomOf(file, rooms) {
    for (let folder = path.dirname(file); folder !== '.'; folder = path.dirname(folder)) {
        if (rooms.has(folder)) return folder;
    }
    return null;
}

function forbiddenArrows(arrows, rooms) {
    return arrows.flatMap(({ from, to }) => {
        const [room, other] = [roomOf(from, rooms), roomOf(to, rooms)];
        if (!room) return [`${from}: docs/architecture.md has no room for it`];
        const allowed = rooms.get(room);
        if (room === other || allowed === 'all' || allowed.includes(other)) return [];
        return [`${from}: ${room}/ may not include ${to}`];
    });
}

/** A circle of folders that starts at one of them, or null. */
function findCycle(graph) {
    const finished = new Set();
    const visit = (folder, way) => {
        if (way.includes(folder)) return [...way.slice(way.indexOf(folder)), folder];
        if (finished.has(folder)) return null;
        for (const next of graph.get(folder) ?? []) {
            const cycle = visit(next, [...way, folder]);
            if (cycle) return cycle;
        }
        finished.add(folder);
        return null;
    };
    for (const folder of graph.keys()) {
        const cycle = visit(folder, []);
        if (cycle) return cycle;
    }
    return null;
}

function cycles(arrows) {
    const graph = new Map();
    for (const { from, to } of arrows) {
        const [folder, other] = [path.dirname(from), path.dirname(to)];
        if (folder === other) continue;
        graph.set(folder, (graph.get(folder) ?? new Set()).add(other));
    }
    const cycle = findCycle(graph);
    return cycle ? [`folders include each other: ${cycle.join(' -> ')}`] : [];
}

function crowdedFolders() {
    const counts = new Map();
    for (const file of files) {
        if (pictures.test(file) || sampleFolders.test(file)) continue;
        const folder = path.dirname(file);
        counts.set(folder, (counts.get(folder) ?? 0) + 1);
    }
    return [...counts]
        .filter(([, count]) => count > mostFilesInFolder)
        .map(([folder, count]) => `${folder}: ${count} files, at most ${mostFilesInFolder}`);
}

const rooms = readTable();
const arrows = files
    .filter((file) => sources.test(file))
    .flatMap((from) => targetsOf(from).map((to) => ({ from, to })));
const missing = [...rooms.keys()]
    .filter((room) => !files.some((file) => file.startsWith(`${room}/`)))
    .map((room) => `docs/architecture.md: there is no folder ${room}/`);
const faults = [
    ...missing,
    ...forbiddenArrows(arrows, rooms),
    ...cycles(arrows),
    ...crowdedFolders(),
];
console.log(`${rooms.size} rooms, ${arrows.length} includes and imports`);
for (const fault of faults) console.error(fault);
process.exitCode = faults.length ? 1 : 0;
