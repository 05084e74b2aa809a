/**
 * The plug-in check opens in the user's own browser, old ones included, and without a host: it
 * is a single file and uses nothing that a browser with plug-ins might lack.
 */
import { isSuitePlugIn, judgePlugIns, listedPlugIns, visibleText, type PlugIn } from './judge';

type Texts = Record<string, string>;

/** Put in by the build: the texts of this page, by language. */
declare const catalogues: Record<string, Texts>;

let language = /^zh\b/i.test(navigator.language) ? 'zh-CN' : 'en';

function text(key: string): string {
    return catalogues[language]![key]!;
}

function element(tag: string, content: string, className = ''): HTMLElement {
    const made = document.createElement(tag);
    made.textContent = content;
    if (className) made.className = className;
    return made;
}

function place(id: string): HTMLElement {
    return document.getElementById(id)!;
}

function plugInItem(plugIn: PlugIn): HTMLElement {
    const item = element('li', '', isSuitePlugIn(plugIn) ? 'suite' : '');
    item.appendChild(element('strong', visibleText(plugIn.name)));
    for (const line of [plugIn.description, plugIn.file, plugIn.types.join(', ')]) {
        if (line) item.appendChild(element('div', visibleText(line), 'muted'));
    }
    return item;
}

function resultText(plugIns: PlugIn[]): string {
    const lines = plugIns.map(({ name, description, file, types }) =>
        visibleText([name, description, file, types.join(', ')].join(' | ')),
    );
    return [text(`verdict_${judgePlugIns(plugIns)}`), navigator.userAgent, ...lines].join('\n');
}

function show(): void {
    const plugIns = listedPlugIns(navigator.plugins || []);
    const verdict = judgePlugIns(plugIns);
    document.documentElement.lang = language;
    document.title = text('title');
    const labelled = document.querySelectorAll<HTMLElement>('[data-text]');
    for (let index = 0; index < labelled.length; index += 1) {
        labelled[index]!.textContent = text(labelled[index]!.getAttribute('data-text')!);
    }
    const verdictPlace = place('verdict');
    verdictPlace.className = `verdict ${verdict}`;
    verdictPlace.textContent = text(`verdict_${verdict}`);
    place('advice').textContent = text(`advice_${verdict}`);
    place('browser').textContent = navigator.userAgent;
    const list = place('plugins');
    list.textContent = '';
    plugIns.forEach((plugIn) => list.appendChild(plugInItem(plugIn)));
    if (!plugIns.length) list.appendChild(element('li', text('nothing'), 'muted'));
    const result = place('result') as HTMLTextAreaElement;
    result.value = resultText(plugIns);
    result.setAttribute('aria-label', text('result'));
}

/** Selects the result, too, so that it can be copied by hand where the browser refuses. */
function copy(): void {
    const result = place('result') as HTMLTextAreaElement;
    result.focus();
    result.select();
    let copied = false;
    try {
        copied = document.execCommand('copy');
    } catch {
        copied = false;
    }
    place('copied').textContent = text(copied ? 'copied' : 'notCopied');
}

document.addEventListener('DOMContentLoaded', () => {
    place('again').addEventListener('click', () => {
        if (navigator.plugins && navigator.plugins.refresh) navigator.plugins.refresh();
        show();
    });
    place('copy').addEventListener('click', copy);
    place('language').addEventListener('click', () => {
        language = language === 'en' ? 'zh-CN' : 'en';
        show();
    });
    show();
});
