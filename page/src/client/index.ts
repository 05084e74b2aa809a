/**
 * The library as the page sees it. Only this folder knows how commands, arguments and answers
 * travel.
 */
import { Caller } from './wire/caller';
import { checkCommands } from './checkcommands';
import { desktopCommands, openingOperations } from './desktopcommands';
import { doctorOperations } from './doctor/operations';
import { documentCommands, previewOperations } from './documentcommands';
import { draftOperations } from './draftoperations';
import { dumpCommands, dumpOperations } from './dumpcommands';
import { feedbackCommands } from './feedbackcommands';
import { launcherCommands } from './launchercommands';
import { Notices, type NoticeTarget } from './notices';
import { processOperations } from './processes';
import { reportOperations } from './reports';
import { searchCommands } from './searchcommands';
import { serverCommands, serverOperations } from './servercommands';
import { suiteOperations } from './suite';
import { pathOperations, systemCommands } from './systemcommands';
import { machineOperations } from './systemsnapshot';
import { taskOperations } from './tasks';
import { updateCommands } from './updatecommands';
import { whyOperations } from './why';
import { windowCommands } from './windowcommands';
import { windowOperations } from './windowoperations';
import type { Host } from './wire/host';

export type { Failure, Outcome } from './wire/outcome';
export type {
    Association,
    Associations,
    DesktopShortcuts,
    DocumentOpenings,
} from './desktopcommands';
export type {
    CheckResult,
    CommandPreview,
    DoctorFinding,
    HistoryEntry,
    KeptLook,
    ListedCheck,
    LookChange,
    Place,
    PlannedChange,
    RepairCommand,
    RepairOutcome,
    RepairPlan,
    UndoOutcome,
} from './doctor/reading';
export type { Dump, DumpList } from './dumpcommands';
export type { FilePreview, FontSubstitutes } from './documentcommands';
export { archiveNames, ownFiles, settingFiles } from './feedbackcommands';
export type { Feedback, FeedbackOrigin } from './feedbackcommands';
export type { ListedProcess, MachineReading, ProgramLook } from './processes';
export type { Difference } from './reports';
export type { CheckFinding, Notice, NoticeName, SearchHit } from './notices';
export type { NamedValues, ServerAnswer, ServerRequest, Step, TimedAnswer } from './servercommands';
export type { Extension, Installation, SuiteState } from './suite';
export type { MachinePicture, SystemSnapshot, Variable } from './systemsnapshot';
export { mostPaths } from './systemcommands';
export type {
    FileLook,
    FilePermissions,
    MachineMemory,
    Process,
    ReportEnd,
} from './systemcommands';
export type { AccessReason, InputReason, OpenReason, PathPart, SuffixOpening } from './why';
export type { ViewType } from './windowcommands';
export type { Host, TaskName } from './wire/host';

/** All commands over `host`; later answers arrive on functions of `target`. */
export function createClient(host: () => Host | undefined, target: NoticeTarget) {
    const caller = new Caller(host);
    const notices = new Notices(target, (name, reason) =>
        console.warn(`An unreadable ${name} notice was left out: ${reason}`),
    );
    return {
        get hasHost(): boolean {
            return caller.hasHost;
        },
        listen: notices.listen.bind(notices),
        doctor: doctorOperations(caller),
        task: taskOperations(caller),
        why: whyOperations(caller),
        suite: suiteOperations(caller),
        reports: reportOperations(caller),
        processes: processOperations(caller),
        openings: openingOperations(caller),
        paths: pathOperations(caller),
        dumps: dumpOperations(caller),
        machine: machineOperations(caller),
        previews: previewOperations(caller),
        server: serverOperations(caller),
        draft: draftOperations(caller),
        window: windowOperations(caller),
        ...windowCommands(caller),
        ...launcherCommands(caller),
        ...searchCommands(caller),
        ...systemCommands(caller),
        ...dumpCommands(caller),
        ...checkCommands(caller),
        ...updateCommands(caller),
        ...feedbackCommands(caller),
        ...desktopCommands(caller),
        ...documentCommands(caller),
        ...serverCommands(caller),
    };
}

export type Client = ReturnType<typeof createClient>;
