import { describe, expect, it } from 'vitest';
import { judgePlugIns, listedPlugIns, visibleText } from '@/plugincheck/judge';

const plugIn = (name: string, types: string[] = [], file = '') => ({
    name,
    description: '',
    file,
    types,
});

describe('a browser', () => {
    it.each([
        ['without plug-ins', [], 'none'],
        ['with its own viewers', [plugIn('PDF Viewer'), plugIn('Chrome PDF Viewer')], 'builtIn'],
        ['with another plug-in', [plugIn('PDF Viewer'), plugIn('Java')], 'others'],
        ['with the suite’s plug-in by type', [plugIn('Office', ['application/x-vyr'])], 'suite'],
        ['with the suite’s plug-in by file', [plugIn('Office', [], 'libVYRplugin.so')], 'suite'],
        [
            'with a suite viewer named like a built-in one',
            [plugIn('PDF', [], '/opt/orvane/pdf.so')],
            'suite',
        ],
    ] as const)('%s is told', (_name, plugIns, verdict) => {
        expect(judgePlugIns([...plugIns].map((one) => ({ ...one, types: [...one.types] })))).toBe(
            verdict,
        );
    });

    it('is asked by number, as old browsers want it', () => {
        const list = {
            length: 1,
            0: { name: 'a', description: 'b', filename: 'c', length: 1, 0: { type: 't/x' } },
        } as unknown as ArrayLike<Plugin>;
        expect(listedPlugIns(list)).toEqual([
            { name: 'a', description: 'b', file: 'c', types: ['t/x'] },
        ]);
    });

    it('cannot slip in characters that do not show', () => {
        expect(visibleText('a\u202Eb\u0007')).toBe('a⟨U+202E⟩b⟨U+0007⟩');
    });
});
