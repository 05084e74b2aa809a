import type { MachineMemory, Process } from '@/client';
import type { Translate } from '@/frame/texts';
import { visibleText } from '@/parts/visibletext';
import type { ProgramRow } from './programs';

/** All that the view shows of one moment. */
interface Load {
    memory: MachineMemory | null;
    busiest: Process[];
    largest: Process[];
}

function table(title: string, processes: Process[], t: Translate): string {
    const lines = processes.map(({ id, user, memory, processor, command }) =>
        [id, user, memory, processor, visibleText(command)].join('\t'),
    );
    const head = ['id', 'user', 'memory', 'processor', 'command']
        .map((column) => t(`processes.columns.${column}`))
        .join('\t');
    return [`== ${title} ==`, head, ...lines].join('\n');
}

/** How the window's language writes a number with so many digits after the point. */
type WriteNumber = (value: number, digits: number) => string;

/** The whole as text to paste. */
export function loadText(
    { memory, busiest, largest }: Load,
    t: Translate,
    number: WriteNumber,
): string {
    const parts = [];
    if (memory?.usedPercent != null && memory.totalGibibytes != null) {
        parts.push(
            t('processes.memory.line', {
                percent: number(memory.usedPercent, 1),
                total: number(memory.totalGibibytes, 1),
            }),
        );
    }
    parts.push(table(t('processes.busiest.title'), busiest, t));
    parts.push(table(t('processes.largest.title'), largest, t));
    return parts.join('\n\n');
}

export function rawLoad(load: Load): string {
    return JSON.stringify(load, null, 2);
}

/** All programs as text to paste, a line each. */
export function programsText(
    rows: readonly ProgramRow[],
    t: Translate,
    number: WriteNumber,
): string {
    const lines = rows.map(({ title, program, processes, processor, memory, users }) =>
        [
            visibleText(title === program ? program : `${title} (${program})`),
            processes.length,
            processor === null ? '' : number(processor, 1),
            number(memory / 1024 / 1024, 1),
            users.map(visibleText).join(', '),
        ].join('\t'),
    );
    const head = ['program', 'count', 'processor', 'memory']
        .map((column) => t(`processes.all.${column}`))
        .concat(t('processes.columns.user'));
    return [head.join('\t'), ...lines].join('\n');
}
