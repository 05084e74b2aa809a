import type { MachineMemory, Process } from '@/client';
import type { Translate } from '@/frame/texts';
import { visibleText } from '@/parts/visibletext';

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

/** The whole as text to paste. */
export function loadText({ memory, busiest, largest }: Load, t: Translate): string {
    const parts = [];
    if (memory?.usedPercent != null && memory.totalGibibytes != null) {
        parts.push(
            t('processes.memory.line', {
                percent: memory.usedPercent.toFixed(1),
                total: memory.totalGibibytes.toFixed(1),
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
