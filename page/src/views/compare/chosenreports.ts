import { ref } from 'vue';

/** A report that the user has brought. */
export interface ChosenReport {
    name: string;
    text: string;
}

/** Larger files are no reports. */
const largestFile = 8 * 1024 * 1024;

/** The reports to compare; each file once, the newest reading of a name counts. */
export function useChosenReports() {
    const chosen = ref<ChosenReport[]>([]);
    const tooLarge = ref<string[]>([]);

    async function add(files: Iterable<File>): Promise<void> {
        const all = [...files];
        tooLarge.value = all.filter(({ size }) => size > largestFile).map(({ name }) => name);
        const read = await Promise.all(
            all
                .filter(({ size }) => size <= largestFile)
                .map(async (file) => ({ name: file.name, text: await file.text() })),
        );
        const names = new Set(read.map(({ name }) => name));
        chosen.value = [...chosen.value.filter(({ name }) => !names.has(name)), ...read];
    }

    function remove(report: ChosenReport): void {
        chosen.value = chosen.value.filter((one) => one !== report);
    }

    return { chosen, tooLarge, add, remove };
}
