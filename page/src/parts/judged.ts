/** How something was found: in order, only worth knowing, worth a look, or broken. */
export type Judged = 'good' | 'plain' | 'warning' | 'bad';
