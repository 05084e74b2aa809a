/** What the host hands to its page, and what the page offers to its host. */

export interface Envelope {
    result?: unknown;
    /** A full disk cut short what the result calls a success. */
    incomplete?: boolean;
}

export interface Host {
    /** `listen` receives the lines that come before the answer of an operation of the shell. */
    call(
        command: string,
        args?: Record<string, unknown>,
        listen?: (line: unknown) => void,
    ): Promise<Envelope>;
    /** What the shell itself offers beside the commands; a shell need not have any. */
    operations?: readonly string[];
    theme: 'light' | 'dark';
    language: string;
}

/** The names under which the library calls the page later. */
export const callbackNames = [
    'hiddentipCallBack',
    'startsearchfileCallBack',
    'searchfilefinish',
    'freshcrshpageCallBack',
    'returnvyrenvcheck',
] as const;

export type CallbackName = (typeof callbackNames)[number];

declare global {
    interface Window extends Partial<Record<CallbackName, (envelope: Envelope) => void>> {
        helio?: Host;
    }
}

/** Every command of the library, in the order in which its bridge declares them. */
export const commandNames = [
    'mousePress',
    'mouseRelease',
    'closemainwindow',
    'showminimized',
    'router',
    'stoppreload',
    'restartpreload',
    'screenshots',
    'recordscreen',
    'contentreplace',
    'apilog',
    'exportsysinfo',
    'exportoftenfileperm',
    'exportspecialfileperm',
    'closechildwindow',
    'chooselayouterrorfile',
    'comparefont',
    'openlaytouerrorfile',
    'getDumpState',
    'startDump',
    'stopDump',
    'cleardumpdir',
    'openprinterrorfile',
    'getcpuinfo',
    'getmemoryinfo',
    'getcomputermemory',
    'getlogfile',
    'getupdatesupport',
    'getupdateconfig',
    'testupdate',
    'clearlogfile',
    'testdailyreport',
    'testuninstallreport',
    'testinstallreport',
    'changeupdateconfig',
    'getdesktopiconfile',
    'fixfouricon',
    'fixoneicon',
    'getassoopen',
    'getassomime',
    'fileassorepair',
    'openremoveurlcheck',
    'getvyrenvcheckedresult',
    'runfirefoxplugin',
    'vyrenvcheck',
    'copytoclipboard',
    'stratcheckenv',
    'stratextractfileinfo',
    'addconfigfile',
    'inputcheck',
    'feedbacktovyr',
    'getcollectionpage',
    'choosesamplefile',
    'archivepackage',
    'chooseattachment',
    'opensearchfile',
    'startsearchfile',
] as const;

export type CommandName = (typeof commandNames)[number];

/** Operations of the shell itself; not every shell has them. */
export const doctorOperationNames = [
    'doctor.list',
    'doctor.look',
    'doctor.checkups',
    'doctor.plan',
    'doctor.fix',
    'doctor.undo',
    'doctor.history',
    'doctor.preview',
    'doctor.watch',
    'doctor.watched',
    'doctor.cancel',
    'why.open',
    'why.denied',
    'why.input',
] as const;

export const suiteOperationNames = [
    'suite.describe',
    'suite.choose',
    'suite.plan',
    'suite.start',
] as const;

export const windowOperationNames = [
    'window.action',
    'window.dropped',
    'window.expect',
    'window.find',
    'window.leave',
    'window.maximise',
    'window.sidebar',
    'window.state',
] as const;

export const draftOperationNames = [
    'draft.keep',
    'draft.picture',
    'draft.read',
    'draft.receiver',
    'draft.write',
] as const;

export const taskNames = [
    'task.report',
    'task.save',
    'task.archive',
    'task.check',
    'task.print',
    'task.fonts',
    'task.substitutes',
    'task.server',
    'task.system',
    'task.input',
    'task.shortcuts',
    'task.associations',
    'task.associate',
    'task.paths',
    'task.choose',
    'task.listing',
    'task.dumps',
    'task.dumpfolder',
    'task.updater',
    'task.compare',
    'task.start',
    'task.processes',
    'task.programs',
    'task.machine',
    'task.request',
    'task.preview',
    'task.end',
] as const;

export type TaskName = (typeof taskNames)[number];

export type OperationName =
    | TaskName
    | 'task.cancel'
    | 'task.findings'
    | 'task.printed'
    | (typeof doctorOperationNames)[number]
    | (typeof suiteOperationNames)[number]
    | (typeof windowOperationNames)[number]
    | (typeof draftOperationNames)[number];
