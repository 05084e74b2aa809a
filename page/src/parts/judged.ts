/** A verdict: fine, for information, worth a look, or broken. */
export type Judged = 'good' | 'plain' | 'warning' | 'bad';
