import type { ServerAnswer, TimedAnswer } from '@/client';

/** What an answer means, by the name of its text. */
type Meaning = 'good' | 'silent' | 'redirect' | 'access' | 'notFound' | 'client' | 'server' | 'odd';

export function meaningOf(answer: ServerAnswer): Meaning {
    if (answer.good) return 'good';
    const { status } = answer;
    if (status === 0) return 'silent';
    if (status === 401 || status === 403 || status === 407) return 'access';
    if (status === 404 || status === 410) return 'notFound';
    if (status >= 300 && status < 400) return 'redirect';
    if (status >= 400 && status < 500) return 'client';
    return status >= 500 && status < 600 ? 'server' : 'odd';
}

/** What a timed answer means, as the library tells it of its own. */
export function plainAnswer({ status, body }: TimedAnswer): ServerAnswer {
    return status >= 200 && status < 300 ? { good: true } : { good: false, status, body };
}

const mostShown = 20_000;

/** The start of a body, in lines; `cut` tells that there is more. */
export function shownBody(body: string): { lines: string[]; cut: boolean } {
    const start = body.slice(0, mostShown).replace(/\t/g, '    ');
    return { lines: start.split(/\r\n|\n|\r/), cut: body.length > mostShown };
}
