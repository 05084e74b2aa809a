import type { Judged } from '@/parts/judged';
import type { FindingGroup } from './groups';

/** What a verdict is made of. */
export interface Seen {
    /** A look is under way. */
    running: boolean;
    /** It was ended early. */
    stopped: boolean;
    /** It could not be made, or not at all yet. */
    isMissing: boolean;
    /** What to look at, the worst first. */
    groups: FindingGroup[];
    /** How many groups the user ignores. */
    ignored: number;
    /** Something could not be checked. */
    isPartial: boolean;
    /** So long ago that it may not hold any more. */
    isOld: boolean;
}

interface Verdict {
    /** The key of its sentence below "home.checkup.verdicts". */
    sentence: 'running' | 'missing' | 'stopped' | 'found' | 'partial' | 'onlyIgnored' | 'well';
    mark: Judged;
}

const marks = { bad: 'bad', warning: 'warning', note: 'plain' } as const;

/** One sentence and one mark. Only a whole look of late that found nothing is good. */
export function verdictOf(seen: Seen): Verdict {
    const worst = seen.groups[0];
    if (seen.running) return { sentence: 'running', mark: 'plain' };
    if (seen.isMissing) return { sentence: 'missing', mark: 'warning' };
    if (worst && !seen.stopped) return { sentence: 'found', mark: marks[worst.state] };
    if (seen.stopped) return { sentence: 'stopped', mark: worst ? marks[worst.state] : 'plain' };
    if (seen.isPartial) return { sentence: 'partial', mark: 'warning' };
    const sentence = seen.ignored > 0 ? 'onlyIgnored' : 'well';
    return { sentence, mark: seen.isOld ? 'plain' : 'good' };
}
