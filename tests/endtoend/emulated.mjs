import fs from 'node:fs';
import os from 'node:os';
import path from 'node:path';

/** The libraries of programs that are built for another machine; see "./test arm64". */
const libraries = process.env.SUITE_LIBRARIES;

/** Whether the suite under test is such programs. */
export const isEmulated = Boolean(libraries);

/** Arguments for bubblewrap that let such programs run through qemu-user. */
export function emulationMounts() {
    return libraries ? ['--ro-bind', libraries, '/usr/lib/aarch64-linux-gnu'] : [];
}

/** Becomes the parent of what the programs that it starts leave behind, then the given program. */
const adopter = `import ctypes, os, sys
PR_SET_CHILD_SUBREAPER = 36
if ctypes.CDLL(None).prctl(PR_SET_CHILD_SUBREAPER, 1): sys.exit("prctl")
os.execv(sys.argv[1], sys.argv[1:])`;

/**
 * The command line that runs such a program. What assistantctl asks for itself to await its
 * scripts, qemu-user refuses: so a program of this machine asks before it becomes assistantctl.
 */
export function emulatedCommand(command) {
    if (!libraries || !command[0].endsWith('/assistantctl')) return command;
    return ['/usr/bin/python3', '-I', '-c', adopter, ...command];
}

/**
 * A filter of system calls (seccomp(2), for x86-64) as bubblewrap reads it: waiting for a process
 * by its descriptor does not exist. Qt takes that for the sign that it can make such descriptors,
 * which qemu-user cannot.
 */
function filterBytes() {
    const [load, jumpIfEqual, answer] = [0x20, 0x15, 0x06];
    const [architecture, number, firstArgument] = [4, 0, 16];
    const [x86, waitid, byDescriptor, missing, allowed] = [0xc000003e, 247, 3, 0x50026, 0x7fff0000];
    const program = [
        [load, 0, 0, architecture],
        [jumpIfEqual, 0, 5, x86],
        [load, 0, 0, number],
        [jumpIfEqual, 0, 3, waitid],
        [load, 0, 0, firstArgument],
        [jumpIfEqual, 0, 1, byDescriptor],
        [answer, 0, 0, missing],
        [answer, 0, 0, allowed],
    ];
    const bytes = Buffer.alloc(program.length * 8);
    program.forEach(([code, ifTrue, ifFalse, value], index) => {
        bytes.writeUInt16LE(code, index * 8);
        bytes.writeUInt8(ifTrue, index * 8 + 2);
        bytes.writeUInt8(ifFalse, index * 8 + 3);
        bytes.writeUInt32LE(value, index * 8 + 4);
    });
    return bytes;
}

/**
 * What bubblewrap is started with for such programs: {args, stdio, started}. The file of stdio
 * becomes that descriptor; started() has to be called then.
 */
export function emulation(descriptor) {
    if (!libraries) return { args: [], stdio: [], started: () => {} };
    const file = path.join(fs.mkdtempSync(path.join(os.tmpdir(), 'filter-')), 'filter');
    fs.writeFileSync(file, filterBytes());
    const open = fs.openSync(file, 'r');
    fs.rmSync(path.dirname(file), { recursive: true });
    return {
        args: ['--seccomp', `${descriptor}`],
        stdio: [open],
        started: () => fs.closeSync(open),
    };
}
