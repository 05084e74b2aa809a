import type { ListedCheck } from '@/client';
import { useTexts } from '@/frame/texts';
import { visibleText } from '@/parts/visibletext';
import { areaOf } from './groups';

/** The subjects of the shipped checks. */
const areas = [
    'input',
    'associations',
    'shortcuts',
    'crash',
    'updater',
    'permissions',
    'memory',
    'libreoffice',
];

/** Repairs of the library, which the doctor has watched. */
const commands = [
    'fixfouricon',
    'fixoneicon',
    'fileassorepair',
    'startDump',
    'stopDump',
    'cleardumpdir',
];

/** Repairs of the doctor's explanations, by their question. */
const explanations = ['why.open', 'why.denied', 'why.input'];

/** Names of checks' subjects and of repairs. Checks of others have no known one. */
export function useAreas() {
    const { t } = useTexts();
    return {
        areaName(check: string, otherwise: string): string {
            if (explanations.includes(check)) return t(`home.checkup.${check}`);
            const area = areaOf(check);
            return areas.includes(area) ? t(`home.checkup.areas.${area}`) : otherwise;
        },
        repairTitle(listed: ListedCheck | undefined, repair: string): string {
            return commands.includes(repair)
                ? t(`home.checkup.commands.${repair}`)
                : visibleText(listed?.repairTitles[repair] ?? repair);
        },
    };
}
