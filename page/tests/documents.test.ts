import { describe, expect, it } from 'vitest';
import { applicationOf, fileName, folderOf, printedName } from '@/parts/documenttypes';
import { fontAdvice, installCommand } from '@/views/missingfonts/fontadvice';
import { fontNames } from '@/views/missingfonts/fontlist';

describe('a document', () => {
    it.each([
        ['/home/user/report.DOCX', 'writer'],
        ['/home/user/a.b.xlsb', 'spreadsheet'],
        ['/home/user/a.ppsx', 'presentation'],
        ['/home/user/picture.png', null],
        ['/home/us.docx/report', null],
        ['report.', null],
    ])('%s belongs to %s', (path, application) => {
        expect(applicationOf(path)).toBe(application);
    });

    it.each([
        ['/a.docx', 'a.docx', '/'],
        ['/home/u/a.docx', 'a.docx', '/home/u'],
        ['a.docx', 'a.docx', ''],
    ])('%s is told as name and folder', (path, name, folder) => {
        expect([fileName(path), folderOf(path)]).toEqual([name, folder]);
    });

    it('is printed to its name up to the first dot', () => {
        expect(printedName('/home/user/report.final.DOCX')).toBe('report.pdf');
    });
});

describe('the list of missing fonts', () => {
    it.each([
        ['', []],
        [' ; ;', []],
        ['Arial;宋体', ['Arial', '宋体']],
        ['Arial, Calibri', ['Arial', 'Calibri']],
        ['Arial，宋体', ['Arial', '宋体']],
        ['Face, Bold;Arial', ['Face, Bold', 'Arial']],
        ['"Arial"\nCalibri\r\n', ['Arial', 'Calibri']],
        ['Arial;ARIAL;arial ', ['Arial']],
        ['One Font', ['One Font']],
    ])('%j names %j', (list, names) => {
        expect(fontNames(list)).toEqual(names);
    });
});

describe('advice for a missing font', () => {
    it.each([
        ['Calibri', 'fonts-crosextra-carlito', 'metric'],
        ['times  new ROMAN', 'fonts-liberation', 'metric'],
        ['@SimSun', 'fonts-noto-cjk', 'similar'],
        ['微软雅黑', 'fonts-wqy-microhei', 'similar'],
        ['Noto Serif CJK JP', 'fonts-noto-cjk', 'same'],
        ['Noto Sans Armenian', 'fonts-noto-core', 'same'],
        ['Noto Sans Mono', 'fonts-noto-mono', 'same'],
        ['DejaVu Sans Mono', 'fonts-dejavu-core', 'same'],
        ['DejaVu Sans Condensed', 'fonts-dejavu-extra', 'same'],
        ['Georgia', 'fonts-dejavu-core', 'similar'],
    ])('%s names the package %s (%s)', (name, packageName, closeness) => {
        expect(fontAdvice(name)).toMatchObject({ package: packageName, closeness });
    });

    it('is not made up for an unknown font', () => {
        expect(fontAdvice('Brand Face')).toBeNull();
        expect(installCommand(['Brand Face'], [])).toBe('');
    });

    it('installs each package once', () => {
        const names = ['Times New Roman', 'Arial', 'Calibri', 'Brand; rm -rf /'];
        expect(installCommand(names, [])).toBe(
            'sudo apt-get install fonts-crosextra-carlito fonts-liberation',
        );
        expect(installCommand(names, ['fonts-liberation'])).toBe(
            'sudo apt-get install fonts-crosextra-carlito',
        );
    });
});
