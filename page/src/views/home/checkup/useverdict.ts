import { computed, onBeforeUnmount, onMounted, ref } from 'vue';
import { failureText, useTexts } from '@/frame/texts';
import type { Checkup } from './checkup';
import { verdictOf } from './verdict';

/** After so many milliseconds a result may not hold any more. */
const longestFresh = 30 * 60 * 1000;
const minute = 60 * 1000;

/** The verdict of a check-up in the language of the window. */
export function useVerdict(checkup: Checkup) {
    const { t, moment } = useTexts();
    const { checks, mistakes, results, running, stopped, finishedAt, failure, change } = checkup;
    const now = ref(Date.now());
    const tick = (): void => {
        now.value = Date.now();
    };
    let timer: ReturnType<typeof setInterval> | undefined;
    onMounted(() => {
        timer = setInterval(tick, minute);
        window.addEventListener('focus', tick);
    });
    onBeforeUnmount(() => {
        clearInterval(timer);
        window.removeEventListener('focus', tick);
    });

    const all = computed(() => checks.value.length);
    const failed = computed(() =>
        [...results.values()].filter(({ result }) => result === 'failed'),
    );
    const unchecked = computed(() => failed.value.length + mistakes.value.length);
    const isOld = computed(
        () => finishedAt.value !== null && now.value - finishedAt.value.getTime() > longestFresh,
    );
    const verdict = computed(() =>
        verdictOf({
            running: running.value,
            stopped: stopped.value,
            isMissing: failure.value !== null || finishedAt.value === null || all.value === 0,
            groups: checkup.groups.value,
            ignored: checkup.ignoredGroups.value.length,
            isPartial: unchecked.value > 0,
            isOld: isOld.value,
        }),
    );
    const sentence = computed(() => {
        const count = checkup.groups.value.length;
        return t(
            `home.checkup.verdicts.${verdict.value.sentence}`,
            { count, number: results.size, all: all.value },
            count,
        );
    });

    function changeRemarks(): string[] {
        if (!change.value || !finishedAt.value) return [];
        const { since, last, fixed, appeared, unkept } = change.value;
        const remarks: string[] = [];
        if (finishedAt.value.getTime() - since.getTime() > minute) {
            remarks.push(t('home.checkup.since', { time: moment(since) }));
        } else if (last && fixed.length + appeared.length > 0) {
            const counts = { fixed: fixed.length, appeared: appeared.length };
            remarks.push(t('home.checkup.sinceLast', counts));
        }
        if (unkept) remarks.push(unkept);
        return remarks;
    }

    /** Short remarks below the sentence. */
    const remarks = computed(() => {
        if (failure.value) return [failureText(t, failure.value)];
        if (running.value) {
            return [t('home.checkup.progress', { number: results.size, all: all.value })];
        }
        if (!finishedAt.value) return [];
        const time = moment(finishedAt.value);
        const lines = [t(isOld.value ? 'home.checkup.old' : 'home.checkup.checkedAt', { time })];
        const partial = checkup.groups.value.length > 0 && unchecked.value > 0;
        if (partial) {
            lines.push(t('home.checkup.unchecked', { count: unchecked.value }, unchecked.value));
        }
        return [...lines, ...changeRemarks()];
    });
    return { verdict, sentence, remarks, failed, isOld };
}
