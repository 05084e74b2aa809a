import { describe, expect, it } from 'vitest';
import type { DesktopShortcuts } from '@/client';
import {
    deepDesktop,
    fittingSet,
    hasSet,
    missingFrom,
    shortcutRows,
} from '@/views/shortcuts/shortcutset';

function desktop(files: string[], mode = 'helio_independ'): DesktopShortcuts {
    const supported = { chartBoard: false, docket: false, fixedComponent: false };
    const looks = new Map();
    return { files, mode, integrated: mode === 'helio_fushion', supported, looks };
}

const separate = ['vyr-office-vyr.desktop', 'vyr-office-tbl.desktop', 'vyr-office-shw.desktop'];
const integrated = 'vyr-office-tessaly.desktop';

describe('the desktop shortcuts', () => {
    it('fit the component mode, and an unknown mode as separate applications', () => {
        expect(fittingSet(desktop([], 'helio_fushion'))).toBe('integrated');
        expect(fittingSet(desktop([], 'helio_fusion'))).toBe('separate');
    });

    it('are a set when all that it needs is there and the other set is not', () => {
        expect(hasSet('separate', desktop(separate))).toBe(true);
        expect(hasSet('separate', desktop([...separate, integrated]))).toBe(false);
        expect(hasSet('separate', desktop(separate.slice(1)))).toBe(false);
        expect(hasSet('integrated', desktop([integrated]))).toBe(true);
        expect(missingFrom('separate', desktop(separate.slice(1)))).toEqual([
            'vyr-office-vyr.desktop',
        ]);
    });

    it('are listed with those that a restore does not know', () => {
        const rows = shortcutRows(desktop([integrated, 'vyr-office-extra.desktop']));
        expect(rows).toHaveLength(10);
        expect(rows[0]).toEqual({
            file: 'vyr-office-vyr.desktop',
            name: 'writer',
            present: false,
            needed: true,
            title: '',
            icon: '',
        });
        const pictured = desktop([integrated]);
        pictured.looks.set(integrated, { title: 'Suite', icon: 'data:,' });
        expect(shortcutRows(pictured)[8]).toMatchObject({ title: 'Suite', icon: 'data:,' });
        expect(rows[8]).toMatchObject({ name: 'integrated', present: true, needed: false });
        expect(rows[9]).toMatchObject({ file: 'vyr-office-extra.desktop', name: null });
    });

    it('cannot be told apart in a desktop folder deeper in the home directory', () => {
        expect(deepDesktop(desktop(['Desk', 'Desk']))).toEqual({ folder: 'Desk', count: 2 });
        expect(deepDesktop(desktop(separate))).toBeNull();
        expect(deepDesktop(desktop([]))).toBeNull();
    });
});
