/**
 * How a command ended. Only `done` carries a value; the others say what a view has to put into
 * words:
 * - failed: the library answered "error";
 * - badRequest: the library answered "parame error";
 * - incomplete: a full disk cut short what was written;
 * - unanswered: the library set no result where one was due;
 * - unreadable: the result has another shape than the command promises;
 * - refused: the host did not pass the call on, with its reason;
 * - broken: a task of the shell did not come to its end, with the reason for people;
 * - stopped: the user has cancelled it;
 * - blocked: the doctor could not keep what was there before, with its reason;
 * - absent: there is no host, the page runs in an ordinary browser.
 */
export type Outcome<Value> =
    | { kind: 'done'; value: Value }
    | { kind: 'failed' }
    | { kind: 'badRequest' }
    | { kind: 'incomplete' }
    | { kind: 'unanswered' }
    | { kind: 'unreadable'; reason: string }
    | { kind: 'refused'; reason: string }
    | { kind: 'blocked'; reason: string }
    | { kind: 'broken'; reason: string }
    | { kind: 'stopped' }
    | { kind: 'absent' };

export type Failure = Exclude<Outcome<never>, { kind: 'done' }>;

/** An answer that is not of the promised shape. */
export class UnreadableAnswer extends Error {}
