import { shallowRef } from 'vue';
import { mostPaths, type Client, type FileLook } from '@/client';
import type { HitList } from './hitlist';
import { hitPath } from './hitpath';

/** Sizes and times of hits, which are read for those in sight, or for all where they decide. */
export function useHitLooks({ paths }: Pick<Client, 'paths'>, list: HitList) {
    let looks: (FileLook | undefined)[] = [];
    let round = 0;
    let wanted: number[] = [];
    let reading = false;
    /** Counts what was read. */
    const version = shallowRef(0);

    async function readSome(numbers: number[]): Promise<boolean> {
        const mine = round;
        const hits = numbers.map((number) => list.hit(number)!);
        const outcome = await paths.look(hits.map(hitPath));
        if (mine !== round || outcome.kind !== 'done') return false;
        outcome.value.forEach((look, index) => {
            looks[numbers[index]!] = look;
        });
        version.value += 1;
        return true;
    }

    /** The shell drops a reading for a later one, so there is only one at a time. */
    async function read(): Promise<void> {
        if (reading) return;
        reading = true;
        while (wanted.length) {
            const numbers = wanted.splice(0, mostPaths);
            if (!(await readSome(numbers))) wanted = [];
        }
        reading = false;
    }

    return {
        version,
        isOffered: paths.isOffered,
        look: (number: number): FileLook | undefined => looks[number],
        /** Reads those of the hits that were not read yet, before any that were wanted earlier. */
        want(numbers: number[]): void {
            const missing = numbers.filter((number) => looks[number] === undefined);
            if (!paths.isOffered || !missing.length) return;
            wanted = missing;
            void read();
        },
        /** Reads all hits; gives whether that worked. */
        async wantAll(): Promise<boolean> {
            const mine = round;
            for (let start = 0; start < list.count; start += mostPaths) {
                const numbers = Array.from(
                    { length: Math.min(mostPaths, list.count - start) },
                    (_, index) => start + index,
                ).filter((number) => looks[number] === undefined);
                if (numbers.length && !(await readSome(numbers))) return false;
                if (mine !== round) return false;
            }
            return true;
        },
        forget(): void {
            round += 1;
            looks = [];
            wanted = [];
        },
    };
}
