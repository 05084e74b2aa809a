import { createHash } from 'node:crypto';

/** How a content policy names an inline piece. */
export function hashSource(text) {
    return `'sha256-${createHash('sha256').update(text).digest('base64')}'`;
}

export function escapeHtml(text) {
    return text.replace(/[&<>"]/g, (sign) => `&#${sign.charCodeAt(0)};`);
}

/**
 * The content policy of a page: its own files and the two inline pieces of its head, nothing
 * else; above all no connection of any kind.
 */
function contentPolicy(inlineStyle, inlineScript) {
    return [
        "default-src 'none'",
        `script-src 'self' ${hashSource(inlineScript)}`,
        `style-src 'self' ${hashSource(inlineStyle)}`,
        "img-src 'self' data:",
        "font-src 'self'",
        "connect-src 'none'",
        "base-uri 'none'",
        "form-action 'none'",
    ].join('; ');
}

/**
 * The HTML of one view. Title bar and outline are in the file itself, so that they are painted
 * before any script file is read; the view then replaces them.
 */
export function htmlPage({ titles, criticalStyle, bootScript, outline, scripts, styles }) {
    const title = Object.entries(titles)
        .map(([language, text]) => `<span data-language="${language}">${escapeHtml(text)}</span>`)
        .join('');
    return [
        '<!DOCTYPE html>',
        '<html lang="en">',
        '<head>',
        '<meta charset="utf-8">',
        '<meta http-equiv="Content-Security-Policy" ' +
            `content="${contentPolicy(criticalStyle, bootScript)}">`,
        '<meta name="viewport" content="width=device-width, initial-scale=1">',
        `<title>${escapeHtml(titles.en)}</title>`,
        `<style>${criticalStyle}</style>`,
        `<script>${bootScript}</script>`,
        ...scripts.map((file) => `<script defer src="${file}"></script>`),
        '</head>',
        '<body>',
        `<div id="view">${outline.replace('{{title}}', title)}</div>`,
        ...styles.map((file) => `<link rel="stylesheet" href="${file}">`),
        '</body>',
        '</html>',
        '',
    ].join('\n');
}
