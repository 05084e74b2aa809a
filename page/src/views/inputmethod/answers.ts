import type { Judged } from '@/parts/judged';

/** The code words of the check; each has its texts under inputmethod.answers. */
export const answerCodes = [
    'ERR_OK',
    'ERR_OTHER',
    'ERR_LOADPLUGIN_FAILED',
    'ERR_NOT_RUNNING',
    'ERR_NOT_FIND_BUSCONFIG',
    'ERR_INVALID_ENV_CONFIG',
] as const;

export type AnswerCode = (typeof answerCodes)[number];

/** The code of an answer; null for one that the suite has translated. */
export function answerCode(answer: string): AnswerCode | null {
    return answerCodes.find((code) => code === answer.trim()) ?? null;
}

export function judgeAnswer(answer: string): Judged {
    const code = answerCode(answer);
    if (code === null || code === 'ERR_OTHER') return 'warning';
    return code === 'ERR_OK' ? 'good' : 'bad';
}
