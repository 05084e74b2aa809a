import { useTexts } from '@/frame/texts';
import { areaOf } from './groups';

/** The subjects of the shipped checks. */
const areas = ['input', 'associations', 'shortcuts', 'crash', 'updater', 'permissions', 'memory'];

/** Names of checks' subjects. A check of the administrator has its id only. */
export function useAreas() {
    const { t } = useTexts();
    return {
        areaName(check: string): string {
            const area = areaOf(check);
            return areas.includes(area) ? t(`home.checkup.areas.${area}`) : check;
        },
    };
}
