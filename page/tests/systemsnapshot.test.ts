import { describe, expect, it } from 'vitest';
import { font, systemSnapshot } from '@/client/systemsnapshot';

const answer = {
    sysinfo: 'Linux 6.1.0  x86_64',
    vyrinfo: 'Version:0.0.0.0',
    officeinfo: '',
    browserinfo: 'Mozilla Firefox 115.8.0esr|\uFFFD',
    fontinfo: '',
    cpuInfo: ' One| One|',
    envInfo: '',
};

function fontLine(family: string, style: string): string {
    return `${family}${' '.repeat(Math.max(0, 40 - Buffer.byteLength(family)))}${style} `;
}

describe('a font line', () => {
    it.each([
        ['Noto Sans', 'Bold', 'Bold'],
        ['文泉驿正黑', 'Regular', 'Regular'],
        ['DejaVu Sans', 'Book,Buch,標準', 'Book'],
        ['Bitstream Charter', '', ''],
        ['A Family With A Name Longer Than Forty Bytes', 'Bold Italic', 'Bold Italic'],
        ['A Family With A Name Longer Than Forty Bytes', 'SemiBold,Halbfett', 'SemiBold'],
    ])('of %s %s parts family and style', (family, style, expected) => {
        expect(font(fontLine(family, style))).toEqual({ family, style: expected });
    });
});

describe('the snapshot', () => {
    it('takes version zero as no suite', () => {
        expect(systemSnapshot(answer).suiteVersion).toBeNull();
        expect(systemSnapshot({ ...answer, vyrinfo: 'Version:12.1.0.1' }).suiteVersion).toBe(
            '12.1.0.1',
        );
    });

    it('drops the end-of-output byte of the browser probe', () => {
        expect(systemSnapshot(answer).browsers).toEqual(['Mozilla Firefox 115.8.0esr']);
        expect(systemSnapshot({ ...answer, browserinfo: '\uFFFD' }).browsers).toEqual([]);
    });

    it('trims processor lines and leaves empty ones out', () => {
        expect(systemSnapshot(answer).processors).toEqual(['One', 'One']);
    });

    it('keeps the separator inside a variable and sorts by name', () => {
        expect(systemSnapshot({ ...answer, envInfo: 'B=one|two|A=x=y|C=' }).variables).toEqual([
            { name: 'A', value: 'x=y' },
            { name: 'B', value: 'one|two' },
            { name: 'C', value: '' },
        ]);
    });

    it('lists a face only once', () => {
        const line = fontLine('DejaVu Sans', 'Book');
        expect(systemSnapshot({ ...answer, fontinfo: `${line}|${line}` }).fonts).toHaveLength(1);
    });

    it('refuses an answer that lacks a part', () => {
        const { cpuInfo, ...rest } = answer;
        expect(() => systemSnapshot(rest)).toThrow('no text');
    });
});
