import type { MachineMemory, MachineReading } from '@/client';
import { judged, type Judged } from '@/parts/judged';
import type { Found } from '@/tasks/findings';

export const memoryChecks = ['memory.full', 'memory.tight'];

/** From here on, in per cent, an office document may fail to open for want of memory. */
const tightPercent = 80;
const fullPercent = 90;

/** The doctor's verdict where there is one. */
export function judgeMemory({ usedPercent }: MachineMemory, found: Found | null = null): Judged {
    if (usedPercent === null) return 'plain';
    if (found) return found.findings[0] ? judged(found.findings[0].state) : 'good';
    if (usedPercent >= fullPercent) return 'bad';
    return usedPercent >= tightPercent ? 'warning' : 'good';
}

/** What is free of it, in GiB; null when the machine did not tell. */
export function freeGibibytes({ usedPercent, totalGibibytes }: MachineMemory): number | null {
    if (usedPercent === null || totalGibibytes === null) return null;
    return totalGibibytes * (1 - usedPercent / 100);
}

/** The same of a reading. */
export function memoryOf({ memory: { total, available } }: MachineReading): MachineMemory {
    const gibibyte = 1024 ** 3;
    const isKnown = total !== null && total > 0 && available !== null;
    return {
        usedPercent: isKnown ? ((total - available) * 100) / total : null,
        totalGibibytes: isKnown ? total / gibibyte : null,
    };
}
