import type { Client, Outcome } from '@/client';

export const testRuns = ['check', 'daily', 'install', 'uninstall'] as const;
export type TestRun = (typeof testRuns)[number];

/** The updater keeps running on its own; only its log shows the result. */
export function startTestRun(client: Client, run: TestRun): Promise<Outcome<void>> {
    switch (run) {
        case 'check':
            return client.testUpdate();
        case 'daily':
            return client.testDailyReport();
        case 'install':
            return client.testInstallReport();
        case 'uninstall':
            return client.testUninstallReport();
    }
}
