import type { RequestPreview } from './requestpreview';

/** A word of a command line; one with line ends in the form that bash and zsh read. */
function shellWord(text: string): string {
    if (/^[A-Za-z0-9_./:=@%+-]+$/.test(text)) return text;
    // eslint-disable-next-line no-control-regex
    if (!/[\x00-\x1f]/.test(text)) return `'${text.replace(/'/g, `'\\''`)}'`;
    const escaped = text
        .replace(/[\\']/g, '\\$&')
        .replace(/\r/g, '\\r')
        .replace(/\n/g, '\\n')
        .replace(/\t/g, '\\t');
    return `$'${escaped}'`;
}

/** A command that sends the same request from a terminal. */
export function curlCommand({ method, url, headers, body }: RequestPreview): string {
    const words = ['curl', '--location', '--insecure', '--include'];
    for (const { name, value } of headers) words.push('--header', `${name}: ${value}`);
    if (method === 'POST') words.push('--data-binary', body);
    return [...words, url].map(shellWord).join(' ');
}
