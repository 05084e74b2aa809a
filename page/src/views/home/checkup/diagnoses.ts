import type {
    Association,
    Associations,
    DesktopShortcuts,
    DumpState,
    FilePermissions,
    MachineMemory,
} from '@/client';
import { answerCode, judgeAnswer } from '@/views/inputmethod/answers';
import { judge } from '@/views/permissions/judge';
import { judgeMemory } from '@/views/processes/memory';
import { deepDesktop, fittingSet, missingFrom, strangersTo } from '@/views/shortcuts/shortcutset';
import { sentence, type Finding, type StepResult } from './finding';

export function diagnoseInputMethod(answer: string): StepResult {
    const state = judgeAnswer(answer);
    const note = sentence('inputmethod');
    if (state === 'good') return { note, findings: [] };
    const code = answerCode(answer);
    const finding: Finding = {
        step: 'inputmethod',
        kind: code ?? 'inputTranslated',
        detail: answer,
        state: state === 'bad' ? 'bad' : 'warning',
        values: { answer },
        view: 'inputmethod',
    };
    return { note, findings: [finding] };
}

function rows({ writer, presentation, spreadsheet }: Associations): Association[] {
    return [...writer, ...presentation, ...spreadsheet];
}

function badExtensions(associations: Associations): string[] {
    return rows(associations)
        .filter(({ good }) => !good)
        .map(({ extension }) => extension);
}

/** A few names; the view has them all. */
function shortened(names: string[]): string {
    const shown = names.slice(0, 6).join(' ');
    return names.length > 6 ? `${shown} …` : shown;
}

/** Which applications open the documents, and which types the desktop takes them for. */
export function diagnoseAssociations(applications: Associations, types: Associations): StepResult {
    const count = rows(applications).length;
    if (count === 0) return { note: sentence('noSamples'), findings: [] };
    // Without the tool that asks the desktop, every type is empty, and no repair works.
    const asked = rows(types);
    if (asked.length > 0 && asked.every(({ value }) => value === '')) {
        return { note: sentence('noTypeTool'), findings: [] };
    }
    const kinds: [string, Associations][] = [
        ['otherApplication', applications],
        ['otherType', types],
    ];
    const findings = kinds.flatMap(([kind, associations]): Finding[] => {
        const bad = badExtensions(associations);
        return bad.length === 0
            ? []
            : [
                  {
                      step: 'associations',
                      kind,
                      detail: bad.join(' '),
                      state: 'warning',
                      values: { bad: bad.length, count, names: shortened(bad) },
                      view: 'associations',
                      repair: 'repairAssociations',
                  },
              ];
    });
    return { note: sentence('associations', { count }), findings };
}

/** Whether the shortcuts of the component mode are on the desktop, and no others. */
export function diagnoseShortcuts(shortcuts: DesktopShortcuts): StepResult {
    if (deepDesktop(shortcuts)) return { note: sentence('shortcutsUnclear'), findings: [] };
    const fitting = fittingSet(shortcuts);
    const missing = missingFrom(fitting, shortcuts);
    const wrong = strangersTo(fitting, shortcuts);
    const finding = (kind: string, names: string[]): Finding[] =>
        names.length === 0
            ? []
            : [
                  {
                      step: 'shortcuts',
                      kind,
                      detail: names.join(' '),
                      state: shortcuts.files.length === 0 ? 'plain' : 'warning',
                      values: { names: names.join(', ') },
                      view: 'shortcuts',
                      repair: fitting === 'integrated' ? 'restoreIntegrated' : 'restoreSeparate',
                  },
              ];
    return {
        note: sentence('shortcuts'),
        // One repair fixes both, so it is enough to report the missing ones.
        findings:
            missing.length > 0
                ? finding('shortcutsMissing', missing)
                : finding('shortcutsWrong', wrong),
    };
}

export function diagnoseDumps({ enabled, dumpAvailable }: DumpState): StepResult {
    const finding = (kind: string, state: Finding['state']): Finding => ({
        step: 'crash',
        kind,
        detail: '',
        state,
        values: {},
        view: 'crash',
    });
    const findings: Finding[] = [];
    if (dumpAvailable) findings.push(finding('dumpsThere', 'warning'));
    if (!enabled) findings.push({ ...finding('dumpsOff', 'plain'), repair: 'keepDumps' });
    return { note: sentence('crash'), findings };
}

/** `configuration` is null when it could not be read. */
export function diagnoseUpdater(
    installed: boolean,
    configuration: Record<string, string> | null,
): StepResult {
    if (!installed) return { note: sentence('noUpdater'), findings: [] };
    const kind =
        configuration === null
            ? 'updaterUnreadable'
            : Object.keys(configuration).length === 0
              ? 'updaterEmpty'
              : null;
    const findings: Finding[] =
        kind === null
            ? []
            : [
                  {
                      step: 'updater',
                      kind,
                      detail: '',
                      state: 'warning',
                      values: {},
                      view: 'updater',
                  },
              ];
    return { note: sentence('updater'), findings };
}

/** `user` is null when the environment does not tell. */
export function diagnosePermissions(files: FilePermissions[], user: string | null): StepResult {
    if (user === 'root') return { note: sentence('permissionsRoot'), findings: [] };
    const findings = files.flatMap((file): Finding[] => {
        const { name, state } = judge(file, user);
        if (state !== 'bad' && state !== 'warning') return [];
        return [
            {
                step: 'permissions',
                kind: `permissions_${name}`,
                detail: `${file.name} ${file.owner} ${file.permissions}`,
                state,
                values: { name: file.name, owner: file.owner },
                view: 'permissions',
            },
        ];
    });
    return { note: sentence('permissions', { count: files.length }), findings };
}

export function diagnoseMemory(memory: MachineMemory): StepResult {
    if (memory.usedPercent === null) return { note: sentence('memoryUnknown'), findings: [] };
    const percent = memory.usedPercent.toFixed(0);
    const state = judgeMemory(memory);
    const findings: Finding[] =
        state === 'good' || state === 'plain'
            ? []
            : [
                  {
                      step: 'memory',
                      kind: state === 'bad' ? 'memoryFull' : 'memoryTight',
                      detail: '',
                      state,
                      values: { percent },
                      view: 'processes',
                  },
              ];
    return { note: sentence('memory', { percent }), findings };
}
