import type { MachineMemory } from '@/client';
import type { Judged } from '@/parts/judged';

/** From here on, in per cent, an office document may fail to open for want of memory. */
const tightPercent = 80;
const fullPercent = 90;

export function judgeMemory({ usedPercent }: MachineMemory): Judged {
    if (usedPercent === null) return 'plain';
    if (usedPercent >= fullPercent) return 'bad';
    return usedPercent >= tightPercent ? 'warning' : 'good';
}

/** What is free of it, in GiB; null when the machine did not tell. */
export function freeGibibytes({ usedPercent, totalGibibytes }: MachineMemory): number | null {
    if (usedPercent === null || totalGibibytes === null) return null;
    return totalGibibytes * (1 - usedPercent / 100);
}
