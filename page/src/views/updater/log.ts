import { matcher } from '@/tasks/filter';

interface LogLine {
    /** Counted from 1. */
    number: number;
    text: string;
}

export function logLines(log: string): LogLine[] {
    const texts = log.split(/\r\n|\n|\r/);
    if (texts[texts.length - 1] === '') texts.pop();
    // A tab counts as visible here.
    return texts.map((text, index) => ({ number: index + 1, text: text.replace(/\t/g, '    ') }));
}

export function matchingLines(lines: LogLine[], query: string): LogLine[] {
    if (query.trim() === '') return lines;
    const matches = matcher(query);
    return lines.filter(({ text }) => matches(text));
}
