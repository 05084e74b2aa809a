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
    'associate',
    'startDump',
    'stopDump',
    'cleardumpdir',
];

/** The questions whose explanations can repair something: "why.open" and so on. */
const questions = ['open', 'denied', 'input'];

/** Names of checks' subjects and of repairs. Checks of others have no known one. */
export function useAreas() {
    const { t } = useTexts();
    return {
        areaName(check: string, otherwise: string): string {
            const area = areaOf(check);
            const question = check.slice(area.length + 1);
            if (area === 'why' && questions.includes(question)) {
                return t(`home.checkup.why.${question}`);
            }
            return areas.includes(area) ? t(`home.checkup.areas.${area}`) : otherwise;
        },
        repairTitle(listed: ListedCheck | undefined, repair: string): string {
            return commands.includes(repair)
                ? t(`home.checkup.commands.${repair}`)
                : visibleText(listed?.repairTitles[repair] ?? repair);
        },
    };
}
