import { onBeforeUnmount, onMounted } from 'vue';
import type { Client, Notice, NoticeName } from '@/client';

/** Listens to notices of the library for as long as the component is mounted. */
export function useNotice<Name extends NoticeName>(
    client: Pick<Client, 'listen'>,
    name: Name,
    listener: (notice: Notice<Name>) => void,
): void {
    let stop: (() => void) | undefined;
    onMounted(() => {
        stop = client.listen(name, listener);
    });
    onBeforeUnmount(() => stop?.());
}
