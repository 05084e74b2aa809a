import { execFileSync } from 'node:child_process';
import path from 'node:path';

import { expect, test } from 'vitest';

import { suiteDirectory } from '../paths.mjs';
import { pageTexts } from './texts.mjs';
import { patience, viewTests } from './viewtest.mjs';

const texts = pageTexts.compare;
const shared = viewTests();

/** Drops a report into the view. */
function drop(view, name, content) {
    return view.evaluate(`{
        const dataTransfer = new DataTransfer();
        dataTransfer.items.add(new File([${JSON.stringify(content)}], ${JSON.stringify(name)}));
        document
            .querySelector('.drop-place')
            .dispatchEvent(new DragEvent('drop', { dataTransfer }));
    }`);
}

test('the report of another computer is compared with this one', async () => {
    const { view } = await shared.open('compare');
    const program = path.join(suiteDirectory, 'office/assistantctl');
    const env = { ...process.env, HOME: shared.suite.home };
    const report = JSON.parse(execFileSync(program, ['report'], { env, encoding: 'utf8' }));
    report.host = 'elsewhere<b>';
    report.facts.environment.SAL_USE_VCLPLUGIN = 'gen';
    await drop(view, 'elsewhere.json', JSON.stringify(report));
    await view.shows('SAL_USE_VCLPLUGIN', patience);
    await view.shows('This variable changes how programs load, draw or type.');
    expect(await view.evaluate('document.body.textContent')).toContain('elsewhere<b>');

    await drop(view, 'cut.json', '{"type":"report"');
    await view.shows(texts.unreadable.replace('{name}', 'cut.json'), patience);
    await view.shows('it is not JSON');
});
