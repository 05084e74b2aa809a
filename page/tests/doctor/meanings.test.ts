import { readdirSync, readFileSync } from 'node:fs';
import { join } from 'node:path';
import { describe, expect, it } from 'vitest';
import { meaningOf } from '@/views/home/checkup/meanings';
import english from '@/views/home/texts.en.json';
import chinese from '@/views/home/texts.zh-CN.json';

const folder = join(__dirname, '../../../doctor/checks');
const checks = readdirSync(folder)
    .map((name) => readFileSync(join(folder, name), 'utf8'))
    .flatMap((content) => (JSON.parse(content) as { checks: { id: string }[] }).checks)
    .map(({ id }) => id);
const used = [...new Set(checks.map(meaningOf))].filter((key) => key !== '').sort();

describe('what findings mean', () => {
    it.each([
        ['English', english.checkup.means],
        ['Chinese', chinese.checkup.means],
    ])('is said in %s for shipped checks, and for nothing else', (_, means) => {
        expect(Object.keys(means).sort()).toEqual(used);
    });

    it('is not said where the finding says it', () => {
        expect(meaningOf('libreoffice.settings-damaged')).toBe('');
        expect(meaningOf('libreoffice.spelling')).toBe('notSpelled');
    });
});
