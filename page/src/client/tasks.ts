/** Work of a shell that reads back what it did and can be cancelled, in place of commands. */
import type { Caller } from './caller';
import type { TaskName } from './wire';

export function taskOperations(caller: Caller) {
    return {
        isOffered: (task: TaskName): boolean => caller.offers(task),
        cancel: (task: TaskName) => caller.operate('task.cancel', () => undefined, { task }),
    };
}
