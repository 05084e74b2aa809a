import type { Caller } from './wire/caller';
import { members, success, text, textTable } from './wire/decode';
import type { CheckFinding } from './notices';
import type { Outcome } from './wire/outcome';

/**
 * Kept answers are keyed check-component. A component has no hyphen, a check may have one; the
 * names arrive byte by byte, so only ASCII survives.
 */
function keptFindings(result: unknown): CheckFinding[] {
    return Object.entries(textTable(result)).map(([key, value]) => {
        const cut = key.lastIndexOf('-');
        return cut < 0
            ? { check: key, component: '', value }
            : { check: key.slice(0, cut), component: key.slice(cut + 1), value };
    });
}

/** Checks of the suite's environment and of the input method. */
export function checkCommands(caller: Caller) {
    return {
        /** The finding, or nothing yet: that of the command comes as a notice. */
        startCheck: (
            check: string,
            component: string,
            argument = '',
        ): Promise<Outcome<CheckFinding | null>> => {
            const args = { type: check, app: component, arg: argument };
            const finding = (result: unknown): CheckFinding => ({
                check,
                component,
                value: text(members(result).value),
            });
            if (caller.offers('task.check')) return caller.perform('task.check', finding, args);
            return caller.ask(
                'vyrenvcheck',
                (result) => {
                    success(result);
                    return null;
                },
                args,
            );
        },
        /** The command fails when no check has been run yet. */
        keptFindings: () =>
            caller.offers('task.findings')
                ? caller.operate('task.findings', (result) =>
                      keptFindings(members(result).findings),
                  )
                : caller.ask('getvyrenvcheckedresult', keptFindings),
        openPluginCheck: () => caller.ask('runfirefoxplugin', success),
        /** A code such as "ERR_OK", or its translation by the suite. */
        checkInputMethod: () => caller.askAside('task.input', 'inputcheck', text),
    };
}
