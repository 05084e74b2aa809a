/** The doctor, which a shell may offer beside the library's commands. */
import type { Caller } from '../wire/caller';
import { members, text } from '../wire/decode';
import {
    checkList,
    commandPreview,
    historyEntries,
    keptLooks,
    lookChange,
    repairOutcome,
    repairPlan,
    tell,
    undoOutcome,
    watchedRepair,
    type LookListener,
    type RepairCommand,
} from './reading';

const nothing = (): void => undefined;
const quiet: LookListener = { check: nothing, finding: nothing, note: nothing };

/** The doctor's operations; texts come in `language`. */
export function doctorOperations(caller: Caller) {
    const listening = (listener: Partial<LookListener>) => (line: unknown) =>
        tell({ ...quiet, ...listener }, line);
    return {
        /** Whether this shell has them. */
        get isOffered(): boolean {
            return caller.offers('doctor.look');
        },
        list: (language: string) => caller.operate('doctor.list', checkList, { language }),
        /** Runs these checks. Findings come to `listener`; the answer is the end. */
        look: (language: string, checks: string[], listener: LookListener) =>
            caller.operate(
                'doctor.look',
                () => undefined,
                { language, checks },
                listening(listener),
            ),
        /** Runs all checks, and has the outcome kept. */
        lookAtAll: (language: string, listener: LookListener) =>
            caller.operate(
                'doctor.look',
                lookChange,
                { language, checks: [], keep: true },
                listening(listener),
            ),
        /** Whether looks are kept. */
        get keepsLooks(): boolean {
            return caller.offers('doctor.checkups');
        },
        /** The looks that were kept, the oldest first. */
        keptLooks: () => caller.operate('doctor.checkups', keptLooks),
        /** Ends a look early. */
        cancel: () => caller.operate('doctor.cancel', () => undefined),
        plan: (findings: number[], repair: string) =>
            caller.operate('doctor.plan', repairPlan, { findings, repair }),
        /** Same, for when the plans `after` have been carried out. */
        planNext: (findings: number[], repair: string, after: number[]) =>
            caller.operate('doctor.plan', repairPlan, { findings, repair, after }),
        /** Does what the plan has shown, and checks again. */
        fix: (language: string, plan: number, note: LookListener['note']) =>
            caller.operate('doctor.fix', repairOutcome, { language, plan }, listening({ note })),
        /** Whether it can watch the library's own repairs. */
        get watches(): boolean {
            return caller.offers('doctor.watch');
        },
        /** What the command would change. */
        preview: (command: RepairCommand) =>
            caller.operate('doctor.preview', commandPreview, { command }),
        /** Keeps what the command may change; gives the reason if that cannot be done now. */
        watch: (command: RepairCommand, note: LookListener['note']) =>
            caller.operate(
                'doctor.watch',
                (answer) => text(members(answer).refusal),
                { command },
                listening({ note }),
            ),
        /** Ends the watch: what was changed can then be undone. */
        watched: (language: string, note: LookListener['note']) =>
            caller.operate('doctor.watched', watchedRepair, { language }, listening({ note })),
        undo: (journal: number, note: LookListener['note']) =>
            caller.operate('doctor.undo', undoOutcome, { journal }, listening({ note })),
        /** The repairs that were made, the oldest first. */
        history: (note: LookListener['note']) =>
            caller.operate('doctor.history', historyEntries, {}, listening({ note })),
    };
}
