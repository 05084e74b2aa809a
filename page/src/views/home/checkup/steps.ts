import type { Client, Outcome } from '@/client';
import { userOf } from '@/views/permissions/judge';
import {
    diagnoseAssociations,
    diagnoseDumps,
    diagnoseInputMethod,
    diagnoseMemory,
    diagnosePermissions,
    diagnoseShortcuts,
    diagnoseUpdater,
} from './diagnoses';
import type { RepairName, StepName, StepResult } from './finding';

type Diagnosis = (client: Client) => Promise<Outcome<StepResult>>;

function mapped<Value>(
    outcome: Outcome<Value>,
    diagnose: (value: Value) => StepResult,
): Outcome<StepResult> {
    return outcome.kind === 'done' ? { kind: 'done', value: diagnose(outcome.value) } : outcome;
}

async function associations(client: Client): Promise<Outcome<StepResult>> {
    const applications = await client.defaultApplications();
    if (applications.kind !== 'done') return applications;
    return mapped(await client.mimeTypes(), (types) =>
        diagnoseAssociations(applications.value, types),
    );
}

async function updater(client: Client): Promise<Outcome<StepResult>> {
    const installed = await client.updaterInstalled();
    if (installed.kind !== 'done' || !installed.value) {
        return mapped(installed, () => diagnoseUpdater(false, null));
    }
    const configuration = await client.updateConfiguration();
    if (configuration.kind === 'failed') {
        return { kind: 'done', value: diagnoseUpdater(true, null) };
    }
    return mapped(configuration, (values) => diagnoseUpdater(true, values));
}

/** Whose files they should be is known only by the environment in the machine's snapshot. */
async function permissions(client: Client): Promise<Outcome<StepResult>> {
    const files = await client.configurationFiles();
    if (files.kind !== 'done') return files;
    const snapshot = await client.systemSnapshot();
    const user = snapshot.kind === 'done' ? userOf(snapshot.value.variables) : null;
    return mapped(files, (found) => diagnosePermissions(found, user));
}

export const diagnoses: Record<StepName, Diagnosis> = {
    inputmethod: async (client) => mapped(await client.checkInputMethod(), diagnoseInputMethod),
    associations,
    shortcuts: async (client) => mapped(await client.desktopShortcuts(), diagnoseShortcuts),
    crash: async (client) => mapped(await client.dumpState(), diagnoseDumps),
    updater,
    permissions,
    memory: async (client) => mapped(await client.machineMemory(), diagnoseMemory),
};

export const repairs: Record<RepairName, (client: Client) => Promise<Outcome<void>>> = {
    repairAssociations: (client) => client.repairAssociations(),
    restoreSeparate: (client) => client.restoreSeparateShortcuts(),
    restoreIntegrated: (client) => client.restoreIntegratedShortcut(),
    keepDumps: (client) => client.startKeepingDumps(),
};
