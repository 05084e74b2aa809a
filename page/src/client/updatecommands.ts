import type { Caller } from './wire/caller';
import { base64Text, flag, success, textTable } from './wire/decode';

/** The suite's updater: configuration, log and test runs. */
export function updateCommands(caller: Caller) {
    return {
        updateLog: () => caller.ask('getlogfile', base64Text),
        clearUpdateLog: () => caller.ask('clearlogfile', success),
        updaterInstalled: () => caller.ask('getupdatesupport', flag),
        updateConfiguration: () => caller.ask('getupdateconfig', textTable),
        /**
         * The command writes the whole file anew and does not say whether it could. Neither key nor
         * value may hold a "$", which parts them on its way.
         */
        changeUpdateConfiguration: (key: string, value: string) =>
            caller.offers('task.updater')
                ? caller.perform('task.updater', () => undefined, { key, value })
                : caller.ask('changeupdateconfig', success, { keyvalue: `${key}$${value}` }),
        testUpdate: () => caller.ask('testupdate', success),
        testDailyReport: () => caller.ask('testdailyreport', success),
        testUninstallReport: () => caller.ask('testuninstallreport', success),
        testInstallReport: () => caller.tell('testinstallreport'),
    };
}
