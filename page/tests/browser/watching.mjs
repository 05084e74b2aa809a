/** The doctor's answers around a repair of the library. */

export const change = (kind, path, diff = '') => ({ kind, path, diff, command: '', needs: 'user' });

export const preview = (changes, more = {}) => ({
    result: { changes, paths: changes.map(({ path }) => path), lasting: '', ...more },
});

/** A repair that the doctor has watched, and that it can undo. */
export const watching = (changes, more = {}) => ({
    'doctor.watch': { result: { journal: 4, refusal: '' } },
    'doctor.watched': { result: { result: 'repaired', journal: 4, reason: '', changes, ...more } },
    'doctor.undo': { result: { result: 'undone', reason: '', kept: [] } },
});
