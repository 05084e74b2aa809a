import { afterEach, beforeEach, expect, test } from 'vitest';

import { runCommand } from '../assistantctl.mjs';
import { SandboxRoot } from '../sandboxroot.mjs';
import { busFile, checkInput } from './inputmethods.mjs';

let root;

beforeEach(async () => {
    root = await SandboxRoot.create({ suite: true });
});

afterEach(async () => root.dispose());

const wayland = { XDG_SESSION_TYPE: 'wayland', WAYLAND_DISPLAY: 'wayland-0' };

test('an unset module is a missing plug-in', async () => {
    const { result, debug } = await checkInput(root, ['fcitx5'], { XMODIFIERS: '@im=fcitx' });
    expect(result).toBe('ERR_LOADPLUGIN_FAILED');
    expect(debug).toBe('');
});

test('a module without a Qt plug-in is reported as a missing plug-in', async () => {
    const { result } = await checkInput(root, [], { CHECKED_QT_IM_MODULE: 'scim' });
    expect(result).toBe('ERR_LOADPLUGIN_FAILED');
});

test.each(['fcitx', 'FCITX', 'Fcitx', 'fcitx5'])(
    'the module %s is healthy while fcitx5 runs',
    async (module) => {
        const { result, debug } = await checkInput(root, ['fcitx5'], {
            CHECKED_QT_IM_MODULE: module,
            XMODIFIERS: '@im=fcitx',
        });
        expect(result).toBe('ERR_OK');
        expect(debug).toBe('');
    },
);

test.each([
    ['fcitx', undefined, 'ERR_NOT_RUNNING'],
    ['fcitx', '@im=fcitx', 'ERR_NOT_RUNNING'],
    ['fcitx', '@im=ibus', 'ERR_INVALID_ENV_CONFIG'],
    ['ibus', '@im=fcitx', 'ERR_INVALID_ENV_CONFIG'],
    ['ibus', '@im=ibus', 'ERR_NOT_RUNNING'],
    ['ibus', '@im=IBus', 'ERR_NOT_RUNNING'],
    ['ibus', undefined, 'ERR_NOT_RUNNING'],
    ['ibus', 'fcitx', 'ERR_NOT_RUNNING'],
])('without a daemon the module %s with XMODIFIERS %s is %s', async (module, modifiers, result) => {
    const env = { QT_IM_MODULE: module, XMODIFIERS: modifiers };
    const end = await runCommand(root, 'inputcheck', {}, { env });
    expect(end.answer.result).toBe(result);
    expect(end.status).toBe(0);
});

test('a running fcitx5 does not serve the module ibus', async () => {
    const env = { CHECKED_QT_IM_MODULE: 'ibus', XMODIFIERS: '@im=fcitx' };
    expect((await checkInput(root, ['fcitx5'], env)).result).toBe('ERR_INVALID_ENV_CONFIG');
});

test('a module with a plug-in and no daemon of its own is healthy', async () => {
    const env = { QT_IM_MODULE: 'xim', XMODIFIERS: '@im=fcitx' };
    expect((await runCommand(root, 'inputcheck', {}, { env })).answer.result).toBe('ERR_OK');
});

test.each([
    [':7', '-unix-7'],
    [':7.0', '-unix-7'],
    ['otherhost:7', '-unix-7'],
])('the running ibus is found on the display %s', async (display, ending) => {
    const env = { CHECKED_QT_IM_MODULE: 'ibus', CHECKED_DISPLAY: display };
    const { result, debug } = await checkInput(root, ['ibus'], env);
    expect(result).toBe('ERR_OK');
    expect(debug).toBe(`${busFile(root, ending)}\n`);
});

test.each([
    [':1.0', '-unix-1'],
    ['otherhost:2', '-unix-2'],
    ['', '-unix-'],
])('the running ibus has no address for the display %s', async (display, ending) => {
    const env = { CHECKED_QT_IM_MODULE: 'ibus', CHECKED_DISPLAY: display };
    const { result, debug } = await checkInput(root, ['ibus'], env);
    expect(result).toBe('ERR_NOT_FIND_BUSCONFIG');
    expect(debug).toBe(`${busFile(root, ending)}\n`);
});

test('on Wayland the address of the running ibus is that of the Wayland display', async () => {
    const { result, debug } = await checkInput(root, ['ibus'], {
        ...wayland,
        CHECKED_QT_IM_MODULE: 'ibus',
    });
    expect(result).toBe('ERR_OK');
    expect(debug).toBe(`${busFile(root, '-unix-wayland-0')}\n`);
});

test('on Wayland the name for X11 is tried when the display has no file of its own', async () => {
    const { result, debug } = await checkInput(root, ['ibus'], {
        CHECKED_XDG_SESSION_TYPE: 'wayland',
        CHECKED_WAYLAND_DISPLAY: 'wayland-5',
        CHECKED_QT_IM_MODULE: 'ibus',
    });
    expect(result).toBe('ERR_OK');
    expect(debug).toBe(`${busFile(root, '-unix-7')}\n`);
});
