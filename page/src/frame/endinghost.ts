import type { Host } from '@/client';

/**
 * The host as long as a view is shown. What the view still awaits when it has ended never comes, as
 * if its document had gone: no work of it goes on unseen.
 */
export function endingHost(host: () => Host | undefined): {
    host: () => Host | undefined;
    end: () => void;
} {
    let ended = false;
    const unlessEnded =
        <Value>(act: (value: Value) => void) =>
        (value: Value): void => {
            if (!ended) act(value);
        };
    const callOf =
        (current: Host): Host['call'] =>
        (command, args, listen) =>
            new Promise((resolve, reject: (reason: unknown) => void) => {
                if (ended) return;
                const call = listen
                    ? current.call(command, args, unlessEnded(listen))
                    : current.call(command, args);
                call.then(unlessEnded(resolve), unlessEnded(reject));
            });
    return {
        host() {
            const current = host();
            return current && { ...current, call: callOf(current) };
        },
        end() {
            ended = true;
        },
    };
}
