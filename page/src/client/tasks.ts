/** Work of a shell that reads back what it did and can be cancelled, in place of commands. */
import type { Caller } from './wire/caller';
import { members, text } from './wire/decode';
import type { TaskName } from './wire/host';

export function taskOperations(caller: Caller) {
    return {
        isOffered: (task: TaskName): boolean => caller.offers(task),
        /** Saves a text as a file that the user chooses; gives its path. */
        save: (content: string) =>
            caller.perform('task.save', (result) => text(members(result).file), { text: content }),
        cancel: (task: TaskName) => caller.operate('task.cancel', () => undefined, { task }),
    };
}
