import fs from 'node:fs';
import path from 'node:path';
import { expect, test } from 'vitest';

import { archived } from './archive.mjs';
import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const { layout, print, feedback } = pageTexts;
const toolName = 'vyrEnvCheckTool';
/** Records its arguments and prints to the PDF with the document's name. */
const printer = `#!/bin/sh
printf '%s|' "$@" >> "$HOME/toolcalls"
mkdir -p "$HOME/.local/share/Orvane/tmp"
name=\${3##*/}
echo '%PDF-1.7' > "$HOME/.local/share/Orvane/tmp/\${name%%.*}.pdf"
`;
const shared = viewTests();

const opened = (name) =>
    shared.fileWith(shared.inHome('opened'), (text) => text.includes(`/${name}`));

/** Builds the archive in the feedback view that another view opened. */
async function sendFeedback(category, document) {
    const view = await shared.view('feedback');
    await view.shows(document, patience);
    expect(
        await view.evaluate("document.querySelector('[name=feedback-category]:checked').value"),
    ).toBe(category);
    await view.fill(feedback.description, 'It looks wrong');
    await view.press(feedback.build);
    await shared.choose('Save File', shared.inHome('problem'));
    await view.shows(feedback.archive.there, patience);
    return archived(shared.inHome('problem.tar.gz'));
}

test('a document with a wrong layout is chosen, opened and passed on to feedback', async () => {
    const report = shared.writeInHome('report.docx', 'a report');
    const { view } = await shared.open('layout');
    await view.shows(layout.none, patience);
    await view.press(pageTexts.common.chooseDocument);
    await shared.choose('Open File', report);
    await view.shows(layout.chosen, patience);
    await view.press(layout.open);
    await opened('report.docx');
    await view.shows(layout.opened, patience);
    await view.press(pageTexts.common.feedback);
    const files = await sendFeedback('layout', 'report.docx');
    expect(files.get('report.docx')).toBe('a report');
    expect(files.get('describe.txt')).toContain('type: layout\n');
});

test('a deleted document is reported with a message', async () => {
    const report = shared.writeInHome('report.docx', 'a report');
    const { view } = await shared.open('layout');
    await view.press(pageTexts.common.chooseDocument);
    await shared.choose('Open File', report);
    await view.shows(layout.chosen, patience);
    fs.rmSync(report);
    await view.press(layout.open);
    await view.shows(layout.gone, patience);
});

test('a document is printed to a PDF, which is shown and passed on to feedback', async () => {
    fs.rmSync(path.join(shared.suite.office, toolName), { force: true });
    shared.writeInOffice(toolName, printer, { mode: 0o755 });
    const report = shared.writeInHome('report.xlsx', 'a table');
    const { view } = await shared.open('print');
    await view.press(pageTexts.common.chooseDocument);
    await shared.choose('Open File', report);
    // It has no page that could be shown here.
    await view.shows(print.shown, patience);
    await opened('report.pdf');
    expect(fs.readFileSync(shared.inHome('toolcalls'), 'utf8')).toBe(`print|tbl|${report}|`);
    await view.press(print.verdicts.wrong);
    await view.shows(print.advice.wrong);
    await view.press(pageTexts.common.feedback);
    const files = await sendFeedback('print', 'report.xlsx');
    expect(files.get('report.xlsx')).toBe('a table');
});

/** A page with a black square. */
const drawnPdf = `%PDF-1.4
1 0 obj <</Type/Catalog/Pages 2 0 R>> endobj
2 0 obj <</Type/Pages/Kids[3 0 R]/Count 1>> endobj
3 0 obj <</Type/Page/Parent 2 0 R/MediaBox[0 0 200 280]/Contents 4 0 R>> endobj
4 0 obj <</Length 18>> stream
20 200 60 60 re f
endstream endobj
trailer <</Root 1 0 R>>`;

test('the page that the suite makes of a document is shown as a picture, and not opened', async () => {
    fs.rmSync(path.join(shared.suite.office, toolName), { force: true });
    shared.writeInOffice(toolName, printer.replace('%PDF-1.7', drawnPdf), { mode: 0o755 });
    const isDrawn = "document.querySelector('.page-pictures img')?.naturalHeight === 900";
    const report = shared.writeInHome('my report.docx', 'a report');
    const { home, view } = await shared.open('layout');
    await view.press(pageTexts.common.chooseDocument);
    await shared.choose('Open File', report);
    await view.press(layout.picture);
    await view.until(isDrawn, patience);
    await view.shows(layout.drawn);

    await home.press(print.title);
    const prints = await shared.view('print');
    await prints.press(pageTexts.common.chooseDocument);
    await shared.choose('Open File', report);
    await prints.until(isDrawn, patience);
    expect(fs.existsSync(shared.inHome('opened'))).toBe(false);
    await prints.press(print.open);
    await opened('my%20report.pdf');
});

test('a suite that prints nothing is reported with what to do', async () => {
    fs.rmSync(path.join(shared.suite.office, toolName), { force: true });
    shared.writeInOffice(toolName, '#!/bin/sh\nexit 3\n', { mode: 0o755 });
    const { view } = await shared.open('print');
    await view.press(pageTexts.common.chooseDocument);
    await shared.choose('Open File', shared.writeInHome('report.docx', 'x'));
    await view.shows('vyrEnvCheckTool ended with status 3', patience);
});
