import { describe, expect, it } from 'vitest';
import english from '@/views/inputmethod/texts.en.json';
import { answerCode, answerCodes, judgeAnswer } from '@/views/inputmethod/answers';
import { dependsOnSituation, stepsFor, type Situation } from '@/views/inputmethod/steps';
import {
    desktops,
    frameworks,
    isWayland,
    likelyDesktop,
    likelyFramework,
    packageTools,
} from '@/views/inputmethod/surroundings';

const situation: Situation = {
    framework: 'fcitx5',
    desktop: 'other',
    packageTool: 'apt',
    wayland: false,
};
const variables = (values: Record<string, string>) =>
    Object.entries(values).map(([name, value]) => ({ name, value }));
const commandsFor = (changes: Partial<Situation>, code = 'ERR_NOT_RUNNING') =>
    stepsFor(answerCode(code), { ...situation, ...changes }).flatMap(({ commands }) => commands);

describe('an answer', () => {
    it('is a code, or a text of the suite’s own', () => {
        expect(answerCode(' ERR_OK\n')).toBe('ERR_OK');
        expect(answerCode('输入法正常')).toBeNull();
    });

    it.each([
        ['ERR_OK', 'good'],
        ['ERR_NOT_RUNNING', 'bad'],
        ['ERR_OTHER', 'warning'],
        ['输入法', 'warning'],
    ])('%s is judged %s', (answer, state) => {
        expect(judgeAnswer(answer)).toBe(state);
    });
});

describe('the steps', () => {
    const situations = frameworks.flatMap((framework) =>
        desktops.flatMap((desktop) =>
            packageTools.flatMap((packageTool) =>
                [true, false].map((wayland) => ({ framework, desktop, packageTool, wayland })),
            ),
        ),
    );

    it.each([...answerCodes, null])('for %s all have their texts', (code) => {
        for (const one of situations) {
            const steps = stepsFor(code, one);
            expect(steps.length).toBeGreaterThan(0);
            for (const { text } of steps) expect(english.steps).toHaveProperty(text);
            expect(new Set(steps.map(({ text }) => text)).size).toBe(steps.length);
        }
    });

    it('depend on the surroundings only where these are asked for', () => {
        for (const code of [...answerCodes, null]) {
            const different = new Set(situations.map((one) => JSON.stringify(stepsFor(code, one))));
            expect([code, different.size > 1]).toEqual([code, dependsOnSituation(code)]);
        }
    });

    it('install the part for Qt programs', () => {
        expect(commandsFor({}, 'ERR_LOADPLUGIN_FAILED').join()).toContain('fcitx5-frontend-qt5');
        expect(commandsFor({ packageTool: 'dnf' }, 'ERR_LOADPLUGIN_FAILED').join()).toContain(
            'sudo dnf install fcitx5 fcitx5-chinese-addons fcitx5-qt',
        );
    });

    it('name fcitx 5 to programs as fcitx', () => {
        const commands = commandsFor({}, 'ERR_INVALID_ENV_CONFIG').join('\n');
        expect(commands).toContain('QT_IM_MODULE=fcitx ');
        expect(commands).toContain('XMODIFIERS=@im=fcitx ');
        expect(commands).toContain('im-config -n fcitx5');
    });

    it('use im-config only where it exists', () => {
        expect(commandsFor({ packageTool: 'dnf' }, 'ERR_INVALID_ENV_CONFIG').join()).not.toContain(
            'im-config',
        );
    });

    it('leave it to Plasma to start the input method under Wayland', () => {
        const texts = stepsFor('ERR_NOT_RUNNING', {
            ...situation,
            desktop: 'kde',
            wayland: true,
        }).map(({ text }) => text);
        expect(texts).toContain('startWithPlasma');
    });
});

describe('the surroundings', () => {
    it.each([
        [{ QT_IM_MODULE: 'FCITX' }, 'fcitx5'],
        [{ XMODIFIERS: '@im=ibus' }, 'ibus'],
        [{ QT_IM_MODULE: 'xim', GTK_IM_MODULE: 'ibus' }, 'ibus'],
        [{ QT_IM_MODULE: 'fcitx', XMODIFIERS: '@im=ibus' }, 'fcitx5'],
        [{}, 'fcitx5'],
    ])('%j mean %s', (values, framework) => {
        expect(likelyFramework(variables(values))).toBe(framework);
    });

    it.each([
        ['KDE', 'kde'],
        ['ubuntu:GNOME', 'gnome'],
        ['UKUI', 'other'],
    ])('of %s are told', (value, desktop) => {
        expect(likelyDesktop(variables({ XDG_CURRENT_DESKTOP: value }))).toBe(desktop);
    });

    it('tell Wayland', () => {
        expect(isWayland(variables({ XDG_SESSION_TYPE: 'wayland' }))).toBe(true);
        expect(isWayland([])).toBe(false);
    });
});
